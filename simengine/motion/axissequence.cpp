// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/motion/axissequence.h"

#include "engine/imarkcardbase.h"
#include "engine/markcardinstance.h"
#include "simengine/motion/cardaxes.h"

#include <algorithm>
#include <chrono>
#include <vector>

namespace sim {

namespace {

/// Output bits of the card.
constexpr int kOutputs = 32;

} // namespace

AxisSequence::AxisSequence(QVector<AxisMoveStruct> const& list, Class_CardPara const& para,
                           std::function<void(bool)> ended)
    : m_list(list)
    , m_para(para)
    , m_ended(std::move(ended))
    , m_thread([this] { run(); }) {}

AxisSequence::~AxisSequence() {
    cancel();
    m_thread.join();
}

void AxisSequence::cancel() {
    {
        std::lock_guard<std::mutex> guard(m_lock);
        m_cancelled = true;
    }
    m_wake.notify_all();
    for (AxisMoveStruct const& request : m_list)
        simulatedAxes().stop(motorOf(m_para, request.AxisNo));
}

void AxisSequence::run() {
    bool const done = runAll() && !m_cancelled;
    bool const homing = std::any_of(m_list.cbegin(), m_list.cend(), [](auto const& request) { return request.Home; });
    if (done && homing && m_para.HomeDoneSignal)
        giveHomeDoneSignal();
    m_ended(done);
}

bool AxisSequence::runAll() {
    std::atomic<bool> good{true};
    std::vector<std::thread> beside;
    auto const cancelled = [this] { return m_cancelled.load(); };
    for (AxisMoveStruct const& request : m_list) {
        if (m_cancelled || !good)
            break;
        if (!request.Wait) {
            beside.emplace_back([this, &good, &cancelled, request] {
                if (!runRequest(request, m_para, cancelled))
                    good = false;
            });
        } else if (!runRequest(request, m_para, cancelled)) {
            good = false;
        }
    }
    for (std::thread& thread : beside)
        thread.join();
    return good;
}

/// A pulse on the configured output, which tells a plant control that the machine is homed.
void AxisSequence::giveHomeDoneSignal() {
    IMarkCardBase* card = MarkCardInstance::Instance();
    if (!card || m_para.HomeDoneBit < 0 || m_para.HomeDoneBit >= kOutputs)
        return;
    card->SetOutputBit(m_para.HomeDoneBit, m_para.HomeDoneHigh ? 1 : 0);
    std::unique_lock<std::mutex> guard(m_lock);
    m_wake.wait_for(guard, std::chrono::milliseconds(std::max(1, m_para.HomeDoneTime)),
                    [this] { return m_cancelled.load(); });
    card->SetOutputBit(m_para.HomeDoneBit, m_para.HomeDoneHigh ? 0 : 1);
}

} // namespace sim

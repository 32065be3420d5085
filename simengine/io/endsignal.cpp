// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/io/endsignal.h"

#include "engine/iooutputset.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::chrono::milliseconds kSlice(1);

EndSignalClear clearOf(int type) {
    return type >= 0 && type <= 3 ? static_cast<EndSignalClear>(type) : EndSignalClear::Block;
}

} // namespace

EndSignalSettings currentEndSignal() {
    IOOutputSet const* outputs = IOOutputSet::Instance();
    EndSignalSettings settings;
    int level = 1;
    int clear = 0;
    int ackLevel = 1;
    outputs->GetEndSignal(settings.enable, settings.output, level, clear, settings.duration, settings.ackInput,
                          ackLevel, settings.ackTimeout, settings.selfCheck);
    settings.level = level != 0;
    settings.clear = clearOf(clear);
    settings.ackLevel = ackLevel != 0;
    settings.afterStop = outputs->m_bStopHasEndSig;
    return settings;
}

EndSignal::EndSignal(CardCore& card)
    : m_card(card) {
    m_card.setClosedListener([this] { cardClosed(); });
}

EndSignal::~EndSignal() {
    m_card.setClosedListener(nullptr);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_end = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

bool EndSignal::write(int output, bool level) {
    m_card.journal().add("SetOutputBit", journalArgs(output, level ? 1 : 0));
    return m_card.setOutput(output, level);
}

/// The number of the signal; one that is given at the same output meanwhile is not taken back for it.
std::uint64_t EndSignal::give(EndSignalSettings const& settings) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_laterOutput == settings.output)
        m_laterOutput = -1;
    m_standing.erase(settings.output);
    const bool written = write(settings.output, settings.level);
    ++m_signals;
    if (settings.clear == EndSignalClear::NextRun) {
        m_nextRunOutput = settings.output;
        m_nextRunLevel = !settings.level;
    } else if (written || m_card.isOpen()) {
        m_standing[settings.output] = {!settings.level, m_signals};
    }
    return m_signals;
}

/// Called with the lock held. What a closed card refuses is left to cardClosed(), which is under way then.
void EndSignal::takeBack(int output, std::uint64_t number) {
    const auto standing = m_standing.find(output);
    if (standing == m_standing.end() || standing->second.number != number || !m_card.isOpen())
        return;
    if (write(output, standing->second.restLevel) || m_card.faults().isOn("outputs_stuck"))
        m_standing.erase(standing);
}

void EndSignal::cardClosed() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const auto& [output, standing] : m_standing) {
        m_card.journal().add("SetOutputBit", journalArgs(output, standing.restLevel ? 1 : 0));
        m_card.driveOutput(output, standing.restLevel);
    }
    m_standing.clear();
    m_laterOutput = -1;
    m_changed.notify_all();
}

void EndSignal::runBegins() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_nextRunOutput >= 0)
        write(m_nextRunOutput, m_nextRunLevel);
    m_nextRunOutput = -1;
}

template<typename Done>
bool EndSignal::wait(double ms, bool wallClock, std::uint64_t stopOrders, Done done) {
    double passed = 0.0;
    Clock::time_point last = Clock::now();
    while (!done()) {
        const double factor = wallClock && m_card.speed() <= 0.0 ? 1.0 : m_card.speed();
        // A stop's other calls come after the job that it ended; the next order is for the signal, and so is one that
        // came when the job was just over.
        const bool stopped = m_card.runner().stopOrders() != stopOrders;
        if (factor <= 0.0 || passed >= ms || stopped || !m_card.isOpen())
            return false;
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, kSlice);
        const Clock::time_point now = Clock::now();
        passed += std::chrono::duration<double, std::milli>(now - last).count() * factor;
        last = now;
    }
    return true;
}

EndSignalResult EndSignal::runEnded(EndSignalSettings const& settings, RunResult const& result) {
    const bool stopped = result.outcome == Outcome::Stopped;
    if (!settings.enable || settings.output < 0 || settings.output >= kLineCount || (stopped && !settings.afterStop))
        return EndSignalResult::NotGiven;
    const std::uint64_t number = give(settings);
    const bool readBack = (m_card.outputs() >> settings.output & 1U) == (settings.level ? 1U : 0U);
    bool acknowledged = true;
    switch (settings.clear) {
    case EndSignalClear::Block:
        wait(settings.duration, false, result.stopOrders, [] { return false; });
        break;
    case EndSignalClear::NextRun:
        break;
    case EndSignalClear::Acknowledge:
        acknowledged = wait(settings.ackTimeout, true, result.stopOrders, [this, &settings] {
            return settings.ackInput >= 0 && settings.ackInput < kLineCount &&
                   (m_card.inputs() >> settings.ackInput & 1U) == (settings.ackLevel ? 1U : 0U) && m_card.isOpen();
        });
        break;
    case EndSignalClear::Thread:
        clearLater(settings, number);
        break;
    }
    if (settings.clear == EndSignalClear::Block || settings.clear == EndSignalClear::Acknowledge) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        takeBack(settings.output, number);
    }
    if (!acknowledged)
        return EndSignalResult::NotAcknowledged;
    return settings.selfCheck && !readBack ? EndSignalResult::NotReadBack : EndSignalResult::Given;
}

/// A signal that is still on at another output is taken back at once: there is one time for one signal.
void EndSignal::clearLater(EndSignalSettings const& settings, std::uint64_t number) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_laterOutput >= 0)
        takeBack(m_laterOutput, m_laterNumber);
    const double factor = m_card.speed();
    const std::chrono::duration<double, std::milli> time(factor > 0.0 ? std::max(settings.duration, 0) / factor : 0.0);
    m_laterOutput = settings.output;
    m_laterNumber = number;
    m_laterAt = Clock::now() + std::chrono::duration_cast<Clock::duration>(time);
    if (!m_thread.joinable())
        m_thread = std::thread([this] { clearThread(); });
    m_changed.notify_all();
}

void EndSignal::clearThread() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_end || m_laterOutput >= 0) {
        if (m_laterOutput < 0) {
            m_changed.wait(lock);
        } else if (m_end || Clock::now() >= m_laterAt) {
            takeBack(m_laterOutput, m_laterNumber);
            m_laterOutput = -1;
        } else {
            m_changed.wait_until(lock, m_laterAt);
        }
    }
}

EndSignal& cardEndSignal() {
    static EndSignal signal(simulatedCard());
    return signal;
}

} // namespace sim

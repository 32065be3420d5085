// SPDX-License-Identifier: MIT
#include "run/stopwatcher.h"

#include "engine/iooutputset.h"
#include "engine/markcardinstance.h"

#include <QThread>
#include <QVector>
#include <chrono>

namespace tessera {

namespace {

constexpr int kLookMs = 20;
constexpr int kLastOutput = 31;

StopLook lookAt(IMarkCardBase const* card) {
    StopLook look;
    look.open = card && card->IsCardOpend();
    if (!look.open)
        return look;
    look.status = card->GetMarkStatus();
    look.info = card->GetMarkInfo();
    look.outputsAtRest = RunLampReadsBack(*card, *IOOutputSet::Instance());
    return look;
}

/// Outputs that are driven for something else than the stack light.
QVector<int> otherOutputs(IOOutputSet const& outputs) {
    QString name;
    int redLight = -1;
    outputs.GetRedLight(redLight, name);
    int gas = -1;
    double gasDelay = 0.0;
    outputs.GetProtectGas(gas, gasDelay, name);
    bool enable = false;
    bool selfCheck = false;
    int endSignal = -1;
    int number = 0; // what else the signal has is of no interest here
    outputs.GetEndSignal(enable, endSignal, number, number, number, number, number, number, selfCheck);
    return {redLight, gas, endSignal, outputs.GetReadyOut()};
}

} // namespace

/// A machine may be wired so that one output serves several; which of them was written last is not known here.
bool RunLampReadsBack(IMarkCardBase const& card, IOOutputSet const& outputs) {
    int red = -1;
    int green = -1;
    int yellow = -1;
    int buzzer = -1;
    outputs.GetLight(red, green, yellow, buzzer);
    if (green < 0 || green > kLastOutput)
        return true;
    const QVector<int> others = otherOutputs(outputs);
    if (green == red || green == yellow || green == buzzer || others.contains(green))
        return true;
    bool lit[3] = {};
    outputs.GetLightStatus(lit[0], lit[1], lit[2]);
    return (card.GetOutputBit(green) != 0) == (lit[1] != outputs.IsOutputInv());
}

StopWatcher::StopWatcher(std::function<bool()> goingOn, std::function<bool()> runEnded, QObject* parent)
    : QObject(parent)
    , m_GoingOn(std::move(goingOn))
    , m_RunEnded(std::move(runEnded)) {
    m_Timer.setObjectName(QStringLiteral("stopTimer"));
    m_Timer.setInterval(kLookMs);
    connect(&m_Timer, &QTimer::timeout, this, &StopWatcher::Look);
}

std::int64_t StopWatcher::Now() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void StopWatcher::Ordered(std::int64_t atMs) {
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [=] { Ordered(atMs); }, Qt::QueuedConnection);
        return;
    }
    const StopState before = m_Confirmation.State();
    m_Confirmation.Order(atMs);
    m_Timer.start();
    Take(before);
    Look();
}

void StopWatcher::Look() {
    const StopState before = m_Confirmation.State();
    if (before == StopState::None)
        return;
    StopLook look = lookAt(MarkCardInstance::Instance());
    look.goingOn = m_GoingOn();
    look.runEnded = m_RunEnded();
    m_Confirmation.Look(look, Now());
    Take(before);
}

void StopWatcher::Take(StopState before) {
    const StopState state = m_Confirmation.State();
    if (state == StopState::None)
        m_Timer.stop();
    if (state != before)
        emit Changed(state);
}

} // namespace tessera

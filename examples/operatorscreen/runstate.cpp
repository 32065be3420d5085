// SPDX-License-Identifier: MIT
#include "runstate.h"

#include "engine/markcardinstance.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"

namespace {

/// Colours mean what the stack light means; grey is for a machine that waits for the operator. In the order of
/// RunState.
constexpr RunStateLook kLooks[] = {
    {RunState::NoDocument, operatortexts::kNoDocument, "#7d8b99", false, false, false},
    {RunState::Ready, operatortexts::kReady, "#7d8b99", true, false, false},
    {RunState::Running, operatortexts::kRunning, "#2e9e4f", false, true, true},
    {RunState::Paused, operatortexts::kPaused, "#e0a800", true, false, true},
    {RunState::Alarm, operatortexts::kAlarm, "#d03a3a", false, false, true},
    {RunState::Warning, operatortexts::kAlarm, "#d03a3a", true, false, true},
};

/// The ready input and door 5 stop a run and light the red lamp, but the machine may be started with them.
constexpr unsigned kStartable = 1U | 32U;

} // namespace

RunState ReadRunState(MainWindow const& window) {
    const unsigned alarms = window.GetSafeAlarm();
    if (alarms != 0)
        return alarms & ~kStartable || !window.GetActiveView() ? RunState::Alarm : RunState::Warning;
    if (Form_Marking::Instance()->IsRunning()) {
        const MarkStatus status = MarkCardInstance::Instance()->GetMarkStatus();
        return status == MarkStatusPause ? RunState::Paused : RunState::Running;
    }
    return window.GetActiveView() ? RunState::Ready : RunState::NoDocument;
}

RunStateLook const& LookOf(RunState state) {
    return kLooks[static_cast<int>(state)];
}

// SPDX-License-Identifier: MIT
#include "shell/safetycheck.h"

#include "engine/languagemanager.h"
#include "shell/alarmmask.h"

namespace tessera {

namespace {

enum class SafetyKind { Ready, Door, Always };

struct SafetyInput {
    char const* name;
    unsigned int bit;
    SafetyKind kind;
};

/// In the order in which the inputs are looked at.
constexpr SafetyInput kSafetyInputs[] = {
    {"机台就绪", AlarmReady, SafetyKind::Ready},    {"机台安全门1", AlarmDoor1, SafetyKind::Door},
    {"机台安全门2", AlarmDoor2, SafetyKind::Door},  {"机台安全门3", AlarmDoor3, SafetyKind::Door},
    {"机台安全门4", AlarmDoor4, SafetyKind::Door},  {"机台安全门5", AlarmDoor5, SafetyKind::Door},
    {"安全光栅", AlarmCurtain, SafetyKind::Door},   {"急停按钮", AlarmEmergencyStop, SafetyKind::Always},
    {"激光器报警", AlarmLaser, SafetyKind::Always}, {"水冷机报警", AlarmChiller, SafetyKind::Always},
};

/// Steps of an input that has just become active. A door and an emergency stop act before the alarm is noted.
void enter(SafetyInput const& input, SafetySettings const& settings, SafetyPlan& plan) {
    const SafetyStep note{SafetyAct::SetBit, input.bit};
    const SafetyStep stop{SafetyAct::Stop, input.bit};
    plan.mask |= input.bit;
    switch (input.kind) {
    case SafetyKind::Ready:
        plan.steps.push_back(note);
        if (settings.runActive)
            plan.steps.push_back(stop);
        break;
    case SafetyKind::Door:
        if (settings.runActive)
            plan.steps.push_back(settings.doorPauses ? SafetyStep{SafetyAct::Pause, input.bit} : stop);
        plan.steps.push_back(note);
        break;
    case SafetyKind::Always:
        plan.steps.push_back(stop);
        plan.steps.push_back(note);
        break;
    }
}

StackLight lightOf(unsigned int before, unsigned int after) {
    if (after != 0)
        return StackLight::Red;
    return before != 0 ? StackLight::Yellow : StackLight::Keep;
}

} // namespace

SafetyPlan CheckSafe(AskInput const& ask, SafetySettings const& settings, unsigned int before) {
    SafetyPlan plan;
    plan.mask = before;
    for (SafetyInput const& input : kSafetyInputs) {
        const InputEdge edge = ask(input.name);
        if (edge == EdgeEntered) {
            enter(input, settings, plan);
        } else if (edge != EdgeNone && (plan.mask & input.bit) != 0) {
            // Also of a function that the installer has just switched off.
            plan.steps.push_back({SafetyAct::ClearBit, input.bit});
            plan.mask &= ~input.bit;
        }
    }
    plan.indicatorRed = (plan.mask & ~static_cast<unsigned int>(AlarmLaser)) != 0;
    plan.light = lightOf(before, plan.mask);
    return plan;
}

QString SafetyInputName(unsigned int bit) {
    for (SafetyInput const& input : kSafetyInputs) {
        if (input.bit == bit)
            return LanguageManager::GetLanText(input.name);
    }
    return QString();
}

RunOrder CheckRunStop(AskInput const& ask, int visible, std::function<bool()> const& checkAlarms) {
    if (ask("终止") == EdgeEntered)
        return RunOrder::Stop;
    if (ask("运行") == EdgeEntered) {
        if (!checkAlarms() || visible == 2)
            return RunOrder::Nothing;
        return visible == 1 ? RunOrder::Start : RunOrder::OpenDialog;
    }
    if (ask("暂停") == EdgeEntered)
        return visible == 1 ? RunOrder::Pause : RunOrder::Nothing;
    if (ask("红光预览") == EdgeEntered && visible != 2)
        return visible == 1 ? RunOrder::Preview : RunOrder::OpenDialog;
    return RunOrder::Nothing;
}

void CheckAutoManual(AskInput const& ask) {
    ask("手动");
    ask("自动");
}

} // namespace tessera

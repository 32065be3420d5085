// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/motion/cardaxes.h"

#include "simengine/card/cardcore.h"
#include "simengine/motion/axisfaultlink.h"
#include "simengine/motion/carriagefile.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr double kAtTarget = 1e-6;

struct Axes {
    // The card outlives the axes, which ask it for the speed factor and its faults.
    CardCore& card = simulatedCard();
    AxisGroup group{[this] { return card.speed(); }};
    AxisFaultLink faults{card.faults(), group};
};

Axes& axesOfMachine() {
    static Axes axes;
    return axes;
}

} // namespace

AxisGroup& simulatedAxes() {
    return axesOfMachine().group;
}

void applyAxisFaults() {
    axesOfMachine().faults.apply();
}

int motorOf(Class_CardPara const& para, int axis) {
    if (axis < 0 || axis >= kAxisSlots)
        return -1;
    int const motor = para.Axis[static_cast<std::size_t>(axis)].MotorNo - 1;
    return motor >= 0 && motor < kAxisCount ? motor : -1;
}

AxisConfig axisConfig(Class_CardPara const& card, int axis) {
    AxisPara const& para = card.Axis[static_cast<std::size_t>(axis)];
    AxisConfig config;
    config.limitEnable = para.LimitEnable != 0;
    config.limitReverse = para.LimitReverse != 0;
    config.driverAlarmEnable = para.DriverAlarmEnable != 0;
    config.driverReverse = para.DriverReverse != 0;
    config.pulseReverse = para.PulseReverse != 0;
    config.softLimitEnable = para.SoftLimitEnable != 0;
    config.softLimitMin = para.SoftLimitMin;
    config.softLimitMax = para.SoftLimitMax;
    config.externalEncoder = para.FeedbackMode == 1;
    config.settle = std::max(0, card.DefaultDelay) / 1000.0;
    double const reduce = para.Reduce > 0.0 ? para.Reduce : 1.0;
    config.turn = (para.AxisMode == 1 ? 360.0 : para.Screw) / reduce;
    return config;
}

HomingPlan homingPlan(AxisPara const& para) {
    HomingPlan plan;
    plan.type = para.HomeType;
    plan.highSpeed = para.HomeHighSpeed;
    plan.highAcc = para.HomeHighAcc;
    plan.lowSpeed = para.HomeLowSpeed;
    plan.lowAcc = para.HomeLowAcc;
    plan.count = para.HomeCount;
    plan.backDist = para.HomeBackDist;
    return plan;
}

bool runRequest(AxisMoveStruct const& request, Class_CardPara const& para, std::function<bool()> const& cancelled) {
    if (request.AxisNo < 0 || request.AxisNo >= qMin(para.AxisCount, kAxisSlots))
        return false;
    AxisPara const& axis = para.Axis[static_cast<std::size_t>(request.AxisNo)];
    int const motor = motorOf(para, request.AxisNo);
    AxisConfig const config = axisConfig(para, request.AxisNo);
    AxisGroup& axes = simulatedAxes();
    simulatedCard().journal().add(request.Home ? "SearchHome" : "WaitAxisStop",
                                  journalArgs(request.AxisNo, request.Home, request.Pos));
    if (request.Home) {
        bool const homed = homeAxis(axes, motor, config, homingPlan(axis), cancelled);
        if (homed)
            storeCarriages();
        return homed;
    }
    axes.configure(motor, config);
    axes.wait(motor);
    if (!axes.move(motor, request.Pos, capped(request.Vel, para.MaxSpeed), capped(request.Acc, para.MaxAcc)))
        return false;
    if (cancelled())
        axes.stop(motor);
    axes.wait(motor);
    AxisSample sample;
    return axes.sample(motor, sample) && std::fabs(sample.position - request.Pos) < kAtTarget;
}

double capped(double value, double maximum) {
    return maximum > 0.0 ? std::min(value, maximum) : value;
}

} // namespace sim

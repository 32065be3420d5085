// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/motion/cardaxes.h"

#include "simengine/card/cardcore.h"

#include <cmath>

namespace sim {

namespace {

constexpr double kAtTarget = 1e-6;

} // namespace

AxisGroup& simulatedAxes() {
    // The card outlives the axes, which ask it for the speed factor.
    static CardCore& card = simulatedCard();
    static AxisGroup axes([] { return card.speed(); });
    return axes;
}

AxisConfig axisConfig(AxisPara const& para) {
    AxisConfig config;
    config.limitEnable = para.LimitEnable != 0;
    config.limitReverse = para.LimitReverse != 0;
    config.driverAlarmEnable = para.DriverAlarmEnable != 0;
    config.driverReverse = para.DriverReverse != 0;
    config.pulseReverse = para.PulseReverse != 0;
    config.softLimitEnable = para.SoftLimitEnable != 0;
    config.softLimitMin = para.SoftLimitMin;
    config.softLimitMax = para.SoftLimitMax;
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
    AxisConfig const config = axisConfig(axis);
    AxisGroup& axes = simulatedAxes();
    simulatedCard().journal().add("SearchHome", journalArgs(request.AxisNo, request.Home, request.Pos));
    if (request.Home)
        return homeAxis(axes, request.AxisNo, config, homingPlan(axis), cancelled);
    axes.configure(request.AxisNo, config);
    axes.wait(request.AxisNo);
    if (!axes.move(request.AxisNo, request.Pos, request.Vel, request.Acc))
        return false;
    if (cancelled())
        axes.stop(request.AxisNo);
    axes.wait(request.AxisNo);
    AxisSample sample;
    return axes.sample(request.AxisNo, sample) && std::fabs(sample.position - request.Pos) < kAtTarget;
}

} // namespace sim

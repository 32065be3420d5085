// SPDX-License-Identifier: MIT
#pragma once

#include "engine/axismovestruct.h"
#include "engine/class_cardpara.h"

#include <QVector>
#include <algorithm>

namespace tessera {

/// The homing requests of all axes that take part, in the order of homing.
inline QVector<AxisMoveStruct> HomingPlan(Class_CardPara const& para) {
    QVector<AxisMoveStruct> plan;
    for (int axis = 0; axis < std::min(para.AxisCount, kAxisSlots); ++axis) {
        AxisHomePlan const& home = para.Home[static_cast<size_t>(axis)];
        if (home.Enable)
            plan.append({axis, 0.0, 0.0, 0.0, true, home.Wait, home.Order});
    }
    std::stable_sort(plan.begin(), plan.end());
    return plan;
}

} // namespace tessera

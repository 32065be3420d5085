// SPDX-License-Identifier: MIT
#pragma once

#include "engine/axismovestruct.h"
#include "engine/class_cardpara.h"
#include "engine/engineapi.h"

#include <QVector>

class QWidget;

/// Homing behind a wait dialog.
class ENGINE_API WaitAxisStop {
public:
    /// Homes the axes in list order with the values of `para` and blocks behind a wait dialog over `parent` (may be
    /// null) until all have finished or the operator has cancelled. False when an axis did not reach home. Main thread.
    static bool SearchHome(QVector<AxisMoveStruct>& list, Class_CardPara* para, QWidget* parent);
};

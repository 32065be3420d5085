// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/vzmovecard.h"

#include "simengine/motion/axisstate.h"

IMoveCardBase::~IMoveCardBase() = default;

VZMoveCard::VZMoveCard() = default;

VZMoveCard::~VZMoveCard() = default;

bool VZMoveCard::IsDriverAlarm(int state) const {
    return (state & sim::AxisDriverAlarm) != 0;
}

bool VZMoveCard::IsNegtiveLimit(int state) const {
    return (state & sim::AxisNegativeLimit) != 0;
}

bool VZMoveCard::IsPositiveLimit(int state) const {
    return (state & sim::AxisPositiveLimit) != 0;
}

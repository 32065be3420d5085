// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

/// The motion card. Decodes the state word that MoveCardManager::AxisGetInfo gives. Any thread.
class ENGINE_API IMoveCardBase {
public:
    virtual ~IMoveCardBase();
    virtual bool IsDriverAlarm(int state) const = 0;
    virtual bool IsNegtiveLimit(int state) const = 0;
    virtual bool IsPositiveLimit(int state) const = 0;
};

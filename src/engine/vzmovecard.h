// SPDX-License-Identifier: MIT
#pragma once

#include "engine/imovecardbase.h"

/// The motion card that the linked engine drives.
class ENGINE_API VZMoveCard : public IMoveCardBase {
public:
    VZMoveCard();
    ~VZMoveCard() override;
    bool IsDriverAlarm(int state) const override;
    bool IsNegtiveLimit(int state) const override;
    bool IsPositiveLimit(int state) const override;
};

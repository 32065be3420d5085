// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

class QWidget;

/// Window of the camera's positions. Main thread.
class ENGINE_API CCDPosSet {
public:
    static void ShowCCDPosSet(QWidget* parent);
    static bool IsVisible();
};

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

/// Board: 0 Rockchip, 1 Raspberry Pi. Any thread.
ENGINE_API int GetCMType();

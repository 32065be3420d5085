// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

/// Two numbers shown with three decimals read the same: they differ by less than 0.0005. Any thread.
ENGINE_API bool EqualDouble(double a, double b);
/// Two positions in mm are the same point for the card: they differ by less than 0.0001 mm, below one step of a
/// 16-bit scan head with 8192 sub-steps on a 100 mm field. Any thread.
ENGINE_API bool EqualPos(double a, double b);

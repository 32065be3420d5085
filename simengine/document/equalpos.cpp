// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/equalpos.h"

#include <cmath>

bool EqualDouble(double a, double b) {
    return a == b || std::abs(a - b) < 0.0005;
}

bool EqualPos(double a, double b) {
    return a == b || std::abs(a - b) < 0.0001;
}

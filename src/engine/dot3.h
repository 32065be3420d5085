// SPDX-License-Identifier: MIT
#pragma once

/// Point of vector data, millimetres in the card's field with the origin in the field centre.
/// The third value is carried to cards with a focus axis; callers of this program set it to 0.
struct DOT3 {
    double X = 0.0;
    double Y = 0.0;
    double Z = 0.0;
};

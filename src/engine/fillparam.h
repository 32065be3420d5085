// SPDX-License-Identifier: MIT
#pragma once

/// Hatch fills that an object can have.
constexpr int kFillCount = 3;

/// One hatch fill of an object. The order of the fields is part of the boundary.
struct FillParam {
    bool Enable = false;
    double FillDist = 0.1;   ///< mm between lines
    double FillAngle = 0.0;  ///< degrees, -360 to 360
    int FillLayer = 0;       ///< pen, 0 to 19
    double FillOffset = 0.0; ///< mm that the hatch keeps from the outline
    int EdgeCnt = 0;         ///< loops along the outline before the lines
    int FillType = 0;        ///< 0 one-way, 1 back and forth, 2 one serpentine, 3 serpentine by section, 4 nested loops
};

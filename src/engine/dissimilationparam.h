// SPDX-License-Identifier: MIT
#pragma once

/// How a curve is roughened ("曲线异化"): a pattern laid along it. Passed whole from DimitionSet to the view.
struct DissimilationParam {
    int Type = 0;           ///< 0 zigzag, 1 sine, 2 square
    double Amplitude = 0.5; ///< mm to each side of the curve
    double Pitch = 1.0;     ///< mm along the curve for one period
};

// SPDX-License-Identifier: MIT
#pragma once

/// Reference point of a selection's rectangle, row by row from the top left of a 3 x 3 grid.
enum BasePoint {
    BasePointTopLeft = 0,
    BasePointTop = 1,
    BasePointTopRight = 2,
    BasePointLeft = 3,
    BasePointCenter = 4,
    BasePointRight = 5,
    BasePointBottomLeft = 6,
    BasePointBottom = 7,
    BasePointBottomRight = 8
};

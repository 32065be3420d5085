// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <vector>

/// One offset record of a run, see MarkShapeContainer::AddCCDBuf. The order of the fields is part of the boundary.
/// The numbers 1 to 3 are dx and dy in mm and an angle in degrees, counter-clockwise about the field centre; 4 to 7 are
/// carried unchanged, and so are Kind, Used and Extra. A record that is not Valid is passed over.
struct CCDBufdata {
    int Kind = 0;
    std::array<double, 7> Values{};
    bool Valid = true;
    bool Used = false;
    std::vector<double> Extra;
};

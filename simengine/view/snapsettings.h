// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// What places are drawn to while something is moved, scaled or drawn.
struct SnapSettings {
    static constexpr int kLeastPixels = 2;
    static constexpr int kMostPixels = 40;

    bool on = true;
    bool grid = false;   ///< lines of the grid that is shown
    bool objects = true; ///< ends, middles, centres and bounds of other objects
    bool guides = true;  ///< in line with edges and centres of other objects
    int pixels = 10;     ///< how near a place must come; a finger has half as much again

    bool operator==(const SnapSettings& o) const {
        return on == o.on && grid == o.grid && objects == o.objects && guides == o.guides && pixels == o.pixels;
    }
    bool operator!=(const SnapSettings& o) const { return !(*this == o); }
};

/// The settings of this station, which all documents share: "/ini/View.ini". Numbers out of range are brought into it.
/// Any thread.
SnapSettings loadSnapSettings();
/// False when the file could not be written; the log tells why.
bool saveSnapSettings(const SnapSettings& settings);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <optional>

namespace sim {

/// Pixels of a drawing to the inch, for lengths without a unit and between the units.
constexpr double kSvgPixelsPerInch = 96.0;
constexpr double kMmPerInch = 25.4;
constexpr double kMmPerSvgPixel = kMmPerInch / kSvgPixelsPerInch;

/// A length of a drawing: a number and its unit.
struct SvgLength {
    double number = 0.0;
    bool percent = false; ///< of the viewport; otherwise `number` is in pixels

    /// In pixels, with the viewport's extent that a percentage refers to.
    double pixels(double viewport) const { return percent ? number * viewport / 100.0 : number; }
};

/// Reads "12", "12px", "1.5mm", "2cm", "1in", "3pt", "1pc", "4q", "1em", "1ex" or "50%"; an em is 16 pixels, an ex 8.
/// Nothing for any other text.
std::optional<SvgLength> parseSvgLength(const QString& text);

} // namespace sim

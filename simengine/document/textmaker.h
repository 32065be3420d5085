// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

namespace sim {

/// A text with its outline, or why there is none.
struct MadeText {
    TextShape shape; ///< usable when `fault` is None
    TextFault fault = TextFault::None;
    QString characters; ///< what a fault names: the control character, or those that the font lacks
    QString usedFamily; ///< the font that stands in for one that is not installed
    QString borrowed;   ///< characters that were taken from other fonts, at most 20

    bool ok() const { return fault == TextFault::None; }
};

/// Lays the text out in its own coordinates: the base line of the first line is y 0; lines begin, have their middle or
/// end at x 0 as they are aligned. A character that the chosen outline font lacks is taken from another installed font.
/// Any thread; needs a QGuiApplication for outline fonts.
MadeText makeText(const TextSpec& spec);

/// The same of a spec with variables, whose text comes to `shown`; of one without, `shown` is not looked at. Any
/// thread.
MadeText makeText(const TextSpec& spec, const QString& shown);

} // namespace sim

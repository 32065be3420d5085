// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

namespace sim {

/// Where fonts that the operator imports are put.
constexpr char kUserFontFolder[] = "/usr/share/fonts/truetype/fontusers";

/// Makes TrueType fonts that came into a folder, or were replaced there, since the last call known to the program:
/// their families can be used at once, without a restart. A file that is no font is passed over. Main thread.
void registerNewFonts(const QString& folder = QLatin1String(kUserFontFolder));

} // namespace sim

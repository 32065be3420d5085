// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

namespace sim {

/// Pixels of a picture at most.
constexpr long long kMaxPixels = 50'000'000;

/// Decodes a PNG, JPEG or BMP file and writes it to the standard output as tracewire.h tells. Gives the exit code of
/// the program.
int decodeImage(const QString& path);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QSizeF>

class QIODevice;

namespace sim {

/// Dots per mm that a picture file tells: the "pHYs" chunk of a PNG, the JFIF header of a JPEG, the pels per metre of a
/// BMP. Empty when it tells none, or nothing between 1 and 100 000 dots an inch. QImage cannot be asked: it puts the
/// screen's density in place of a missing one. `format` as QImageReader names it; the device is read from its start.
QSizeF dotsPerMm(QIODevice& file, const QByteArray& format);

} // namespace sim

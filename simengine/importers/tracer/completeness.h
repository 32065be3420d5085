// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>

class QIODevice;

namespace sim {

/// False for a JPEG or BMP file that ends before its picture does: their readers pass over it and give the missing part
/// a colour. A PNG file's reader tells by itself. `format` as QImageReader names it; the device is read from its start.
bool isWhole(QIODevice& file, const QByteArray& format);

} // namespace sim

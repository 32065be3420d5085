// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/tracer/completeness.h"

#include <QIODevice>
#include <QtEndian>
#include <cstdlib>

namespace sim {

namespace {

/// Markers of a JPEG file.
enum : unsigned char {
    JpegMarker = 0xFF,
    JpegStuffed = 0x00,
    JpegTemporary = 0x01,
    JpegFirstRestart = 0xD0,
    JpegStart = 0xD8,
    JpegEnd = 0xD9,
};

/// Whether a marker has a length and data of its own.
bool hasData(unsigned char marker) {
    return marker != JpegStuffed && marker != JpegTemporary && (marker < JpegFirstRestart || marker > JpegEnd);
}

/// Looks for the end marker; pictures within the data of other markers do not count.
bool jpegEnds(QIODevice& file) {
    file.seek(0);
    constexpr qint64 kBlock = 65536;
    qint64 skip = 0;
    while (true) {
        if (skip > 0 && !file.seek(file.pos() + skip))
            return false;
        skip = 0;
        const qint64 begin = file.pos();
        const QByteArray block = file.read(kBlock);
        int i = 0;
        for (; i + 3 < block.size() || (i + 1 < block.size() && block.size() < kBlock); ++i) {
            if (static_cast<unsigned char>(block[i]) != JpegMarker)
                continue;
            const auto marker = static_cast<unsigned char>(block[i + 1]);
            if (marker == JpegEnd)
                return true;
            if (marker == JpegMarker || !hasData(marker))
                continue;
            if (i + 3 >= block.size())
                return false;
            skip = qFromBigEndian<quint16>(block.constData() + i + 2);
            i += 2;
            break;
        }
        if (block.size() < kBlock && skip == 0)
            return false;
        if (!file.seek(begin + i))
            return false;
    }
}

bool bmpEnds(QIODevice& file) {
    constexpr int kHead = 34;
    file.seek(0);
    const QByteArray head = file.read(kHead);
    if (head.size() < kHead)
        return true; // the reader refuses it
    const auto number = [&](int at) { return qFromLittleEndian<quint32>(head.constData() + at); };
    constexpr int kPixels = 10, kInfoSize = 14, kWidth = 18, kHeight = 22, kBits = 28, kCompression = 30;
    constexpr quint32 kLeastInfo = 40, kNone = 0, kBitFields = 3;
    if (number(kInfoSize) < kLeastInfo || (number(kCompression) != kNone && number(kCompression) != kBitFields))
        return true; // of packed rows only the reader knows the length
    const qint64 width = static_cast<qint32>(number(kWidth));
    const qint64 height = std::llabs(static_cast<qint32>(number(kHeight)));
    const qint64 bits = qFromLittleEndian<quint16>(head.constData() + kBits);
    const qint64 row = (width * bits + 31) / 32 * 4;
    return file.size() >= number(kPixels) + row * height;
}

} // namespace

bool isWhole(QIODevice& file, const QByteArray& format) {
    if (format == "jpeg")
        return jpegEnds(file);
    return format != "bmp" || bmpEnds(file);
}

} // namespace sim

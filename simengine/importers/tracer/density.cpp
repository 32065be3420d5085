// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/tracer/density.h"

#include <QIODevice>
#include <QtEndian>

namespace sim {

namespace {

constexpr double kMmPerInch = 25.4;

/// Parts of a file before the picture that are looked at; more are not there in a sound one.
constexpr int kMostParts = 1000;

double bigEndian32(const char* bytes) {
    return qFromBigEndian<quint32>(bytes);
}

quint16 bigEndian16(const char* bytes) {
    return qFromBigEndian<quint16>(bytes);
}

QSizeF ofPng(QIODevice& file) {
    constexpr qint64 kSignature = 8, kHead = 8, kChecksum = 4, kPhys = 9;
    qint64 place = kSignature;
    for (int i = 0; i < kMostParts && file.seek(place); ++i) {
        const QByteArray head = file.read(kHead);
        if (head.size() < kHead || head.endsWith("IDAT"))
            break;
        if (head.endsWith("pHYs")) {
            const QByteArray data = file.read(kPhys);
            const bool perMetre = data.size() == kPhys && data[8] == 1;
            return perMetre ? QSizeF(bigEndian32(data.constData()), bigEndian32(data.constData() + 4)) / 1000.0
                            : QSizeF();
        }
        place += kHead + qFromBigEndian<quint32>(head.constData()) + kChecksum;
    }
    return {};
}

QSizeF ofJpeg(QIODevice& file) {
    constexpr int kJfif = 12;
    constexpr unsigned char kApp0 = 0xE0, kStartOfScan = 0xDA;
    qint64 place = 2;
    for (int i = 0; i < kMostParts && file.seek(place); ++i) {
        const QByteArray head = file.read(4);
        const auto marker = [&](int at) { return static_cast<unsigned char>(head[at]); };
        if (head.size() < 4 || marker(0) != 0xFF || marker(1) == kStartOfScan)
            break;
        const QByteArray data = marker(1) == kApp0 ? file.read(kJfif) : QByteArray();
        if (data.size() == kJfif && data.startsWith(QByteArray("JFIF\0", 5))) {
            const QSizeF dots(bigEndian16(data.constData() + 8), bigEndian16(data.constData() + 10));
            constexpr char kPerInch = 1, kPerCentimetre = 2;
            if (data[7] == kPerInch)
                return dots / kMmPerInch;
            return data[7] == kPerCentimetre ? dots / 10.0 : QSizeF();
        }
        place += 2 + bigEndian16(head.constData() + 2);
    }
    return {};
}

QSizeF ofBmp(QIODevice& file) {
    constexpr int kInfoSize = 14, kPelsX = 38, kPelsY = 42, kEnd = 46;
    constexpr quint32 kLeastInfo = 40; // older ones have no density
    file.seek(0);
    const QByteArray head = file.read(kEnd);
    if (head.size() < kEnd || qFromLittleEndian<quint32>(head.constData() + kInfoSize) < kLeastInfo)
        return {};
    return QSizeF(qFromLittleEndian<qint32>(head.constData() + kPelsX),
                  qFromLittleEndian<qint32>(head.constData() + kPelsY)) /
           1000.0;
}

bool isSound(double dots) {
    constexpr double kLeast = 1.0 / kMmPerInch, kMost = 100000.0 / kMmPerInch;
    return dots >= kLeast && dots <= kMost;
}

} // namespace

QSizeF dotsPerMm(QIODevice& file, const QByteArray& format) {
    QSizeF dots;
    if (format == "png")
        dots = ofPng(file);
    else if (format == "bmp")
        dots = ofBmp(file);
    else
        dots = ofJpeg(file);
    return isSound(dots.width()) && isSound(dots.height()) ? dots : QSizeF();
}

} // namespace sim

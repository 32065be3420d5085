// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/defaultpen.h"

#include "simengine/document/mkffields.h"

#include <QCryptographicHash>

namespace sim {

namespace {

constexpr char kMagic[8] = {char(0x89), 'P', 'E', 'N', '\r', '\n', char(0x1a), '\n'};
constexpr quint32 kVersion = 1;
constexpr int kChecksumBytes = 32;

QByteArray checksum(const QByteArray& bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

} // namespace

QByteArray encodeDefaultPen(const LayerData& pen) {
    ByteWriter out;
    out.raw(QByteArray(kMagic, sizeof kMagic));
    out.integer(kVersion);
    visitPen(pen, FieldWriter(out));
    out.raw(checksum(out.bytes()));
    return out.bytes();
}

std::optional<LayerData> decodeDefaultPen(const QByteArray& bytes) {
    const int covered = bytes.size() - kChecksumBytes;
    if (covered < int(sizeof kMagic) || checksum(bytes.left(covered)) != bytes.mid(covered) ||
        !bytes.startsWith(QByteArray(kMagic, sizeof kMagic)))
        return std::nullopt;
    ByteReader in(bytes.constData() + sizeof kMagic, covered - qint64(sizeof kMagic));
    if (in.integer<quint32>() != kVersion)
        return std::nullopt;
    LayerData pen;
    visitPen(pen, FieldReader(in));
    if (!in.ok() || in.left() != 0)
        return std::nullopt;
    return pen;
}

} // namespace sim

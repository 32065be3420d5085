// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QPointF>
#include <QString>
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

namespace sim {

/// A point in memory is what files have of it: x, then y, lowest byte first.
constexpr bool kPointsAreAsInFiles =
    Q_BYTE_ORDER == Q_LITTLE_ENDIAN && std::is_same_v<qreal, double> && sizeof(QPointF) == 2 * sizeof(double);

/// Bytes of a byte array at most.
constexpr qint64 kMostArrayBytes = std::numeric_limits<int>::max() - 64;

/// Appends values to a byte array, lowest byte first. What would be more than it may hold is left out whole, and so is
/// everything behind it; fits() tells.
class ByteWriter {
public:
    ByteWriter() = default;
    /// With room for so many bytes from the start; holds no more than `most`.
    explicit ByteWriter(qint64 expected, qint64 most = kMostArrayBytes)
        : m_most(std::min(most, kMostArrayBytes)) {
        grow(expected);
    }
    ByteWriter(const ByteWriter&) = delete;
    ByteWriter& operator=(const ByteWriter&) = delete;

    template<class Integer>
    void integer(Integer value) {
        const Integer little = qToLittleEndian(value);
        append(&little, qint64(sizeof little));
    }
    /// All 64 bits, so that every value comes back as it was.
    void real(double value) {
        quint64 bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        integer(bits);
    }
    /// Each point's x and y.
    void points(const QPointF* list, qint64 count) {
        if constexpr (kPointsAreAsInFiles) {
            append(list, count * qint64(sizeof(QPointF)));
        } else {
            for (qint64 i = 0; i < count; ++i) {
                real(list[i].x());
                real(list[i].y());
            }
        }
    }
    void flag(bool value) { integer(quint8(value ? 1 : 0)); }
    /// Number of UTF-16 units, then the units.
    void text(const QString& value) {
        integer(quint32(value.size()));
        for (QChar unit : value)
            integer(unit.unicode());
    }
    void raw(const QByteArray& bytes) { append(bytes.constData(), bytes.size()); }
    void raw(const char* bytes, qint64 count) { append(bytes, count); }
    /// Puts a number into what was written before.
    template<class Integer>
    void replace(qint64 place, Integer value) {
        m_fits = m_fits && place + qint64(sizeof value) <= m_size;
        if (!m_fits)
            return;
        const Integer little = qToLittleEndian(value);
        std::memcpy(m_bytes.data() + place, &little, sizeof little);
    }

    /// All that was written is there.
    bool fits() const { return m_fits; }
    qint64 size() const { return m_size; }
    const char* data() const { return m_bytes.constData(); }
    QByteArray bytes() const { return m_bytes.left(int(m_size)); }
    /// Gives the bytes away; nothing is written afterwards.
    QByteArray take() {
        m_bytes.truncate(int(m_size));
        return std::move(m_bytes);
    }

private:
    void append(const void* from, qint64 count) {
        m_fits = m_fits && count <= m_most - m_size;
        if (!m_fits)
            return;
        if (m_bytes.size() - m_size < count)
            grow(m_size + count);
        if (count > 0)
            std::memcpy(m_to + m_size, from, size_t(count));
        m_size += count;
    }
    void grow(qint64 least) {
        constexpr qint64 kFirst = 256;
        m_bytes.resize(int(std::min(std::max({least, 2 * qint64(m_bytes.size()), kFirst}), m_most)));
        m_to = m_bytes.data();
    }

    QByteArray m_bytes; ///< longer than what is written
    char* m_to = nullptr;
    qint64 m_size = 0;
    qint64 m_most = kMostArrayBytes;
    bool m_fits = true;
};

/// Takes values from bytes. After the first fault every value is 0 and the fault stays.
class ByteReader {
public:
    ByteReader(const char* data, qint64 size)
        : m_data(data)
        , m_left(size) {}

    template<class Integer>
    Integer integer() {
        Integer little = 0;
        if (!need(qint64(sizeof little)))
            return 0;
        std::memcpy(&little, m_data, sizeof little);
        advance(qint64(sizeof little));
        return qFromLittleEndian(little);
    }
    double real() {
        const auto bits = integer<quint64>();
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }
    bool flag() {
        const auto value = integer<quint8>();
        if (value > 1)
            fail(QStringLiteral("a flag is neither 0 nor 1"));
        return value == 1;
    }
    /// Reads x and y of each point.
    void points(QPointF* list, qint64 count) {
        const qint64 size = count * qint64(sizeof(QPointF));
        if constexpr (kPointsAreAsInFiles) {
            if (count > 0 && need(size)) {
                std::memcpy(static_cast<void*>(list), m_data, size_t(size));
                advance(size);
            }
        } else {
            for (qint64 i = 0; i < count; ++i) {
                const double x = real();
                list[i] = QPointF(x, real());
            }
        }
    }
    /// Passes over the bytes if they come next.
    bool skip(const QByteArray& bytes) {
        if (m_left < bytes.size() || std::memcmp(m_data, bytes.constData(), size_t(bytes.size())) != 0)
            return false;
        advance(bytes.size());
        return true;
    }
    QString text(int longest) {
        const qint64 units = count(2);
        if (units > longest)
            fail(QStringLiteral("a text is too long"));
        QString value;
        for (qint64 i = 0; i < units && ok(); ++i)
            value.append(QChar(integer<quint16>()));
        return value;
    }
    /// Number of bytes, then the bytes.
    QByteArray raw(int longest) {
        const qint64 size = count(1);
        if (size > longest)
            fail(QStringLiteral("a block is too long"));
        if (!need(size))
            return QByteArray();
        const QByteArray value(m_data, int(size));
        advance(size);
        return value;
    }
    /// A 32-bit number of items of at least `itemBytes` each, which must still fit into what is left: no reservation
    /// follows a number that the file cannot hold.
    qint64 count(qint64 itemBytes) {
        const qint64 items = integer<quint32>();
        if (items > m_left / itemBytes) {
            fail(QStringLiteral("a count is larger than the file"));
            return 0;
        }
        return items;
    }

    void fail(const QString& reason) {
        if (m_fault.isEmpty())
            m_fault = reason;
        m_left = 0;
    }
    bool ok() const { return m_fault.isEmpty(); }
    const QString& fault() const { return m_fault; }
    qint64 left() const { return m_left; }

private:
    bool need(qint64 bytes) {
        if (m_left >= bytes) // nothing is left after a fault
            return true;
        fail(QStringLiteral("a section ends too early"));
        return false;
    }
    void advance(qint64 bytes) {
        m_data += bytes;
        m_left -= bytes;
    }

    const char* m_data;
    qint64 m_left;
    QString m_fault;
};

} // namespace sim

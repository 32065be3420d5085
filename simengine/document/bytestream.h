// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QtEndian>
#include <cstring>

namespace sim {

/// Appends values to a byte array, lowest byte first.
class ByteWriter {
public:
    template<class Integer>
    void integer(Integer value) {
        const Integer little = qToLittleEndian(value);
        m_bytes.append(reinterpret_cast<const char*>(&little), int(sizeof little));
    }
    /// All 64 bits, so that every value comes back as it was.
    void real(double value) {
        quint64 bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        integer(bits);
    }
    void flag(bool value) { integer(quint8(value ? 1 : 0)); }
    /// Number of UTF-16 units, then the units.
    void text(const QString& value) {
        integer(quint32(value.size()));
        for (QChar unit : value)
            integer(unit.unicode());
    }
    void raw(const QByteArray& bytes) { m_bytes.append(bytes); }

    const QByteArray& bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
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
    QString text(int longest) {
        const qint64 units = count(2);
        if (units > longest)
            fail(QStringLiteral("a text is too long"));
        QString value;
        for (qint64 i = 0; i < units && ok(); ++i)
            value.append(QChar(integer<quint16>()));
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
        if (ok() && m_left >= bytes)
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

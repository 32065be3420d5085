// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace tessera {

/// Cuts what a plant host sends into frames. A frame is any text up to a semicolon, which is not part of it; what
/// stands behind the last semicolon waits for more. One thread at a time.
class HostFrames {
public:
    /// Characters that may wait without a semicolon.
    static constexpr int kLongestRest = 1 << 20;

    /// The text of one read: what stands before its first zero byte, each byte one character. What stands behind that
    /// byte is lost.
    static QString Text(QByteArray const& read);

    void Append(QString const& text);
    /// Takes the oldest complete frame; false when there is none.
    bool Next(QString& frame);
    bool HasFrame();
    /// Forgets the incomplete frame when it has become longer than kLongestRest. Gives the number of characters
    /// dropped, 0 when it may stay. Ask with all complete frames taken.
    int DropOverlong();
    /// What waits: complete frames that were not taken and the incomplete one.
    QString Rest() const { return m_Buffer.mid(m_Start); }

private:
    void Compact();
    int FindEnd();

    QString m_Buffer;
    int m_Start = 0;  ///< what stands before was taken
    int m_Search = 0; ///< no semicolon from m_Start up to here
};

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "remote/hostframes.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr QLatin1Char kFrameEnd(';');

} // namespace

QString HostFrames::Text(QByteArray const& read) {
    int const zero = read.indexOf('\0');
    return QString::fromLatin1(read.constData(), zero < 0 ? read.size() : zero);
}

void HostFrames::Append(QString const& text) {
    Compact();
    m_Buffer.append(text);
}

bool HostFrames::Next(QString& frame) {
    int const end = FindEnd();
    if (end < 0)
        return false;
    frame = m_Buffer.mid(m_Start, end - m_Start);
    m_Start = m_Search = end + 1;
    return true;
}

bool HostFrames::HasFrame() {
    return FindEnd() >= 0;
}

int HostFrames::DropOverlong() {
    int const waiting = m_Buffer.size() - m_Start;
    if (waiting <= kLongestRest)
        return 0;
    m_Buffer = QString();
    m_Start = m_Search = 0;
    return waiting;
}

/// A host that sends byte by byte must not make every byte move or look through all that waits.
void HostFrames::Compact() {
    if (m_Start == 0)
        return;
    m_Buffer.remove(0, m_Start);
    m_Search -= m_Start;
    m_Start = 0;
}

int HostFrames::FindEnd() {
    int const end = m_Buffer.indexOf(kFrameEnd, m_Search);
    m_Search = end < 0 ? m_Buffer.size() : end;
    return end;
}

} // namespace tessera

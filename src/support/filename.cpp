// SPDX-License-Identifier: MIT
#include "support/filename.h"

#include <algorithm>

namespace tessera {
namespace {

constexpr int longestEntry = 255; // bytes in a directory entry

bool isRefused(QChar c, FileNamePlace place) {
    if (c == QLatin1Char('/') || c.category() == QChar::Other_Control)
        return true;
    return place == FileNamePlace::Stick && QStringLiteral("\\:*?\"<>|").contains(c);
}

} // namespace

FileNameFault fileNameFault(const QString& name, const QString& extension, FileNamePlace place) {
    if (name.isEmpty())
        return FileNameFault::Empty;
    if (name.startsWith(QLatin1Char('.')) || !name.isValidUtf16() ||
        std::any_of(name.begin(), name.end(), [place](QChar c) { return isRefused(c, place); }))
        return FileNameFault::BadCharacter;
    return (name + extension).toUtf8().size() > longestEntry ? FileNameFault::TooLong : FileNameFault::None;
}

} // namespace tessera

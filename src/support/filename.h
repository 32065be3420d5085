// SPDX-License-Identifier: MIT
#pragma once

#include "support/supportglobal.h"

#include <QString>

namespace tessera {

/// Where a file will lie: sticks carry file systems that take fewer characters than the machine's own.
enum class FileNamePlace { Machine, Stick };

/// What is wrong with a name that an operator typed.
enum class FileNameFault {
    None,
    Empty,
    BadCharacter, ///< "/", a control character, a dot at the start, half a character; on sticks also \ : * ? " < > |
    TooLong       ///< with its extension longer than the 255 bytes of a directory entry
};

/// Whether `name` with `extension` (".x") behind it can be a file of its own in one directory. A name with a dot at the
/// start is refused because listings hide it, and with it "." and "..". Plain function, any thread.
TESSERA_SUPPORT_EXPORT FileNameFault fileNameFault(const QString& name, const QString& extension, FileNamePlace place);

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include "support/supportglobal.h"

#include <QString>
#include <QStringList>

namespace tessera {

/// What a sweep did.
struct SweepReport {
    QStringList removed;  ///< absolute paths of the temporaries that are gone
    QStringList failures; ///< one English line for each directory not read or temporary not removed
    bool bounded = false; ///< a bound was reached: part of the tree was not looked at
};

/// Removes the temporary files that killed processes or power cuts left behind below `root`: regular files with the
/// names that durable saves give, whose maker no longer runs (made in another boot, or its process number is free or
/// given to a later process). Temporaries of saves that are under way, in this process or another, stay. The private
/// settings copies of processes that are gone are removed too, wherever they are kept.
/// Symbolic links are not followed, other file systems mounted below `root` are not entered, and at most 16 levels and
/// 200,000 entries are looked at. Process numbers are taken as this process sees them: two containers that share one
/// root must not sweep while the other saves. Meant for the start of the program; any thread.
TESSERA_SUPPORT_EXPORT SweepReport sweepOrphanedTemporaries(const QString& root);

} // namespace tessera

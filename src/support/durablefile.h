// SPDX-License-Identifier: MIT
#pragma once

#include "support/durableresult.h"
#include "support/supportglobal.h"

#include <QByteArray>
#include <QString>

namespace tessera {

/// Writes the whole file so that after a power cut or a kill it is the old one or the new one, never a mixture, never a
/// stump. The bytes go to a temporary file in the same directory, whose length is checked and which is synced and
/// closed before it is renamed over the target; then the directory is synced.
///
/// Success means that the new content is on the disk. Any failure of any step is reported, see DurableResult for what
/// is in place then. QSaveFile gives neither: it passes over a failed sync and does not sync the directory.
///
/// A symbolic link is followed and its target replaced, the link stays; a link to nothing creates its target. Missing
/// parent directories are made, each durably. The mode of the old file is kept, and its owner where the process may
/// give files away; a new file gets 0666 less the umask. Access lists, extended attributes and hard links are not kept.
/// The modification time always moves forward, by a millisecond at least, so that a reader that tells a change by size
/// and time, as QSettings does, sees every save.
///
/// `path` should be absolute. Blocks until the disk has answered. Any thread; of two saves to one path at the same time
/// the later rename stands, whole.
TESSERA_SUPPORT_EXPORT DurableResult writeFileDurably(const QString& path, const QByteArray& bytes);

/// As writeFileDurably(), with the content of the regular file `source`, which is read piece by piece, so that it may
/// be larger than the memory. A source whose length changes meanwhile is a failure. Source and target may be one file.
TESSERA_SUPPORT_EXPORT DurableResult copyFileDurably(const QString& source, const QString& path);

/// As writeFileDurably(), for files that are rewritten in place: where the present file is longer than `bytes`, what it
/// holds beyond their length stays behind them. Calls in this process are put one after the other.
TESSERA_SUPPORT_EXPORT DurableResult writeFileKeepingTail(const QString& path, const QByteArray& bytes);

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include "support/archive.h"

#include <QString>

namespace tessera {

class WorkControl;

/// Backups of the folder "/MarkFile" as zip archives with an extension of their own, in one folder of a USB stick.
constexpr char backupExtension[] = ".BakMarkFile";

/// The folder "/VZBackup" of the plugged-in stick, made when it is missing. Empty without a stick; on a stick that
/// cannot be written the folder may not be there.
QString StickBackupFolder();

/// Packs "/MarkFile" and puts it into `folder` on the stick as `name` with backupExtension, where it is the old file or
/// the new one at any time. A stick that is pulled out meanwhile is a failure: nothing is left in the empty folder that
/// it was mounted on. Blocks; any thread.
ArchiveResult WriteMarkFileBackup(QString const& folder, QString const& name, WorkControl& control);

/// Brings the backup `file` into the private folder `work`, as "<name>.zip" and unpacked as the folder `name`.
/// Blocks; any thread.
ArchiveResult UnpackMarkFileBackup(QString const& file, QString const& work, QString const& name, WorkControl& control);

/// Takes over the list of open documents and that of projects, where `folder`, an unpacked backup, has them. False when
/// one of them could not be copied or is too long to be one.
bool ImportRecentLists(QString const& folder);

} // namespace tessera

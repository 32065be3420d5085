// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace tessera {

/// Who made a temporary file: a boot of the machine, a process of that boot, and when it started, since process numbers
/// are given again. Internal to src/support.
struct TemporaryOwner {
    QByteArray boot;                  ///< first eight hex digits of the kernel's boot id
    qint64 processId = 0;             ///< as the owner saw itself
    unsigned long long startTime = 0; ///< clock ticks from boot to the start of the process
};

/// The calling process. Cheap after the first call; right after a fork too. Any thread.
TemporaryOwner currentTemporaryOwner();

/// True when the process that made the temporary still runs: same boot, process number in use, started at the same
/// time.
bool isTemporaryOwnerAlive(const TemporaryOwner& owner);

/// A fresh name ".<name>.<boot>-<pid>-<start>-<n>.tessera-tmp" for a temporary of the file `name` (bytes as the disk
/// has them, no directory). Different on every call; a long `name` is cut between characters so that the result fits
/// into the 255 bytes of a directory entry. Any thread.
QByteArray makeTemporaryName(const QByteArray& name);

/// Reads the owner out of such a name. False, and `owner` untouched, when the name is not one of ours.
bool parseTemporaryName(const QByteArray& name, TemporaryOwner& owner);

} // namespace tessera

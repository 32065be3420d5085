// SPDX-License-Identifier: MIT
#pragma once

#include "support/durableresult.h"

#include <QByteArray>

namespace tessera {

// Internal to src/support. Paths are bytes as the disk has them.

/// The part before the last slash: "." when there is none, "/" for what lies in the root directory.
QByteArray directoryOf(const QByteArray& path);

/// A descriptor of the directory, closed at exec; -1 with errno.
int openDirectory(const QByteArray& directory);

/// Syncs an open file. 0 or an errno value. A failed sync must not be tried again: the kernel reports lost pages once
/// and then forgets them.
int syncDescriptor(int descriptor);

/// Syncs the entries of an open directory. 0 or an errno value.
int syncDirectory(int descriptor);

/// Makes the directory and its missing parents, each synced into its parent. A directory whose sync fails is taken away
/// again.
DurableResult ensureDirectory(const QByteArray& directory);

} // namespace tessera

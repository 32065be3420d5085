// SPDX-License-Identifier: MIT
#pragma once

#include "support/durableresult.h"

#include <QLockFile>
#include <QString>

namespace tessera {

/// The lock file "<path>.lock" by which QSettings keeps writers of one settings file apart, so that ours and QSettings'
/// own exclude each other. Released with the object. Internal to src/support.
class SettingsLock {
public:
    /// `path` is absolute; its directory exists.
    explicit SettingsLock(const QString& path);

    /// Takes the lock, waiting up to 10 s for another writer.
    DurableResult take();

private:
    void removeTornLock();

    const QString m_path;
    QLockFile m_lock;
};

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include "support/supportglobal.h"

#include <QString>

namespace tessera {

/// A fresh folder below the system's temporary folder, for its owner only, removed with all that it holds when the
/// object ends. Its name is not foreseeable by what is put in, so nobody can lay a link in its place. Folders that
/// killed processes left behind are removed when the next one is made. Any thread.
class TESSERA_SUPPORT_EXPORT TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    bool isValid() const { return !m_path.isEmpty(); }
    /// Empty when the folder could not be made.
    const QString& path() const { return m_path; }
    /// The absolute path of `name` within.
    QString filePath(const QString& name) const;

private:
    QString m_path;
};

} // namespace tessera

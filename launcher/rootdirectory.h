// SPDX-License-Identifier: MIT
#pragma once

#include <QLockFile>
#include <QString>
#include <memory>

namespace tessera {

/// The application root of this process: made if missing, held by this process alone while the object lives, the
/// current directory, and rid of what killed processes left behind. Main thread, one object at a time.
class RootDirectory {
public:
    RootDirectory();
    ~RootDirectory();

    /// Takes `directory`, or the default root when empty. False with one sentence in `error` when it cannot be made or
    /// another instance holds it.
    bool take(QString const& directory, QString& error);
    QString path() const { return m_path; }

private:
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
};

} // namespace tessera

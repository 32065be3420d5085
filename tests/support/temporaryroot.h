// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

namespace tests {

/// A file to copy into a temporary root. `source` is absolute or below the repository ("samples/plate.svg"); `target`
/// is below the root ("/MarkFile/plate.svg").
struct SampleFile {
    QString source;
    QString target;
};

/// The absolute path of a file of the repository.
QString sourcePath(const QString& relative);

/// A fresh, empty application root for as long as the object lives: applicationRoot(), TESSERA_ROOT and the current
/// directory are it. At the end the
/// times of runs are waited for, the directory is removed and the former environment and current directory come back.
/// Roots may be nested. Main thread, before anything runs that asks for paths. A root or sample that cannot be made
/// fails the running test.
class TemporaryRoot {
public:
    explicit TemporaryRoot(const QVector<SampleFile>& samples = {});
    ~TemporaryRoot();
    TemporaryRoot(const TemporaryRoot&) = delete;
    TemporaryRoot& operator=(const TemporaryRoot&) = delete;

    /// False when the directory or a sample could not be made.
    bool isValid() const { return m_valid; }

    /// The absolute path of `relative` below the root, without links; the root itself when it is empty.
    QString path(const QString& relative = QString()) const;

    /// Copies a file in; missing directories are made. False, with the test failed, when that cannot be done.
    bool copyIn(const SampleFile& sample);
    /// Writes a file below the root; missing directories are made. False, with the test failed, when it cannot be.
    bool write(const QString& relative, const QByteArray& bytes);
    /// The content of a file below the root; null when it cannot be read.
    QByteArray read(const QString& relative) const;
    bool exists(const QString& relative) const;

private:
    bool complain(const QString& text);

    QTemporaryDir m_directory;
    QString m_root;
    QString m_formerDirectory;
    QByteArray m_formerEnvironment;
    bool m_hadEnvironment = false;
    bool m_valid = true;
};

} // namespace tests

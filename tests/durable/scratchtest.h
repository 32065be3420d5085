// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

/// A test that has a fresh, empty directory for each of its cases.
class ScratchTest : public QObject {
    Q_OBJECT

protected:
    QString directory() const { return m_directory->path(); }
    /// The same as the C library takes it.
    const QByteArray& nativeDirectory() const { return m_native; }
    QString path(const QString& name) const { return m_directory->filePath(name); }

private slots:
    void init() {
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(m_directory->isValid());
        m_native = QFile::encodeName(m_directory->path());
    }
    void cleanup() { m_directory.reset(); }

private:
    std::unique_ptr<QTemporaryDir> m_directory;
    QByteArray m_native;
};

inline QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
}

inline void putContent(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("cannot prepare %s", qPrintable(path));
}

/// Names of everything in a directory, hidden and special files too.
inline QStringList everythingIn(const QString& directory) {
    return QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace tests {

/// A USB stick, plugged in and empty, and a temporary folder of its own for as long as the object lives.
class Stick {
public:
    Stick() {
        m_FormerMedia = qgetenv("TESSERA_MEDIA_ROOT");
        m_FormerTemporary = qgetenv("TMPDIR");
        qputenv("TESSERA_MEDIA_ROOT", QFile::encodeName(m_Media.path()));
        qputenv("TMPDIR", QFile::encodeName(m_Temporary.path()));
        // Without it a program that is started here would make its own in the temporary folder.
        m_FormerRuntime = qgetenv("XDG_RUNTIME_DIR");
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_Runtime.path()));
        plugIn();
    }
    ~Stick() {
        put("TESSERA_MEDIA_ROOT", m_FormerMedia);
        put("TMPDIR", m_FormerTemporary);
        put("XDG_RUNTIME_DIR", m_FormerRuntime);
    }
    Stick(const Stick&) = delete;
    Stick& operator=(const Stick&) = delete;

    bool plugIn() { return QDir(m_Media.path()).mkpath(QStringLiteral("stick")); }
    bool pullOut() { return QDir(path(QString())).removeRecursively(); }
    QString path(QString const& relative) const { return m_Media.path() + QStringLiteral("/stick") + relative; }
    QString mediaRoot() const { return m_Media.path(); }
    QString temporaryRoot() const { return m_Temporary.path(); }
    /// What lies in the temporary folder.
    QStringList temporaries() const {
        return QDir(m_Temporary.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    bool write(QString const& relative, QByteArray const& bytes) const {
        QDir().mkpath(QFileInfo(path(relative)).absolutePath());
        QFile file(path(relative));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

private:
    static void put(char const* name, QByteArray const& value) {
        if (value.isEmpty())
            qunsetenv(name);
        else
            qputenv(name, value);
    }

    QTemporaryDir m_Media;
    QTemporaryDir m_Temporary;
    QTemporaryDir m_Runtime;
    QByteArray m_FormerMedia;
    QByteArray m_FormerTemporary;
    QByteArray m_FormerRuntime;
};

} // namespace tests

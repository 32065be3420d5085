// SPDX-License-Identifier: MIT
#include "support/durablesettings.h"

#include "support/durabledirectory.h"
#include "support/durablefile.h"
#include "support/fileread.h"
#include "support/settingscopy.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QMap>
#include <QSettings>
#include <QStringList>
#include <QTextCodec>

#include <cerrno>
#include <mutex>

namespace tessera {
namespace {

constexpr int lockWait = 10000; // ms; QSettings holds the lock for one write of a small file

using SettingsMap = QMap<QString, QVariant>;

SettingsMap valuesOf(const QSettings& settings) {
    SettingsMap values;
    for (const QString& key : settings.allKeys())
        values.insert(key, settings.value(key));
    return values;
}

/// Ini text keeps no types: numbers come back as text, a list of one as its element, an empty list as no value.
bool isSameSetting(const QVariant& wanted, const QVariant& read) {
    if (wanted == read)
        return true;
    if (wanted.type() == QVariant::StringList || wanted.type() == QVariant::List)
        return wanted.toStringList() == read.toStringList();
    return wanted.canConvert<QString>() && wanted.toString() == read.toString();
}

/// Empty when all values come back, else what does not.
QString differenceOf(const SettingsMap& wanted, const SettingsMap& read) {
    for (auto it = wanted.cbegin(); it != wanted.cend(); ++it) {
        if (!read.contains(it.key()))
            return QStringLiteral("the key \"%1\" does not come back").arg(it.key());
        if (!isSameSetting(it.value(), read.value(it.key())))
            return QStringLiteral("the value of \"%1\" does not come back").arg(it.key());
    }
    return wanted.size() == read.size() ? QString() : QStringLiteral("keys appear that were not set");
}

/// One save: old text, edited copy, proof, new file.
class SettingsSave {
public:
    SettingsSave(const QString& path, QTextCodec* codec)
        : m_path(path)
        , m_codec(codec) {}

    DurableResult readOld() {
        const int error = readFileFrom(QFile::encodeName(m_path), 0, m_old);
        return error == 0 || error == ENOENT ? DurableResult() : failed(DurableStep::ReadOld, error);
    }

    DurableResult edit(const std::function<void(QSettings&)>& change) {
        if (const int error = m_copy.store(m_old))
            return failed(DurableStep::PrepareText, error);
        QSettings settings(m_copy.path(), QSettings::IniFormat);
        settings.setIniCodec(m_codec);
        settings.allKeys(); // reads every section, so that the status counts for all of them
        if (settings.status() == QSettings::AccessError)
            return failed(DurableStep::PrepareText, EIO, QStringLiteral("the private copy cannot be read"));
        m_damaged = settings.status() == QSettings::FormatError;
        change(settings);
        settings.sync();
        if (settings.status() != QSettings::NoError && !m_damaged)
            return failed(DurableStep::PrepareText, EIO, QStringLiteral("the private copy cannot be written"));
        m_wanted = valuesOf(settings);
        return DurableResult();
    }

    DurableResult prove() {
        int error = m_copy.moveAside();
        if (error == 0)
            error = m_copy.load(m_text);
        if (error != 0)
            return failed(DurableStep::ProveText, error);
        QSettings settings(m_copy.path(), QSettings::IniFormat);
        settings.setIniCodec(m_codec);
        const QString difference = differenceOf(m_wanted, valuesOf(settings));
        if (!difference.isEmpty())
            return failed(DurableStep::ProveText, 0, difference);
        if (settings.status() != QSettings::NoError)
            return failed(DurableStep::ProveText, 0, QStringLiteral("the new text cannot be read"));
        return DurableResult();
    }

    DurableResult replaceOld() const {
        if (m_damaged) {
            const DurableResult kept = writeFileDurably(m_path + QStringLiteral(".damaged"), m_old);
            if (!kept)
                return kept;
        }
        return writeFileDurably(m_path, m_text);
    }

private:
    DurableResult failed(DurableStep step, int error, const QString& detail = QString()) const {
        return DurableResult::failure(step, error, m_path, detail);
    }

    const QString m_path;
    QTextCodec* const m_codec;
    SettingsCopy m_copy;
    QByteArray m_old;
    QByteArray m_text;
    SettingsMap m_wanted;
    bool m_damaged = false;
};

DurableResult lockAgainstQSettings(QLockFile& lock, const QString& path) {
    if (lock.tryLock(lockWait))
        return DurableResult();
    const bool held = lock.error() == QLockFile::LockFailedError;
    return DurableResult::failure(DurableStep::LockFile, held ? EWOULDBLOCK : EIO, path,
                                  held ? QStringLiteral("another writer does not release it")
                                       : QStringLiteral("the lock file cannot be made"));
}

} // namespace

DurableResult changeSettingsDurably(const QString& path, const std::function<void(QSettings&)>& edit,
                                    QTextCodec* codec) {
    static std::mutex mutex;
    const std::lock_guard<std::mutex> guard(mutex);
    if (path.isEmpty())
        return DurableResult::failure(DurableStep::ResolveTarget, EINVAL, path);
    const QString absolute = QFileInfo(path).absoluteFilePath();
    DurableResult result = ensureDirectory(directoryOf(QFile::encodeName(absolute)));
    if (!result)
        return result;
    QLockFile lock(absolute + QStringLiteral(".lock"));
    result = lockAgainstQSettings(lock, absolute);
    if (!result)
        return result;
    SettingsSave save(absolute, codec);
    result = save.readOld();
    if (result)
        result = save.edit(edit);
    if (result)
        result = save.prove();
    return result ? save.replaceOld() : result;
}

DurableResult writeSettingsDurably(const QString& path, const QVector<QPair<QString, QVariant>>& values,
                                   QTextCodec* codec) {
    const auto setAll = [&values](QSettings& settings) {
        for (const QPair<QString, QVariant>& value : values)
            settings.setValue(value.first, value.second);
    };
    return changeSettingsDurably(path, setAll, codec);
}

DurableResult writeSettingDurably(const QString& path, const QString& key, const QVariant& value, QTextCodec* codec) {
    return writeSettingsDurably(path, {{key, value}}, codec);
}

QVariant readSetting(const QString& path, const QString& key, const QVariant& fallback, QTextCodec* codec) {
    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec(codec);
    return settings.value(key, fallback);
}

} // namespace tessera

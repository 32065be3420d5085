// SPDX-License-Identifier: MIT
#include "support/durablesettings.h"

#include "support/durabledirectory.h"
#include "support/durablefile.h"
#include "support/fileread.h"
#include "support/settingscopy.h"
#include "support/settingslock.h"

#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QMetaType>
#include <QSettings>
#include <QStringList>
#include <QTextCodec>

#include <cerrno>
#include <mutex>

namespace tessera {
namespace {

/// Held while a QSettings lives, not while the disk is waited for. QSettings shares its cache of files between threads
/// under a lock of its own that ThreadSanitizer does not see; recursive, since an edit may read other settings.
std::recursive_mutex& qsettingsMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

using QSettingsGuard = std::lock_guard<std::recursive_mutex>;

using SettingsMap = QMap<QString, QVariant>;

SettingsMap valuesOf(const QSettings& settings) {
    SettingsMap values;
    for (const QString& key : settings.allKeys())
        values.insert(key, settings.value(key));
    return values;
}

/// Types that are not Qt's own have no other comparison than the bytes they are kept as.
bool isSameOwnType(const QVariant& wanted, const QVariant& read) {
    QByteArray bytes[2];
    const QVariant* const values[2] = {&wanted, &read};
    for (int i = 0; i < 2; ++i) {
        QDataStream stream(&bytes[i], QIODevice::WriteOnly);
        if (!QMetaType::save(stream, values[i]->userType(), values[i]->constData()))
            return false;
    }
    return bytes[0] == bytes[1];
}

/// Text of its own for QSettings, which keeps it in its cache: shared text would be let go of by whichever thread comes
/// last, by a count that ThreadSanitizer does not see either.
QString unshared(const QString& text) {
    return QString(text.constData(), text.size());
}

QVariant unshared(const QVariant& value) {
    return value.type() == QVariant::String ? QVariant(unshared(value.toString())) : value;
}

/// Ini text keeps no types: numbers come back as text, a list of one as its element, an empty list as no value.
bool isSameSetting(const QVariant& wanted, const QVariant& read) {
    if (wanted.userType() >= QMetaType::User)
        return wanted.userType() == read.userType() && isSameOwnType(wanted, read);
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

    /// QSettings tells no failed read apart from an empty file, and would then drop all other keys. So two of them read
    /// the text, each from a path of its own, and a text with a value in it must not come out empty.
    DurableResult edit(const std::function<void(QSettings&)>& change) {
        const QSettingsGuard guard(qsettingsMutex());
        SettingsMap before;
        int error = m_copy.store(m_old);
        if (error == 0) {
            before = read();
            error = m_copy.moveAside();
        }
        if (error != 0)
            return failed(DurableStep::PrepareText, error);
        QSettings settings(m_copy.path(), QSettings::IniFormat);
        settings.setIniCodec(m_codec);
        const bool lost = before.isEmpty() && holdsValue(m_old);
        if (lost || !differenceOf(before, valuesOf(settings)).isEmpty())
            return failed(DurableStep::PrepareText, EIO, QStringLiteral("the private copy cannot be read"));
        m_damaged = settings.status() == QSettings::FormatError;
        change(settings);
        settings.sync();
        if (settings.status() == QSettings::AccessError)
            return failed(DurableStep::PrepareText, EIO, QStringLiteral("the private copy cannot be written"));
        m_wanted = valuesOf(settings);
        return DurableResult();
    }

    DurableResult prove() {
        const QSettingsGuard guard(qsettingsMutex());
        int error = m_copy.moveAside();
        if (error == 0)
            error = m_copy.load(m_text);
        if (error != 0)
            return failed(DurableStep::ProveText, error);
        const QString difference = differenceOf(m_wanted, read());
        return difference.isEmpty() ? DurableResult() : failed(DurableStep::ProveText, 0, difference);
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
    SettingsMap read() const {
        QSettings settings(m_copy.path(), QSettings::IniFormat);
        settings.setIniCodec(m_codec);
        return valuesOf(settings);
    }

    static bool holdsValue(const QByteArray& text) {
        for (const QByteArray& line : text.split('\n')) {
            const QByteArray trimmed = line.trimmed();
            if (trimmed.contains('=') && !trimmed.startsWith(';') && !trimmed.startsWith('=') &&
                !trimmed.startsWith('['))
                return true;
        }
        return false;
    }

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
    SettingsLock lock(absolute);
    result = lock.take();
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
            settings.setValue(unshared(value.first), unshared(value.second));
    };
    return changeSettingsDurably(path, setAll, codec);
}

DurableResult writeSettingDurably(const QString& path, const QString& key, const QVariant& value, QTextCodec* codec) {
    return writeSettingsDurably(path, {{key, value}}, codec);
}

QVariant readSetting(const QString& path, const QString& key, const QVariant& fallback, QTextCodec* codec) {
    const QSettingsGuard guard(qsettingsMutex());
    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec(codec);
    return settings.value(key, fallback);
}

} // namespace tessera

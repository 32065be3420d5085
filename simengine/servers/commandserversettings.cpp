// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/commandserversettings.h"

#include "simengine/params/inifile.h"
#include "simengine/servers/keyproof.h"
#include "support/approot.h"
#include "support/durablefile.h"
#include "support/filedescriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace sim {

namespace {

constexpr int kDefaultPort = 7660;
constexpr int kMaxPort = 65535;

QString systemError(QString const& file, int error) {
    return QStringLiteral("%1: %2").arg(file, qt_error_string(error));
}

QString keyPath(QString const& given) {
    bool const below = given.startsWith(QLatin1String("/ini/")) || !given.startsWith(QLatin1Char('/'));
    return below ? tessera::rootPath(given) : QDir::cleanPath(given);
}

/// Empty when nobody but the owner, who is this process's user or root, may read or write.
QString keyFault(QString const& file, struct stat const& status) {
    if (!S_ISREG(status.st_mode))
        return QStringLiteral("%1: not a regular file").arg(file);
    if (status.st_uid != ::geteuid() && status.st_uid != 0)
        return QStringLiteral("%1: belongs to another user").arg(file);
    if ((status.st_mode & 077U) != 0)
        return QStringLiteral("%1: others may read or write the key (mode %2, 600 is right)")
            .arg(file)
            .arg(status.st_mode & 0777U, 3, 8, QLatin1Char('0'));
    return {};
}

/// The empty file is made first and for its owner alone, and the durable write keeps its mode: the key is at no moment
/// in a file that others may open. A power cut in between leaves the empty file, which counts as missing.
std::optional<QByteArray> makeKey(QString const& file, QString& error) {
    QDir().mkpath(QFileInfo(file).absolutePath());
    tessera::FileDescriptor made(::open(QFile::encodeName(file).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    if (!made.isOpen()) {
        error = systemError(file, errno);
        return std::nullopt;
    }
    QByteArray const key = randomDigits();
    tessera::DurableResult const written = tessera::writeFileDurably(file, key + '\n');
    if (!written) {
        error = written.message();
        return std::nullopt;
    }
    return key;
}

std::optional<QByteArray> keyOf(QString const& file, QByteArray const& bytes, QString& error) {
    QByteArray key = bytes.left(bytes.indexOf('\n') < 0 ? bytes.size() : bytes.indexOf('\n'));
    while (!key.isEmpty() && std::strchr(" \t\r", key.back()))
        key.chop(1);
    if (key.size() >= kMinKeyBytes && key.size() <= kMaxKeyBytes)
        return key;
    error =
        QStringLiteral("%1: its first line is no key of %2 to %3 bytes").arg(file).arg(kMinKeyBytes).arg(kMaxKeyBytes);
    return std::nullopt;
}

} // namespace

std::optional<CommandServerSettings> commandServerSettings(QString& error) {
    QString const path = tessera::rootPath(QStringLiteral("/ini/CommandServer.ini"));
    QFile file(path);
    if (file.exists() && !file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    IniDocument const ini = IniDocument::parse(file.isOpen() ? file.readAll() : QByteArray());
    auto const text = [&ini](char const* key, QString const& other) {
        return ini.value(QStringLiteral("server"), QLatin1String(key)).value_or(other).trimmed();
    };
    QString const portText = text("port", QString::number(kDefaultPort));
    bool isNumber = false;
    int const port = portText.toInt(&isNumber);
    if (!isNumber || port < 0 || port > kMaxPort) {
        error = QStringLiteral("%1: \"%2\" is no port").arg(path, portText);
        return std::nullopt;
    }
    CommandServerSettings settings;
    settings.address = text("address", QStringLiteral("127.0.0.1"));
    settings.port = static_cast<quint16>(port);
    settings.keyFile = keyPath(text("key", QStringLiteral("/ini/CommandServer.key")));
    return settings;
}

std::optional<QByteArray> commandServerKey(QString const& file, QString& error) {
    // O_NONBLOCK: the open of a pipe would wait for its other end.
    tessera::FileDescriptor const key(
        ::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!key.isOpen() && errno == ENOENT)
        return makeKey(file, error);
    struct stat status {};
    if (!key.isOpen() || ::fstat(key.get(), &status) != 0) {
        error = systemError(file, errno);
        return std::nullopt;
    }
    error = keyFault(file, status);
    if (!error.isEmpty())
        return std::nullopt;
    if (status.st_size == 0)
        return makeKey(file, error);
    QFile reader;
    reader.open(key.get(), QIODevice::ReadOnly);
    return keyOf(file, reader.read(kMaxKeyBytes + 2), error);
}

} // namespace sim

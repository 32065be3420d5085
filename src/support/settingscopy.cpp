// SPDX-License-Identifier: MIT
#include "support/settingscopy.h"

#include "support/filedescriptor.h"
#include "support/fileread.h"
#include "support/temporaryname.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace tessera {
namespace {

const char memoryFileSystem[] = "/dev/shm";

int writeWhole(int descriptor, const QByteArray& text) {
    const char* next = text.constData();
    size_t left = static_cast<size_t>(text.size());
    while (left > 0) {
        const ssize_t written = ::write(descriptor, next, left);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return written < 0 ? errno : EIO;
        next += written;
        left -= static_cast<size_t>(written);
    }
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return errno;
    return status.st_size == text.size() ? 0 : EIO;
}

} // namespace

SettingsCopy::SettingsCopy() {
    m_directory = baseDirectory() + QLatin1Char('/') + QFile::decodeName(makeTemporaryName("settings"));
    if (::mkdir(QFile::encodeName(m_directory).constData(), 0700) != 0)
        m_error = errno;
}

SettingsCopy::~SettingsCopy() {
    if (m_error == 0)
        QDir(m_directory).removeRecursively();
}

QString SettingsCopy::baseDirectory() {
    if (::access(memoryFileSystem, W_OK | X_OK) == 0)
        return QString::fromLatin1(memoryFileSystem);
    return QDir::tempPath();
}

QString SettingsCopy::path() const {
    return QStringLiteral("%1/copy%2.ini").arg(m_directory).arg(m_number);
}

int SettingsCopy::store(const QByteArray& text) {
    if (m_error != 0)
        return m_error;
    FileDescriptor file(::open(QFile::encodeName(path()).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file.isOpen())
        return errno;
    const int error = writeWhole(file.get(), text);
    const int closeError = file.closeChecked();
    return error != 0 ? error : closeError;
}

int SettingsCopy::moveAside() {
    const QByteArray from = QFile::encodeName(path());
    ++m_number;
    return std::rename(from.constData(), QFile::encodeName(path()).constData()) == 0 ? 0 : errno;
}

int SettingsCopy::load(QByteArray& text) const {
    text.clear();
    return readFileFrom(QFile::encodeName(path()), 0, text);
}

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "support/temporaryfolder.h"

#include "support/temporaryname.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace tessera {
namespace {

constexpr int maximumNames = 100;
const char purpose[] = "work";

bool isOurFolder(const QByteArray& path) {
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
}

void removeOrphans(const QDir& base) {
    constexpr QDir::Filters filters = QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks;
    const QString pattern = QStringLiteral(".%1.*.tessera-tmp").arg(QLatin1String(purpose));
    for (const QString& name : base.entryList({pattern}, filters)) {
        TemporaryOwner owner;
        if (!parseTemporaryName(QFile::encodeName(name), owner) || isTemporaryOwnerAlive(owner))
            continue;
        const QString path = base.filePath(name);
        if (isOurFolder(QFile::encodeName(path)))
            QDir(path).removeRecursively();
    }
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    if (QDir::tempPath().isEmpty()) // not there; an empty name would mean the current folder
        return;
    const QDir base(QDir::tempPath());
    removeOrphans(base);
    for (int attempt = 0; attempt < maximumNames; ++attempt) {
        const QByteArray path = QFile::encodeName(base.absolutePath()) + '/' + makeTemporaryName(purpose);
        if (::mkdir(path.constData(), 0700) == 0) {
            m_path = QFile::decodeName(path);
            return;
        }
        if (errno != EEXIST)
            return;
    }
}

TemporaryFolder::~TemporaryFolder() {
    if (isValid())
        QDir(m_path).removeRecursively();
}

QString TemporaryFolder::filePath(const QString& name) const {
    return m_path + QLatin1Char('/') + name;
}

} // namespace tessera

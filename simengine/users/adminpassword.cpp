// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/adminpassword.h"

#include "simengine/users/passwordhash.h"
#include "support/approot.h"
#include "support/durablefile.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sim {

namespace {

QString passwordPath() {
    return tessera::rootPath(QStringLiteral("/ini/AdminPassword"));
}

/// The durable write keeps the mode of the file that it replaces, so the file is there with its mode before the secret.
bool makePrivate(QString const& path) {
    if (!QDir().mkpath(tessera::rootPath(QStringLiteral("/ini"))))
        return false;
    int const file = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0)
        return false;
    bool const done = ::fchmod(file, 0600) == 0;
    return ::close(file) == 0 && done;
}

} // namespace

QString readAdminPassword() {
    QFile file(passwordPath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.read(kPasswordMax)).trimmed();
}

bool writeAdminPassword(QString const& digits) {
    auto const isDigit = [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); };
    if (digits.size() > kPasswordMax || !std::all_of(digits.begin(), digits.end(), isDigit))
        return false;
    return makePrivate(passwordPath()) && tessera::writeFileDurably(passwordPath(), digits.toLatin1() + '\n').ok();
}

} // namespace sim

// SPDX-License-Identifier: MIT
#include "support/orphansweep.h"

#include "support/filedescriptor.h"
#include "support/settingscopy.h"
#include "support/temporaryname.h"

#include <QDir>
#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>

namespace tessera {
namespace {

constexpr int maximumDepth = 16;
constexpr int maximumEntries = 200000;

struct DirectoryCloser {
    void operator()(DIR* directory) const { ::closedir(directory); }
};
using DirectoryHandle = std::unique_ptr<DIR, DirectoryCloser>;

QString reasonText(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

class Sweeper {
public:
    explicit Sweeper(SweepReport& report)
        : m_report(report) {}

    void sweepRoot(const QByteArray& root) {
        FileDescriptor descriptor(::open(root.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        struct stat status = {};
        if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0) {
            note(root, errno);
            return;
        }
        m_device = status.st_dev;
        sweepDirectory(descriptor.release(), root, 1);
    }

private:
    void note(const QByteArray& path, int error) {
        m_report.failures.append(QStringLiteral("%1: %2").arg(QFile::decodeName(path), reasonText(error)));
    }

    void sweepDirectory(int descriptor, const QByteArray& path, int depth) {
        const DirectoryHandle directory(::fdopendir(descriptor));
        if (!directory) {
            note(path, errno);
            ::close(descriptor);
            return;
        }
        for (;;) {
            errno = 0;
            const dirent* const entry = ::readdir(directory.get());
            if (entry == nullptr) {
                if (errno != 0)
                    note(path, errno);
                return;
            }
            if (++m_entries > maximumEntries) {
                m_report.bounded = true;
                return;
            }
            const QByteArray name(entry->d_name);
            if (name != "." && name != "..")
                sweepEntry(descriptor, path + '/' + name, name, depth);
        }
    }

    void sweepEntry(int parent, const QByteArray& path, const QByteArray& name, int depth) {
        struct stat status = {};
        if (::fstatat(parent, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
            if (errno != ENOENT) // a save that ended in between took its temporary away
                note(path, errno);
            return;
        }
        if (S_ISDIR(status.st_mode))
            enter(parent, path, name, status, depth);
        else if (S_ISREG(status.st_mode))
            removeIfOrphaned(parent, path, name);
    }

    void enter(int parent, const QByteArray& path, const QByteArray& name, const struct stat& status, int depth) {
        if (status.st_dev != m_device)
            return;
        if (depth == maximumDepth) {
            m_report.bounded = true;
            return;
        }
        const int child = ::openat(parent, name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (child < 0)
            note(path, errno);
        else
            sweepDirectory(child, path, depth + 1);
    }

    void removeIfOrphaned(int parent, const QByteArray& path, const QByteArray& name) {
        TemporaryOwner owner;
        if (!parseTemporaryName(name, owner) || isTemporaryOwnerAlive(owner))
            return;
        if (::unlinkat(parent, name.constData(), 0) == 0)
            m_report.removed.append(QFile::decodeName(path));
        else if (errno != ENOENT)
            note(path, errno);
    }

    SweepReport& m_report;
    dev_t m_device = 0;
    int m_entries = 0;
};

void sweepSettingsCopies(SweepReport& report) {
    QDir base(SettingsCopy::baseDirectory());
    const QDir::Filters filters = QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks;
    for (const QString& name : base.entryList({QStringLiteral("*.tessera-tmp")}, filters)) {
        TemporaryOwner owner;
        if (!parseTemporaryName(QFile::encodeName(name), owner) || isTemporaryOwnerAlive(owner))
            continue;
        const QString path = base.filePath(name);
        if (QDir(path).removeRecursively())
            report.removed.append(path);
        else
            report.failures.append(QStringLiteral("%1: cannot be removed").arg(path));
    }
}

} // namespace

SweepReport sweepOrphanedTemporaries(const QString& root) {
    SweepReport report;
    Sweeper(report).sweepRoot(QFile::encodeName(QDir(root).absolutePath()));
    sweepSettingsCopies(report);
    return report;
}

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>

namespace tests {

/// The number of a field of a process's status, such as "VmRSS:", which is in kB; 0 where there is none. Process 0 is
/// this one.
inline long processStatus(char const* field, qint64 process = 0) {
    QFile file(process == 0 ? QStringLiteral("/proc/self/status") : QStringLiteral("/proc/%1/status").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (QByteArray const& line : file.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(int(qstrlen(field))).trimmed().split(' ').first().toLong();
    }
    return 0;
}

} // namespace tests

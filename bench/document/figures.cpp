// SPDX-License-Identifier: MIT
#include "figures.h"

#include "tests/support/processstatus.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

namespace bench {

double wallMs(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

double medianMs(int rounds, const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i)
        times.push_back(wallMs(work));
    return quantile(times, 0.5);
}

double quantile(std::vector<double> values, double share) {
    if (values.empty())
        return 0.0;
    std::sort(values.begin(), values.end());
    const double place = std::ceil(share * static_cast<double>(values.size())) - 1.0;
    return values[static_cast<std::size_t>(std::max(0.0, place))];
}

bool printRatio(const char* what, double own, const char* reference, double bare, double most) {
    const bool kept = own <= most * bare;
    std::printf("  %-26s %9.2f ms   %-24s %9.2f ms   ratio %5.2f   %s %.1f\n", what, own, reference, bare, own / bare,
                kept ? "within" : "ABOVE", most);
    return kept;
}

bool printBound(const char* what, double value, const char* unit, double most) {
    const bool kept = value <= most;
    std::printf("  %-26s %9.2f %-17s %43s %s %.1f\n", what, value, unit, "", kept ? "within" : "ABOVE", most);
    return kept;
}

bool writeSynced(const QString& path, qint64 bytes) {
    const QByteArray content(static_cast<int>(bytes), 'x');
    const int file = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0)
        return false;
    const bool written = ::write(file, content.constData(), static_cast<std::size_t>(bytes)) == bytes;
    const bool synced = ::fsync(file) == 0;
    return ::close(file) == 0 && written && synced;
}

qint64 readWhole(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().size() : -1;
}

void forget(const QString& path) {
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return;
    ::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
    ::close(file);
}

qint64 residentBytes() {
    ::malloc_trim(0);
    return qint64(tests::processStatus("VmRSS:")) * 1024;
}

qint64 peakBytes() {
    return qint64(tests::processStatus("VmHWM:")) * 1024;
}

} // namespace bench

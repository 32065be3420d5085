// SPDX-License-Identifier: MIT
// From the start of the process to the painted window, and the memory it has then: the program in a new root, the
// program with the sample drawing open, and a bare Qt main window, in turns. Both are the programs as they are, watched
// by a library that is loaded beforehand.
#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QVector>
#include <algorithm>
#include <cstdio>
#include <ctime>

namespace {

constexpr int kRounds = 15;
constexpr int kLongest = 60000; // ms

struct Figure {
    double milliseconds = 0.0;
    double kilobytes = 0.0;
};

long long nowNs() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

bool measure(QString const& program, QStringList const& arguments, Figure& figure) {
    QTemporaryDir directory;
    QString const result = directory.filePath(QStringLiteral("painted"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(FIRSTPAINT_LIBRARY));
    environment.insert(QStringLiteral("TESSERA_FIRSTPAINT"), result);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    long long const begin = nowNs();
    process.start(program, arguments);
    if (!process.waitForFinished(kLongest))
        return false;
    QFile file(result);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArrayList const fields = file.readAll().split(' ');
    if (fields.size() != 2)
        return false;
    figure.milliseconds = double(fields.at(0).toLongLong() - begin) / 1e6;
    figure.kilobytes = fields.at(1).toDouble();
    return true;
}

Figure median(QVector<Figure> figures) {
    auto middle = [&figures](double Figure::*member) {
        std::sort(figures.begin(), figures.end(),
                  [member](Figure const& a, Figure const& b) { return a.*member < b.*member; });
        return figures.at(figures.size() / 2).*member;
    };
    return {middle(&Figure::milliseconds), middle(&Figure::kilobytes)};
}

void print(char const* name, Figure const& figure, Figure const& reference) {
    std::printf("%-28s %8.1f ms  %7.0f kB   ratio %5.2f time, %5.2f memory\n", name, figure.milliseconds,
                figure.kilobytes, figure.milliseconds / reference.milliseconds, figure.kilobytes / reference.kilobytes);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QString const tessera = QStringLiteral(TESSERA_PROGRAM);
    QVector<Figure> bare;
    QVector<Figure> fresh;
    QVector<Figure> again;
    QTemporaryDir kept;
    for (int i = 0; i <= kRounds; ++i) {
        QTemporaryDir root;
        Figure figures[3];
        bool const ok = measure(QStringLiteral(BAREQT_PROGRAM), {}, figures[0]) &&
                        measure(tessera, {QStringLiteral("--root"), root.filePath(QStringLiteral("r"))}, figures[1]) &&
                        measure(tessera, {QStringLiteral("--root"), kept.filePath(QStringLiteral("r"))}, figures[2]);
        if (!ok) {
            std::fprintf(stderr, "bench_startup: a program did not paint its window\n");
            return 1;
        }
        // The first round only warms the disk cache.
        if (i == 0)
            continue;
        bare.append(figures[0]);
        fresh.append(figures[1]);
        again.append(figures[2]);
    }
    Figure const reference = median(bare);
    std::printf("bench_startup: process start to painted window, median of %d\n", kRounds);
    print("reference: bare main window", reference, reference);
    print("tessera, new root", median(fresh), reference);
    print("tessera, root in use", median(again), reference);
    return 0;
}

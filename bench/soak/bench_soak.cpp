// SPDX-License-Identifier: MIT
// Ten thousand runs of a small job in one process as fast as the machine can: the counter must be right, and memory,
// threads and open files must stay what they were after the first hundred runs, which are the reference.
//
//     bench_soak [RUNS]
#include "tests/support/processstatus.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kDefaultRuns = 10000;
constexpr int kWarmUp = 100;
/// Memory may grow by this share of the reference: the allocator keeps what a larger run once needed.
constexpr double kAllowedGrowth = 1.05;
/// A sample may meet a run's worker, or the file of the counter, that another does not.
constexpr int kPassing = 2;

struct Sample {
    int run = 0;
    long residentKb = 0;
    int threads = 0;
    int files = 0;
};

Sample sampleOf(qint64 process, int run) {
    Sample sample;
    sample.run = run;
    sample.residentKb = tests::processStatus("VmRSS:", process);
    sample.threads = int(tests::processStatus("Threads:", process));
    sample.files = QDir(QStringLiteral("/proc/%1/fd").arg(process)).entryList(QDir::AllEntries | QDir::System).size();
    return sample;
}

void print(Sample const& sample, Sample const& reference) {
    std::printf("after %6d runs: %7ld kB, %3d threads, %3d files   ratio %5.3f\n", sample.run, sample.residentKb,
                sample.threads, sample.files, double(sample.residentKb) / double(reference.residentKb));
    std::fflush(stdout);
}

bool writeDrawing(QString const& path) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           file.write("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10mm\" height=\"10mm\" viewBox=\"0 0 10 10\">"
                      "<rect fill=\"none\" stroke=\"#000000\" x=\"2\" y=\"2\" width=\"6\" height=\"6\"/></svg>") > 0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    int const runs = argc > 1 ? std::max(2 * kWarmUp, QByteArray(argv[1]).toInt()) : kDefaultRuns;
    QTemporaryDir directory;
    QString const root = directory.filePath(QStringLiteral("root"));
    QString const drawing = directory.filePath(QStringLiteral("square.svg"));
    if (!writeDrawing(drawing))
        return 1;
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    QElapsedTimer time;
    time.start();
    process.start(QStringLiteral(TESSERA_PROGRAM),
                  {QStringLiteral("-platform"), QStringLiteral("offscreen"), QStringLiteral("--root"), root,
                   QStringLiteral("--sim-speed"), QStringLiteral("0"), QStringLiteral("--import"), drawing,
                   QStringLiteral("--mark"), QString::number(runs), QStringLiteral("--quit")});
    std::printf("bench_soak: %d runs in one process\n", runs);
    QVector<Sample> samples;
    process.setReadChannel(QProcess::StandardError);
    while (process.state() != QProcess::NotRunning || process.canReadLine()) {
        if (!process.canReadLine() && !process.waitForReadyRead(60000))
            break;
        while (process.canReadLine()) {
            QByteArray const line = process.readLine();
            if (!line.startsWith("pass "))
                continue;
            int const run = line.mid(5).split(' ').first().toInt();
            if (run == kWarmUp || (run > kWarmUp && run % (runs / 10) == 0 && run < runs)) {
                samples.append(sampleOf(process.processId(), run));
                print(samples.last(), samples.first());
            }
        }
    }
    process.waitForFinished(60000);
    double const seconds = double(time.elapsed()) / 1000;
    int const counter = QSettings(root + QStringLiteral("/ini/Marking.ini"), QSettings::IniFormat)
                            .value(QStringLiteral("MarkCnt"))
                            .toInt();
    std::printf("%.1f s, %.0f runs a second, exit code %d, counter %d\n", seconds, runs / seconds, process.exitCode(),
                counter);
    bool ok = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 && counter == runs &&
              samples.size() > 5;
    for (Sample const& sample : samples) {
        ok = ok && sample.threads <= samples.first().threads + kPassing &&
             sample.files <= samples.first().files + kPassing &&
             double(sample.residentKb) <= kAllowedGrowth * double(samples.first().residentKb);
    }
    std::printf("%s\n", ok ? "flat" : "NOT FLAT");
    return ok ? 0 : 1;
}

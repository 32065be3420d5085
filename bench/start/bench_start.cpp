// SPDX-License-Identifier: MIT
// From the press of Start to the first vector, on a document of 100,000 vertices, with the whole front end and the
// simulated machine in real time. The reference is what no way from a document to a card can save: a thread is woken
// and goes once through as many points, copying them.
#include "bench/support/newroot.h"
#include "bench/support/percentile.h"
#include "engine/dot3.h"
#include "engine/qrulerview.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"
#include "simengine/simcontrol.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <dlfcn.h>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kLines = 100;
constexpr int kPointsOfLine = 1000;
constexpr int kRounds = 21;
constexpr qint64 kLongest = 30000; // ms

double msBetween(Clock::time_point begin, Clock::time_point end) {
    return std::chrono::duration<double, std::milli>(end - begin).count();
}

/// Waves below one another, 80 mm wide.
QByteArray drawing() {
    QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"80mm\" height=\"80mm\" viewBox=\"0 0 80 80\">";
    for (int line = 0; line < kLines; ++line) {
        svg += "<polyline fill=\"none\" stroke=\"#000000\" points=\"";
        for (int i = 0; i < kPointsOfLine; ++i) {
            svg += QByteArray::number(80.0 * i / kPointsOfLine, 'f', 4) + ',' +
                   QByteArray::number(0.4 + 0.8 * line + 0.3 * std::sin(i * 0.7), 'f', 4) + ' ';
        }
        svg += "\"/>";
    }
    return svg + "</svg>";
}

template<typename Condition>
bool waitUntil(Condition condition) {
    QElapsedTimer time;
    time.start();
    while (!condition()) {
        if (time.elapsed() > kLongest)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    return true;
}

/// ms from the press of Start until the card puts out the first part of a vector; below 0 when it never did.
double pressStart(sim::SimControl& machine, Form_Marking& dialog, QPushButton& start) {
    std::uint64_t pass = 0;
    std::size_t from = 0;
    std::vector<sim::SimTraceRow> rows;
    machine.followTrace(pass, from, rows, SIZE_MAX);
    std::uint64_t const before = machine.state().jobs;
    std::atomic<bool> found{false};
    Clock::time_point first;
    // A thread of its own looks for it, since the main thread has the dialog to serve.
    std::thread watcher([&] {
        Clock::time_point const begin = Clock::now();
        while (msBetween(begin, Clock::now()) < double(kLongest)) {
            sim::SimCardState const state = machine.state();
            if (state.jobs > before && state.laser) {
                first = Clock::now();
                found = true;
                return;
            }
            std::this_thread::yield();
        }
    });
    Clock::time_point const pressed = Clock::now();
    start.click();
    waitUntil([&] { return found.load(); });
    watcher.join();
    dialog.StopMark();
    waitUntil([&] { return !dialog.IsRunning() && start.isEnabled(); });
    QCoreApplication::processEvents();
    return found ? msBetween(pressed, first) : -1.0;
}

/// ms for a thread to be started and to copy as many points.
double copyPoints(std::vector<DOT3> const& points) {
    std::vector<DOT3> copy;
    Clock::time_point const begin = Clock::now();
    Clock::time_point end;
    std::thread worker([&] {
        copy.reserve(points.size());
        for (DOT3 const& point : points)
            copy.push_back({point.X + 1.0, point.Y, point.Z});
        end = Clock::now();
    });
    worker.join();
    return copy.size() == points.size() ? msBetween(begin, end) : -1.0;
}

int run(QString const& root) {
    auto* find = reinterpret_cast<sim::SimControlFunction>(::dlsym(RTLD_DEFAULT, sim::kSimControlSymbol));
    if (!find) {
        std::fprintf(stderr, "bench_start: the engine is not a simulated machine\n");
        return 1;
    }
    sim::SimControl& machine = *find();
    MainWindow::InitMainWnd();
    MainWindow::Instance()->show();
    QString const svg = root + QStringLiteral("/waves.svg");
    QString const document = root + QStringLiteral("/MarkFile/waves.mkf");
    QFile file(svg);
    QString error;
    bool made = QDir().mkpath(root + QStringLiteral("/MarkFile")) && file.open(QIODevice::WriteOnly) &&
                file.write(drawing()) > 0;
    file.close();
    int vertices = 0;
    {
        QRulerView view(nullptr);
        int objects = 0;
        view.SetFileName(document);
        made = made && view.ImportVectorFile(svg, error) && view.SaveDoc();
        view.GetDocStatistics(objects, vertices);
    }
    MainWindow::Instance()->OpenFile(document);
    MainWindow::Instance()->ShowNormalMarkWindow();
    Form_Marking* dialog = Form_Marking::Instance();
    auto* start = dialog->findChild<QPushButton*>(QStringLiteral("pushButtonStart"));
    if (!made || !start || !MainWindow::Instance()->GetActiveView()) {
        std::fprintf(stderr, "bench_start: the document could not be made: %s\n", qPrintable(error));
        return 1;
    }
    std::vector<double> times;
    std::vector<double> references;
    std::vector<DOT3> const points(std::size_t(vertices), DOT3{1.0, 2.0, 0.0});
    for (int i = 0; i <= kRounds; ++i) {
        double const time = pressStart(machine, *dialog, *start);
        double const reference = copyPoints(points);
        if (time < 0 || reference < 0) {
            std::fprintf(stderr, "bench_start: the card marked nothing\n");
            return 1;
        }
        if (i == 0)
            continue;
        times.push_back(time);
        references.push_back(reference);
    }
    // The head jumps to the first vector before the laser goes on: that is the machine's time and not the program's.
    double const reference = bench::percentile(references, 0.5);
    std::printf("bench_start: press of Start to the first vector, %d vertices, median of %d\n", vertices, kRounds);
    std::printf("reference: thread and one copy %8.3f ms\n", reference);
    std::printf("tessera, jump to the line too  %8.3f ms   ratio %5.1f   (slowest %.3f ms)\n",
                bench::percentile(times, 0.5), bench::percentile(times, 0.5) / reference,
                *std::max_element(times.begin(), times.end()));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    return bench::runInNewRoot(argc, argv, run);
}

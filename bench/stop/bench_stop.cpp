// SPDX-License-Identifier: MIT
// From the edge of an input to the card's call in the journal, with the whole front end and a job under way: StopMark
// for every input that stops, the change to pause for the doors and the light curtain set to hold the job. First with
// idle cores; then with every core busy, a flood through a TCP connection and a view that draws 100,000 vertices anew
// in every frame. The reference is a bare thread that wakes every 30 ms in the same run: how late it is, is what no
// poll of that period can be better than; a perfect poll sees an edge 15 ms late in the median and 30 ms at most.
//
//     bench_stop [EDGES [idle|loaded]]          edges of each kind, 20 when not given
#include "bench/stop/distribution.h"
#include "bench/stop/plant.h"
#include "bench/stop/plantload.h"
#include "bench/support/loadaverage.h"
#include "bench/support/newroot.h"
#include "engine/qrulerview.h"
#include "shell/mainwindow.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <thread>

namespace {

using namespace bench;

constexpr int kDefaultEdges = 20;
/// Slow enough that no job of the bench ends by itself.
constexpr double kSlow = 0.000001;

struct Options {
    int edges = kDefaultEdges;
    bool idle = true;
    bool loaded = true;
};

/// All that is measured under one load.
class Round {
public:
    Round(sim::SimControl& machine, int edges, char const* load)
        : m_machine(machine)
        , m_plant(machine)
        , m_edges(edges)
        , m_load(load) {}

    /// False when an edge was lost or a job could not be started.
    bool run() {
        std::printf("\n%s; load average at the start %s\n", m_load, loadAverage().c_str());
        m_all.title = std::string("all, ") + m_load;
        for (Kind const& kind : kKinds) {
            if (!measure(kind))
                return false;
        }
        print(m_all);
        std::printf("\n| %s | edges | median | 99 %% | longest | bare timer late, 99 %% / longest | lost |\n", m_load);
        std::printf("|---|---|---|---|---|---|---|\n");
        for (Series const& series : m_series)
            printRow(series);
        printRow(m_all);
        std::printf("lost: %d while the beat's thread did not run, %d while the main thread was held, %d with a poll\n",
                    m_losses[0], m_losses[1], m_losses[2]);
        std::printf("load average at the end %s\n", loadAverage().c_str());
        std::fflush(stdout);
        return m_all.lost == 0;
    }

private:
    bool measure(Kind const& kind) {
        Series series;
        series.title = kind.title;
        BareTimer timer;
        for (int i = 0; i < m_edges; ++i) {
            if (!m_plant.startJob(kind)) {
                std::fprintf(stderr, "bench_stop: %s: job %d did not start\n", kind.title, i);
                return false;
            }
            const double ms = m_plant.edge(kind);
            if (ms < 0.0) {
                ++series.lost;
                ++m_losses[static_cast<std::size_t>(m_plant.lossOfLastEdge())];
            } else {
                series.answers.add(ms);
                m_all.answers.add(ms);
            }
            if (ms < 0.0 || kind.pauses)
                m_plant.endJob();
        }
        const std::vector<double> late = timer.finish();
        series.late.add(late);
        m_all.late.add(late);
        m_all.lost += series.lost;
        print(series);
        m_series.push_back(std::move(series));
        return true;
    }

    sim::SimControl& m_machine;
    Plant m_plant;
    int const m_edges;
    char const* const m_load;
    std::vector<Series> m_series;
    Series m_all;
    std::array<int, 3> m_losses{};
};

bool loaded(sim::SimControl& machine, int edges) {
    std::unique_ptr<Repaint> repaint;
    bool filled = false;
    QMetaObject::invokeMethod(
        MainWindow::Instance(),
        [&] {
            filled = Repaint::fillDocument();
            repaint = std::make_unique<Repaint>();
        },
        Qt::BlockingQueuedConnection);
    bool good = filled;
    {
        const TcpFlood flood;
        const BusyCores cores;
        good = good && flood.flows();
        const auto begin = std::chrono::steady_clock::now();
        if (good)
            good = Round(machine, edges, "all cores busy, TCP flood, repaint of 100,000 vertices").run();
        else
            std::fprintf(stderr, "bench_stop: the load could not be made\n");
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        std::printf("flood: %.0f MB/s\n", static_cast<double>(flood.bytes()) / 1e6 / seconds);
    }
    QMetaObject::invokeMethod(
        MainWindow::Instance(),
        [&] {
            Distribution const& frames = repaint->frames();
            std::printf(
                "repaint: %zu frames; the document's picture median %.1f, 99 %% %.1f, longest %.1f ms; the main "
                "thread's own work %.1f ms a frame\n",
                frames.count(), frames.percentile(0.5), frames.percentile(0.99), frames.longest(),
                repaint->workPerFrame());
            repaint.reset();
        },
        Qt::BlockingQueuedConnection);
    return good;
}

int run(Options const& options) {
    auto* find = reinterpret_cast<sim::SimControlFunction>(::dlsym(RTLD_DEFAULT, sim::kSimControlSymbol));
    if (!find) {
        std::fprintf(stderr, "bench_stop: the engine is not a simulated machine\n");
        return 1;
    }
    sim::SimControl& machine = *find();
    Plant::wire();
    MainWindow::InitMainWnd();
    MainWindow::Instance()->resize(1920, 1080);
    MainWindow::Instance()->show();
    if (!MainWindow::Instance()->NewFile(QStringLiteral("stop"))) {
        std::fprintf(stderr, "bench_stop: the document could not be made\n");
        return 1;
    }
    MainWindow::Instance()->GetActiveView()->AddMarkPoint(QPointF(1.0, 1.0));
    MainWindow::Instance()->ShowNormalMarkWindow();
    machine.setSpeed(kSlow);
    bool good = true;
    std::thread hand([&] {
        std::printf("bench_stop: %d edges of each of %zu kinds; the plant's own thread %s\n", options.edges,
                    std::size(kKinds),
                    Plant::aboveTheProgram() ? "has real-time priority" : "has no real-time priority");
        if (options.idle)
            good = Round(machine, options.edges, "idle").run() && good;
        if (options.loaded)
            good = loaded(machine, options.edges) && good;
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    QApplication::exec();
    hand.join();
    machine.setSpeed(0.0);
    return good ? 0 : 1;
}

bool read(int argc, char** argv, Options& options) {
    if (argc > 1)
        options.edges = std::atoi(argv[1]);
    if (argc > 2) {
        options.idle = std::strcmp(argv[2], "idle") == 0;
        options.loaded = std::strcmp(argv[2], "loaded") == 0;
    }
    return argc <= 3 && options.edges > 0 && (options.idle || options.loaded);
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    if (!read(argc, argv, options)) {
        std::fprintf(stderr, "bench_stop [EDGES [idle|loaded]]: a number above 0\n");
        return 2;
    }
    return runInNewRoot(argc, argv, [&options](QString const&) { return run(options); });
}

// SPDX-License-Identifier: MIT
// From the edge of an input to the card's StopMark in the journal, with the whole front end and a job under way: for
// the stop input, a door and the emergency stop, with idle cores and with all of them busy. The reference is a bare
// thread that wakes every 30 ms in the same run: how late it is, is what no poll of that period can be better than; a
// perfect poll sees an edge 15 ms late in the median and 30 ms at most.
//
//     bench_stop [EDGES]          edges of each kind, 40 when not given
#include "engine/glassparam.h"
#include "engine/iocheckedsys.h"
#include "engine/markcardinstance.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "run/form_marking.h"
#include "shell/mainwindow.h"
#include "simengine/simcontrol.h"
#include "support/approot.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <random>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kDefaultEdges = 40;
constexpr int kPollMs = 30;
/// An edge lasts two periods: one that is gone sooner may be missed.
constexpr milliseconds kHold{2 * kPollMs};
constexpr milliseconds kLost{2000};
/// An output that nothing else uses: its write is the mark of an edge in the journal.
constexpr int kMarkOutput = 30;
constexpr int kBinMs = 5;
constexpr int kBins = 12; ///< the last one takes all above
constexpr double kSlow = 0.0001;

struct Kind {
    char const* title;
    char const* function;
    int input;
};

constexpr Kind kKinds[] = {{"stop input", "终止", 2}, {"door", "机台安全门1", 7}, {"emergency stop", "急停按钮", 13}};

double percentile(std::vector<double> const& sorted, double share) {
    return sorted.empty() ? 0.0 : sorted[std::min(sorted.size() - 1, std::size_t(share * double(sorted.size())))];
}

/// How late a bare thread wakes every 30 ms, for as long as the object lives.
class BareTimer {
public:
    BareTimer()
        : m_thread([this] { run(); }) {}
    ~BareTimer() { finish(); }
    std::vector<double> finish() {
        m_end = true;
        if (m_thread.joinable())
            m_thread.join();
        return m_late;
    }

private:
    void run() {
        while (!m_end) {
            const Clock::time_point due = Clock::now() + milliseconds(kPollMs);
            std::this_thread::sleep_until(due);
            m_late.push_back(std::chrono::duration<double, std::milli>(Clock::now() - due).count());
        }
    }
    std::atomic<bool> m_end{false};
    std::vector<double> m_late;
    std::thread m_thread;
};

/// Keeps every core busy for as long as the object lives.
class Load {
public:
    explicit Load(unsigned cores) {
        for (unsigned i = 0; i < cores; ++i) {
            m_threads.emplace_back([this] {
                std::uint64_t value = 1;
                while (!m_end)
                    value = value * 6364136223846793005U + 1;
                m_sink += value;
            });
        }
    }
    ~Load() {
        m_end = true;
        for (std::thread& thread : m_threads)
            thread.join();
    }

private:
    std::atomic<bool> m_end{false};
    std::atomic<std::uint64_t> m_sink{0};
    std::vector<std::thread> m_threads;
};

template<typename Condition>
bool waitUntil(Condition condition, milliseconds limit) {
    for (const Clock::time_point end = Clock::now() + limit; Clock::now() < end;) {
        if (condition())
            return true;
        std::this_thread::sleep_for(milliseconds(1));
    }
    return condition();
}

template<typename Function>
void onMainThread(Function function) {
    QMetaObject::invokeMethod(MainWindow::Instance(), function, Qt::BlockingQueuedConnection);
}

bool startJob(sim::SimControl& machine) {
    const auto running = [&machine] { return machine.state().activity == sim::SimActivity::Running; };
    const auto start = [&] {
        bool idle = false;
        onMainThread([&idle] {
            Form_Marking* dialog = Form_Marking::Instance();
            idle = !dialog->IsRunning() && MainWindow::Instance()->centralWidget()->isEnabled() &&
                   MainWindow::Instance()->GetSafeAlarm() == 0;
            if (idle)
                dialog->StartMark(false);
        });
        return idle;
    };
    return waitUntil(start, kLost) && waitUntil(running, kLost);
}

/// ms from the edge to the first StopMark behind it; below 0 when none came.
double stopByEdge(sim::SimControl& machine, int input) {
    const std::uint64_t since = machine.journalEnd();
    MarkCardInstance::Instance()->SetOutputBit(kMarkOutput, 1);
    machine.setInput(input, true);
    std::this_thread::sleep_for(kHold);
    machine.setInput(input, false);
    double edge = -1.0;
    double stop = -1.0;
    waitUntil(
        [&] {
            for (sim::SimCall const& call : machine.journal(since)) {
                const bool isMark = call.name == "SetOutputBit" && std::get<std::int64_t>(call.args[0]) == kMarkOutput;
                if (edge < 0 && isMark)
                    edge = call.ms;
                if (edge >= 0 && stop < 0 && call.name == "StopMark")
                    stop = call.ms;
            }
            return stop >= 0;
        },
        kLost);
    return stop < 0 ? -1.0 : stop - edge;
}

std::vector<int> bins(std::vector<double> const& values) {
    std::vector<int> counts(kBins, 0);
    for (double value : values)
        ++counts[std::size_t(std::clamp(int(value / kBinMs), 0, kBins - 1))];
    return counts;
}

void print(char const* title, std::vector<double> times, std::vector<double> late, int lost) {
    std::sort(times.begin(), times.end());
    std::sort(late.begin(), late.end());
    std::printf("%s: %zu edges, %d lost\n", title, times.size() + std::size_t(lost), lost);
    std::printf("  %-22s median %6.2f  99%% %6.2f  longest %6.2f ms\n", "edge to StopMark", percentile(times, 0.5),
                percentile(times, 0.99), percentile(times, 1.0));
    std::printf("  %-22s median %6.2f  99%% %6.2f  longest %6.2f ms late\n", "bare 30 ms timer", percentile(late, 0.5),
                percentile(late, 0.99), percentile(late, 1.0));
    std::printf("  %-22s median %6.2f  99%% %6.2f\n", "ratio to period + late",
                percentile(times, 0.5) / (kPollMs / 2.0 + percentile(late, 0.5)),
                percentile(times, 0.99) / (kPollMs + percentile(late, 0.99)));
    const std::vector<int> ours = bins(times);
    const std::vector<int> theirs = bins(late);
    for (int i = 0; i < kBins; ++i) {
        const auto at = std::size_t(i);
        const int bar = times.empty() ? 0 : ours[at] * 40 / int(times.size());
        std::printf("  %3d %s ms  edge %6d %-40s timer %6d\n", i * kBinMs, i + 1 < kBins ? "to" : "up", ours[at],
                    std::string(std::size_t(bar), '#').c_str(), theirs[at]);
    }
    std::fflush(stdout);
}

/// False when an edge was lost or a job could not be started.
bool measure(sim::SimControl& machine, Kind const& kind, bool busy, int edges) {
    std::mt19937 random(unsigned(kind.input));
    std::vector<double> times;
    int lost = 0;
    Load const load(busy ? std::max(2U, std::thread::hardware_concurrency()) : 0);
    BareTimer timer;
    for (int i = 0; i < edges; ++i) {
        if (!startJob(machine)) {
            std::fprintf(stderr, "bench_stop: the job did not start\n");
            return false;
        }
        // The edges are to fall anywhere between two polls.
        std::this_thread::sleep_for(std::chrono::microseconds(random() % (kPollMs * 1000)));
        const double time = stopByEdge(machine, kind.input);
        if (time < 0) {
            ++lost;
            onMainThread([] { Form_Marking::Instance()->StopMark(); });
        } else {
            times.push_back(time);
        }
        // The poll must have seen the level go before the next edge.
        std::this_thread::sleep_for(kHold);
        machine.clearJournal();
    }
    std::string const title = std::string(kind.title) + (busy ? ", all cores busy" : ", idle");
    print(title.c_str(), times, timer.finish(), lost);
    return lost == 0;
}

void wireMachine() {
    SystemParam::Instance()->m_nResponseIO = 1;
    GlassParam::Instance()->SetCheckSafeInRun(false);
    GlassParam::Instance()->SetSafeTrigerType(SafeTrigerStop);
    QVector<IOFuncList> functions;
    for (Kind const& kind : kKinds) {
        IOFuncList function;
        function.Name = QString::fromUtf8(kind.function);
        function.InputEnable = true;
        function.InputMask = function.InputValue = 1U << kind.input;
        functions.append(function);
    }
    IOCheckedSys::Instance()->SetIOFunctions(functions);
}

int run(int edges) {
    auto* find = reinterpret_cast<sim::SimControlFunction>(::dlsym(RTLD_DEFAULT, sim::kSimControlSymbol));
    if (!find) {
        std::fprintf(stderr, "bench_stop: the engine is not a simulated machine\n");
        return 1;
    }
    sim::SimControl& machine = *find();
    wireMachine();
    MainWindow::InitMainWnd();
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
        for (bool busy : {false, true}) {
            for (Kind const& kind : kKinds)
                good = measure(machine, kind, busy, edges) && good;
        }
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    QApplication::exec();
    hand.join();
    machine.setSpeed(0.0);
    return good ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    int const edges = argc > 1 ? std::atoi(argv[1]) : kDefaultEdges;
    if (edges <= 0) {
        std::fprintf(stderr, "bench_stop [EDGES]: a number above 0\n");
        return 2;
    }
    QTemporaryDir root;
    tessera::setApplicationRoot(root.path());
    QDir::setCurrent(root.path());
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    int const code = run(edges);
    MainWindow::ClearMainWnd();
    return code;
}

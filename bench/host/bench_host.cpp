// SPDX-License-Identifier: MIT
// The port for the plant host of the whole program.
//
// 1. Round trips of a layer read-out a second, beside a bare server of Qt and a bare epoll server that answer the same
//    bytes with the same bytes, one after the other in turns.
// 2. Hosts that misbehave, and meanwhile a quiet host that connects, asks one question and goes, since the newest host
//    has the channel; an exchange that a misbehaving host takes over is counted and not timed. Beside it the same
//    exchange with the epoll server, the deviation of the input poll from its 30 ms, and the memory.
// 3. From the sending of a stop to StopMark in the journal, during a run that the host ordered, behind a flood of
//    questions on the same connection while refused hosts knock without pause.
//
//     bench_host [--short] [trips|storms|stops]     --short: little of each; only what must hold on any machine is
//                                                   looked at
#include "bench/host/figures.h"
#include "bench/host/references.h"
#include "bench/host/storms.h"
#include "bench/support/loadaverage.h"
#include "bench/support/newroot.h"
#include "bench/support/percentile.h"
#include "engine/markcardinstance.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "remote/hostresponsetcp.h"
#include "shell/mainwindow.h"
#include "simengine/simcontrol.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <cstdio>
#include <dlfcn.h>
#include <random>
#include <thread>
#include <utility>

namespace {

using namespace bench;

constexpr char kStop[] = "_VZMarkStop();";
constexpr char kRun[] = "_VZSetOffset(0);";
/// An output that nothing else uses: its write is the mark of a stop in the journal.
constexpr int kMarkOutput = 30;
/// Slow enough that no run ends by itself.
constexpr double kSlow = 0.000001;
/// MiB that a storm may leave behind: the system's allocator keeps some of what was used, a sanitizer far more.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double kMemoryBound = 512.0;
#else
constexpr double kMemoryBound = 64.0;
#endif
constexpr int kFloodWindow = 32;

struct Sizes {
    int roundTrips = 500; ///< in each turn: short, so that some are not disturbed by what else the computer does
    int turns = 60;
    int quiet = 1000; ///< exchanges of the quiet host
    int pollMs = 5000;
    int stops = 300;
    bool isShort = false;
    std::string only; ///< the one section wanted, empty for all
};

const Sizes kShortSizes = {100, 5, 50, 300, 20, true, {}};

class Bench {
public:
    Bench(sim::SimControl& machine, Sizes const& sizes)
        : m_machine(machine)
        , m_sizes(sizes)
        , m_port(HostResponseTcp::Instance()->ServerPort()) {}

    bool run() {
        std::printf("load average at the start %s\n", loadAverage().c_str());
        if (!learnAnswer())
            return false;
        m_qt = std::make_unique<QtReference>(QByteArray::fromStdString(m_answer));
        m_epoll = std::make_unique<EpollReference>(QByteArray::fromStdString(m_answer));
        bool good = true;
        if (isWanted("trips"))
            good = roundTrips(true) && roundTrips(false);
        if (isWanted("storms")) {
            good = quietAlone() && good;
            for (StormKind const& kind : stormKinds())
                good = storm(kind) && good;
        }
        return (!isWanted("stops") || stops()) && good;
    }

private:
    bool isWanted(char const* section) const { return m_sizes.only.empty() || m_sizes.only == section; }

    bool learnAnswer() {
        Wire wire;
        if (wire.connect(m_port) && wire.send(kQuestion))
            m_answer = wire.answer();
        if (m_answer.rfind("_VZGetLayerParas(0,", 0) == 0)
            return true;
        std::fprintf(stderr, "bench_host: no answer from the program\n");
        return false;
    }

    /// Questions a second over one connection, 0 after a wrong answer.
    double rate(std::uint16_t port) {
        Wire wire;
        if (!wire.connect(port) || wire.ask(kQuestion, m_answer) < 0)
            return 0;
        const Clock::time_point start = Clock::now();
        for (int i = 0; i < m_sizes.roundTrips; ++i) {
            if (wire.ask(kQuestion, m_answer) < 0)
                return 0;
        }
        return m_sizes.roundTrips * 1000.0 / msSince(start);
    }

    bool roundTrips(bool logged) {
        SystemParam::Instance()->SetSaveDebug(logged);
        std::vector<double> ours;
        std::vector<double> qt;
        std::vector<double> epoll;
        for (int i = 0; i < m_sizes.turns; ++i) {
            ours.push_back(rate(m_port));
            qt.push_back(rate(m_qt->port()));
            epoll.push_back(rate(m_epoll->port()));
        }
        SystemParam::Instance()->SetSaveDebug(true);
        std::printf("round trips a second, %d turns of %d, traffic %s\n", m_sizes.turns, m_sizes.roundTrips,
                    logged ? "logged" : "not logged");
        for (auto const& [title, share] : {std::pair("median of the turns", 0.5), std::pair("best turn", 1.0)}) {
            const double own = percentile(ours, share);
            std::printf("  %-20s program %6.0f  bare Qt server %6.0f  bare epoll server %6.0f  ratios %.2f %.2f\n",
                        title, own, percentile(qt, share), percentile(epoll, share), own / percentile(qt, share),
                        own / percentile(epoll, share));
        }
        std::fflush(stdout);
        return percentile(ours, 0.0) > 0;
    }

    struct Quiet {
        std::vector<double> answers; ///< question to answer
        std::vector<double> whole;   ///< connect to answer
        std::vector<double> reference;
        int takenOver = 0;
    };

    /// A host that comes, asks and goes.
    void exchange(Quiet& quiet) {
        Wire wire;
        const Clock::time_point start = Clock::now();
        // What is left of another host's half order ends with the first semicolon.
        const double time = wire.connect(m_port) && wire.send(";") ? wire.ask(kQuestion, m_answer) : -1.0;
        if (time < 0) {
            ++quiet.takenOver;
        } else {
            quiet.answers.push_back(time);
            quiet.whole.push_back(msSince(start));
        }
        Wire other;
        if (other.connect(m_epoll->port()))
            quiet.reference.push_back(other.ask(kQuestion, m_answer));
    }

    static void print(Quiet const& quiet) {
        std::printf("  question to answer     %s\n", summary(quiet.answers).c_str());
        std::printf("  connect to answer      %s\n", summary(quiet.whole).c_str());
        std::printf("  bare epoll server      %s\n", summary(quiet.reference).c_str());
    }

    bool quietAlone() {
        Quiet quiet;
        m_watch.take();
        std::this_thread::sleep_for(std::chrono::milliseconds(m_sizes.pollMs));
        m_calm = m_watch.take();
        for (int i = 0; i < m_sizes.quiet; ++i)
            exchange(quiet);
        std::printf("without a storm\n");
        print(quiet);
        std::printf("  poll off its 30 ms by  %s\n", summary(m_calm).c_str());
        std::fflush(stdout);
        return quiet.takenOver == 0;
    }

    bool storm(StormKind const& kind) {
        std::atomic<bool> end{false};
        const double before = residentMiB();
        const int sockets = openSockets();
        double highest = before;
        bool good = true;
        Quiet quiet;
        m_watch.take();
        const Clock::time_point start = Clock::now();
        {
            const StormTask task{m_port, m_answer, m_sizes.isShort ? kind.shortSize : kind.size, &end};
            std::atomic<bool> over{false};
            std::thread host([&] {
                good = kind.run(task);
                over = true;
            });
            while (kind.keepsHosts && !over) {
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                highest = std::max(highest, residentMiB());
            }
            for (int i = 0; i < m_sizes.quiet && !kind.keepsHosts; ++i) {
                exchange(quiet);
                highest = std::max(highest, residentMiB());
                std::this_thread::sleep_for(std::chrono::milliseconds(3));
            }
            end = true;
            host.join();
        }
        const double seconds = msSince(start) / 1000.0;
        const std::vector<double> poll = m_watch.take();
        Quiet after;
        for (int i = 0; i < m_sizes.quiet; ++i)
            exchange(after);
        int left = openSockets() - sockets;
        for (const Clock::time_point closing = Clock::now(); left > 0 && msSince(closing) < 2000;) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            left = openSockets() - sockets;
        }
        std::printf("%s: %.1f s, %d exchanges taken over; load average %s\n", kind.title, seconds, quiet.takenOver,
                    loadAverage().c_str());
        if (!kind.keepsHosts)
            print(quiet);
        std::printf("  afterwards\n");
        print(after);
        std::printf("  poll off its 30 ms by  %s, 99 %% %+.3f ms to calm\n", summary(poll).c_str(),
                    percentile(poll, 0.99) - percentile(m_calm, 0.99));
        std::printf("  memory %.1f MiB before, %.1f highest, %.1f after; %d sockets more\n", before, highest,
                    residentMiB(), left);
        std::fflush(stdout);
        good = good && after.takenOver == 0 && left <= 0 && highest - before < kMemoryBound;
        if (!good)
            std::fprintf(stderr, "bench_host: %s: a wrong or missing answer, or memory or sockets that stay\n",
                         kind.title);
        return good;
    }

    /// ms from the mark in the journal to the StopMark behind it; below 0 when none came.
    double stopTime(std::uint64_t since) {
        const Clock::time_point start = Clock::now();
        while (msSince(start) < 3000) {
            double mark = -1.0;
            for (sim::SimCall const& call : m_machine.journal(since)) {
                if (call.name == "SetOutputBit" && std::get<std::int64_t>(call.args[0]) == kMarkOutput)
                    mark = call.ms;
                if (mark >= 0 && call.name == "StopMark")
                    return call.ms - mark;
            }
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        return -1.0;
    }

    /// One run under a flood, stopped at any moment; below 0 when something did not come.
    double stopUnderFlood(Wire& wire) {
        const auto isRunning = [this] { return m_machine.state().activity == sim::SimActivity::Running; };
        wire.send(kRun);
        for (const Clock::time_point start = Clock::now(); !isRunning();) {
            if (msSince(start) > 3000)
                return -1.0;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        const int flood = 50 + int(m_random() % 300);
        int ahead = 0;
        for (int i = 0; i < flood; ++i) {
            wire.send(kQuestion);
            if (++ahead > kFloodWindow && !wire.answer().empty())
                --ahead;
        }
        const std::uint64_t since = m_machine.journalEnd();
        MarkCardInstance::Instance()->SetOutputBit(kMarkOutput, 1);
        wire.send(kStop);
        const double time = stopTime(since);
        // All answers: those ahead, the run's and the stop's.
        for (int i = 0; i < ahead + 2; ++i) {
            if (wire.answer().empty())
                return -1.0;
        }
        return time;
    }

    bool stops() {
        m_machine.setSpeed(kSlow);
        std::atomic<bool> end{false};
        std::atomic<int> knocks{0};
        std::thread strangers([&] {
            while (!end) {
                Wire wire;
                if (wire.connect(m_port, "127.0.0.2") && wire.receive(1000).empty())
                    ++knocks;
            }
        });
        Wire wire;
        std::vector<double> times;
        int lost = wire.connect(m_port) && wire.ask(";" + std::string(kQuestion), m_answer) >= 0 ? 0 : m_sizes.stops;
        for (int i = 0; i < m_sizes.stops && lost == 0; ++i) {
            const double time = stopUnderFlood(wire);
            if (time < 0)
                ++lost;
            else
                times.push_back(time);
            m_machine.clearJournal();
        }
        end = true;
        strangers.join();
        m_machine.setSpeed(0.0);
        std::printf(
            "stop during a run, flood on the same connection, %d refused connections meanwhile; load average %s\n",
            int(knocks), loadAverage().c_str());
        std::printf("  sent to StopMark       %s, %d lost\n", summary(times).c_str(), lost);
        std::fflush(stdout);
        return lost == 0;
    }

    sim::SimControl& m_machine;
    Sizes m_sizes;
    std::uint16_t m_port;
    std::string m_answer;
    std::unique_ptr<QtReference> m_qt;
    std::unique_ptr<EpollReference> m_epoll;
    PollWatch m_watch;
    std::vector<double> m_calm;
    std::mt19937 m_random{20261};
};

int run(Sizes const& sizes) {
    auto* find = reinterpret_cast<sim::SimControlFunction>(::dlsym(RTLD_DEFAULT, sim::kSimControlSymbol));
    if (!find) {
        std::fprintf(stderr, "bench_host: the engine is not a simulated machine\n");
        return 1;
    }
    SystemParam::Instance()->SetScribePort(0);
    MainWindow::InitMainWnd();
    MainWindow::Instance()->show();
    if (!MainWindow::Instance()->NewFile(QStringLiteral("host"))) {
        std::fprintf(stderr, "bench_host: the document could not be made\n");
        return 1;
    }
    MainWindow::Instance()->GetActiveView()->AddMarkPoint(QPointF(1.0, 1.0));
    bool good = false;
    {
        Bench bench(*find(), sizes);
        std::thread hosts([&] {
            good = bench.run();
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        });
        QApplication::exec();
        hosts.join();
    }
    return good ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    Sizes sizes;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--short" && i == 1) {
            sizes = kShortSizes;
        } else if (sizes.only.empty() && (argument == "trips" || argument == "storms" || argument == "stops")) {
            sizes.only = argument;
        } else {
            std::fprintf(stderr, "bench_host [--short] [trips|storms|stops]\n");
            return 2;
        }
    }
    return runInNewRoot(argc, argv, [&](QString const& root) {
        QDir().mkpath(root + QStringLiteral("/ini"));
        // Any host of the loopback but the one that knocks.
        QFile access(root + QStringLiteral("/ini/HostTcp.ini"));
        if (!access.open(QIODevice::WriteOnly) || access.write("[Host]\nAllow=127.0.0.1\n") <= 0) {
            std::fprintf(stderr, "bench_host: the access list can not be made\n");
            return 1;
        }
        access.close();
        return run(sizes);
    });
}

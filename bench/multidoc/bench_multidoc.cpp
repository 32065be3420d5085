// SPDX-License-Identifier: MIT
// A project of fifty open documents: input changes as fast as they are marked, compared with a table of the patterns,
// and the time from an input's edge to the first vector of its document.
//
//     bench_multidoc [CHANGES [EDGES]]
#include "engine/markcardinstance.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "multidoc/multidocmark.h"
#include "shell/mainwindow.h"
#include "simengine/simcontrol.h"
#include "support/approot.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <random>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kDefaultChanges = 1000000;
constexpr int kDefaultEdges = 200;
constexpr unsigned int kDocuments = 50;
constexpr unsigned int kWired = 0x3ff;
/// Document i is one point at i of these, so that the place of the head tells which one was marked.
constexpr double kStepMm = 0.5;
constexpr milliseconds kPatience{10000};
/// Memory may grow by this share of what it was after the first hundredth.
constexpr double kAllowedGrowth = 1.05;
/// An output that nothing else uses: its write is the mark of an edge in the journal.
constexpr int kMarkOutput = 30;
constexpr double kBoundMs = 80.0;

sim::SimControl& machine() {
    return *tessera_sim_control();
}

QString nameOf(unsigned int document) {
    return QStringLiteral("plate %1").arg(document);
}

long residentKb() {
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (QByteArray const& line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return 0;
}

/// The rule once more: for every word the patterns that hold, and for every pair of words the inputs that changed.
class Table {
public:
    void add(unsigned int value, unsigned int mask) { m_Rows.push_back({value, mask}); }
    /// The document that the word starts, -1 for none.
    int take(unsigned int word) {
        int found = -1;
        for (std::size_t row = m_Rows.size(); row-- > 0;) {
            bool holds = true;
            bool changed = false;
            for (unsigned int bit = 1; bit <= kWired; bit <<= 1) {
                if ((m_Rows[row][1] & bit) == 0)
                    continue;
                holds = holds && ((word & bit) != 0) == ((m_Rows[row][0] & bit) != 0);
                changed = changed || ((word & bit) != 0) != ((m_Last & bit) != 0);
            }
            if (holds && changed)
                found = int(row);
        }
        m_Last = word;
        return found;
    }

private:
    std::vector<std::array<unsigned int, 2>> m_Rows;
    unsigned int m_Last = 0;
};

/// The window's own part of the rule without the wait for the contacts and without the log.
class Port : public tessera::TriggerPort {
public:
    explicit Port(MultiMarkThread& thread)
        : m_Thread(thread) {}
    bool isSafe() override { return MainWindow::Instance()->CheckAlarmStatus(); }
    unsigned int settledInput() override { return input; }
    bool isIdle() override { return MultiDocMark::Instance()->GetMarkStatus() == MultiMarkIdle; }
    bool isOpen(QString const& name) override { return MainWindow::Instance()->GetDoc(name) != nullptr; }
    void queueDocument(TrigerDoc const& doc) override {
        m_Thread.AddMarkFile(MainWindow::Instance()->GetDoc(doc.m_FileName));
    }
    void note(QString const&) override {}

    unsigned int input = 0;

private:
    MultiMarkThread& m_Thread;
};

/// What the worker tells.
struct Worker {
    std::mutex lock;
    std::condition_variable changed;
    long ended = 0;
    QString begun;

    void told(int status, QString const& name) {
        {
            const std::lock_guard<std::mutex> hold(lock);
            if (status == MultiMarkMarking)
                begun = name;
            else if (!begun.isEmpty())
                ++ended;
        }
        changed.notify_all();
    }
    bool wait(long count) {
        std::unique_lock<std::mutex> hold(lock);
        return changed.wait_for(hold, kPatience, [this, count] { return ended >= count; });
    }
};

/// The run that the benchmark watches.
struct Bench {
    MultiMarkThread* thread = nullptr;
    Worker worker;
    std::vector<TrigerDoc> docs;

    void prepare() {
        for (unsigned int i = 0; i < kDocuments; ++i) {
            QRulerView view(nullptr);
            view.SetFileName(nameOf(i));
            view.AddMarkPoint(QPointF(i * kStepMm, 0.0));
            view.SaveDoc();
        }
        std::mt19937 random(50);
        for (unsigned int i = 0; i < kDocuments; ++i) {
            // Five to seven inputs each: patterns that differ enough for every document to have its turn.
            unsigned int mask = 0;
            const unsigned int inputs = 5 + random() % 3;
            while (unsigned(__builtin_popcount(mask)) < inputs)
                mask |= 1U << random() % 10;
            docs.push_back({unsigned(random()) & mask, mask, nameOf(i)});
        }
        for (TrigerDoc& doc : docs)
            MultiDocMark::Instance()->AddDoc(doc);
        thread = MultiDocMark::Instance()->findChild<MultiMarkThread*>();
        QObject::connect(
            thread, &MultiMarkThread::markstatusChange, thread,
            [this](int status, QString const& name) { worker.told(status, name); }, Qt::DirectConnection);
    }
    static bool start() {
        machine().setInputs(0);
        MultiDocMark::Instance()->StartMark();
        QElapsedTimer time;
        time.start();
        while (MultiDocMark::Instance()->GetMarkStatus() != MultiMarkWaiting && time.elapsed() < kPatience.count())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return MultiDocMark::Instance()->GetMarkStatus() == MultiMarkWaiting;
    }
    static void stop() {
        MultiDocMark::Instance()->findChild<QPushButton*>(QStringLiteral("pushButtonStop"))->click();
        QCoreApplication::processEvents();
    }
};

/// Every change that the table says starts a document has to be marked, that document and nothing else, before the
/// next change comes.
bool runChanges(Bench& bench, int changes) {
    SystemParam::Instance()->m_nResponseIO = 0;
    machine().setSpeed(0.0);
    if (!Bench::start())
        return false;
    QVector<TrigerDoc*> docs;
    Table table;
    for (TrigerDoc& doc : bench.docs) {
        docs.append(&doc);
        table.add(doc.m_nValue, doc.m_nMask);
    }
    Port port(*bench.thread);
    tessera::TriggerRule rule;
    std::mt19937 random(1);
    // The machine's record of calls is full only after some hundred thousand of them.
    machine().setJournalEnabled(false);
    const std::uint64_t jobsBefore = machine().state().jobs;
    std::array<long, kDocuments> marked{};
    long demanded = 0;
    long wrong = 0;
    long reference = 0;
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < changes && wrong == 0; ++i) {
        const unsigned int word = random() & kWired;
        port.input = word;
        rule.InputChange(word, docs, port);
        const int wanted = table.take(word);
        if (wanted >= 0) {
            ++demanded;
            ++marked[std::size_t(wanted)];
            const bool ended = bench.worker.wait(demanded);
            const sim::SimCardState state = machine().state();
            wrong += ended && state.jobs - jobsBefore == std::uint64_t(demanded) &&
                             std::lround(state.x / kStepMm) == wanted && bench.worker.begun == nameOf(unsigned(wanted))
                         ? 0
                         : 1;
        }
        if (i % 16 == 0)
            QCoreApplication::processEvents();
        if (i % std::max(1, changes / 10) == changes / 100) {
            const long now = residentKb();
            reference = reference > 0 ? reference : now;
            std::printf("  after %7d changes: %ld kB\n", i, now);
        }
    }
    QCoreApplication::processEvents();
    const double seconds = double(time.elapsed()) / 1000;
    const auto jobs = long(machine().state().jobs - jobsBefore);
    const long resident = residentKb();
    Bench::stop();
    const long used = std::count_if(marked.begin(), marked.end(), [](long count) { return count > 0; });
    const double growth = double(resident) / double(std::max(1L, reference));
    std::printf(
        "%d input changes, %u documents: %ld triggers demanded, %ld jobs at the card, %ld wrong; %ld documents used\n",
        changes, kDocuments, demanded, jobs, wrong, used);
    std::printf("%.1f s, %.0f changes a second; memory %ld kB after 1%%, %ld kB at the end, ratio %.3f\n", seconds,
                changes / seconds, reference, resident, growth);
    return wrong == 0 && jobs == demanded && growth <= kAllowedGrowth;
}

double median(std::vector<double> values) {
    if (values.empty())
        return 0.0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Times {
    std::vector<double> toWorker; ///< edge to the worker's first call: wait for the poll, debounce, hand-over
    std::vector<double> toJob;    ///< until the job is ordered at the card
    std::vector<double> toVector; ///< until the trace has its first row
    std::vector<double> all;
    int lost = 0;
};

double timeOf(std::vector<sim::SimCall> const& calls, char const* name) {
    const auto found =
        std::find_if(calls.begin(), calls.end(), [name](sim::SimCall const& call) { return call.name == name; });
    return found != calls.end() ? found->ms : -1.0;
}

/// One edge of input 0 at any moment between two polls; on a thread of its own, as the plant is.
void edge(std::mt19937& random, Times& times) {
    std::this_thread::sleep_for(std::chrono::microseconds(50000 + random() % 30000));
    std::uint64_t pass = 0;
    std::size_t from = 0;
    std::vector<sim::SimTraceRow> rows;
    machine().followTrace(pass, from, rows);
    const std::uint64_t before = pass;
    const std::uint64_t since = machine().journalEnd();
    MarkCardInstance::Instance()->SetOutputBit(kMarkOutput, 1);
    const Clock::time_point start = Clock::now();
    machine().setInput(0, true);
    bool seen = false;
    while (!seen && Clock::now() - start < kPatience) {
        rows.clear();
        seen = machine().followTrace(pass, from, rows) > 0 && pass != before;
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    const double all = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    const std::vector<sim::SimCall> calls = machine().journal(since);
    const double marked = timeOf(calls, "SetOutputBit");
    const double worker = timeOf(calls, "SetMarkStaus");
    const double job = timeOf(calls, "StartMark");
    if (seen && worker >= 0.0 && job >= 0.0) {
        times.toWorker.push_back(worker - marked);
        times.toJob.push_back(job - worker);
        times.toVector.push_back(all - (job - marked));
        times.all.push_back(all);
    } else {
        ++times.lost;
    }
    while (MarkCardInstance::Instance()->GetMarkStatus() != MarkStatusStop)
        std::this_thread::sleep_for(milliseconds(1));
    machine().setInput(0, false);
}

bool runEdges(int edges) {
    MultiDocMark::Instance()->ClearDocs();
    // The first document waits for input 0, the others for inputs that never come.
    for (unsigned int i = 0; i < kDocuments; ++i) {
        TrigerDoc doc{i == 0 ? 1U : 1U << 31, i == 0 ? 1U : 1U << 31, nameOf(i)};
        MultiDocMark::Instance()->AddDoc(doc);
    }
    SystemParam::Instance()->m_nResponseIO = 1;
    machine().setSpeed(1.0);
    machine().setJournalEnabled(true);
    MainWindow::Instance()->ShowMultDocMarkWindow();
    if (!Bench::start())
        return false;
    Times times;
    std::atomic<bool> done{false};
    std::thread plant([&] {
        std::mt19937 random(7);
        for (int i = 0; i < edges; ++i)
            edge(random, times);
        done = true;
    });
    while (!done)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    plant.join();
    Bench::stop();
    std::sort(times.all.begin(), times.all.end());
    std::printf("%d edges, %d without a vector; to the first vector: median %.1f ms, longest %.1f ms\n", edges,
                times.lost, median(times.all), times.all.empty() ? 0.0 : times.all.back());
    std::printf(
        "  medians of its parts: %.1f ms to the worker (30 ms poll, 10 ms for the contacts), %.2f ms to the job's "
        "order, %.2f ms to the vector\n",
        median(times.toWorker), median(times.toJob), median(times.toVector));
    return times.lost == 0 && median(times.all) < kBoundMs;
}

int run(int changes, int edges) {
    MainWindow::InitMainWnd();
    MainWindow::Instance()->show();
    Bench bench;
    bench.prepare();
    const bool every = runChanges(bench, changes);
    std::fflush(stdout);
    const bool fast = runEdges(edges);
    std::printf("%s\n", every && fast ? "as demanded" : "NOT AS DEMANDED");
    return every && fast ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const int changes = argc > 1 ? QByteArray(argv[1]).toInt() : kDefaultChanges;
    const int edges = argc > 2 ? QByteArray(argv[2]).toInt() : kDefaultEdges;
    if (changes < 100 || edges < 1) {
        std::fprintf(stderr, "bench_multidoc [CHANGES [EDGES]]: at least 100 and 1\n");
        return 2;
    }
    QTemporaryDir root;
    tessera::setApplicationRoot(root.path());
    QDir::setCurrent(root.path());
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int code = run(changes, edges);
    MainWindow::ClearMainWnd();
    return code;
}

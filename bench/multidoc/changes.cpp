// SPDX-License-Identifier: MIT
#include "bench/multidoc/changes.h"

#include "bench/multidoc/plates.h"
#include "multidoc/multidocmark.h"
#include "shell/mainwindow.h"
#include "simengine/simcontrol.h"
#include "tests/support/processstatus.h"
#include "tests/support/sleephook.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QListWidget>
#include <algorithm>
#include <cstdio>

namespace bench {

namespace {

/// Memory may grow by this share of what it was when every document had had its turn.
constexpr double kAllowedGrowth = 1.05;
constexpr std::size_t kWarmChanges = 10000;
/// Of the machine, so that a document takes longer than some changes.
constexpr double kOvertakenSpeed = 10.0;
constexpr unsigned int kLongestBurst = 24;
constexpr unsigned int kMostLet = 4;

/// What the log's lines of a trigger begin with.
const QByteArray kTriggerLine("\tMultDocMark ");

} // namespace

Changes::Changes(RunRecorder& recorder, std::vector<TrigerDoc> const& entries, int most)
    : m_recorder(recorder)
    , m_table(entries)
    , m_most(std::size_t(most))
    , m_warm(std::max(m_most / 100, std::min(m_most / 2, kWarmChanges))) {
    // Taken at once, so that it is no growth.
    m_changes.resize(m_most);
    m_changes.clear();
    m_wanted.resize(m_most);
    m_wanted.clear();
    m_free.resize(m_most);
    m_free.clear();
}

/// A random word at the inputs, and the poll that takes it. With `hear` the window first hears what the worker has told
/// it. The document that the word is to start, -1 for none.
int Changes::change(bool hear) {
    if (hear) {
        QCoreApplication::processEvents();
        m_shown = m_queue.current() >= 0;
    }
    const unsigned int word = m_random() & kWired;
    const unsigned int last = m_table.last();
    const int entry = m_table.take(word);
    m_changes.push_back({last, word, entry});
    tessera_sim_control()->setInputs(word);
    {
        const tests::SleepHook noWait([](std::chrono::nanoseconds) {});
        emit MainWindow::Instance()->TimerUpDate();
    }
    if (m_changes.size() == m_warm || m_changes.size() % (m_most / 10) == 0)
        sampleMemory();
    return entry;
}

void Changes::sampleMemory() {
    const long now = tests::processStatus("VmRSS:");
    m_reference = m_changes.size() == m_warm ? now : m_reference;
    std::printf("  after %7zu changes: %ld kB\n", m_changes.size(), now);
    std::fflush(stdout);
}

bool Changes::runsAre(std::vector<int> const& wanted, std::size_t from) const {
    const std::vector<int> runs = m_recorder.runs();
    return runs.size() >= from && std::vector<int>(runs.begin() + std::ptrdiff_t(from), runs.end()) == wanted &&
           m_recorder.wrong() == 0;
}

bool Changes::oneByOne(int changes) {
    const std::size_t before = m_recorder.begun();
    m_wanted.clear();
    QElapsedTimer time;
    time.start();
    bool all = true;
    for (int i = 0; i < changes && all; ++i) {
        const int entry = change(true);
        if (entry < 0)
            continue;
        m_wanted.push_back(entry);
        all = m_recorder.waitEnded(before + m_wanted.size());
    }
    all = all && m_recorder.waitIdle() && runsAre(m_wanted, before);
    std::printf("one by one: %d changes, %zu triggers, %zu runs: %s; %.0f changes a second\n", changes, m_wanted.size(),
                m_recorder.begun() - before, all ? "each once and in order" : "NOT AS DEMANDED",
                changes * 1000.0 / double(std::max<qint64>(1, time.elapsed())));
    return all;
}

/// The worker takes what waits as soon as it has nothing in hand.
bool Changes::take() {
    if (m_queue.current() >= 0)
        return true;
    const int document = m_queue.take();
    if (document < 0)
        return true;
    m_wanted.push_back(document);
    return m_recorder.waitBegun(m_wanted.size());
}

bool Changes::letOneEnd() {
    if (m_queue.current() < 0)
        return true;
    m_recorder.letOne();
    m_queue.done();
    return m_recorder.waitEnded(m_wanted.size()) && take();
}

bool Changes::held(int changes) {
    const std::vector<int> earlier = m_recorder.runs();
    m_wanted.assign(earlier.begin(), earlier.end());
    const std::size_t before = m_wanted.size();
    std::size_t triggers = 0;
    std::size_t dropped = 0;
    bool all = true;
    m_recorder.hold(true);
    for (int i = 0; i < changes && all;) {
        for (auto burst = int(1 + m_random() % kLongestBurst); burst > 0 && i < changes && all; --burst, ++i) {
            const int entry = change(m_random() % 4 != 0);
            if (entry < 0)
                continue;
            ++triggers;
            dropped += m_queue.trigger(entry, m_shown) ? 0 : 1;
            all = take();
            m_deepest = std::max(m_deepest, m_queue.waiting());
        }
        for (unsigned int let = 1 + m_random() % kMostLet; let > 0 && all; --let)
            all = letOneEnd();
    }
    while (all && m_queue.current() >= 0)
        all = letOneEnd();
    m_recorder.hold(false);
    all = m_recorder.waitIdle() && all && runsAre(m_wanted, 0);
    std::printf("held: %d changes, %zu triggers, %zu dropped, %zu runs, up to %zu waiting: %s\n", changes, triggers,
                dropped, m_recorder.begun() - before, m_deepest, all ? "as the model" : "NOT AS THE MODEL");
    return all;
}

bool Changes::free(int changes) {
    const std::size_t before = m_recorder.begun();
    std::size_t behind = 0;
    tessera_sim_control()->setSpeed(kOvertakenSpeed);
    for (int i = 0; i < changes; ++i) {
        const std::size_t ended = m_recorder.ended() - before;
        const std::size_t begun = m_recorder.begun() - before;
        const int entry = change(true);
        if (entry < 0)
            continue;
        m_free.push_back({entry, begun, ended, m_recorder.begun() - before});
        behind += begun > ended ? 1 : 0;
    }
    const long resident = tests::processStatus("VmRSS:");
    const bool idle = m_recorder.waitIdle();
    tessera_sim_control()->setSpeed(0.0);
    const std::vector<int> all = m_recorder.runs();
    const std::vector<int> runs(all.begin() + std::ptrdiff_t(before), all.end());
    const bool right = idle && m_recorder.wrong() == 0 && canComeOf(runs, m_free);
    std::printf("overtaking: %d changes, %zu triggers, %zu of them during a run, %zu runs: %s\n", changes,
                m_free.size(), behind, runs.size(), right ? "as the queue demands" : "NOT AS THE QUEUE DEMANDS");
    QCoreApplication::processEvents();
    const double growth = double(resident) / double(std::max(1L, m_reference));
    std::printf("memory %ld kB after %zu changes, %ld kB at the end, ratio %.3f\n", m_reference, m_warm, resident,
                growth);
    return right && behind > 0 && growth <= kAllowedGrowth;
}

bool Changes::logIsRight() const {
    const QDir folder(QDir::current().filePath(QStringLiteral("日志文件")));
    std::size_t change = 0;
    QStringList wanted;
    std::size_t lines = 0;
    for (QString const& name : folder.entryList({QStringLiteral("*.log")}, QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            return false;
        while (!file.atEnd()) {
            const QByteArray line = file.readLine();
            const int at = line.indexOf(kTriggerLine);
            if (at < 0)
                continue;
            for (; wanted.isEmpty() && change < m_changes.size(); ++change)
                wanted = m_table.lines(m_changes[change].last, m_changes[change].word, m_changes[change].entry);
            const QString text = QString::fromUtf8(line.mid(at + 1)).trimmed();
            if (wanted.isEmpty() || wanted.takeFirst() != text) {
                std::printf("log: line %zu of a trigger is \"%s\"\n", lines, qPrintable(text));
                return false;
            }
            ++lines;
        }
    }
    while (wanted.isEmpty() && change < m_changes.size() && m_changes[change].last == m_changes[change].word)
        ++change;
    const bool all = wanted.isEmpty() && change == m_changes.size();
    std::printf("log: %zu lines of changes and triggers: %s\n", lines,
                all ? "all there, in order" : "SOME ARE MISSING");
    return all;
}

bool Changes::rowsAreRight() const {
    std::vector<int> counts(kDocuments, 0);
    for (int document : m_recorder.runs())
        ++counts[std::size_t(document)];
    auto const* list = MultiDocMark::Instance()->findChild<QListWidget*>(QStringLiteral("listWidget"));
    bool all = list && list->count() == int(kDocuments);
    for (int row = 0; all && row < list->count(); ++row)
        all = list->item(row)->data(tessera::ProjectRunCount).toInt() ==
              counts[std::size_t(documentOf(list->item(row)->text()))];
    const auto used = std::count_if(counts.begin(), counts.end(), [](int count) { return count > 0; });
    std::printf("rows: %td of %u documents were run; their counts are %s\n", used, kDocuments, all ? "right" : "WRONG");
    return all;
}

} // namespace bench

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/log/runtimes.h"

#include "engine/marklog.h"
#include "simengine/document/contained.h"
#include "support/approot.h"

#include <chrono>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace sim {

namespace {

using namespace std::chrono_literals;

/// Runs that wait for their estimate; of more than these the oldest are not recorded.
constexpr std::size_t kMostWaiting = 1000;
/// Every write waits for the disk and wears it.
constexpr auto kPace = 1s;
/// How long the end of the program waits for an estimate.
constexpr auto kLastEstimate = 2s;

/// The machine goes before the book-keeping. Without a name of its own the thread would have that of the run that began
/// it, and look like a run that never ends.
void stepBack() {
    constexpr int kNice = 10;
    (void)pthread_setname_np(pthread_self(), "RunTimes");
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), kNice);
}

} // namespace

QString runTimesPath() {
    return tessera::rootPath(QStringLiteral("/ini/RunTimes.jsonl"));
}

RunTimes& RunTimes::instance() {
    static RunTimes times;
    return times;
}

RunTimes::~RunTimes() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_end = true;
    m_changed.notify_all();
    if (!m_thread.joinable())
        return;
    m_changed.wait_for(lock, kLastEstimate, [this] { return m_ended.empty() && !m_busy; });
    m_work.cancel();
    lock.unlock();
    m_thread.join();
}

void RunTimes::add(EndedRun run) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_ended.size() >= kMostWaiting)
        m_ended.pop_front();
    m_ended.push_back(std::move(run));
    if (!m_thread.joinable())
        m_thread = std::thread([this] { work(); });
    m_changed.notify_all();
}

std::vector<RunTime> RunTimes::newest(const QString& document, std::size_t limit) {
    const QString path = runTimesPath();
    std::shared_ptr<const Runs> runs;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        runs = m_file == path ? m_runs : nullptr;
    }
    if (!runs) {
        RunTimeFile file;
        file.open(path);
        runs = std::make_shared<const Runs>(file.runs());
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_file == path) {
            runs = m_runs;
        } else {
            m_file = path;
            m_runs = runs;
        }
    }
    std::vector<RunTime> found;
    for (auto run = runs->rbegin(); run != runs->rend() && found.size() < limit; ++run) {
        if (document.isEmpty() || run->document == document)
            found.push_back(*run);
    }
    return found;
}

void RunTimes::flush() {
    std::unique_lock<std::mutex> lock(m_mutex);
    ++m_flushing;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return m_ended.empty() && !m_busy; });
    --m_flushing;
}

void RunTimes::work() {
    stepBack();
    RunTimeFile file;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_end || !m_ended.empty(); });
        if (m_ended.empty())
            break;
        m_busy = true;
        while (!m_ended.empty()) {
            EndedRun run = std::move(m_ended.front());
            m_ended.pop_front();
            lock.unlock();
            QString fault;
            if (!contained(fault, [&] { run.time.estimateMs = estimateOf(run.plan); }))
                MarkLog::Instance()->ShowNote_Error(QStringLiteral("run times: ") + fault);
            file.open(run.file);
            file.add(run.time);
            auto runs = std::make_shared<const Runs>(file.runs());
            lock.lock();
            m_file = run.file;
            m_runs = std::move(runs);
            ++m_version;
        }
        lock.unlock();
        QString error;
        const bool saved = file.save(error);
        lock.lock();
        if (!saved && !m_end) {
            lock.unlock(); // who follows the log may ask for the runs
            MarkLog::Instance()->ShowNote_Error(QStringLiteral("run times: ") + error);
            lock.lock();
        }
        m_busy = false;
        m_changed.notify_all();
        m_changed.wait_for(lock, kPace, [this] { return m_end || (m_flushing > 0 && !m_ended.empty()); });
    }
}

double RunTimes::estimateOf(const RunPlan& plan) {
    if (m_lastEstimate >= 0.0 && m_lastObjects.lock() == plan.state->objects && m_lastPlan.sameSettings(plan))
        return m_lastEstimate;
    m_lastEstimate = -1.0;
    TimelineJob job = timelineJob(plan, &m_work);
    const auto timeline = m_work.isCancelled() ? nullptr : JobTimeline::make(std::move(job), &m_work.flag());
    m_lastEstimate = timeline ? timeline->time().totalMs : -1.0;
    m_lastObjects = plan.state->objects;
    m_lastPlan = plan;
    // The objects of a document that is closed meanwhile are not kept alive.
    DocumentState without = *plan.state;
    without.objects.reset();
    m_lastPlan.state = std::make_shared<const DocumentState>(std::move(without));
    return m_lastEstimate;
}

} // namespace sim

// SPDX-License-Identifier: MIT
#include "bench/multidoc/runrecorder.h"

#include "bench/multidoc/plates.h"
#include "multidoc/multimarkthread.h"
#include "simengine/simcontrol.h"

namespace bench {

RunRecorder::RunRecorder(MultiMarkThread& worker, std::size_t most) {
    m_runs.resize(most);
    m_runs.clear();
    QObject::connect(
        &worker, &MultiMarkThread::markstatusChange, &worker,
        [this](int status, QString const& name) { told(status, name); }, Qt::DirectConnection);
}

std::size_t RunRecorder::begun() const {
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_runs.size();
}

std::size_t RunRecorder::ended() const {
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_ended;
}

std::vector<int> RunRecorder::runs() const {
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_runs;
}

std::size_t RunRecorder::wrong() const {
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_wrong;
}

bool RunRecorder::waitBegun(std::size_t count) {
    std::unique_lock<std::mutex> lock(m_lock);
    return m_changed.wait_for(lock, kPatience, [this, count] { return m_runs.size() >= count; });
}

bool RunRecorder::waitEnded(std::size_t count) {
    std::unique_lock<std::mutex> lock(m_lock);
    return m_changed.wait_for(lock, kPatience, [this, count] { return m_ended >= count; });
}

bool RunRecorder::waitIdle() {
    std::unique_lock<std::mutex> lock(m_lock);
    for (;;) {
        const std::size_t begun = m_runs.size();
        if (!m_changed.wait_for(lock, kPatience, [this, begun] { return m_ended >= begun; }))
            return false;
        const auto more = [this, begun] { return m_runs.size() > begun; };
        if (m_ended == begun && !m_changed.wait_for(lock, std::chrono::milliseconds(333), more))
            return true;
    }
}

void RunRecorder::hold(bool on) {
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_hold = on;
        m_let = 0;
    }
    m_changed.notify_all();
}

void RunRecorder::letOne() {
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        ++m_let;
    }
    m_changed.notify_all();
}

/// The head stands where the job ended until the next one, which cannot begin before this has returned.
void RunRecorder::told(int status, QString const& name) {
    std::unique_lock<std::mutex> lock(m_lock);
    if (status == MultiMarkMarking) {
        m_jobs = tessera_sim_control()->state().jobs;
        m_runs.push_back(documentOf(name));
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return !m_hold || m_let > 0; });
        m_let -= m_hold ? 1 : 0;
        return;
    }
    if (m_ended == m_runs.size())
        return;
    const sim::SimCardState state = tessera_sim_control()->state();
    m_wrong += state.jobs == m_jobs + 1 && documentAt(state.x) == m_runs.back() ? 0 : 1;
    ++m_ended;
    lock.unlock();
    m_changed.notify_all();
}

} // namespace bench

// SPDX-License-Identifier: MIT
#include "multidoc/markqueue.h"

#include <algorithm>

namespace tessera {

void MarkQueue::SetRunning(bool running) {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bRunning = running;
    }
    m_Changed.notify_all();
}

bool MarkQueue::IsRunning() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_bRunning;
}

bool MarkQueue::Add(QRulerView* view, std::string const& name) {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        if (std::any_of(m_Docs.begin(), m_Docs.end(), [&name](WaitingDoc const& doc) { return doc.name == name; }))
            return false;
        m_Docs.push_back({view, name});
    }
    m_Changed.notify_all();
    return true;
}

QRulerView* MarkQueue::Take(std::chrono::milliseconds longest) {
    std::unique_lock<std::mutex> lock(m_Lock);
    m_Changed.wait_for(lock, longest, [this] { return !m_Docs.empty() || !m_bRunning; });
    if (m_Docs.empty())
        return nullptr;
    m_Current = m_Docs.front();
    m_Docs.pop_front();
    m_bStopped = false;
    return m_Current.view;
}

void MarkQueue::Clear() {
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_Docs.clear();
}

std::size_t MarkQueue::Count() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_Docs.size();
}

bool MarkQueue::HasWork() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_bRunning && (m_Current.view || !m_Docs.empty());
}

bool MarkQueue::BeginUnlessStopped(std::function<void()> const& setRun) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    if (!m_bRunning || m_bStopped)
        return false;
    setRun();
    return true;
}

bool MarkQueue::IsWanted() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_bRunning && !m_bStopped;
}

void MarkQueue::Done() {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_Current = WaitingDoc();
    }
    m_Changed.notify_all();
}

void MarkQueue::StopCurrent() {
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_bStopped = true;
}

std::string MarkQueue::CurrentName() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_Current.name;
}

bool MarkQueue::Forget(QRulerView const* view) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_Docs.erase(
        std::remove_if(m_Docs.begin(), m_Docs.end(), [view](WaitingDoc const& doc) { return doc.view == view; }),
        m_Docs.end());
    if (!view || m_Current.view != view)
        return false;
    m_bStopped = true;
    return true;
}

void MarkQueue::WaitUntilDone(QRulerView const* view) const {
    std::unique_lock<std::mutex> lock(m_Lock);
    m_Changed.wait(lock, [this, view] { return m_Current.view != view; });
}

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "remote/remoterun.h"

namespace tessera {

bool RemoteRun::BeginUnlessStopped(std::function<void()> const& setRun) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    if (!m_bStopped)
        setRun();
    return !m_bStopped;
}

void RemoteRun::Stop() {
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_bStopped = true;
}

bool RemoteRun::IsStopped() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_bStopped;
}

void RemoteRun::End(bool result) {
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_bResult = result;
    m_bEnded = true;
}

bool RemoteRun::IsEnded() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_bEnded;
}

void RemoteRun::Leave() {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bEnded = true;
        m_bLeft = true;
    }
    m_Left.notify_all();
}

bool RemoteRun::HasLeft() const {
    const std::lock_guard<std::mutex> lock(m_Lock);
    return m_bLeft;
}

bool RemoteRun::Wait() const {
    std::unique_lock<std::mutex> lock(m_Lock);
    m_Left.wait(lock, [this] { return m_bLeft; });
    return m_bResult;
}

} // namespace tessera

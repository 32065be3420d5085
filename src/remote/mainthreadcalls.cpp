// SPDX-License-Identifier: MIT
#include "remote/mainthreadcalls.h"

#include <QMetaObject>
#include <QObject>
#include <QThread>
#include <algorithm>
#include <utility>

namespace tessera {

struct MainThreadCalls::Call {
    enum class State { Waiting, Begun, Done, Dropped };

    std::function<void()> work;
    State state = State::Waiting;
};

MainThreadCalls::MainThreadCalls(QObject* context)
    : m_pContext(context) {}

MainThreadCalls::~MainThreadCalls() {
    Close();
}

bool MainThreadCalls::Run(std::function<void()> work) {
    if (QThread::currentThread() == m_pContext->thread()) {
        work();
        return true;
    }
    const auto call = std::make_shared<Call>();
    call->work = std::move(work);
    std::unique_lock<std::mutex> lock(m_Lock);
    if (!m_bOpen)
        return false;
    m_Waiting.push_back(call);
    QMetaObject::invokeMethod(
        m_pContext, [this, call] { Do(*call); }, Qt::QueuedConnection);
    m_Changed.wait(lock, [&call] { return call->state == Call::State::Done || call->state == Call::State::Dropped; });
    return call->state == Call::State::Done;
}

void MainThreadCalls::Open() {
    const std::lock_guard<std::mutex> lock(m_Lock);
    m_bOpen = true;
}

void MainThreadCalls::Close() {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        m_bOpen = false;
        for (std::shared_ptr<Call> const& call : m_Waiting)
            call->state = Call::State::Dropped;
        m_Waiting.clear();
    }
    m_Changed.notify_all();
}

void MainThreadCalls::Do(Call& call) {
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        if (call.state != Call::State::Waiting)
            return;
        call.state = Call::State::Begun;
        m_Waiting.erase(std::remove_if(m_Waiting.begin(), m_Waiting.end(),
                                       [&call](std::shared_ptr<Call> const& one) { return one.get() == &call; }),
                        m_Waiting.end());
    }
    call.work();
    {
        const std::lock_guard<std::mutex> lock(m_Lock);
        call.state = Call::State::Done;
    }
    m_Changed.notify_all();
}

} // namespace tessera

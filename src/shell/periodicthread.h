// SPDX-License-Identifier: MIT
#pragma once

#include <QThread>
#include <condition_variable>
#include <mutex>

namespace tessera {

/// A thread that does its work at a period until it is told to end. A call to end it only leaves word; Finish() waits.
class PeriodicThread : public QThread {
    Q_OBJECT
public:
    /// `periodMs` is the pause between two turns.
    explicit PeriodicThread(int periodMs);
    /// A derived class calls Finish() in its own destructor, as its work must not outlive it.
    ~PeriodicThread() override;

    /// Leaves word and waits for the turn under way, also when the thread has only just been started.
    void Finish();

protected:
    virtual void Turn() = 0;
    /// Leaves word to end, or takes it back before a new start.
    void SetEnd(bool end);
    void run() override;

private:
    void SetFlag(bool& flag, bool on);

    std::mutex m_Lock;
    std::condition_variable m_Wake;
    bool m_bEnd = false;
    bool m_bFinishing = false; ///< somebody waits in Finish(): no run() goes on now, whatever it does to m_bEnd
    int const m_nPeriodMs;
};

} // namespace tessera

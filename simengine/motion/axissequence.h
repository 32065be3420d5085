// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/axismovestruct.h"
#include "engine/class_cardpara.h"

#include <QVector>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace sim {

/// Carries out requests in list order on a thread of its own. One without Wait runs beside those that follow it; all
/// have ended when the sequence ends.
class AxisSequence {
public:
    /// `ended` is called on the sequence's thread with the result, last of all.
    AxisSequence(QVector<AxisMoveStruct> const& list, Class_CardPara const& para, std::function<void(bool)> ended);
    /// Cancels and waits for the end.
    ~AxisSequence();
    AxisSequence(AxisSequence const&) = delete;
    AxisSequence& operator=(AxisSequence const&) = delete;

    /// Begins no further request and stops the axes of the list. Any thread.
    void cancel();

private:
    void run();
    bool runAll();
    void giveHomeDoneSignal();

    QVector<AxisMoveStruct> const m_list;
    Class_CardPara const m_para;
    std::function<void(bool)> const m_ended;
    std::atomic<bool> m_cancelled{false};
    std::mutex m_lock; ///< for m_wake alone
    std::condition_variable m_wake;
    std::thread m_thread;
};

} // namespace sim

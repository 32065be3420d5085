// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/cardcore.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <thread>

namespace sim {

/// How a signal of a job's end is taken back.
enum class EndSignalClear { Block = 0, NextRun = 1, Acknowledge = 2, Thread = 3 };

/// The end signal as it is set; output and input numbers 0 to 31, times in ms of the machine.
struct EndSignalSettings {
    bool enable = false;
    int output = -1;
    bool level = true; ///< of the output while the signal is given
    EndSignalClear clear = EndSignalClear::Block;
    int duration = 0;
    int ackInput = 0;
    bool ackLevel = true;
    int ackTimeout = 0;
    bool selfCheck = false; ///< the signal is read back
    bool afterStop = false; ///< a stopped job gives it too
};

/// The settings that IOOutputSet holds now.
EndSignalSettings currentEndSignal();

/// What became of the signal of one job.
enum class EndSignalResult { NotGiven, Given, NotReadBack, NotAcknowledged };

/// Gives the signal at the end of jobs and takes it back. Calls from any thread; waits follow the machine's speed and
/// end early when the card is closed or a stop comes. As fast as possible a duration is no time at all, but the plant
/// that acknowledges has its time-out on the wall's clock. The closing of the card takes back what a duration or an
/// acknowledge would have taken back: a closed card could not do it any more.
class EndSignal {
public:
    explicit EndSignal(CardCore& card);
    /// A signal that its thread would take back later is taken back now.
    ~EndSignal();
    EndSignal(const EndSignal&) = delete;
    EndSignal& operator=(const EndSignal&) = delete;

    /// Takes back what the last job left with EndSignalClear::NextRun.
    void runBegins();
    /// Blocks as the settings say, if need be until a stop. The one that ended the job is none, one that came too late
    /// for the job is.
    EndSignalResult runEnded(EndSignalSettings const& settings, RunResult const& result);

private:
    using Clock = std::chrono::steady_clock;

    /// A signal that is given until its time or its acknowledge comes.
    struct Standing {
        bool restLevel = false;
        std::uint64_t number = 0;
    };

    bool write(int output, bool level);
    std::uint64_t give(EndSignalSettings const& settings);
    void takeBack(int output, std::uint64_t number);
    void cardClosed();
    void clearLater(EndSignalSettings const& settings, std::uint64_t number);
    void clearThread();
    /// Waits until `done` or the time is over; true for `done`. A stop or the closing of the card ends it too.
    template<typename Done>
    bool wait(double ms, bool wallClock, std::uint64_t stopOrders, Done done);

    CardCore& m_card;
    std::mutex m_mutex; ///< guards all below
    std::condition_variable m_changed;
    std::uint64_t m_signals = 0;
    std::map<int, Standing> m_standing; ///< by output
    int m_nextRunOutput = -1;           ///< output to take back at the next run, -1 for none
    bool m_nextRunLevel = false;
    int m_laterOutput = -1; ///< likewise when m_laterAt comes
    std::uint64_t m_laterNumber = 0;
    Clock::time_point m_laterAt{};
    bool m_end = false;
    std::thread m_thread; ///< made with the first signal that needs it
};

/// The end signal of the one card.
EndSignal& cardEndSignal();

} // namespace sim

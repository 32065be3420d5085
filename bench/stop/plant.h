// SPDX-License-Identifier: MIT
#pragma once

#include "engine/marktypes.h"
#include "simengine/simcontrol.h"

#include <QObject>
#include <atomic>
#include <cstdint>
#include <random>

namespace bench {

/// An input whose edge ends the job or holds it.
struct Kind {
    char const* title;
    char const* function; ///< key of the input function
    int input;
    bool pauses; ///< with doors set to hold the job
};

constexpr Kind kKinds[] = {
    {"stop input", "终止", 2, false},
    {"ready", "机台就绪", 6, false},
    {"door 1", "机台安全门1", 7, false},
    {"door 2", "机台安全门2", 8, false},
    {"door 3", "机台安全门3", 9, false},
    {"door 4", "机台安全门4", 10, false},
    {"door 5", "机台安全门5", 11, false},
    {"light curtain", "安全光栅", 12, false},
    {"emergency stop", "急停按钮", 13, false},
    {"laser alarm", "激光器报警", 14, false},
    {"chiller alarm", "水冷机报警", 15, false},
    {"door 1, pausing", "机台安全门1", 7, true},
    {"door 2, pausing", "机台安全门2", 8, true},
    {"door 3, pausing", "机台安全门3", 9, true},
    {"door 4, pausing", "机台安全门4", 10, true},
    {"door 5, pausing", "机台安全门5", 11, true},
    {"light curtain, pausing", "安全光栅", 12, true},
};

/// The machine around the program, on a thread of its own. It has real-time priority where it may, above the program's
/// threads: the computer's load does not make a door's switch come late.
class Plant {
public:
    explicit Plant(sim::SimControl& machine);
    ~Plant();
    Plant(Plant const&) = delete;
    Plant& operator=(Plant const&) = delete;

    /// Wires the functions of all kinds. Main thread, before the window is made.
    static void wire();
    /// Takes the priority for the calling thread. False when the system does not grant it.
    static bool aboveTheProgram();

    /// Waits until the last edge of the kind's input is over and starts a job that does not end by itself.
    bool startJob(Kind const& kind);
    /// An edge at any moment between two polls, held until the card is told to stop or pause, two poll periods at
    /// most. Gives the ms from the edge to that call; below 0 when none came.
    double edge(Kind const& kind);
    /// Why no call came for the last edge.
    enum class Loss {
        NoBeat, ///< the thread that gives the beat did not run while the edge lasted: the computer itself stood still
        NoPoll, ///< the beat was given and the main thread had not handled it when the edge was over
        NoStop, ///< a poll has looked at the input and nothing followed
    };
    Loss lossOfLastEdge() const;
    /// Ends the job, if it goes on. The inputs are low.
    void endJob();

private:
    double answer(Kind const& kind, std::uint64_t since) const;
    double waitAnswer(Kind const& kind, std::uint64_t since, int limitMs) const;

    sim::SimControl& m_machine;
    std::mt19937 m_random{20261};
    QMetaObject::Connection m_beat;
    QMetaObject::Connection m_poll;
    std::atomic<int> m_beats{0};
    std::atomic<int> m_polls{0};
    bool m_beatWaited = false;
    int m_beatsOfEdge = 0;
    int m_pollsOfEdge = 0;
};

} // namespace bench

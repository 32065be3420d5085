// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/deviceclock.h"
#include "simengine/card/faults.h"

#include <array>
#include <cstdint>
#include <functional>
#include <mutex>

namespace sim {

/// What the card keeps of the beam splitter.
struct SplitterStore {
    std::array<int, 4> positions{10000, 25000, 40000, 55000}; ///< mirror place of each light path, 0 to 65535
    int delayMs = 10;                                         ///< time a path needs to settle
    std::uint32_t parameters = 30;                            ///< word of the command 0x4855, see docs/simulator.md
};

/// The beam splitter on the card's command channel: a mirror that sends the beam down one of four light paths. It goes
/// at ten counts a millisecond for each step of its speed, settles, and then its path is in use. Times are those of the
/// simulated clock. The fault "splitter_link" takes the link away. "splitter_stuck" holds the mirror where it is, also
/// one that is under way; when it is over the mirror goes to where it was sent last. All calls from any thread.
class BeamSplitter {
public:
    static constexpr int kPaths = 4;
    static constexpr int kLast = 65535; ///< the mirror's farthest place
    static constexpr int kCards = 4;    ///< numbers that a card can have; 0 is the main card

    /// `emits` tells whether a job with the laser is marking.
    BeamSplitter(const DeviceClock& clock, FaultBank& faults, std::function<bool()> emits);
    ~BeamSplitter();
    BeamSplitter(const BeamSplitter&) = delete;
    BeamSplitter& operator=(const BeamSplitter&) = delete;

    /// Answers a command of the card; false for a code that is not the splitter's. A card that is not the main one
    /// takes no settings, places or moves.
    bool command(int code, int a, int b, int& out1, int& out2);

    /// False for a number outside 0 to 3.
    bool setCardNumber(int number);
    int cardNumber() const;
    void setStore(const SplitterStore& store);
    SplitterStore store() const;
    /// Called after a command changed what is kept, on that caller's thread.
    void setStoreListener(std::function<void(const SplitterStore&)> listener);

    /// Where the mirror is now.
    int mirror() const;
    /// Path, 1 to 4, on whose place the settled mirror stands; 0 on the way and elsewhere.
    int path() const;
    /// Time from one light path (0 to 3) to another, settling included, ms.
    double switchMs(int from, int to) const;
    bool isLinked() const { return !m_faults.isOn("splitter_link"); }

private:
    void store(int a, int b);
    void storePath(int a, int b);
    void move(int place);
    void stick();
    void rebase(double now);
    double place(double now) const;
    double arrival() const;
    int pathAt(double now) const;
    std::uint32_t status(int index, double now, bool emits) const;
    double countsPerMs() const;
    void tell();

    const DeviceClock& m_clock;
    FaultBank& m_faults;
    const std::function<bool()> m_emits;
    mutable std::mutex m_mutex; ///< guards all below
    SplitterStore m_store;
    std::function<void(const SplitterStore&)> m_listener;
    int m_number = 0;
    bool m_stuck = false;
    double m_from = 10000.0;
    double m_to = 10000.0;      ///< where the mirror goes, or stands
    int m_planned = 10000;      ///< where it was sent
    double m_since = -1.0e9;    ///< at m_from
    double m_stuckEnd = -1.0e9; ///< when a mirror that is stuck was to be there
    int m_observer = 0;
};

} // namespace sim

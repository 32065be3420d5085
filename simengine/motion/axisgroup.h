// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/motion/axiscore.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>

namespace sim {

constexpr int kAxisCount = 8;

/// What AxisGroup gives of one axis at one time.
struct AxisSample {
    double position = 0.0; ///< by the counter
    double velocity = 0.0;
    double place = 0.0; ///< on the machine
    int state = 0;      ///< AxisStateBit
};

/// The axes of the machine on the clock. Every axis runs on its own time, which goes by the steady clock times the
/// simulator's speed factor; with the factor 0 a move is over at once, while a jog, which an operator ends, goes by the
/// steady clock. All calls from any thread; an axis number out of range gives false or nothing.
class AxisGroup {
public:
    using Wall = std::chrono::steady_clock::time_point;

    /// `speed` gives the simulator's factor; it is asked on the calling threads and must not call back.
    explicit AxisGroup(std::function<double()> speed);

    /// Nothing while the axis is homing.
    void configure(int axis, AxisConfig const& config);
    bool move(int axis, double target, double speed, double acc);
    bool jog(int axis, double signedSpeed, double acc);
    void stop(int axis);
    void stopAll();
    /// All axes stand still at once.
    void haltAll();
    /// As at power-on: all axes stand still, faults are gone.
    void resetAll();
    bool sample(int axis, AxisSample& out);
    bool setPosition(int axis, double position);
    void setDriverFault(int axis, bool fault);
    /// Takes over what is broken on the axis now.
    void setFaults(int axis, AxisFaults const& faults);
    /// Puts the carriage to a place of the machine, see AxisCore::putAt.
    void putAt(int axis, double place);
    /// The counter runs against the machine's direction.
    bool isReversed(int axis);
    /// Blocks until the axis stands still and has settled.
    void wait(int axis);

    /// One part of a homing, which has the axis for itself: move() and jog() of others are refused meanwhile, and a
    /// stop ends the homing.
    class Reservation {
    public:
        Reservation(AxisGroup& group, int axis);
        ~Reservation();
        Reservation(Reservation const&) = delete;
        Reservation& operator=(Reservation const&) = delete;

        /// False when the axis is not there or has another homing, and after a stop.
        bool isValid() const;
        void configure(AxisConfig const& config);
        /// Moves and waits; true when the axis has come to the target.
        bool move(double target, double speed, double acc);
        /// Searches and waits; nothing when the event was not met.
        std::optional<double> search(double signedSpeed, double acc, AxisEvent event);
        bool setHome(double position);
        /// Of the carriage, on the machine.
        double place();

    private:
        bool waitForRest(std::unique_lock<std::mutex>& guard);

        AxisGroup& m_group;
        int m_axis;
        bool m_has = false;
        std::uint64_t m_stops = 0;
    };

private:
    struct Channel {
        AxisCore core;
        Wall wall{};
        double time = 0.0; ///< s, belongs to `wall`
        double factor = 1.0;
        bool reserved = false;
        std::uint64_t stops = 0;
    };

    Channel* channel(int axis);
    double advance(Channel& channel);
    void waitForRest(Channel& channel, std::unique_lock<std::mutex>& guard);
    void stopChannel(Channel& channel);

    std::function<double()> m_speed;
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::array<Channel, kAxisCount> m_channels;
};

} // namespace sim

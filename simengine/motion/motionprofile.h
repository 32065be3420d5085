// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <optional>
#include <vector>

namespace sim {

struct MotionPoint {
    double pos = 0.0; ///< axis unit
    double vel = 0.0; ///< axis unit/s
};

/// Place over time of one axis in pieces of constant acceleration. Times in s from the start of the profile, positions
/// in the axis's unit. A plain value.
class MotionProfile {
public:
    /// Stands still at `pos`.
    explicit MotionProfile(double pos = 0.0)
        : m_end{pos, 0.0} {}

    /// To `target` and to rest there, at `speed` > 0 at most and with `acc` > 0 throughout, starting from `from`. An
    /// axis that moves the wrong way or too fast to stop in time brakes and comes back.
    static MotionProfile toPosition(MotionPoint from, double target, double speed, double acc);
    /// To `signedSpeed`, which it then keeps without end.
    static MotionProfile toSpeed(MotionPoint from, double signedSpeed, double acc);
    /// Brakes to rest.
    static MotionProfile toRest(MotionPoint from, double acc);

    /// Infinite for a profile that keeps its speed.
    double duration() const { return m_duration; }
    MotionPoint at(double time) const;

    /// First time from `after` on at which the axis passes `pos` in `direction` (+1 or -1).
    std::optional<double> crossing(double pos, int direction, double after = 0.0) const;

    /// Stands still from `time` on at `pos`, where the profile is then but for rounding.
    void haltAt(double time, double pos);
    /// Brakes with `acc` from `time` on.
    void brakeAt(double time, double acc);

private:
    struct Piece {
        double start;  ///< s
        double length; ///< s, infinite for the last piece of a profile that keeps its speed
        MotionPoint from;
        double acc; ///< signed
    };

    void append(double length, double acc);
    void appendMove(double distance, double speed, double acc);
    void cutAt(double time);

    std::vector<Piece> m_pieces;
    MotionPoint m_end; ///< where the last piece ends; rest, for a complete profile
    double m_duration = 0.0;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/motion/motionprofile.h"

#include <optional>

namespace sim {

/// The built machine of one axis, in its unit, as it stands: a carriage between two ends with its switches.
struct AxisMechanics {
    double negativeSwitch = -20.0; ///< limit switch pressed from here down
    double positiveSwitch = 220.0; ///< limit switch pressed from here up
    double overrun = 2.0;          ///< from a limit switch to the solid end
    double homeFrom = 0.0;         ///< home switch pressed between these two
    double homeTo = 5.0;
    double indexAt = 1.25; ///< one place of the encoder's index; the others lie a turn apart
    double powerOn = 60.0; ///< where the carriage stands at power-on
};

/// How the card treats the axis.
struct AxisConfig {
    bool limitEnable = true;
    bool limitReverse = false;
    bool driverAlarmEnable = false;
    bool driverReverse = false;
    bool pulseReverse = false; ///< the card's positive direction is the machine's negative
    bool softLimitEnable = false;
    double softLimitMin = 0.0;
    double softLimitMax = 0.0;
    double turn = 10.0; ///< axis unit a motor turn
    /// The counter follows an encoder on the carriage, else the pulses sent to the motor.
    bool externalEncoder = false;
    double settle = 0.0; ///< s that an axis is given to settle before it counts as stopped
};

/// What is broken on an axis, in the directions of the counter.
struct AxisFaults {
    bool driver = false;
    bool positiveLimit = false; ///< the limit switch is stuck, pressed
    bool negativeLimit = false;
    bool homeStuck = false; ///< the home switch is stuck, pressed
    bool homeDead = false;  ///< the home switch is never pressed; when it is not stuck
    bool slip = false;      ///< the coupling slips: motions that begin now move the motor and not the carriage
};

inline bool operator==(AxisFaults const& a, AxisFaults const& b) {
    return a.driver == b.driver && a.positiveLimit == b.positiveLimit && a.negativeLimit == b.negativeLimit &&
           a.homeStuck == b.homeStuck && a.homeDead == b.homeDead && a.slip == b.slip;
}

/// What a search runs for.
enum class AxisEvent { Limit, HomeOn, HomeOff, Index };

/// One simulated axis: place and switches as functions of the time given to each call, in s. The positive direction is
/// that of the card's counter; with pulseReverse the machine is mirrored. Not thread-safe, no clock of its own.
class AxisCore {
public:
    explicit AxisCore(AxisMechanics const& mechanics = {});

    /// A change of pulseReverse stops a running move: the machine's directions change under it.
    void configure(double now, AxisConfig const& config);
    AxisConfig const& config() const { return m_config; }

    /// Starts a move to `target`. False for a speed or acceleration that is not above 0, a target that is not finite or
    /// beyond the soft limits, a running move, a driver alarm, or a limit in the way at the start.
    bool move(double now, double target, double speed, double acc);
    /// Starts to jog or changes the speed of a running jog. False likewise.
    bool jog(double now, double signedSpeed, double acc);
    /// Runs at `signedSpeed` until the event, notes its place and brakes; gives up behind one and a half times the way
    /// between the ends. Soft limits do not count. False likewise.
    bool search(double now, double signedSpeed, double acc, AxisEvent event);
    /// Place of the event that the last search has met, by the counter.
    std::optional<double> found(double now) const;

    /// Brakes with the acceleration of the running move.
    void stop(double now);
    /// Stands still at once.
    void halt(double now);

    bool isMoving(double now) const { return now < endTime(); }
    /// Infinite for a jog without anything in its way.
    double endTime() const { return m_start + m_profile.duration(); }
    bool isJogging(double now) const { return isMoving(now) && m_mode == Mode::Jog; }
    /// By the counter, which counts from power-on or from the last setPosition.
    double position(double now) const;
    double velocity(double now) const { return pointAt(now).vel; }
    /// On the machine.
    double place(double now) const;
    int state(double now) const;

    void setPosition(double now, double position);
    void setHomed(bool homed) { m_homed = homed; }
    /// Fault of the driver; it stays until it is taken back.
    void setDriverFault(double now, bool fault);
    /// Takes over what is broken now. A limit switch that gets stuck halts the carriage on its way there, and is what a
    /// search for it finds; a search for a home switch whose fault changes ends without result.
    void setFaults(double now, AxisFaults const& faults);
    /// Power off and on: stands still, counter 0, not homed, no fault.
    void reset(double now);
    /// Puts the carriage to a place of the machine, as it was left when the power went; the counter is 0.
    void putAt(double now, double place);

private:
    enum class Mode { Idle, Move, Jog, Search, Braking };

    double mirrored(double value) const { return m_config.pulseReverse ? -value : value; }
    MotionPoint pointAt(double now) const;
    /// Of the motor, by the pulses sent.
    double pulsePlace(double now) const { return pointAt(now).pos; }
    /// Of the carriage, in counter direction.
    double axisPlace(double now) const { return m_slipping ? m_slipAt : pulsePlace(now) - m_lost; }
    double counterAt(double axisPlace) const;
    double pulsesFor(double now, double counter) const;
    void latchSlip(double now);
    double highSwitch() const;
    double lowSwitch() const;
    bool limitReads(double axisPlace, int direction) const;
    double homeLow() const;
    double homeHigh() const;
    bool homePressed(double axisPlace) const;
    bool alarmReads(double now) const;
    bool faulted(double now) const { return m_fault || now >= m_stallTime; }
    bool isBusy(double now, Mode wanted) const;
    bool canStart(double now, int direction, double speed, double acc) const;
    void begin(double now, MotionProfile const& profile, Mode mode, double acc);
    void obeyMachine(double after);
    bool beyondSoftLimit(double target) const;
    bool eventIsMet(double axisPlace, AxisEvent event, int direction) const;
    std::optional<double> eventPlace(double from, AxisEvent event, int direction) const;
    double nextIndex(double axisPlace, int direction) const;

    AxisMechanics m_mechanics;
    AxisConfig m_config;
    MotionProfile m_profile; ///< in counter direction, place 0 at the machine's 0
    double m_start = 0.0;
    double m_acc = 1.0; ///< of the running motion
    Mode m_mode = Mode::Idle;
    double m_offset = 0.0;        ///< counter minus motor's place
    double m_encoderOffset = 0.0; ///< counter minus carriage's place, with an encoder
    double m_lost = 0.0;          ///< motor's place minus carriage's
    double m_slipAt = 0.0;        ///< where the carriage stays
    bool m_slipping = false;      ///< the motion in progress does not move the carriage
    AxisFaults m_faults;
    AxisEvent m_searched = AxisEvent::Limit;
    int m_searchDirection = 1;
    std::optional<double> m_foundTime;
    double m_foundPlace = 0.0;
    double m_stallTime; ///< when the carriage runs into a solid end
    bool m_fault = false;
    bool m_homed = false;
};

} // namespace sim

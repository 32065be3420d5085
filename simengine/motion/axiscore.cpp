// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/motion/axiscore.h"

#include "simengine/motion/axisstate.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace sim {

namespace {

constexpr double kForever = std::numeric_limits<double>::infinity();

/// A search gives up behind this many times the way between the solid ends.
constexpr double kSearchRange = 1.5;

/// Rounding of places, axis unit: a move below it has no direction that a limit could bar.
constexpr double kSamePlace = 1e-9;

bool isRate(double value) {
    return std::isfinite(value) && value > 0.0;
}

} // namespace

AxisCore::AxisCore(AxisMechanics const& mechanics)
    : m_mechanics(mechanics)
    , m_profile(mechanics.powerOn)
    , m_offset(-mechanics.powerOn)
    , m_encoderOffset(-mechanics.powerOn)
    , m_stallTime(kForever) {}

void AxisCore::configure(double now, AxisConfig const& config) {
    if (config.pulseReverse != m_config.pulseReverse) {
        halt(now);
        double const counter = position(now);
        m_profile = MotionProfile(-axisPlace(now));
        m_start = now;
        m_lost = 0.0;
        m_slipping = false;
        m_offset = m_encoderOffset = counter - m_profile.at(0.0).pos;
        m_foundTime.reset();
    } else if (config.externalEncoder != m_config.externalEncoder) {
        // The display goes on where it is, whatever it counts from now on.
        double const counter = position(now);
        m_offset = counter - pulsePlace(now);
        m_encoderOffset = counter - axisPlace(now);
    }
    m_config = config;
}

double AxisCore::counterAt(double axisPlace) const {
    return axisPlace + (m_config.externalEncoder ? m_encoderOffset : m_lost + m_offset);
}

double AxisCore::pulsesFor(double now, double counter) const {
    return m_config.externalEncoder ? counter - m_encoderOffset + (pulsePlace(now) - axisPlace(now))
                                    : counter - m_offset;
}

/// Lets a fault of the coupling begin or end with a motion.
void AxisCore::latchSlip(double now) {
    double const carriage = axisPlace(now);
    m_lost = pulsePlace(now) - carriage;
    m_slipAt = carriage;
    m_slipping = m_faults.slip;
}

double AxisCore::highSwitch() const {
    return m_config.pulseReverse ? -m_mechanics.negativeSwitch : m_mechanics.positiveSwitch;
}

double AxisCore::lowSwitch() const {
    return m_config.pulseReverse ? -m_mechanics.positiveSwitch : m_mechanics.negativeSwitch;
}

double AxisCore::homeLow() const {
    return m_config.pulseReverse ? -m_mechanics.homeTo : m_mechanics.homeFrom;
}

double AxisCore::homeHigh() const {
    return m_config.pulseReverse ? -m_mechanics.homeFrom : m_mechanics.homeTo;
}

bool AxisCore::limitReads(double axisPlace, int direction) const {
    bool const stuck = direction > 0 ? m_faults.positiveLimit : m_faults.negativeLimit;
    bool const pressed = stuck || (direction > 0 ? axisPlace >= highSwitch() : axisPlace <= lowSwitch());
    return m_config.limitEnable && pressed != m_config.limitReverse;
}

bool AxisCore::homePressed(double axisPlace) const {
    if (m_faults.homeStuck || m_faults.homeDead)
        return m_faults.homeStuck;
    return axisPlace >= homeLow() && axisPlace <= homeHigh();
}

bool AxisCore::alarmReads(double now) const {
    return m_config.driverAlarmEnable && faulted(now) != m_config.driverReverse;
}

/// At the end of the profile the difference of the times may be short of its duration by rounding.
MotionPoint AxisCore::pointAt(double now) const {
    return m_profile.at(isMoving(now) ? now - m_start : kForever);
}

double AxisCore::position(double now) const {
    return m_config.externalEncoder ? axisPlace(now) + m_encoderOffset : pulsePlace(now) + m_offset;
}

double AxisCore::place(double now) const {
    return mirrored(axisPlace(now));
}

/// A move that has been told to stop may be followed by the next one before it has come to rest.
bool AxisCore::isBusy(double now, Mode wanted) const {
    if (!isMoving(now) || m_mode == Mode::Braking)
        return false;
    return m_mode != Mode::Jog || wanted != Mode::Jog;
}

bool AxisCore::canStart(double now, int direction, double speed, double acc) const {
    return isRate(speed) && isRate(acc) && !faulted(now) && !alarmReads(now) &&
           (direction == 0 || !limitReads(axisPlace(now), direction));
}

void AxisCore::begin(double now, MotionProfile const& profile, Mode mode, double acc) {
    latchSlip(now);
    m_profile = profile;
    m_start = now;
    m_mode = mode;
    m_acc = acc;
    m_foundTime.reset();
    obeyMachine(0.0);
}

/// Lets the switches and the solid ends of the machine act on the profile from `after` on.
void AxisCore::obeyMachine(double after) {
    if (m_stallTime >= m_start + after)
        m_stallTime = kForever;
    if (m_slipping)
        return; // the carriage meets nothing
    std::optional<double> first;
    double where = 0.0;
    bool stalls = false;
    auto const take = [&](std::optional<double> const& time, double pos, bool solid) {
        if (time && (!first || *time < *first)) {
            first = time;
            where = pos;
            stalls = solid;
        }
    };
    if (m_config.limitEnable && !m_config.limitReverse) {
        take(m_profile.crossing(highSwitch() + m_lost, 1, after), highSwitch() + m_lost, false);
        take(m_profile.crossing(lowSwitch() + m_lost, -1, after), lowSwitch() + m_lost, false);
    }
    double const highEnd = highSwitch() + m_mechanics.overrun + m_lost;
    double const lowEnd = lowSwitch() - m_mechanics.overrun + m_lost;
    take(m_profile.crossing(highEnd, 1, after), highEnd, true);
    take(m_profile.crossing(lowEnd, -1, after), lowEnd, true);
    if (!first)
        return;
    m_profile.haltAt(*first, where);
    if (stalls)
        m_stallTime = m_start + *first;
}

bool AxisCore::beyondSoftLimit(double target) const {
    return m_config.softLimitEnable && m_config.softLimitMin < m_config.softLimitMax &&
           (target < m_config.softLimitMin || target > m_config.softLimitMax);
}

bool AxisCore::move(double now, double target, double speed, double acc) {
    double const to = pulsesFor(now, target);
    double const from = pulsePlace(now);
    int const direction = std::fabs(to - from) < kSamePlace ? 0 : to > from ? 1 : -1;
    if (!std::isfinite(target) || beyondSoftLimit(target) || isBusy(now, Mode::Move) ||
        !canStart(now, direction, speed, acc))
        return false;
    begin(now, MotionProfile::toPosition(pointAt(now), to, speed, acc), Mode::Move, acc);
    return true;
}

bool AxisCore::jog(double now, double signedSpeed, double acc) {
    int const direction = signedSpeed < 0.0 ? -1 : 1;
    double const speed = std::fabs(signedSpeed);
    if (isBusy(now, Mode::Jog) || !canStart(now, direction, speed, acc))
        return false;
    MotionPoint const from = pointAt(now);
    if (m_config.softLimitEnable && m_config.softLimitMin < m_config.softLimitMax) {
        double const bound = pulsesFor(now, direction > 0 ? m_config.softLimitMax : m_config.softLimitMin);
        if ((bound - from.pos) * direction <= 0.0)
            return false;
        begin(now, MotionProfile::toPosition(from, bound, speed, acc), Mode::Jog, acc);
    } else {
        begin(now, MotionProfile::toSpeed(from, signedSpeed, acc), Mode::Jog, acc);
    }
    return true;
}

bool AxisCore::eventIsMet(double axisPlace, AxisEvent event, int direction) const {
    switch (event) {
    case AxisEvent::Limit:
        return limitReads(axisPlace, direction);
    case AxisEvent::HomeOn:
        return homePressed(axisPlace);
    case AxisEvent::HomeOff:
        return !homePressed(axisPlace);
    case AxisEvent::Index:
        break;
    }
    return false;
}

/// The first index place behind `axisPlace`; the one under the carriage has gone by.
double AxisCore::nextIndex(double axisPlace, int direction) const {
    double const turn = isRate(m_config.turn) ? m_config.turn : 1.0;
    double const turns = (axisPlace - mirrored(m_mechanics.indexAt)) / turn;
    double const next = direction > 0 ? std::floor(turns + 1e-6) + 1.0 : std::ceil(turns - 1e-6) - 1.0;
    return mirrored(m_mechanics.indexAt) + next * turn;
}

/// Where a carriage that comes from `from` meets the event; nothing for a limit switch that is not read.
std::optional<double> AxisCore::eventPlace(double from, AxisEvent event, int direction) const {
    switch (event) {
    case AxisEvent::Limit:
        if (!m_config.limitEnable || m_config.limitReverse)
            return std::nullopt;
        return direction > 0 ? highSwitch() : lowSwitch();
    case AxisEvent::HomeOn:
    case AxisEvent::HomeOff:
        if (m_faults.homeStuck || m_faults.homeDead)
            return std::nullopt;
        return (event == AxisEvent::HomeOn) == (direction > 0) ? homeLow() : homeHigh();
    case AxisEvent::Index:
        break;
    }
    return nextIndex(from, direction);
}

bool AxisCore::search(double now, double signedSpeed, double acc, AxisEvent event) {
    int const direction = signedSpeed < 0.0 ? -1 : 1;
    if (isMoving(now) || !canStart(now, 0, std::fabs(signedSpeed), acc))
        return false;
    m_searched = event;
    m_searchDirection = direction;
    double const from = axisPlace(now);
    double const pulses = pulsePlace(now);
    if (eventIsMet(from, event, direction)) {
        begin(now, MotionProfile(pulses), Mode::Search, acc);
        m_foundTime = now;
        m_foundPlace = from;
        return true;
    }
    if (limitReads(from, direction))
        return false;
    MotionProfile profile = MotionProfile::toSpeed({pulses, 0.0}, signedSpeed, acc);
    std::optional<double> const met = m_faults.slip ? std::nullopt : eventPlace(from, event, direction);
    double const place = met.value_or(0.0);
    double const meeting = met ? profile.crossing(place + (pulses - from), direction).value_or(kForever) : kForever;
    double const range = kSearchRange * (highSwitch() - lowSwitch() + 2.0 * m_mechanics.overrun);
    double const givingUp = profile.crossing(pulses + direction * range, direction).value_or(kForever);
    profile.brakeAt(std::min(meeting, givingUp), acc);
    begin(now, profile, Mode::Search, acc);
    if (meeting < givingUp && meeting <= m_profile.duration()) {
        m_foundTime = now + meeting;
        m_foundPlace = place;
    }
    return true;
}

std::optional<double> AxisCore::found(double now) const {
    if (!m_foundTime || now < *m_foundTime)
        return std::nullopt;
    return counterAt(m_foundPlace);
}

void AxisCore::stop(double now) {
    if (!isMoving(now))
        return;
    double const time = now - m_start;
    if (m_foundTime && *m_foundTime > now)
        m_foundTime.reset();
    m_profile.brakeAt(time, m_acc);
    m_mode = Mode::Braking;
    obeyMachine(time);
}

void AxisCore::halt(double now) {
    if (!isMoving(now))
        return;
    if (m_foundTime && *m_foundTime > now)
        m_foundTime.reset();
    if (m_stallTime > now)
        m_stallTime = kForever;
    m_profile.haltAt(now - m_start, pulsePlace(now));
    m_mode = Mode::Idle;
}

int AxisCore::state(double now) const {
    double const place = axisPlace(now);
    bool const moving = isMoving(now);
    bool const soft = m_config.softLimitEnable && m_config.softLimitMin < m_config.softLimitMax;
    double const counter = position(now);
    int word = 0;
    auto const put = [&word](bool on, AxisStateBit bit) { word |= on ? bit : 0; };
    put(moving, AxisMoving);
    put(alarmReads(now), AxisDriverAlarm);
    put(limitReads(place, 1), AxisPositiveLimit);
    put(limitReads(place, -1), AxisNegativeLimit);
    put(homePressed(place), AxisHomeSwitch);
    put(m_homed, AxisHomed);
    put(isJogging(now), AxisJogging);
    put(soft && counter >= m_config.softLimitMax, AxisPositiveSoftLimit);
    put(soft && counter <= m_config.softLimitMin, AxisNegativeSoftLimit);
    return word;
}

void AxisCore::setPosition(double now, double position) {
    if (!std::isfinite(position))
        return;
    m_offset = position - pulsePlace(now);
    m_encoderOffset = position - axisPlace(now);
}

void AxisCore::setDriverFault(double now, bool fault) {
    if (fault)
        halt(now);
    else
        m_stallTime = kForever;
    m_fault = fault;
}

void AxisCore::setFaults(double now, AxisFaults const& faults) {
    AxisFaults const before = m_faults;
    if (faults == before)
        return;
    m_faults = faults;
    if (faults.driver != before.driver)
        setDriverFault(now, faults.driver);
    if (!isMoving(now))
        return;
    double const place = axisPlace(now);
    double const speed = velocity(now);
    bool const searches = m_mode == Mode::Search;
    if (speed != 0.0 && limitReads(place, speed > 0.0 ? 1 : -1)) {
        halt(now);
        if (searches && m_searched == AxisEvent::Limit && (speed > 0.0) == (m_searchDirection > 0) && !m_foundTime) {
            m_foundTime = now;
            m_foundPlace = place;
        }
        return;
    }
    bool const homeChanged = faults.homeStuck != before.homeStuck || faults.homeDead != before.homeDead;
    if (searches && homeChanged && (m_searched == AxisEvent::HomeOn || m_searched == AxisEvent::HomeOff))
        stop(now);
}

void AxisCore::reset(double now) {
    halt(now);
    putAt(now, place(now));
    m_stallTime = kForever;
    m_fault = false;
    m_faults = {};
}

void AxisCore::putAt(double now, double place) {
    if (!std::isfinite(place))
        return;
    double const inside = mirrored(std::clamp(place, m_mechanics.negativeSwitch - m_mechanics.overrun,
                                              m_mechanics.positiveSwitch + m_mechanics.overrun));
    m_profile = MotionProfile(inside);
    m_start = now;
    m_mode = Mode::Idle;
    m_lost = 0.0;
    m_slipping = false;
    m_offset = m_encoderOffset = -inside;
    m_foundTime.reset();
    m_stallTime = kForever;
    m_homed = false;
}

} // namespace sim

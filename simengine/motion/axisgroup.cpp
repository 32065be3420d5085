// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/motion/axisgroup.h"

#include "simengine/motion/axisstate.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// Longest sleep of a waiting thread: nobody tells the axes that the speed factor has changed.
constexpr std::chrono::milliseconds kLongestWait{50};
constexpr double kAtTarget = 1e-6; ///< axis unit

} // namespace

AxisGroup::AxisGroup(std::function<double()> speed)
    : m_speed(std::move(speed)) {
    Wall const now = std::chrono::steady_clock::now();
    for (Channel& one : m_channels)
        one.wall = now;
}

AxisGroup::Channel* AxisGroup::channel(int axis) {
    return axis >= 0 && axis < kAxisCount ? &m_channels[static_cast<std::size_t>(axis)] : nullptr;
}

/// Brings the axis's time up to the steady clock and gives it.
double AxisGroup::advance(Channel& channel) {
    Wall const wall = std::chrono::steady_clock::now();
    double const elapsed = std::chrono::duration<double>(wall - channel.wall).count();
    double const factor = m_speed();
    if (channel.factor > 0.0) {
        channel.time += elapsed * channel.factor;
    } else {
        channel.time += elapsed;
        if (!channel.core.isJogging(channel.time))
            channel.time = std::max(channel.time, channel.core.endTime());
    }
    channel.wall = wall;
    channel.factor = factor;
    return channel.time;
}

void AxisGroup::configure(int axis, AxisConfig const& config) {
    std::lock_guard<std::mutex> guard(m_lock);
    Channel* one = channel(axis);
    if (one && !one->reserved)
        one->core.configure(advance(*one), config);
}

bool AxisGroup::move(int axis, double target, double speed, double acc) {
    std::lock_guard<std::mutex> guard(m_lock);
    Channel* one = channel(axis);
    return one && !one->reserved && one->core.move(advance(*one), target, speed, acc);
}

bool AxisGroup::jog(int axis, double signedSpeed, double acc) {
    std::lock_guard<std::mutex> guard(m_lock);
    Channel* one = channel(axis);
    return one && !one->reserved && one->core.jog(advance(*one), signedSpeed, acc);
}

void AxisGroup::stopChannel(Channel& channel) {
    channel.core.stop(advance(channel));
    ++channel.stops;
}

void AxisGroup::stop(int axis) {
    std::lock_guard<std::mutex> guard(m_lock);
    if (Channel* one = channel(axis))
        stopChannel(*one);
    m_changed.notify_all();
}

void AxisGroup::stopAll() {
    std::lock_guard<std::mutex> guard(m_lock);
    for (Channel& one : m_channels)
        stopChannel(one);
    m_changed.notify_all();
}

void AxisGroup::haltAll() {
    std::lock_guard<std::mutex> guard(m_lock);
    for (Channel& one : m_channels) {
        one.core.halt(advance(one));
        ++one.stops;
    }
    m_changed.notify_all();
}

void AxisGroup::resetAll() {
    std::lock_guard<std::mutex> guard(m_lock);
    for (Channel& one : m_channels) {
        one.core.reset(advance(one));
        ++one.stops;
    }
    m_changed.notify_all();
}

bool AxisGroup::sample(int axis, AxisSample& out) {
    std::lock_guard<std::mutex> guard(m_lock);
    Channel* one = channel(axis);
    if (!one)
        return false;
    double const now = advance(*one);
    out = {one->core.position(now), one->core.velocity(now), one->core.place(now), one->core.state(now)};
    return true;
}

bool AxisGroup::setPosition(int axis, double position) {
    std::lock_guard<std::mutex> guard(m_lock);
    Channel* one = channel(axis);
    if (!one || !std::isfinite(position))
        return false;
    one->core.setPosition(advance(*one), position);
    return true;
}

void AxisGroup::setDriverFault(int axis, bool fault) {
    std::lock_guard<std::mutex> guard(m_lock);
    if (Channel* one = channel(axis))
        one->core.setDriverFault(advance(*one), fault);
    m_changed.notify_all();
}

void AxisGroup::setFaults(int axis, AxisFaults const& faults) {
    std::lock_guard<std::mutex> guard(m_lock);
    if (Channel* one = channel(axis))
        one->core.setFaults(advance(*one), faults);
    m_changed.notify_all();
}

void AxisGroup::putAt(int axis, double place) {
    std::lock_guard<std::mutex> guard(m_lock);
    Channel* one = channel(axis);
    if (!one || one->reserved)
        return;
    one->core.putAt(advance(*one), place);
    ++one->stops;
    m_changed.notify_all();
}

bool AxisGroup::isReversed(int axis) {
    std::lock_guard<std::mutex> guard(m_lock);
    Channel const* one = channel(axis);
    return one && one->core.config().pulseReverse;
}

void AxisGroup::waitForRest(Channel& channel, std::unique_lock<std::mutex>& guard) {
    for (;;) {
        double const now = advance(channel);
        if (!channel.core.isMoving(now))
            return;
        std::chrono::duration<double> left(kLongestWait);
        double const pace = channel.factor > 0.0 ? channel.factor : 1.0;
        left = std::min(left, std::chrono::duration<double>((channel.core.endTime() - now) / pace));
        // A microsecond on top: the clock must have passed the end when the thread looks again.
        m_changed.wait_for(guard, left + std::chrono::microseconds(1));
    }
}

void AxisGroup::wait(int axis) {
    std::unique_lock<std::mutex> guard(m_lock);
    Channel* one = channel(axis);
    if (!one)
        return;
    waitForRest(*one, guard);
    std::uint64_t const stops = one->stops;
    while (one->stops == stops) {
        double const left = one->core.endTime() + one->core.config().settle - advance(*one);
        // Without pace a machine needs no time to settle; a new move ends the waiting for this one.
        if (!(left > 0.0) || one->factor <= 0.0 || left > one->core.config().settle)
            return;
        m_changed.wait_for(guard, std::min(std::chrono::duration<double>(kLongestWait),
                                           std::chrono::duration<double>(left / one->factor)) +
                                      std::chrono::microseconds(1));
    }
}

AxisGroup::Reservation::Reservation(AxisGroup& group, int axis)
    : m_group(group)
    , m_axis(axis) {
    std::lock_guard<std::mutex> guard(group.m_lock);
    Channel* one = group.channel(axis);
    if (!one || one->reserved)
        return;
    one->reserved = true;
    m_stops = one->stops;
    m_has = true;
}

AxisGroup::Reservation::~Reservation() {
    std::lock_guard<std::mutex> guard(m_group.m_lock);
    if (m_has)
        m_group.channel(m_axis)->reserved = false;
}

bool AxisGroup::Reservation::isValid() const {
    std::lock_guard<std::mutex> guard(m_group.m_lock);
    return m_has && m_group.channel(m_axis)->stops == m_stops;
}

void AxisGroup::Reservation::configure(AxisConfig const& config) {
    std::lock_guard<std::mutex> guard(m_group.m_lock);
    if (!m_has)
        return;
    Channel& one = *m_group.channel(m_axis);
    one.core.configure(m_group.advance(one), config);
}

/// False when a stop has come in between.
bool AxisGroup::Reservation::waitForRest(std::unique_lock<std::mutex>& guard) {
    Channel& one = *m_group.channel(m_axis);
    m_group.waitForRest(one, guard);
    return one.stops == m_stops;
}

bool AxisGroup::Reservation::move(double target, double speed, double acc) {
    std::unique_lock<std::mutex> guard(m_group.m_lock);
    if (!m_has)
        return false;
    Channel& one = *m_group.channel(m_axis);
    if (!waitForRest(guard) || !one.core.move(m_group.advance(one), target, speed, acc) || !waitForRest(guard))
        return false;
    return std::fabs(one.core.position(m_group.advance(one)) - target) < kAtTarget;
}

std::optional<double> AxisGroup::Reservation::search(double signedSpeed, double acc, AxisEvent event) {
    std::unique_lock<std::mutex> guard(m_group.m_lock);
    if (!m_has)
        return std::nullopt;
    Channel& one = *m_group.channel(m_axis);
    if (!waitForRest(guard) || !one.core.search(m_group.advance(one), signedSpeed, acc, event) || !waitForRest(guard))
        return std::nullopt;
    return one.core.found(m_group.advance(one));
}

double AxisGroup::Reservation::place() {
    std::lock_guard<std::mutex> guard(m_group.m_lock);
    if (!m_has)
        return 0.0;
    Channel& one = *m_group.channel(m_axis);
    return one.core.place(m_group.advance(one));
}

bool AxisGroup::Reservation::setHome(double position) {
    std::lock_guard<std::mutex> guard(m_group.m_lock);
    if (!m_has || m_group.channel(m_axis)->stops != m_stops)
        return false;
    Channel& one = *m_group.channel(m_axis);
    one.core.setPosition(m_group.advance(one), position);
    one.core.setHomed(true);
    return true;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/lasers/laserlines.h"

#include <algorithm>

namespace sim {

namespace {

constexpr int kShutterOut = 23;
constexpr int kRemoteStartOut = 26;
constexpr std::uint32_t kLine22 = 1u << 22;
constexpr std::uint32_t kLine23 = 1u << 23;

} // namespace

LaserLines::LaserLines(IoBank& io, FaultBank& faults, const DeviceClock& clock)
    : m_io(io)
    , m_faults(faults)
    , m_clock(clock) {
    m_listener = m_io.addOutputListener([this](int bit, bool on, std::uint32_t) { follow(bit, on); });
    m_io.setInputDevice(this);
}

LaserLines::~LaserLines() {
    m_io.setInputDevice(nullptr);
    m_io.removeOutputListener(m_listener);
}

void LaserLines::fit(LaserKind kind) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (kind == m_kind)
        return;
    m_kind = kind;
    const double time = now();
    m_shutter = {m_io.output(kShutterOut), time};
    m_remote = {m_io.output(kRemoteStartOut), time};
}

LaserKind LaserLines::kind() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_kind;
}

void LaserLines::wireAlarm(const LaserAlarmWiring& wiring) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_alarm = LaserAlarmLines::of(wiring);
    if (m_resetOutput == wiring.resetOutput)
        return;
    m_resetOutput = wiring.resetOutput;
    m_resetOn = m_io.output(m_resetOutput);
}

std::uint32_t LaserLines::drivenInputs() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return answers() | alarms();
}

std::uint32_t LaserLines::alarms() const {
    if (m_faults.isOn("laser_temperature"))
        return m_alarm.temperature;
    return m_faults.isOn("laser_pd") ? m_alarm.photodiode : m_alarm.good;
}

std::uint32_t LaserLines::answers() const {
    switch (m_kind) {
    case LaserKind::Yls:
        return ylsLines(now());
    case LaserKind::Sn:
        return snLines(now());
    case LaserKind::Silent:
        break;
    }
    return 0;
}

void LaserLines::follow(int bit, bool on) {
    if (resets(bit, on)) {
        m_faults.set("laser_temperature", false);
        m_faults.set("laser_pd", false);
    }
    if (bit != kShutterOut && bit != kRemoteStartOut)
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    switchTo(bit == kShutterOut ? m_shutter : m_remote, on, now());
}

bool LaserLines::resets(int bit, bool on) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (bit != m_resetOutput)
        return false;
    const bool rises = on && !m_resetOn;
    m_resetOn = on;
    return rises;
}

/// A level that is written again does not begin anew.
void LaserLines::switchTo(Enable& enable, bool on, double now) {
    if (enable.on != on)
        enable = {on, now};
}

std::uint32_t LaserLines::ylsLines(double now) const {
    const bool enabled = m_shutter.on && m_remote.on;
    const bool ready = enabled && now - std::max(m_shutter.since, m_remote.since) >= kYlsReadyMs;
    return ready && !m_faults.isOn("laser_no_ready") ? 0 : kLine22;
}

std::uint32_t LaserLines::snLines(double now) const {
    const double readyAt = m_remote.since + kSnReadyMs;
    const bool ready = m_remote.on && now >= readyAt;
    const bool emits = ready && m_shutter.on && now >= std::max(m_shutter.since, readyAt) + kSnEmissionMs;
    std::uint32_t high = 0;
    if (!ready || m_faults.isOn("laser_no_ready"))
        high |= kLine23;
    if (!emits || m_faults.isOn("laser_no_emission"))
        high |= kLine22;
    return high;
}

} // namespace sim

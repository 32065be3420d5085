// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/flyencoder.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr double kFastestBelt = 10000.0; ///< mm/s
constexpr double kMostPulses = 100000.0; ///< a mm
constexpr double kLeastPeriodUs = 1.0;
/// The counter has 32 bits.
constexpr double kCounterSize = 4294967296.0;
constexpr double kCounterLow = -2147483648.0;

/// 0 for figures by which no head can follow.
double perMs(double pulsesPerMs, double pulsesPerMm) {
    const double mm = pulsesPerMs / pulsesPerMm;
    return std::isfinite(pulsesPerMm) && std::isfinite(mm) ? mm : 0.0;
}

} // namespace

void FlyEncoder::set(const FlySettings& settings) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    settle();
    m_settings = settings;
}

FlySettings FlyEncoder::settings() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_settings;
}

bool FlyEncoder::setBeltSpeed(double mmPerSecond) {
    if (!(std::abs(mmPerSecond) <= kFastestBelt))
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    settle();
    m_beltMmPerMs = mmPerSecond / 1000.0;
    return true;
}

double FlyEncoder::beltSpeed() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_beltMmPerMs * 1000.0;
}

bool FlyEncoder::setBeltPulses(double perMm) {
    if (!(std::abs(perMm) <= kMostPulses))
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    settle();
    m_beltPulses = perMm;
    return true;
}

double FlyEncoder::beltPulses() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_beltPulses;
}

void FlyEncoder::setCount(int count) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_base = count;
    m_since = m_clock.pacedMs();
}

int FlyEncoder::count() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    settle();
    // The upper half of a range beyond 31 bits shows as a count below 0, as a counter of 32 bits does.
    const auto counter = static_cast<std::uint32_t>(static_cast<std::int64_t>(std::floor(wrapped(m_base))));
    return static_cast<std::int32_t>(counter);
}

double FlyEncoder::pulsesPerMs() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_faults.isOn("encoder_stopped") ? 0.0 : rate();
}

FlyMotion FlyEncoder::motion() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    FlyMotion motion;
    if (!m_settings.enabled)
        return motion;
    const double pulses = m_faults.isOn("encoder_stopped") ? 0.0 : rate();
    motion.shift = {perMs(pulses, m_settings.pulsesPerMmX), perMs(pulses, m_settings.pulsesPerMmY)};
    motion.travel = {m_beltMmPerMs, 0.0};
    return motion;
}

/// Takes what was counted so far into the base. A fault that came or went since the last look counts from this one.
void FlyEncoder::settle() const {
    const double now = m_clock.pacedMs();
    if (!m_stopped)
        m_base = wrapped(m_base + rate() * (now - m_since));
    m_since = now;
    m_stopped = m_faults.isOn("encoder_stopped");
}

double FlyEncoder::rate() const {
    if (m_settings.outer)
        return (m_settings.outerReverse ? -1.0 : 1.0) * m_beltMmPerMs * m_beltPulses;
    if (!m_settings.innerEnabled)
        return 0.0;
    return (m_settings.innerReverse ? -1.0 : 1.0) * 1000.0 / std::max(kLeastPeriodUs, m_settings.innerPeriodUs);
}

double FlyEncoder::wrapped(double count) const {
    const double range = m_settings.rangeEnabled ? m_settings.rangeMm * m_settings.pulsesPerMm : 0.0;
    if (range >= 1.0 && range < kCounterSize)
        return count - std::floor(count / range) * range;
    return count - std::floor((count - kCounterLow) / kCounterSize) * kCounterSize;
}

} // namespace sim

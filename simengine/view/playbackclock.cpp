// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/playbackclock.h"

#include <algorithm>
#include <cmath>

namespace sim {

void PlaybackClock::setTotal(double us) {
    m_total = std::isfinite(us) ? std::max(0.0, us) : 0.0;
    m_now = 0.0;
    m_playing = false;
}

void PlaybackClock::play() {
    if (m_total <= 0.0)
        return;
    if (m_now >= m_total)
        m_now = 0.0;
    m_playing = true;
}

void PlaybackClock::seek(double us) {
    if (!std::isnan(us))
        m_now = std::clamp(us, 0.0, m_total);
}

void PlaybackClock::setSpeed(int speed) {
    if (std::find(kSpeeds.begin(), kSpeeds.end(), speed) != kSpeeds.end())
        m_speed = speed;
}

void PlaybackClock::advance(double wallUs) {
    if (!m_playing || !(wallUs > 0.0))
        return;
    seek(m_now + wallUs * m_speed);
    m_playing = m_now < m_total;
}

QString durationText(double ms) {
    const double whole = std::round(std::max(0.0, ms));
    constexpr double kSecond = 1000.0, kMinute = 60.0 * kSecond, kHour = 60.0 * kMinute;
    if (whole < kMinute)
        return QStringLiteral("%1 s").arg(whole / kSecond, 0, 'f', 3);
    const double hours = std::floor(whole / kHour);
    const int minutes = int(std::fmod(whole, kHour) / kMinute);
    const QString seconds = QStringLiteral("%1").arg(std::fmod(whole, kMinute) / kSecond, 6, 'f', 3, QLatin1Char('0'));
    if (hours < 1.0)
        return QStringLiteral("%1:%2").arg(minutes).arg(seconds);
    return QStringLiteral("%1:%2:%3").arg(hours, 0, 'f', 0).arg(minutes, 2, 10, QLatin1Char('0')).arg(seconds);
}

} // namespace sim

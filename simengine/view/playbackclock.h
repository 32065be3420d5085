// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <array>

namespace sim {

/// Where a playback is, and how it goes on. µs of the job.
class PlaybackClock {
public:
    static constexpr std::array<int, 5> kSpeeds{1, 2, 4, 8, 16};

    /// Another job: at its beginning, paused, as fast as before.
    void setTotal(double us);
    double total() const { return m_total; }
    double now() const { return m_now; }
    double left() const { return m_total - m_now; }
    bool isPlaying() const { return m_playing; }
    int speed() const { return m_speed; }

    /// Goes on, at the end from the beginning again. Nothing for a job without time.
    void play();
    void pause() { m_playing = false; }
    /// Goes to a time, playing or not; one outside the job is taken for its beginning or end.
    void seek(double us);
    /// One of kSpeeds; others change nothing.
    void setSpeed(int speed);
    /// So much time has passed on the wall. At the end it pauses.
    void advance(double wallUs);

private:
    double m_total = 0.0;
    double m_now = 0.0;
    int m_speed = 1;
    bool m_playing = false;
};

/// "12.345 s", from a minute on "2:05.678", from an hour on "1:02:05.678".
QString durationText(double ms);

} // namespace sim

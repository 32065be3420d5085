// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace tessera {

/// Keeps strangers who connect again and again from filling the disk with log lines: so many lines in a window of time,
/// the others are counted. Time is given. One thread.
class LogLimit {
public:
    using Time = std::chrono::steady_clock::time_point;

    LogLimit(int lines, std::chrono::milliseconds window)
        : m_lines(lines)
        , m_window(window) {}

    /// A line may be written now; else it counts as left out.
    bool allows(Time now) {
        if (now - m_begin >= m_window) {
            m_begin = now;
            m_written = 0;
        }
        if (m_written < m_lines) {
            ++m_written;
            return true;
        }
        ++m_leftOut;
        return false;
    }
    /// Lines left out since this was last asked; 0 while the window goes on.
    long long takeLeftOut(Time now) {
        if (now - m_begin < m_window)
            return 0;
        long long const count = m_leftOut;
        m_leftOut = 0;
        return count;
    }
    /// There are lines to be told of by takeLeftOut() at windowEnd().
    bool isHoldingBack() const { return m_leftOut > 0; }
    Time windowEnd() const { return m_begin + m_window; }

private:
    int const m_lines;
    std::chrono::milliseconds const m_window;
    Time m_begin{};
    int m_written = 0;
    long long m_leftOut = 0;
};

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace bench {

/// Period of the input poll.
constexpr int kPollMs = 30;

/// Times in ms and what is said of them.
class Distribution {
public:
    void add(double ms);
    void add(std::vector<double> const& ms);
    std::size_t count() const { return m_ms.size(); }
    double percentile(double share) const;
    /// The longest; 0 without any.
    double longest() const;
    /// How many fall into each bin of 5 ms, the last one taking all above.
    std::vector<int> bins() const;

    static constexpr int kBinMs = 5;
    static constexpr int kBins = 12;

private:
    mutable std::vector<double> m_ms;
    mutable bool m_sorted = true;
};

/// What was measured of one kind of edge.
struct Series {
    std::string title;
    Distribution answers; ///< edge to the card's call
    Distribution late;    ///< of a bare 30 ms timer beside it
    int lost = 0;
};

/// The figures and the histogram of both, side by side.
void print(Series const& series);
/// A line of the table at the end.
void printRow(Series const& series);

/// How late a bare thread wakes every 30 ms, for as long as the object lives.
class BareTimer {
public:
    BareTimer();
    ~BareTimer();
    std::vector<double> finish();

private:
    std::atomic<bool> m_end{false};
    std::vector<double> m_late;
    std::thread m_thread;
};

} // namespace bench

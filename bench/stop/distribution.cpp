// SPDX-License-Identifier: MIT
#include "bench/stop/distribution.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace bench {

void Distribution::add(double ms) {
    m_ms.push_back(ms);
    m_sorted = false;
}

void Distribution::add(std::vector<double> const& ms) {
    m_ms.insert(m_ms.end(), ms.begin(), ms.end());
    m_sorted = false;
}

double Distribution::percentile(double share) const {
    if (m_ms.empty())
        return 0.0;
    if (!m_sorted)
        std::sort(m_ms.begin(), m_ms.end());
    m_sorted = true;
    return m_ms[std::min(m_ms.size() - 1, static_cast<std::size_t>(share * static_cast<double>(m_ms.size())))];
}

double Distribution::longest() const {
    return percentile(1.0);
}

std::vector<int> Distribution::bins() const {
    std::vector<int> counts(kBins, 0);
    for (double value : m_ms)
        ++counts[static_cast<std::size_t>(std::clamp(static_cast<int>(value / kBinMs), 0, kBins - 1))];
    return counts;
}

void print(Series const& series) {
    Distribution const& ours = series.answers;
    Distribution const& late = series.late;
    std::printf("%s: %zu edges, %d lost\n", series.title.c_str(), ours.count() + static_cast<std::size_t>(series.lost),
                series.lost);
    std::printf("  %-22s median %6.2f  99%% %6.2f  longest %6.2f ms\n", "edge to the card's call", ours.percentile(0.5),
                ours.percentile(0.99), ours.longest());
    std::printf("  %-22s median %6.2f  99%% %6.2f  longest %6.2f ms late\n", "bare 30 ms timer", late.percentile(0.5),
                late.percentile(0.99), late.longest());
    std::printf("  %-22s median %6.2f  99%% %6.2f\n", "ratio to period + late",
                ours.percentile(0.5) / (kPollMs / 2.0 + late.percentile(0.5)),
                ours.percentile(0.99) / (kPollMs + late.percentile(0.99)));
    const std::vector<int> edges = ours.bins();
    const std::vector<int> timer = late.bins();
    for (int i = 0; i < Distribution::kBins; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const std::size_t bar = ours.count() == 0 ? 0 : static_cast<std::size_t>(edges[at]) * 80 / ours.count();
        std::printf("  %3d %s ms  edge %6d %-40s timer %6d\n", i * Distribution::kBinMs,
                    i + 1 < Distribution::kBins ? "to" : "up", edges[at],
                    std::string(std::min<std::size_t>(bar, 40), '#').c_str(), timer[at]);
    }
    std::fflush(stdout);
}

void printRow(Series const& series) {
    std::printf("| %s | %zu | %.1f | %.1f | %.1f | %.1f / %.1f | %d |\n", series.title.c_str(),
                series.answers.count() + static_cast<std::size_t>(series.lost), series.answers.percentile(0.5),
                series.answers.percentile(0.99), series.answers.longest(), series.late.percentile(0.99),
                series.late.longest(), series.lost);
}

BareTimer::BareTimer()
    : m_thread([this] {
        using Clock = std::chrono::steady_clock;
        while (!m_end) {
            const Clock::time_point due = Clock::now() + std::chrono::milliseconds(kPollMs);
            std::this_thread::sleep_until(due);
            m_late.push_back(std::chrono::duration<double, std::milli>(Clock::now() - due).count());
        }
    }) {}

BareTimer::~BareTimer() {
    finish();
}

std::vector<double> BareTimer::finish() {
    m_end = true;
    if (m_thread.joinable())
        m_thread.join();
    return m_late;
}

} // namespace bench

// SPDX-License-Identifier: MIT
#pragma once

#include "simengine/card/cardcore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <limits>
#include <thread>
#include <utility>
#include <vector>

namespace cardtest {

/// Waits for a condition, looking every 0.2 ms; false when it did not come within 10 s times the test time scale.
template<typename Condition>
bool waitFor(Condition condition) {
    const char* text = std::getenv("TESSERA_TIMEOUT_SCALE");
    const double scale = text && std::atof(text) > 0 ? std::atof(text) : 1.0;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::duration<double>(10.0 * scale);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return true;
}

/// Pens without delays: mark 100 mm/s, red 200 mm/s, jump 1000 mm/s.
inline sim::PenTable plainPens() {
    sim::PenParams pen;
    pen.markSpeed = 100.0;
    pen.redSpeed = 200.0;
    pen.jumpSpeed = 1000.0;
    sim::PenTable pens;
    pens.fill(pen);
    return pens;
}

inline sim::Stroke polyline(std::vector<sim::Point> points, int pen = 0, int object = -1) {
    sim::Stroke stroke;
    stroke.pen = pen;
    stroke.points = std::move(points);
    stroke.object = object;
    return stroke;
}

/// A stroke of one vector that takes the given seconds with plain pens.
inline sim::Stroke longLine(double seconds) {
    return polyline({{0, 0}, {seconds * 100.0, 0}});
}

inline sim::Job jobOf(std::vector<sim::Stroke> strokes, sim::MarkKind kind = sim::MarkKind::Laser) {
    sim::Job job;
    job.strokes = std::move(strokes);
    job.kind = kind;
    return job;
}

/// Square of the given side with its lower left corner at (x, y), closed.
inline sim::Stroke square(double x, double y, double side, int pen = 0) {
    return polyline({{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}, {x, y}}, pen);
}

/// What a pass of a job leaves in the trace, and its time.
inline std::pair<std::vector<sim::TraceRow>, sim::JobTime> marked(const sim::Job& job, const sim::PenTable& pens,
                                                                  const sim::PlanSettings& settings = {}) {
    sim::Trace trace;
    sim::Executor executor(job, pens, settings, {}, {}, trace);
    const std::atomic<bool> calm{false};
    executor.advance(std::numeric_limits<double>::infinity(), calm);
    const sim::TraceSnapshot snapshot = trace.snapshot();
    std::vector<sim::TraceRow> rows;
    for (std::size_t i = 0; i < snapshot.size(); ++i)
        rows.push_back(snapshot[i]);
    return {std::move(rows), executor.time()};
}

/// An open card with plain pens, armed for a run.
class CardTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(card.open());
        card.setPens(plainPens());
        card.setState(sim::RunState::Run);
    }

    /// Runs a job on a thread of its own.
    std::future<sim::RunResult> start(sim::Job job, bool loop = false) {
        return std::async(std::launch::async,
                          [this, job = std::move(job), loop]() mutable { return card.run(std::move(job), loop); });
    }

    bool waitForActivity(sim::Activity activity) {
        return waitFor([this, activity] { return card.head().activity == activity; });
    }

    sim::CardCore card;
};

} // namespace cardtest

// SPDX-License-Identifier: MIT
#include "cardfixture.h"

#include "simengine/card/markedrows.h"

#include <cmath>

using namespace cardtest;
using namespace sim;

namespace {

class CardOnTheFly : public CardTest {
protected:
    void SetUp() override {
        CardTest::SetUp();
        card.encoder().setBeltSpeed(100.0); // 0.1 mm a millisecond
        follow(100.0);
    }
    void follow(double pulsesPerMm) {
        FlySettings settings;
        settings.enabled = true;
        settings.outer = true;
        settings.pulsesPerMmX = pulsesPerMm;
        card.encoder().set(settings);
    }
};

} // namespace

TEST_F(CardOnTheFly, head_stands_where_a_job_has_left_it) {
    card.setSpeed(0);
    const Job line = jobOf({polyline({{0, 0}, {10, 0}})});
    EXPECT_TRUE(card.run(line, false));
    EXPECT_NEAR(card.head().at.x, 10 + 0.1 * 100, 1e-9);
    const double estimate = card.estimate(line).totalMs;
    const RunResult next = card.run(line, false);
    EXPECT_NEAR(next.time.jumpedMm, 20.0, 1e-9);
    EXPECT_NEAR(next.time.totalMs, estimate, 1e-9);
    EXPECT_NEAR(card.head().at.x, 10 + 0.1 * (20 + 100), 1e-9);
    card.setSpeed(1.0);
    auto stopped = start(jobOf({polyline({{0, 0}, {1000, 0}})}));
    EXPECT_TRUE(waitFor([this] { return card.trace().size() == 1 && card.head().passMs > 50.0; }));
    card.stop();
    EXPECT_TRUE(stopped.get());
    const TraceSnapshot rows = card.trace().snapshot();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_NEAR(card.head().at.x, rows[1].at.x + 0.1 * rows[1].ms, 1e-9);
}

TEST_F(CardOnTheFly, numbers_of_pulses_that_no_head_can_follow_keep_it_in_its_field) {
    card.setSpeed(0);
    for (const double pulses : {1e-300, -1e-300, 5e-324, 1e-9}) {
        follow(pulses);
        EXPECT_TRUE(card.run(jobOf({square(-5, -5, 10)}), false));
        const TraceSnapshot rows = card.trace().snapshot();
        forEachMarked(rows, 0, rows.size(), [](const TraceRow& row, const Point& commanded, bool) {
            EXPECT_TRUE(std::isfinite(row.at.x)) << row.ms;
            EXPECT_LE(std::abs(commanded.x), 10000.0);
        });
        EXPECT_LE(std::abs(card.head().at.x), 10000.0);
    }
    follow(100.0);
    EXPECT_LT(card.run(jobOf({square(-5, -5, 10)}), false).time.totalMs, 10500.0);
}

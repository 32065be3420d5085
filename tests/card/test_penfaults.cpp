// SPDX-License-Identifier: MIT
// What the start of a job throws on its caller's thread leaves the card as after any other job.
#include "cardfixture.h"

#include "simengine/card/statuswords.h"
#include "support/scarcememory.h"

#include <new>
#include <stdexcept>

using namespace cardtest;
using namespace sim;

namespace {

class CardPenFaults : public CardTest {
protected:
    void SetUp() override {
        CardTest::SetUp();
        card.setSpeed(0);
    }

    /// Three squares of pens 0, 1 and 2, five rows of the trace each.
    RunResult run(const PenService& service) {
        const Job job = jobOf({square(0, 0, 5, 0), square(10, 0, 5, 1), square(20, 0, 5, 2)});
        return card.run(job, false, card.arm(), service);
    }

    void expectNextJobRuns() {
        int served = 0;
        EXPECT_EQ(run([&served](int, const PenParams&) { ++served; }).outcome, Outcome::Done);
        EXPECT_EQ(served, 3);
        EXPECT_EQ(card.trace().size(), 15u);
        EXPECT_EQ(card.markInfo(), markinfo::kSuccess);
    }
};

} // namespace

TEST_F(CardPenFaults, service_that_fails_ends_its_job_before_the_pen_is_marked) {
    for (const bool hangs : {false, true}) {
        ASSERT_TRUE(card.setFault("stop_hangs", hangs));
        const PenService service = [](int pen, const PenParams&) {
            if (pen == 1)
                throw std::runtime_error("no link");
        };
        EXPECT_THROW(run(service), std::runtime_error);
        EXPECT_EQ(card.head().activity, Activity::Idle);
        EXPECT_EQ(card.runner().endedJobs(), card.runner().jobs());
        EXPECT_EQ(card.trace().size(), 5u);
        EXPECT_EQ(card.markInfo(), markinfo::kStopped);
        expectNextJobRuns();
    }
}

TEST_F(CardPenFaults, service_that_fails_in_a_pause_ends_its_job) {
    const PenService service = [this](int, const PenParams&) {
        card.pause();
        throw std::runtime_error("no link");
    };
    EXPECT_THROW(run(service), std::runtime_error);
    EXPECT_EQ(card.head().activity, Activity::Idle);
    EXPECT_EQ(card.trace().size(), 0u);
    expectNextJobRuns();
}

TEST_F(CardPenFaults, service_that_fails_after_the_end_of_its_job_holds_no_other) {
    const PenService service = [this](int, const PenParams&) {
        card.stop();
        throw std::runtime_error("no link");
    };
    EXPECT_THROW(run(service), std::runtime_error);
    EXPECT_EQ(card.head().activity, Activity::Idle);
    expectNextJobRuns();
}

TEST(TraceMemory, rows_that_cannot_be_taken_stay) {
    Trace trace;
    trace.beginJob(nullptr, {});
    const auto append = [&trace](std::size_t rows) {
        for (std::size_t i = 0; i < rows; ++i) {
            TraceRow row;
            row.ms = static_cast<double>(i);
            trace.append(row);
        }
    };
    append(2 * TraceSnapshot::kBlockRows + 1);
    trace.beginPass();
    append(2);
    ASSERT_EQ(trace.blocks(), 3u);
    bool refused = false;
    {
        const tests::ScarceMemory scarce(1);
        try {
            trace.takeAll();
        } catch (const std::bad_alloc&) {
            refused = true;
        }
    }
    EXPECT_TRUE(refused);
    EXPECT_EQ(trace.blocks(), 3u);
    const TraceSnapshot rows = trace.snapshot();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].ms, 1.0);
    EXPECT_EQ(trace.takeAll().size(), 3u);
    EXPECT_EQ(trace.blocks(), 0u);
}

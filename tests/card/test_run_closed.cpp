// SPDX-License-Identifier: MIT
#include "cardfixture.h"

using namespace cardtest;
using namespace sim;

TEST(ClosedCard, every_call_is_harmless) {
    CardCore card;
    card.io().setInputs(0xFFFFFFFFu);
    EXPECT_FALSE(card.isOpen());
    EXPECT_FALSE(card.run(jobOf({square(0, 0, 10)}), true));
    card.beginList();
    card.addPolyline(0, {{0, 0}, {1, 0}});
    card.addPoint(0, {0, 0}, 10);
    EXPECT_FALSE(card.endList());
    card.setPens(plainPens());
    card.setState(RunState::Run);
    EXPECT_EQ(card.state(), RunState::Stop);
    card.stop();
    card.pause();
    card.restart();
    EXPECT_TRUE(card.waitSettled());
    EXPECT_FALSE(card.moveTo({1, 1}, 100));
    EXPECT_FALSE(card.setOutput(3, true));
    card.setErrorOutput(true);
    EXPECT_FALSE(card.errorOutput());
    card.clearAlarm();
    EXPECT_EQ(card.markInfo(), 0u);
    EXPECT_EQ(card.scanState(), 0u);
    EXPECT_EQ(card.alarmWord(), 0u);
    EXPECT_EQ(card.waitCode(), 0);
    EXPECT_EQ(card.inputs(), 0u);
    EXPECT_EQ(card.outputs(), 0u);
    EXPECT_EQ(card.bufferRunTimeMs(), 0);
    EXPECT_EQ(card.head().at, (Point{0, 0}));
    EXPECT_EQ(card.trace().size(), 0u);
    card.close();
    card.close();
}

TEST(ClosedCard, opening_fails_with_the_fault_and_works_again_without) {
    CardCore card;
    card.setFault("card_open_fails", true);
    EXPECT_FALSE(card.open());
    EXPECT_FALSE(card.isOpen());
    card.setFault("card_open_fails", false);
    EXPECT_TRUE(card.open());
    EXPECT_TRUE(card.open());
    EXPECT_TRUE(card.isOpen());
}

TEST(ClosedCard, closing_ends_a_running_job_and_a_paused_one) {
    for (bool paused : {false, true}) {
        CardCore card;
        ASSERT_TRUE(card.open());
        card.setPens(plainPens());
        card.setState(RunState::Run);
        auto job = std::async(std::launch::async, [&card] { return card.run(jobOf({longLine(1000)}), false); });
        ASSERT_TRUE(waitFor([&card] { return card.head().activity == Activity::Running; }));
        if (paused)
            card.pause();
        card.close();
        EXPECT_TRUE(job.get());
        EXPECT_FALSE(card.isOpen());
    }
}

TEST(ClosedCard, opens_and_closes_again_and_again) {
    CardCore card;
    card.setSpeed(0);
    for (int i = 0; i < 200; ++i) {
        ASSERT_TRUE(card.open());
        EXPECT_EQ(card.state(), RunState::Stop);
        card.setState(RunState::Run);
        ASSERT_TRUE(card.run(jobOf({square(0, 0, 10)}), false));
        card.close();
    }
}

TEST(ClosedCard, may_be_closed_and_opened_by_several_threads_during_runs) {
    CardCore card;
    card.setSpeed(0);
    std::atomic<bool> end{false};
    std::thread opener([&] {
        for (int i = 0; i < 300; ++i) {
            card.open();
            card.setState(RunState::Run);
            card.close();
        }
        end = true;
    });
    std::thread closer([&] {
        while (!end)
            card.close();
    });
    while (!end)
        card.run(jobOf({square(0, 0, 10)}), false);
    opener.join();
    closer.join();
}

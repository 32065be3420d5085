// SPDX-License-Identifier: MIT
#include "card/cardfixture.h"

#include "simengine/card/jobtimeline.h"

#include <cmath>
#include <random>

using namespace cardtest;
using namespace sim;

namespace {

struct Walked {
    std::vector<Piece> pieces;
    std::vector<double> startUs;
    std::vector<Point> from;
    double totalUs = 0.0;
};

/// All pieces as the card would execute them.
Walked walk(const TimelineJob& job) {
    Walked walked;
    Planner planner(job.job, job.pens, job.plan, job.start);
    std::vector<Piece> chunk(1000);
    Point at = job.start;
    while (const std::size_t count = planner.fill(chunk.data(), chunk.size())) {
        for (std::size_t i = 0; i < count; ++i) {
            walked.startUs.push_back(walked.totalUs);
            walked.from.push_back(at);
            walked.pieces.push_back(chunk[i]);
            walked.totalUs += chunk[i].us;
            at = chunk[i].to;
        }
    }
    return walked;
}

double tolerance(double totalUs) {
    return 1e-9 * totalUs + 1e-6;
}

TimelineJob randomJob(unsigned seed, int largestCount) {
    std::mt19937 random(seed);
    const auto number = [&](double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random);
    };
    const auto whole = [&](int least, int most) { return std::uniform_int_distribution<int>(least, most)(random); };
    TimelineJob job;
    for (PenParams& pen : job.pens) {
        pen.markSpeed = number(50, 2000);
        pen.jumpSpeed = number(500, 5000);
        pen.markCount = whole(1, largestCount);
        pen.turnDelay = whole(-100, 100);
        pen.openLaserDelay = whole(-100, 100);
        pen.closeLaserDelay = whole(-100, 100);
        pen.markDelay = whole(0, 200);
        pen.endDelay = whole(-100, 1000);
        pen.minJumpDelay = whole(0, 200);
        pen.maxJumpDelay = whole(200, 500);
        pen.maxJumpDelayDist = number(0, 50);
        pen.pointTime = whole(0, 2000);
        pen.wobbleEnable = whole(0, 4) == 0;
        pen.wobbleDiameter = number(0.1, 2);
        pen.wobbleSpacing = number(0.1, 2);
        pen.lineWaveEnable = whole(0, 4) == 0;
        for (std::size_t i = 0; i < kWavePoints; ++i)
            pen.lineWave[i] = {number(0, 5), number(0, 100)};
    }
    job.plan.penChangeDelayMs = number(0, 3);
    job.start = {number(-50, 50), number(-50, 50)};
    const int objects = whole(1, 30);
    for (int object = 0; object < objects; ++object) {
        const int pen = whole(-1, 20);
        const int strokes = whole(1, 4);
        for (int i = 0; i < strokes; ++i) {
            std::vector<Point> points;
            const int count = whole(0, 12);
            for (int k = 0; k < count; ++k)
                points.push_back({number(-50, 50), whole(0, 20) == 0 ? std::nan("") : number(-50, 50)});
            job.job.strokes.push_back(polyline(std::move(points), pen, whole(0, 3) == 0 ? -1 : object));
        }
    }
    return job;
}

void expectSame(const TimelineJob& job) {
    const Walked walked = walk(job);
    const JobTime exact = estimate(job.job, job.pens, job.start, job.plan);
    const auto timeline = JobTimeline::make(job);
    ASSERT_TRUE(timeline);
    const double within = tolerance(walked.totalUs);
    EXPECT_NEAR(timeline->totalUs(), walked.totalUs, within);
    EXPECT_NEAR(timeline->time().totalMs, exact.totalMs, within / 1000.0);
    EXPECT_NEAR(timeline->time().jumpMs, exact.jumpMs, within / 1000.0);
    EXPECT_NEAR(timeline->time().markMs, exact.markMs, within / 1000.0);
    EXPECT_NEAR(timeline->time().delayMs, exact.delayMs, within / 1000.0);
    EXPECT_EQ(timeline->time().vertices, exact.vertices);
    JobTimeline::Reader reader(*timeline);
    ASSERT_EQ(reader.hasPiece(), !walked.pieces.empty());
    for (std::size_t i = 0; i < walked.pieces.size(); ++i) {
        ASSERT_NEAR(reader.startUs(), walked.startUs[i], within) << i;
        ASSERT_EQ(reader.from(), walked.from[i]) << i;
        ASSERT_EQ(reader.piece().to, walked.pieces[i].to) << i;
        ASSERT_EQ(reader.piece().kind, walked.pieces[i].kind) << i;
        ASSERT_EQ(reader.piece().pen, walked.pieces[i].pen) << i;
        ASSERT_EQ(reader.piece().laser, walked.pieces[i].laser) << i;
        ASSERT_EQ(reader.next(), i + 1 < walked.pieces.size()) << i;
    }
}

} // namespace

TEST(Timeline, goes_through_the_pieces_of_the_planner) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(seed);
        expectSame(randomJob(seed, 3));
    }
}

TEST(Timeline, goes_through_rounds_that_are_kept_once) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(seed);
        TimelineJob job = randomJob(seed, 2000);
        for (PenParams& pen : job.pens) // the share that skipped rounds would have in the wobble's vertices is not told
            pen.wobbleEnable = false;
        expectSame(job);
    }
}

TEST(Timeline, seek_finds_the_piece_of_every_time) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(seed);
        TimelineJob job = randomJob(seed, seed % 2 ? 3 : 3000);
        for (PenParams& pen : job.pens)
            pen.wobbleEnable = pen.wobbleEnable && seed % 2;
        const Walked walked = walk(job);
        const auto timeline = JobTimeline::make(job);
        ASSERT_TRUE(timeline);
        JobTimeline::Reader reader(*timeline);
        if (!reader.hasPiece())
            continue;
        std::mt19937 random(seed);
        for (int i = 0; i < 500; ++i) {
            const double us = std::uniform_real_distribution<double>(0.0, walked.totalUs)(random);
            reader.seek(us);
            ASSERT_LE(reader.startUs(), us + tolerance(walked.totalUs));
            ASSERT_GE(reader.endUs(), us - tolerance(walked.totalUs));
            const auto after = std::upper_bound(walked.startUs.begin(), walked.startUs.end(), us);
            const auto index = static_cast<std::size_t>(after - walked.startUs.begin()) - 1;
            const double share = walked.pieces[index].us > 0.0
                                     ? std::min(1.0, (us - walked.startUs[index]) / walked.pieces[index].us)
                                     : 1.0;
            const Point at = between(walked.from[index], walked.pieces[index].to, share);
            const Point found = reader.at(us);
            ASSERT_NEAR(found.x, at.x, 1e-3);
            ASSERT_NEAR(found.y, at.y, 1e-3);
        }
        reader.seek(-5.0);
        EXPECT_EQ(reader.startUs(), 0.0);
        reader.rewind();
        EXPECT_EQ(reader.piece().to, walked.pieces.front().to);
        reader.seek(1e30);
        EXPECT_FALSE(reader.next());
        EXPECT_NEAR(reader.endUs(), walked.totalUs, tolerance(walked.totalUs));
    }
}

TEST(Timeline, billions_of_rounds_are_planned_at_once) {
    TimelineJob job;
    job.pens = plainPens();
    job.pens[0].markCount = 2'000'000'000;
    job.job = jobOf({square(0, 0, 10), polyline({{0, 0}, {5, 5}}, 1)});
    const auto timeline = JobTimeline::make(job);
    ASSERT_TRUE(timeline);
    // 40 mm at 100 mm/s; the square ends where it begins, so there is no jump
    EXPECT_NEAR(timeline->totalUs(), 2e9 * 400e3 + std::sqrt(50.0) / 100.0 * 1e6, 1e6);
    JobTimeline::Reader reader(*timeline);
    reader.seek(1e9 * 400e3 + 150e3);
    EXPECT_NEAR(reader.at(1e9 * 400e3 + 150e3).x, 10.0, 1e-3);
    EXPECT_NEAR(reader.at(1e9 * 400e3 + 150e3).y, 5.0, 1e-3);
}

TEST(Timeline, many_objects_with_many_rounds_stay_small) {
    TimelineJob job;
    job.pens = plainPens();
    job.pens[0].markCount = 1'000'000;
    for (int i = 0; i < 20000; ++i)
        job.job.strokes.push_back(square(i % 100, i / 100, 0.5));
    const auto timeline = JobTimeline::make(job);
    ASSERT_TRUE(timeline);
    EXPECT_NEAR(timeline->totalUs() / (20000.0 * 1e6 * 20e3), 1.0, 1e-6);
}

TEST(Timeline, job_without_work_is_empty) {
    const auto timeline = JobTimeline::make({});
    ASSERT_TRUE(timeline);
    EXPECT_EQ(timeline->totalUs(), 0.0);
    JobTimeline::Reader reader(*timeline);
    EXPECT_FALSE(reader.hasPiece());
    EXPECT_FALSE(reader.next());
}

TEST(Timeline, border_preview_is_a_rectangle) {
    TimelineJob job;
    job.pens = plainPens();
    job.job = jobOf({square(0, 0, 10), square(20, 20, 10)}, MarkKind::BorderPreview);
    expectSame(job);
}

TEST(Timeline, cancelled_planning_gives_nothing) {
    const std::atomic<bool> cancelled{true};
    EXPECT_FALSE(JobTimeline::make(randomJob(1, 3), &cancelled));
}

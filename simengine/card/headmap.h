// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/boxcorrection.h"
#include "simengine/card/gridcorrection.h"
#include "simengine/card/job.h"
#include "simengine/card/splice.h"
#include "simengine/simcontrol.h"

#include <cstdint>
#include <memory>

namespace sim {

/// What the built head makes of the mirrors' angles, without noise. `mirrors` in mm of an ideal head. Any thread.
Point distorted(const SimHeadDistortion& head, Point mirrors, bool pilot);

/// Name of a value of SimHeadDistortion and its limits, for checks, files and windows. The first is the name that is
/// used outside.
struct HeadValueRow {
    const char* name;
    double SimHeadDistortion::*value;
    double low;
    double high;
};

/// All values of a distortion.
extern const HeadValueRow kHeadValueRows[];
extern const int kHeadValueCount;

/// Names the first value that is out of its limits; null when all are good.
const HeadValueRow* invalidHeadValue(const SimHeadDistortion& head);
bool isNeutral(const SimHeadDistortion& head);

/// The way of a place from the command to the workpiece, as one job is marked with it: manual compensation, correction
/// table, box correction, head, noise. Immutable; any thread.
class HeadMap {
public:
    /// `job` numbers the jobs since the seed was set, so that each is marked with noise of its own.
    HeadMap(const SimHeadDistortion& head, const BoxCorrection& box, std::shared_ptr<const GridCorrection> grid,
            bool pilot, std::uint64_t job, const Splice& splice = {});

    /// Nothing for a head that marks where it is told.
    static std::shared_ptr<const HeadMap> make(const SimHeadDistortion& head, const BoxCorrection& box,
                                               std::shared_ptr<const GridCorrection> grid, bool pilot,
                                               std::uint64_t job, const Splice& splice = {});

    Point withoutNoise(Point commanded) const;
    /// Noise of a vertex: the same wherever it comes up again in one pass, so that contours close and points stay
    /// points.
    Point noiseAt(Point commanded, std::uint64_t pass) const;
    Point marked(Point commanded, std::uint64_t pass) const;

    /// Number of straight parts by which a way is shown; 1 when straight lines stay straight.
    int parts(Point from, Point to) const;

private:
    Splice m_splice;
    SimHeadDistortion m_head;
    BoxCorrection m_box;
    std::shared_ptr<const GridCorrection> m_grid;
    bool m_pilot;
    bool m_straight;
    std::uint64_t m_key; ///< of the noise
};

/// Two independent numbers of the standard normal distribution that follow from a key.
Point normalPair(std::uint64_t key);
/// A key that follows from two others.
std::uint64_t mixedKey(std::uint64_t a, std::uint64_t b);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/headmap.h"

#include <cstdint>
#include <memory>
#include <mutex>

namespace sim {

/// What lies between the commanded place and the workpiece at present: the correction table, the box correction and the
/// built head. All calls from any thread.
class HeadWay {
public:
    /// The numbering of jobs and measurements, which the noise follows, begins anew, so that a seed gives the same
    /// again.
    void setDistortion(const SimHeadDistortion& head);
    SimHeadDistortion distortion() const;
    void setBox(const BoxCorrection& box);
    /// Null takes the table out.
    void setGrid(std::shared_ptr<const GridCorrection> grid);
    bool hasGrid() const;

    /// Manual compensation of documents' jobs and of moves between them. Direct jobs come with it applied.
    void setSplice(const Splice& splice);

    /// For the next job; null for a head that marks where it is told.
    std::shared_ptr<const HeadMap> beginJob(bool pilot, bool direct = false);
    /// For a spot that stands there now.
    std::shared_ptr<const HeadMap> now(bool pilot) const;
    /// Key of the noise of another measurement.
    std::uint64_t beginMeasurement();

private:
    mutable std::mutex m_mutex;
    SimHeadDistortion m_head;
    BoxCorrection m_box;
    std::shared_ptr<const GridCorrection> m_grid;
    Splice m_splice;
    bool m_direct = false; ///< the head is where a direct job has sent it
    std::uint64_t m_jobs = 0;
    std::uint64_t m_measurements = 0;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/layerparamex.h"
#include "simengine/card/job.h"

#include <QVector>
#include <chrono>

namespace sim {

/// The figures of one run for RunDataGather and the log. Made before the job goes to the card. Any thread.
class RunRecord {
public:
    /// `layers` is the run's pen table, null when the card keeps the one it has.
    RunRecord(Job const& job, LayerParamEx const* layers);
    /// The run has ended; `whole` when nothing stopped it.
    void ended(bool whole) const;
    /// Nothing could be run: the figures of the run before do not stand for this one. Gives false.
    static bool refused();

private:
    std::chrono::steady_clock::time_point const m_start = std::chrono::steady_clock::now();
    std::size_t m_strokes;
    QVector<LayerData> m_layers; ///< in the order of their first use
};

} // namespace sim

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/imarkcardbase.h"
#include "engine/layerparamex.h"

#include <atomic>
#include <thread>

namespace tests {

/// A job of one straight stroke on a thread of its own, as a run does it.
class StrokeJob {
public:
    /// `length` in mm at `speed` mm/s.
    StrokeJob(IMarkCardBase& card, double length, double speed)
        : m_thread([this, &card, length, speed] {
            LayerParamEx layers;
            LayerData* pen = nullptr;
            layers.GetLayerData(0, pen);
            pen->MarkSpeed = speed;
            DOT3 points[2] = {{-length / 2, 0, 0}, {length / 2, 0, 0}};
            card.DownLayerPara(&layers, kLayerCount);
            card.BeginList(1);
            card.AddList(points, 2, 0);
            card.EndList();
            m_ended = true;
        }) {}
    ~StrokeJob() { m_thread.join(); }
    bool hasEnded() const { return m_ended; }

private:
    std::atomic<bool> m_ended{false};
    std::thread m_thread;
};

} // namespace tests

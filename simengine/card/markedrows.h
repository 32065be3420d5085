// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/headmap.h"
#include "simengine/card/timemodel.h"
#include "simengine/card/trace.h"

#include <cstddef>
#include <utility>

namespace sim {

/// Noise of a vertex, which goes with the drawn place.
inline Point noiseOf(const TraceSnapshot& rows, const TraceRow& row) {
    return rows.head() ? rows.head()->noiseAt(row.at, rows.passOfJob()) : Point{};
}

/// What was marked where the head was sent at a time of the pass: as it lies on the product.
inline Point markedPlace(const TraceSnapshot& rows, const Point& commanded, double ms, const Point& noise) {
    const Point place = rows.fly().onProduct(rows.head() ? rows.head()->withoutNoise(commanded) : commanded, ms);
    return {place.x + noise.x, place.y + noise.y};
}

/// Where a vertex was marked.
inline Point markedVertex(const TraceSnapshot& rows, const TraceRow& row) {
    return markedPlace(rows, rows.fly().commanded(row.at, row.ms), row.ms, noiseOf(rows, row));
}

/// Gives the rows `from` to `end` of a trace as they were marked: take(row, commanded, vertex), the row's place being
/// the marked one. Ways that the head bends have rows between their vertices, on which `vertex` is false; their times
/// and powers lie between those of the vertices. What was marked on the fly is given as it lies on the product.
template<typename Take>
void forEachMarked(const TraceSnapshot& rows, std::size_t from, std::size_t end, Take take) {
    const HeadMap* head = rows.head();
    const FlyMotion& fly = rows.fly();
    if (!head && fly.isStill()) {
        for (std::size_t i = from; i < end; ++i)
            take(rows[i], rows[i].at, true);
        return;
    }
    const auto give = [&](TraceRow row, const Point& commanded, const Point& noise, bool vertex) {
        row.at = markedPlace(rows, commanded, row.ms, noise);
        take(std::as_const(row), commanded, vertex);
    };
    for (std::size_t i = from; i < end; ++i) {
        const TraceRow& to = rows[i];
        const Point target = fly.commanded(to.at, to.ms);
        const Point lastNoise = noiseOf(rows, to);
        if (i > 0 && head) {
            const TraceRow& last = rows[i - 1];
            const Point start = fly.commanded(last.at, last.ms);
            const Point noise = noiseOf(rows, last);
            const int parts = head->parts(start, target);
            for (int k = 1; k < parts; ++k) {
                const double share = static_cast<double>(k) / parts;
                TraceRow row = to;
                row.ms = last.ms + (to.ms - last.ms) * share;
                if (to.laser)
                    row.power = last.power + (to.power - last.power) * static_cast<float>(share);
                give(row, between(start, target, share), between(noise, lastNoise, share), false);
            }
        }
        give(to, target, lastNoise, true);
    }
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"
#include "simengine/view/snapsettings.h"

#include <QLineF>
#include <QRectF>
#include <functional>
#include <vector>

namespace sim {

enum class SnapKind { End, Middle, Center, Bounds, Guide, Grid };

/// A place that others are drawn to, mm.
struct SnapPoint {
    QPointF at;
    SnapKind kind;
};

/// The x or y of an edge or of a centre, and how far its object reaches along it, mm.
struct SnapGuide {
    double at;
    double from, to;
};

/// What of a document places can be drawn to.
struct SnapTargets {
    /// Documents with more keep their first ones: each move of the pointer looks at all.
    static constexpr std::size_t kMostPoints = 20000;

    std::vector<SnapPoint> points;
    std::vector<SnapGuide> xs, ys;
};

/// Ends, middles, centres and bounds of one object, groups looked into. Lines and paths of many nodes give the ends of
/// their contours only.
void addSnapPoints(const MarkObject& object, const QTransform& outer, std::vector<SnapPoint>& points);

/// The targets of the objects that reach into `visibleMm`, but for those that `leftOut` names.
SnapTargets snapTargets(const DocumentState& state, const QRectF& visibleMm, const std::function<bool(int)>& leftOut);

/// What is asked for: places in mm that move together, and how.
struct SnapQuery {
    std::vector<QPointF> places;
    bool freeX = true, freeY = true; ///< axes in which they may be moved
    double reach = 0.0;              ///< mm
    double gridStep = 0.0;           ///< mm; 0 for none
};

/// What is shown of it: the target, or the line of a guide.
struct SnapHint {
    SnapKind kind;
    QPointF at;
    QLineF guide; ///< of guides and of the grid, mm
};

struct SnapResult {
    QPointF by; ///< to be added to the places
    std::vector<SnapHint> hints;
};

/// The nearest target within reach. A place of an object goes first, since it settles both axes; else each axis has its
/// own guide or, without one, its line of the grid.
SnapResult snap(const SnapQuery& query, const SnapTargets& targets, const SnapSettings& settings);

} // namespace sim

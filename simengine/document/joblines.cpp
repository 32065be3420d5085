// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/joblines.h"

#include <algorithm>
#include <iterator>

namespace sim {

namespace {

void appendOutline(const MarkObject& object, const QTransform& transform, std::vector<JobLine>& lines) {
    if (!object.data().hatch.enableEdge)
        return;
    std::vector<FlatLine> outline;
    flattenShape(object.shape(), transform, outline);
    const auto* point = std::get_if<PointShape>(&object.shape());
    for (FlatLine& line : outline)
        lines.push_back({object.pen(), std::move(line.points), point ? point->dwellUs : -1.0});
}

void appendHatch(const MarkObject& object, const QTransform& outer, double turn, const Cancellation* cancellation,
                 std::vector<JobLine>& lines) {
    const auto hatch = object.hatch(outer, turn, cancellation);
    if (!hatch)
        return;
    for (const HatchPart& part : *hatch) {
        for (std::size_t i = 0; i < part.lines.count() && goesOn(cancellation); ++i) {
            QPolygonF points;
            points.reserve(int(part.lines.end(i) - part.lines.begin(i)));
            std::copy(part.lines.begin(i), part.lines.end(i), std::back_inserter(points));
            lines.push_back({part.pen, std::move(points), -1.0});
        }
    }
}

void appendLines(const MarkObject& object, const QTransform& outer, double turn, const Cancellation* cancellation,
                 std::vector<JobLine>& lines) {
    if (!object.works() || !goesOn(cancellation))
        return;
    const QTransform transform = object.transform() * outer;
    if (const auto* group = std::get_if<GroupShape>(&object.shape())) {
        for (const ObjectPtr& child : group->children)
            appendLines(*child, transform, turn + object.angle(), cancellation, lines);
        return;
    }
    const bool hatchFirst = object.data().hatch.markFillFirst;
    if (hatchFirst)
        appendHatch(object, outer, turn, cancellation, lines);
    appendOutline(object, transform, lines);
    if (!hatchFirst)
        appendHatch(object, outer, turn, cancellation, lines);
}

} // namespace

std::vector<JobLine> jobLines(const MarkObject& object, const Cancellation* cancellation) {
    std::vector<JobLine> lines;
    appendLines(object, QTransform(), 0.0, cancellation, lines);
    return lines;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/joblines.h"

namespace sim {

namespace {

void appendLines(const MarkObject& object, const QTransform& outer, std::vector<JobLine>& lines) {
    if (!object.works())
        return;
    const QTransform transform = object.transform() * outer;
    if (const auto* group = std::get_if<GroupShape>(&object.shape())) {
        for (const ObjectPtr& child : group->children)
            appendLines(*child, transform, lines);
        return;
    }
    if (!object.data().hatch.enableEdge)
        return;
    std::vector<FlatLine> outline;
    flattenShape(object.shape(), transform, outline);
    const auto* point = std::get_if<PointShape>(&object.shape());
    for (FlatLine& line : outline)
        lines.push_back({object.pen(), std::move(line.points), point ? point->dwellUs : -1.0});
}

} // namespace

std::vector<JobLine> jobLines(const MarkObject& object) {
    std::vector<JobLine> lines;
    appendLines(object, QTransform(), lines);
    return lines;
}

} // namespace sim

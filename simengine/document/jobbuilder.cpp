// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/jobbuilder.h"

#include "simengine/document/joblines.h"

#include <QtMath>
#include <cmath>

namespace sim {

namespace {

/// The order of the numbers in an offset record.
enum OffsetValue { OffsetDx = 0, OffsetDy = 1, OffsetAngle = 2, OffsetValueCount = 3 };

bool isFinite(const CCDBufdata& record) {
    return std::all_of(record.Values.begin(), record.Values.begin() + OffsetValueCount,
                       [](double value) { return std::isfinite(value); });
}

QTransform passTransform(const CCDBufdata& record) {
    const double angle = qDegreesToRadians(record.Values[OffsetAngle]);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return QTransform(c, s, -s, c, record.Values[OffsetDx], record.Values[OffsetDy]);
}

/// One transform for each pass over the objects; none when nothing is to be marked.
std::vector<QTransform> passes(const JobOptions& options) {
    const QTransform machine(options.invertX ? -1.0 : 1.0, 0.0, 0.0, options.invertY ? -1.0 : 1.0, 0.0, 0.0);
    if (options.offsets.isEmpty())
        return {machine};
    std::vector<QTransform> transforms;
    for (const CCDBufdata& record : options.offsets) {
        if (!record.Valid)
            continue;
        if (!isFinite(record))
            return {};
        transforms.push_back(passTransform(record) * machine);
    }
    return transforms;
}

void appendStrokes(const std::vector<JobLine>& lines, const QTransform& transform, int object,
                   const Cancellation* cancellation, Job& job) {
    for (const JobLine& line : lines) {
        if (!goesOn(cancellation))
            return;
        Stroke stroke;
        stroke.pen = line.pen;
        stroke.dwellUs = line.dwellUs;
        stroke.object = object;
        stroke.points.reserve(size_t(line.points.size()));
        for (const QPointF& p : line.points) {
            const QPointF mapped = transform.map(p);
            stroke.points.push_back({mapped.x(), mapped.y()});
        }
        job.strokes.push_back(std::move(stroke));
    }
}

std::size_t vertexCount(const std::vector<std::vector<JobLine>>& objects) {
    std::size_t count = 0;
    for (const std::vector<JobLine>& object : objects) {
        for (const JobLine& line : object)
            count += size_t(line.points.size());
    }
    return count;
}

void tell(QString* fault, const QString& text) {
    if (fault)
        *fault = text;
}

} // namespace

Job buildJob(const DocumentState& state, const JobOptions& options, QString* fault, const Cancellation* cancellation) {
    Job job;
    const std::vector<QTransform> transforms = passes(options);
    if (transforms.empty()) {
        tell(fault, QStringLiteral("no valid record, or a number that is not finite"));
        return job;
    }
    std::vector<std::vector<JobLine>> lines;
    for (int i = 0; i < state.count(); ++i) {
        if (!options.selectedOnly || state.selection.contains(i))
            lines.push_back(jobLines(*state.at(i), cancellation));
    }
    if (transforms.size() > 1 && vertexCount(lines) > kMaxRepeatedVertices / transforms.size()) {
        tell(fault, QStringLiteral("%1 records repeat too large a drawing").arg(transforms.size()));
        return job;
    }
    int number = 0;
    for (const QTransform& transform : transforms) {
        for (const std::vector<JobLine>& object : lines)
            appendStrokes(object, transform, number++, cancellation, job);
    }
    return job;
}

DocumentStatistics statisticsOf(const DocumentState& state) {
    DocumentStatistics statistics;
    statistics.objects = state.count();
    for (const ObjectPtr& object : *state.objects) {
        statistics.points += object->pointCount();
        const std::vector<JobLine> lines = jobLines(*object);
        statistics.working += lines.empty() ? 0 : 1;
        for (const JobLine& line : lines) {
            statistics.vertices += line.points.size();
            statistics.markLength += polylineLength(line.points);
        }
    }
    return statistics;
}

} // namespace sim

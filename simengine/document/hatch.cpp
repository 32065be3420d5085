// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/hatch.h"

#include "simengine/document/hatchoffset.h"
#include "simengine/document/hatchpaths.h"
#include "simengine/document/limits.h"

#include <QtMath>
#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// Loops of one hatch at most: an end for areas whose depth was guessed too low.
constexpr int kMostLoops = 1'000'000;

/// A turn to the frame of a hatch, where the rows run along x, and back.
class Turn {
public:
    explicit Turn(double degrees) {
        // quarter turns are exact, so that the rows of a rectangle end on its edge
        const double quarters = degrees / 90.0;
        if (quarters == std::floor(quarters)) {
            constexpr double kCos[] = {1.0, 0.0, -1.0, 0.0};
            const int index = int(std::fmod(std::fmod(quarters, 4.0) + 4.0, 4.0));
            m_cos = kCos[index];
            m_sin = kCos[(index + 3) % 4];
        } else {
            m_cos = std::cos(qDegreesToRadians(degrees));
            m_sin = std::sin(qDegreesToRadians(degrees));
        }
    }
    QPointF toFrame(QPointF const& p) const { return {p.x() * m_cos + p.y() * m_sin, p.y() * m_cos - p.x() * m_sin}; }
    QPointF toField(QPointF const& p) const { return {p.x() * m_cos - p.y() * m_sin, p.x() * m_sin + p.y() * m_cos}; }

private:
    double m_cos = 1.0;
    double m_sin = 0.0;
};

bool isUsable(FillParam const& fill) {
    return fill.Enable && std::isfinite(fill.FillDist) && fill.FillDist > 0.0 && std::isfinite(fill.FillAngle) &&
           std::isfinite(fill.FillOffset) && fill.FillType >= 0 && fill.FillType <= int(FillType::Loops);
}

std::vector<HatchContour> contoursInFrame(std::vector<FlatLine> const& outline, Turn const& turn) {
    std::vector<HatchContour> contours;
    for (FlatLine const& line : outline) {
        if (!line.closed || line.points.size() < 4)
            continue;
        HatchContour contour;
        contour.reserve(std::size_t(line.points.size()) - 1);
        for (int i = 0; i + 1 < line.points.size(); ++i)
            contour.push_back(turn.toFrame(line.points.at(i)));
        contours.push_back(std::move(contour));
    }
    return contours;
}

void addLoops(HatchArea const& area, PackedLines& lines) {
    for (HatchContour const& contour : area.contours()) {
        for (QPointF const& p : contour)
            lines.addPoint(p);
        lines.addPoint(contour.front());
        lines.endLine();
    }
}

void append(PackedLines const& from, PackedLines& to) {
    for (std::size_t i = 0; i < from.count(); ++i) {
        std::for_each(from.begin(i), from.end(i), [&to](QPointF const& p) { to.addPoint(p); });
        to.endLine();
    }
}

/// Loops from the area's edge inwards until nothing is left.
void addAllLoops(HatchArea area, double pitch, PackedLines& lines, Cancellation const* cancellation) {
    for (int i = 0; i < kMostLoops && goesOn(cancellation); ++i) {
        area = area.inset(pitch);
        if (area.isEmpty())
            return;
        addLoops(area, lines);
    }
}

PackedLines linesOf(HatchRows const& rows, FillParam const& fill, Cancellation const* cancellation) {
    const auto type = FillType(fill.FillType);
    if (type != FillType::Loops && fill.FillOffset == 0.0 && fill.EdgeCnt <= 0)
        return hatchPaths(rows, type, cancellation);
    PackedLines lines;
    HatchArea area(rows.contours());
    if (fill.FillOffset != 0.0)
        area = area.inset(fill.FillOffset);
    for (int i = 0; i < fill.EdgeCnt && !area.isEmpty() && goesOn(cancellation); ++i) {
        area = area.inset(fill.FillDist);
        addLoops(area, lines);
    }
    if (type == FillType::Loops)
        addAllLoops(area, fill.FillDist, lines, cancellation);
    else
        append(hatchPaths(HatchRows(area.contours(), fill.FillDist), type, cancellation), lines);
    return lines;
}

/// A loop has hardly more vertices than the outline, and a compact area is at most as deep as twice its surface by its
/// circumference; a round plate has exactly that depth. Every line of an outline is an edge of the area, so the
/// circumference is known without making the area itself.
qint64 loopSegments(std::vector<HatchContour> const& contours, double pitch, int edgeLoops, bool all) {
    std::size_t vertices = 0;
    double around = 0.0;
    for (HatchContour const& contour : contours) {
        vertices += contour.size();
        around += circumference(contour);
    }
    const double depth = around > 0.0 ? 2.0 * sampledSurface(contours) / around : 0.0;
    const double fit = std::ceil(depth / pitch);
    const double loops = all ? fit : std::min(double(std::max(edgeLoops, 0)), fit);
    const double segments = loops * double(vertices);
    return segments >= double(kMostHatchCount) ? kMostHatchCount : qint64(segments);
}

qint64 segmentsOf(HatchRows const& rows, FillParam const& fill) {
    const auto type = FillType(fill.FillType);
    qint64 segments = type == FillType::Loops ? 0 : rows.stretchCount();
    if (type == FillType::Serpentine || type == FillType::Sections)
        segments *= 2; // with the joints
    if (type == FillType::Loops || fill.EdgeCnt > 0)
        segments +=
            loopSegments(HatchArea::inReach(rows.contours()), fill.FillDist, fill.EdgeCnt, type == FillType::Loops);
    return std::min(segments, kMostHatchCount);
}

} // namespace

std::vector<HatchPart> hatchLines(std::vector<FlatLine> const& outline, std::vector<FillParam> const& fills,
                                  double turn, Cancellation const* cancellation) {
    std::vector<HatchPart> parts;
    for (FillParam const& fill : fills) {
        if (!isUsable(fill) || !goesOn(cancellation))
            continue;
        const Turn frame(fill.FillAngle + turn);
        const std::vector<HatchContour> contours = contoursInFrame(outline, frame);
        const HatchRows rows(contours, fill.FillDist);
        if (segmentsOf(rows, fill) > kMaxHatchSegments)
            continue;
        HatchPart part{fill.FillLayer, linesOf(rows, fill, cancellation)};
        part.lines.mapPoints([&frame](QPointF const& p) { return frame.toField(p); });
        if (!part.lines.isEmpty())
            parts.push_back(std::move(part));
    }
    return parts;
}

qint64 hatchSegments(std::vector<FlatLine> const& outline, std::vector<FillParam> const& fills, double turn) {
    qint64 segments = 0;
    for (FillParam const& fill : fills) {
        if (!isUsable(fill))
            continue;
        const std::vector<HatchContour> contours = contoursInFrame(outline, Turn(fill.FillAngle + turn));
        segments = std::min(segments + segmentsOf(HatchRows(contours, fill.FillDist), fill), kMostHatchCount);
    }
    return segments;
}

} // namespace sim

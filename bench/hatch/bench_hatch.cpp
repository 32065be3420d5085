// SPDX-License-Identifier: MIT
// How long the lines of a hatch take, beside the same lines clipped by the polygon library in the same run.
#include "simengine/document/hatch.h"

#include <QtMath>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <polyclipping/clipper.hpp>
#include <random>

using namespace sim;

namespace {

double msSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

FlatLine closed(QPolygonF points) {
    points.append(points.first());
    return {points, true};
}

/// A gear of `vertices` on a field of 100 mm.
std::vector<FlatLine> gear(int vertices) {
    constexpr int kTeeth = 50;
    QPolygonF points;
    for (int i = 0; i < vertices; ++i) {
        const double angle = 2.0 * M_PI * i / vertices;
        const double tooth = std::sin(angle * kTeeth);
        const double radius = 45.0 + 4.5 * std::tanh(4.0 * tooth);
        points.append(QPointF(radius * std::cos(angle), radius * std::sin(angle)));
    }
    return {closed(points)};
}

/// Outlines that lie in and across one another.
std::vector<FlatLine> nested(int count) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-35.0, 35.0);
    std::uniform_real_distribution<double> size(2.0, 14.0);
    std::vector<FlatLine> lines;
    for (int i = 0; i < count; ++i) {
        const QPointF middle(place(random), place(random));
        const double radius = size(random);
        QPolygonF points;
        for (int k = 0; k < 60; ++k)
            points.append(middle + QPointF(radius * std::cos(k * M_PI / 30.0), radius * std::sin(k * M_PI / 30.0)));
        lines.push_back(closed(points));
    }
    return lines;
}

struct Result {
    double ms = 0.0;
    double length = 0.0;
    std::size_t segments = 0;
};

Result ours(std::vector<FlatLine> const& outline, double pitch) {
    FillParam fill;
    fill.Enable = true;
    fill.FillDist = pitch;
    const auto begin = std::chrono::steady_clock::now();
    const std::vector<HatchPart> parts = hatchLines(outline, {fill}, 0.0);
    Result result;
    result.ms = msSince(begin);
    for (HatchPart const& part : parts) {
        result.segments += part.lines.segmentCount();
        for (std::size_t i = 0; i < part.lines.count(); ++i)
            result.length += part.lines.end(i)[-1].x() - part.lines.begin(i)->x();
    }
    return result;
}

/// The same rows as open lines, cut to the area.
Result clipped(std::vector<FlatLine> const& outline, double pitch) {
    constexpr double kSteps = 1.0e6;
    double low = 1.0e9, high = -1.0e9;
    ClipperLib::Paths area;
    for (FlatLine const& line : outline) {
        ClipperLib::Path path;
        for (int i = 0; i + 1 < line.points.size(); ++i) {
            QPointF const& p = line.points.at(i);
            path.emplace_back(std::llround(p.x() * kSteps), std::llround(p.y() * kSteps));
            low = std::min(low, p.y());
            high = std::max(high, p.y());
        }
        area.push_back(path);
    }
    const int rows = std::max(1, int(std::floor((high - low) / pitch + 1.0e-9)));
    const double first = (low + high - pitch * (rows - 1)) / 2.0;
    const auto begin = std::chrono::steady_clock::now();
    ClipperLib::Clipper clipper;
    clipper.AddPaths(area, ClipperLib::ptClip, true);
    for (int i = 0; i < rows; ++i) {
        const ClipperLib::cInt y = std::llround((first + pitch * i) * kSteps);
        clipper.AddPath({{-60'000'000, y}, {60'000'000, y}}, ClipperLib::ptSubject, false);
    }
    ClipperLib::PolyTree tree;
    clipper.Execute(ClipperLib::ctIntersection, tree, ClipperLib::pftEvenOdd, ClipperLib::pftEvenOdd);
    ClipperLib::Paths lines;
    ClipperLib::OpenPathsFromPolyTree(tree, lines);
    Result result;
    result.ms = msSince(begin);
    result.segments = lines.size();
    for (ClipperLib::Path const& path : lines)
        result.length += std::abs(double(path.back().X - path.front().X)) / kSteps;
    return result;
}

void compare(char const* name, std::vector<FlatLine> const& outline, double pitch) {
    const Result mine = ours(outline, pitch);
    const Result reference = clipped(outline, pitch);
    std::printf("%-34s %8.1f ms  beside clipping %9.1f ms  ratio %.3f  segments %zu / %zu  length off by %.6f %%\n",
                name, mine.ms, reference.ms, mine.ms / reference.ms, mine.segments, reference.segments,
                100.0 * std::abs(mine.length - reference.length) / reference.length);
}

} // namespace

int main() {
    compare("gear of 10,000 vertices, 100 um", gear(10'000), 0.1);
    compare("gear of 10,000 vertices, 10 um", gear(10'000), 0.01);
    compare("500 nested outlines, 100 um", nested(500), 0.1);
    compare("500 nested outlines, 10 um", nested(500), 0.01);
    return 0;
}

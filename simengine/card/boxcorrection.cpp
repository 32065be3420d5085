// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/boxcorrection.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr double kMaxCoordinate = 10000.0; ///< mm
constexpr double kRadPerDegree = 3.14159265358979323846 / 180.0;
/// The shares grow no further beyond twice the field's edge.
constexpr double kFarthest = 2.0;

double finite(double value, double otherwise) {
    return std::isfinite(value) ? value : otherwise;
}

double held(double value) {
    return std::clamp(value, -kMaxCoordinate, kMaxCoordinate);
}

bool isPlain(const BoxCorrection::Mirror& mirror) {
    return mirror.barrel == 0.0 && mirror.trapezoid == 0.0;
}

} // namespace

BoxCorrection BoxCorrection::sanitized() const {
    const BoxCorrection standard;
    BoxCorrection box = *this;
    box.halfField = finite(halfField, standard.halfField);
    box.offsetX = finite(offsetX, 0.0);
    box.offsetY = finite(offsetY, 0.0);
    box.angle = finite(angle, 0.0);
    for (Mirror& mirror : box.mirrors) {
        mirror.scale = finite(mirror.scale, 1.0);
        mirror.barrel = finite(mirror.barrel, 0.0);
        mirror.parallelogram = finite(mirror.parallelogram, 0.0);
        mirror.trapezoid = finite(mirror.trapezoid, 0.0);
    }
    for (Light& line : box.light) {
        line.scale = finite(line.scale, 1.0);
        line.offset = finite(line.offset, 0.0);
    }
    return box;
}

bool BoxCorrection::isNeutral() const {
    const auto plain = [](const Mirror& mirror) {
        return mirror.scale == 1.0 && mirror.parallelogram == 0.0 && isPlain(mirror);
    };
    const auto unlit = [](const Light& line) { return line.scale == 1.0 && line.offset == 0.0; };
    return offsetX == 0.0 && offsetY == 0.0 && angle == 0.0 && mirror1IsX && !mirror1Reverse && !mirror2Reverse &&
           std::all_of(mirrors.begin(), mirrors.end(), plain) && std::all_of(light.begin(), light.end(), unlit);
}

bool BoxCorrection::isStraight() const {
    return halfField <= 0.0 || std::all_of(mirrors.begin(), mirrors.end(), isPlain);
}

double BoxCorrection::driven(const Mirror& mirror, double own, double other) const {
    double growth = 1.0;
    if (halfField > 0.0) {
        const double u = std::clamp(own / halfField, -kFarthest, kFarthest);
        const double v = std::clamp(other / halfField, -kFarthest, kFarthest);
        growth += mirror.barrel * (u * u + v * v) + mirror.trapezoid * v;
    }
    return held(mirror.scale * (own * growth + mirror.parallelogram * other));
}

Point BoxCorrection::mirrorsFor(Point commanded, bool pilot) const {
    const double c = std::cos(angle * kRadPerDegree);
    const double s = std::sin(angle * kRadPerDegree);
    Point p{commanded.x * c - commanded.y * s + offsetX, commanded.x * s + commanded.y * c + offsetY};
    if (pilot)
        p = {p.x * light[0].scale + light[0].offset, p.y * light[1].scale + light[1].offset};
    const double first = mirror1IsX ? p.x : p.y;
    const double second = mirror1IsX ? p.y : p.x;
    const double m1 = driven(mirrors[0], first, second);
    const double m2 = driven(mirrors[1], second, first);
    return {mirror1Reverse ? -m1 : m1, mirror2Reverse ? -m2 : m2};
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/headmap.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace sim {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kRadPerDegree = kPi / 180.0;
/// Where barrel and trapezoid have the shares told, mm from the middle.
constexpr double kReach = 50.0;
/// The shares grow no further beyond this many reaches: the lens has no picture there.
constexpr double kFarthest = 2.0;
/// A bent way is shown by parts of this length, mm: their chords are off the line by less than 0.2 um at 3 % of barrel.
constexpr double kPartMm = 1.0;
constexpr int kMostParts = 1000;

std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    const double positive = value + 0.0; // no negative zero
    std::memcpy(&bits, &positive, sizeof bits);
    return bits;
}

/// 0 excluded, 1 included: its logarithm is taken.
double unit(std::uint64_t key) {
    return (static_cast<double>(key >> 11) + 1.0) / 9007199254740992.0;
}

} // namespace

const HeadValueRow kHeadValueRows[] = {
    {"scaleX", &SimHeadDistortion::scaleX, -10.0, 10.0},
    {"scaleY", &SimHeadDistortion::scaleY, -10.0, 10.0},
    {"rotation", &SimHeadDistortion::rotation, -360.0, 360.0},
    {"offsetX", &SimHeadDistortion::offsetX, -100.0, 100.0},
    {"offsetY", &SimHeadDistortion::offsetY, -100.0, 100.0},
    {"barrel", &SimHeadDistortion::barrel, -0.5, 0.5},
    {"trapezoidX", &SimHeadDistortion::trapezoidX, -0.4, 0.4},
    {"trapezoidY", &SimHeadDistortion::trapezoidY, -0.4, 0.4},
    {"skew", &SimHeadDistortion::skew, -45.0, 45.0},
    {"pilotScaleX", &SimHeadDistortion::pilotScaleX, 0.1, 10.0},
    {"pilotScaleY", &SimHeadDistortion::pilotScaleY, 0.1, 10.0},
    {"pilotOffsetX", &SimHeadDistortion::pilotOffsetX, -100.0, 100.0},
    {"pilotOffsetY", &SimHeadDistortion::pilotOffsetY, -100.0, 100.0},
    {"noise", &SimHeadDistortion::noise, 0.0, 1.0},
    {"seed", &SimHeadDistortion::seed, 0.0, 4294967295.0},
};
const int kHeadValueCount = static_cast<int>(std::size(kHeadValueRows));

const HeadValueRow* invalidHeadValue(const SimHeadDistortion& head) {
    for (const HeadValueRow& row : kHeadValueRows) {
        const double value = head.*row.value;
        const bool isScale = row.value == &SimHeadDistortion::scaleX || row.value == &SimHeadDistortion::scaleY;
        const bool isWhole = row.value != &SimHeadDistortion::seed || value == std::floor(value);
        // Written so that what is no number is out of the limits. A mirror may be inverted but not stand still.
        if (!(value >= row.low && value <= row.high) || !isWhole || (isScale && std::fabs(value) < 0.1))
            return &row;
    }
    return nullptr;
}

bool isNeutral(const SimHeadDistortion& head) {
    const SimHeadDistortion ideal;
    return std::all_of(std::begin(kHeadValueRows), std::end(kHeadValueRows), [&](const HeadValueRow& row) {
        return row.value == &SimHeadDistortion::seed || head.*row.value == ideal.*row.value;
    });
}

std::uint64_t mixedKey(std::uint64_t a, std::uint64_t b) {
    // splitmix64
    std::uint64_t z = a * 0x9E3779B97F4A7C15ull + b + 0x9E3779B97F4A7C15ull;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ z >> 27) * 0x94D049BB133111EBull;
    return z ^ z >> 31;
}

Point normalPair(std::uint64_t key) {
    const double radius = std::sqrt(-2.0 * std::log(unit(mixedKey(key, 1))));
    const double angle = 2.0 * kPi * unit(mixedKey(key, 2));
    return {radius * std::cos(angle), radius * std::sin(angle)};
}

Point distorted(const SimHeadDistortion& head, Point mirrors, bool pilot) {
    Point p = mirrors;
    if (pilot)
        p = {p.x * head.pilotScaleX + head.pilotOffsetX, p.y * head.pilotScaleY + head.pilotOffsetY};
    p = {head.scaleX * p.x + std::tan(head.skew * kRadPerDegree) * head.scaleY * p.y, head.scaleY * p.y};
    const double u = std::clamp(p.x / kReach, -kFarthest, kFarthest);
    const double v = std::clamp(p.y / kReach, -kFarthest, kFarthest);
    const double barrel = head.barrel * (u * u + v * v);
    p = {p.x * (1.0 + barrel + head.trapezoidX * v), p.y * (1.0 + barrel + head.trapezoidY * u)};
    const double c = std::cos(head.rotation * kRadPerDegree);
    const double s = std::sin(head.rotation * kRadPerDegree);
    return {p.x * c - p.y * s + head.offsetX, p.x * s + p.y * c + head.offsetY};
}

HeadMap::HeadMap(const SimHeadDistortion& head, const BoxCorrection& box, std::shared_ptr<const GridCorrection> grid,
                 bool pilot, std::uint64_t job, const Splice& splice)
    : m_splice(splice)
    , m_head(head)
    , m_box(box)
    , m_grid(std::move(grid))
    , m_pilot(pilot)
    , m_straight(!m_grid && box.isStraight() && head.barrel == 0.0 && head.trapezoidX == 0.0 && head.trapezoidY == 0.0)
    , m_key(mixedKey(static_cast<std::uint64_t>(head.seed), job)) {}

std::shared_ptr<const HeadMap> HeadMap::make(const SimHeadDistortion& head, const BoxCorrection& box,
                                             std::shared_ptr<const GridCorrection> grid, bool pilot, std::uint64_t job,
                                             const Splice& splice) {
    if (isNeutral(head) && box.isNeutral() && !grid && !splice.on)
        return nullptr;
    return std::make_shared<const HeadMap>(head, box, std::move(grid), pilot, job, splice);
}

Point HeadMap::withoutNoise(Point commanded) const {
    Point p = m_splice.applied(commanded);
    if (m_grid) {
        const Point correction = m_grid->at(p);
        p = {p.x + correction.x, p.y + correction.y};
    }
    return distorted(m_head, m_box.mirrorsFor(p, m_pilot), m_pilot);
}

Point HeadMap::noiseAt(Point commanded, std::uint64_t pass) const {
    if (m_head.noise == 0.0)
        return {};
    const std::uint64_t key = mixedKey(mixedKey(mixedKey(m_key, pass), bitsOf(commanded.x)), bitsOf(commanded.y));
    const Point pair = normalPair(key);
    return {pair.x * m_head.noise, pair.y * m_head.noise};
}

Point HeadMap::marked(Point commanded, std::uint64_t pass) const {
    const Point p = withoutNoise(commanded);
    const Point noise = noiseAt(commanded, pass);
    return {p.x + noise.x, p.y + noise.y};
}

int HeadMap::parts(Point from, Point to) const {
    if (m_straight)
        return 1;
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    return static_cast<int>(std::clamp(std::ceil(length / kPartMm), 1.0, static_cast<double>(kMostParts)));
}

} // namespace sim

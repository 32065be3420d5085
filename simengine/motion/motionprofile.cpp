// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/motion/motionprofile.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace sim {

namespace {

constexpr double kForever = std::numeric_limits<double>::infinity();

MotionPoint pointAfter(MotionPoint from, double acc, double time) {
    return {from.pos + (from.vel + 0.5 * acc * time) * time, from.vel + acc * time};
}

int signOf(double value) {
    return value < 0.0 ? -1 : 1;
}

} // namespace

void MotionProfile::append(double length, double acc) {
    if (length <= 0.0)
        return;
    m_pieces.push_back({m_duration, length, m_end, acc});
    if (std::isfinite(length))
        m_end = pointAfter(m_end, acc, length);
    m_duration += length;
}

/// Speed up, cruise and brake over `distance` (signed) from a speed in its direction that leaves room to stop.
void MotionProfile::appendMove(double distance, double speed, double acc) {
    int const direction = signOf(distance);
    double const length = std::fabs(distance);
    double const before = std::fabs(m_end.vel);
    double const target = m_end.pos + distance;
    if (before > speed) {
        append((before - speed) / acc, -direction * acc);
        double const left =
            std::max(0.0, length - (before * before - speed * speed) / (2.0 * acc) - speed * speed / (2.0 * acc));
        append(left / speed, 0.0);
        append(speed / acc, -direction * acc);
    } else {
        double const peak = std::min(speed, std::sqrt(acc * length + 0.5 * before * before));
        append((peak - before) / acc, direction * acc);
        double const left = length - (2.0 * peak * peak - before * before) / (2.0 * acc);
        if (peak == speed)
            append(std::max(0.0, left) / peak, 0.0);
        append(peak / acc, -direction * acc);
    }
    // The sums above leave rounding behind; the axis ends where it was sent.
    m_end = {target, 0.0};
}

MotionProfile MotionProfile::toPosition(MotionPoint from, double target, double speed, double acc) {
    MotionProfile profile(from.pos);
    profile.m_end = from;
    double const stopping = from.vel * from.vel / (2.0 * acc);
    bool const towards = from.vel == 0.0 || signOf(from.vel) == signOf(target - from.pos);
    if (!towards || stopping > std::fabs(target - from.pos)) {
        profile.append(std::fabs(from.vel) / acc, -signOf(from.vel) * acc);
        profile.m_end.vel = 0.0;
    }
    if (profile.m_end.pos != target)
        profile.appendMove(target - profile.m_end.pos, speed, acc);
    return profile;
}

MotionProfile MotionProfile::toSpeed(MotionPoint from, double signedSpeed, double acc) {
    MotionProfile profile(from.pos);
    profile.m_end = from;
    double const change = signedSpeed - from.vel;
    profile.append(std::fabs(change) / acc, signOf(change) * acc);
    profile.m_end.vel = signedSpeed;
    profile.append(kForever, 0.0);
    return profile;
}

MotionProfile MotionProfile::toRest(MotionPoint from, double acc) {
    MotionProfile profile(from.pos);
    profile.m_end = from;
    profile.append(std::fabs(from.vel) / acc, -signOf(from.vel) * acc);
    profile.m_end.vel = 0.0;
    return profile;
}

MotionPoint MotionProfile::at(double time) const {
    if (m_pieces.empty() || time >= m_duration)
        return {m_end.pos, 0.0};
    auto next = std::upper_bound(m_pieces.begin(), m_pieces.end(), std::max(0.0, time),
                                 [](double value, Piece const& piece) { return value < piece.start; });
    Piece const& piece = *std::prev(next);
    return pointAfter(piece.from, piece.acc, std::max(0.0, time) - piece.start);
}

std::optional<double> MotionProfile::crossing(double pos, int direction, double after) const {
    for (Piece const& piece : m_pieces) {
        // 0.5 a t^2 + v t = pos - from; the root at which the speed has the asked direction is the one that counts.
        double const way = pos - piece.from.pos;
        double const half = 0.5 * piece.acc;
        double root = kForever;
        if (half == 0.0) {
            if (piece.from.vel != 0.0)
                root = way / piece.from.vel;
        } else {
            double const inside = piece.from.vel * piece.from.vel + 4.0 * half * way;
            if (inside < 0.0)
                continue;
            root = (-piece.from.vel + direction * std::sqrt(inside)) / (2.0 * half);
        }
        if (!(root >= 0.0) || root > piece.length || !std::isfinite(root))
            continue;
        double const speed = piece.from.vel + piece.acc * root;
        if (speed * direction > 0.0 && piece.start + root >= after)
            return piece.start + root;
    }
    return std::nullopt;
}

/// Ends the profile at `time`, with the speed that it has there.
void MotionProfile::cutAt(double time) {
    if (time >= m_duration)
        return;
    MotionPoint const here = at(time);
    while (!m_pieces.empty() && m_pieces.back().start >= time)
        m_pieces.pop_back();
    if (!m_pieces.empty())
        m_pieces.back().length = time - m_pieces.back().start;
    m_end = here;
    m_duration = std::max(0.0, time);
}

void MotionProfile::haltAt(double time, double pos) {
    cutAt(time);
    m_end = {pos, 0.0};
}

void MotionProfile::brakeAt(double time, double acc) {
    cutAt(time);
    append(std::fabs(m_end.vel) / acc, -signOf(m_end.vel) * acc);
    m_end.vel = 0.0;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// Largest distance between a curve and the polyline that stands for it, mm: about one step of a 16-bit head on a
/// 130 mm field.
constexpr double kFlatteningTolerance = 0.002;

/// Objects reach at most this far from the field centre in each axis, mm. The operator's input boxes end here too.
constexpr double kMaxCoordinate = 1.0e6;

/// Largest absolute coordinate inside an object, before its transform is applied.
constexpr double kMaxLocalCoordinate = 1.0e9;

/// Characters of an object's name.
constexpr int kMaxNameLength = 1000;

/// Characters of the class name that the tool of a module has.
constexpr int kMaxToolClassLength = 200;

/// Bytes of the parameters of an object that a module made.
constexpr int kMaxToolParameterBytes = 65536;

/// Points that an object may have when its curves are lines, groups with all that is in them: 320 MB of them.
constexpr long long kMaxFlattenedPoints = 20'000'000;

/// Points of the outline of an object that a module made.
constexpr int kMaxGeneratedPoints = 200000;

/// Groups inside groups.
constexpr int kMaxGroupDepth = 32;

/// Ends of curves closer than this meet, mm.
constexpr double kJoinTolerance = 0.01;

/// Segments of a hatch are counted up to here, so that sums and doubles of counts are numbers still. So many are never
/// made.
constexpr long long kMostHatchCount = 1'000'000'000'000'000'000;

/// Extent below which an object counts as having none in that axis, mm.
constexpr double kNoExtent = 1.0e-9;

} // namespace sim

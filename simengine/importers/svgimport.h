// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importresult.h"

#include <QByteArray>

namespace sim {

/// Bytes of a file at most: the reader of XML takes several times as many.
constexpr int kMostSvgBytes = 64 << 20;

/// Imports the outlines of an SVG drawing. GUI application needed; main thread.
///
/// Size: the root's width and height with their units and its viewBox; a pixel, and a number without unit, is 1/96
/// inch. The y axis is turned upwards. Transforms, groups and references are resolved. The drawing is placed as the
/// options say. Each painted shape becomes one object in painting order: circles and ellipses a circle, rectangles with
/// sharp corners a rectangle, shapes of one straight contour a polyline, all others a path. A shape that is only filled
/// is imported as its outline. Pens: the first colour met is pen 0, the next other colour pen 1 and so on, the colour
/// being that of the line, or of the area where there is no line; from the twentieth colour on all go to pen 19. What
/// cannot be an object is told in the result. A file that cannot be read gives an error and no objects.
ImportResult importSvg(const QString& path, const ImportOptions& options = {});
ImportResult importSvgData(const QByteArray& bytes, const ImportOptions& options = {});

} // namespace sim

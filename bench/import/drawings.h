// SPDX-License-Identifier: MIT
#pragma once

#include <QPolygonF>
#include <QString>
#include <vector>

/// Drawings of many segments, made here and read again by means of their own.
namespace drawings {

/// Segments of one contour.
constexpr int kSegments = 100;
/// Side of the page, mm.
constexpr double kPage = 200.0;

/// A path for each contour, coordinates in mm with four digits behind the point, every fourth contour of one colour.
bool writeSvg(const QString& path, int segments);
/// By turns a light polyline and a chain of single lines, on four layers.
bool writeDxf(const QString& path, int segments);

/// The contours of a file written here, by a scan of its text.
std::vector<QPolygonF> readSvg(const QString& path);
std::vector<QPolygonF> readDxf(const QString& path);

} // namespace drawings

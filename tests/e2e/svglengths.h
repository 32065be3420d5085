// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QVector>

/// Lengths in mm of all contours of an SVG drawing whose root has its size in mm and a viewBox, shortest first. Made
/// for checking what was marked: samples every curve finely and shares nothing with the program.
QVector<double> svgContourLengths(QByteArray const& svg);

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPointF>
#include <QVector>

/// A correction table from a measured grid, computed without anything of the engine: a polynomial of two variables is
/// fitted to where the crosses came to lie (least squares, Householder reflections), and inverted by Newton's method at
/// each place of the table's lattice.
namespace fieldfit {

/// Where the head marks what it is told: u(x, y) and v(x, y) as sums of x^i y^k with i + k up to `degree`.
class FieldMap {
public:
    /// From the commanded places and what was measured of them, mm. `reach` is the largest coordinate.
    FieldMap(QVector<QPointF> const& commanded, QVector<QPointF> const& measured, double reach, int degree);

    QPointF marked(QPointF const& commanded) const;
    /// What must be commanded for a mark to come to lie at `wanted`.
    QPointF commandFor(QPointF const& wanted) const;

private:
    QVector<double> terms(QPointF const& at) const;

    double m_reach;
    int m_degree;
    QVector<double> m_x;
    QVector<double> m_y;
};

/// The bytes of "HighPrecisionCali.cl" for a field of the given edge: 257 x 257 cells of what is to be added to a
/// command, nothing beyond `bound` from the middle.
QByteArray correctionTable(FieldMap const& map, double fieldEdge, double bound);

/// The places of a measurement file: lines "x,y".
QVector<QPointF> readPoints(QByteArray const& text);

} // namespace fieldfit

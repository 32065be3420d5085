// SPDX-License-Identifier: MIT
#pragma once

#include "engine/drawnparts.h"
#include "engine/layerdata.h"

#include <QList>
#include <QRectF>
#include <QVector>

namespace tessera {

/// What one direction of a test grid runs through.
enum class GridQuantity { Power, MarkSpeed, Frequency };

/// One direction of a test grid: `count` values from `from` to `to`, both included, in equal steps.
struct GridAxis {
    GridQuantity quantity = GridQuantity::Power;
    double from = 0.0;
    double to = 0.0;
    int count = 1;
};

/// A matrix of hatched squares with which a material is tried out: every square has a pen of its own.
struct TestGrid {
    GridAxis columns{GridQuantity::Power, 20.0, 80.0, 4};
    GridAxis rows{GridQuantity::MarkSpeed, 200.0, 800.0, 4};
    double size = 8.0;   ///< mm, edge of a square
    double gap = 3.0;    ///< mm between squares
    double pitch = 0.1;  ///< mm between hatch lines
    double height = 2.0; ///< mm, of the labels

    int PensNeeded() const { return columns.count * rows.count; }
};

/// Why a grid cannot be drawn.
enum class GridFault { None, SameQuantity, TooFewPens, TooLarge };

/// The values of an axis in order.
QVector<double> GridValues(GridAxis const& axis);

/// Pens that a grid may take: those on which there is nothing, without `labelPen`, which keeps its parameters for the
/// labels.
QList<int> FreePens(QList<int> const& used, int labelPen);

/// The room that squares and labels take, mm.
QSizeF GridSize(TestGrid const& grid);

GridFault CheckGrid(TestGrid const& grid, int freePens, QRectF const& field);

/// A grid ready to be drawn. `pens` are in the order of the squares, row by row from the top left.
struct GridDrawing {
    QVector<DrawnRect> squares;
    QVector<DrawnText> labels;
    QVector<int> layers;
    QVector<LayerData> pens;
};

/// The grid in the middle of `field`, on the first of `freePens`. Each pen is `model` with its own two values; the
/// labels are on `labelPen`. The grid must have passed CheckGrid().
GridDrawing DrawGrid(TestGrid const& grid, LayerData const& model, QList<int> const& freePens, int labelPen,
                     QRectF const& field);

} // namespace tessera

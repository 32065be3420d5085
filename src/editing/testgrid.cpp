// SPDX-License-Identifier: MIT
#include "editing/testgrid.h"

#include "engine/marktypes.h"

namespace tessera {

namespace {

constexpr double kLabelGap = 1.5;    ///< mm between a label and its squares
constexpr double kLetterWidth = 1.0; ///< of a label's height, widest digit with the room behind it

double& valueOf(LayerData& pen, GridQuantity quantity) {
    switch (quantity) {
    case GridQuantity::MarkSpeed:
        return pen.MarkSpeed;
    case GridQuantity::Frequency:
        return pen.Fre;
    case GridQuantity::Power:
        break;
    }
    return pen.Power;
}

QString labelOf(double value) {
    return QString::number(value, 'g', 6);
}

double extent(TestGrid const& grid, int count) {
    return count * grid.size + (count - 1) * grid.gap;
}

/// Room at the left for the longest label of a row.
double labelWidth(TestGrid const& grid) {
    int letters = 0;
    for (double value : GridValues(grid.rows))
        letters = qMax(letters, labelOf(value).size());
    return letters * kLetterWidth * grid.height + kLabelGap;
}

} // namespace

QVector<double> GridValues(GridAxis const& axis) {
    QVector<double> values;
    for (int i = 0; i < axis.count; ++i)
        values.append(axis.count == 1 ? axis.from : axis.from + (axis.to - axis.from) * i / (axis.count - 1));
    return values;
}

QList<int> FreePens(QList<int> const& used, int labelPen) {
    QList<int> free;
    for (int pen = 0; pen < kLayerCount; ++pen) {
        if (pen != labelPen && !used.contains(pen))
            free.append(pen);
    }
    return free;
}

QSizeF GridSize(TestGrid const& grid) {
    return {labelWidth(grid) + extent(grid, grid.columns.count),
            extent(grid, grid.rows.count) + kLabelGap + grid.height};
}

GridFault CheckGrid(TestGrid const& grid, int freePens, QRectF const& field) {
    if (grid.columns.quantity == grid.rows.quantity)
        return GridFault::SameQuantity;
    if (grid.PensNeeded() > freePens)
        return GridFault::TooFewPens;
    const QSizeF size = GridSize(grid);
    return size.width() > field.width() || size.height() > field.height() ? GridFault::TooLarge : GridFault::None;
}

GridDrawing DrawGrid(TestGrid const& grid, LayerData const& model, QList<int> const& freePens, int labelPen,
                     QRectF const& field) {
    const QVector<double> columns = GridValues(grid.columns);
    const QVector<double> rows = GridValues(grid.rows);
    const QSizeF size = GridSize(grid);
    const double left = field.center().x() - size.width() / 2.0 + labelWidth(grid);
    const double top = field.center().y() + size.height() / 2.0 - grid.height - kLabelGap;
    const double step = grid.size + grid.gap;
    GridDrawing drawing;
    for (int column = 0; column < columns.size(); ++column)
        drawing.labels.append(
            {QPointF(left + column * step, top + kLabelGap), labelOf(columns[column]), grid.height, labelPen});
    for (int row = 0; row < rows.size(); ++row) {
        const double bottom = top - row * step - grid.size;
        drawing.labels.append({QPointF(left - labelWidth(grid), bottom + (grid.size - grid.height) / 2.0),
                               labelOf(rows[row]), grid.height, labelPen});
        for (int column = 0; column < columns.size(); ++column) {
            const int layer = freePens.at(row * columns.size() + column);
            FillParam fill;
            fill.Enable = true;
            fill.FillDist = grid.pitch;
            fill.FillLayer = layer;
            fill.FillType = 1;
            drawing.squares.append({QRectF(left + column * step, bottom, grid.size, grid.size), layer, {fill}});
            LayerData pen = model;
            pen.UseDefault = false;
            valueOf(pen, grid.columns.quantity) = columns[column];
            valueOf(pen, grid.rows.quantity) = rows[row];
            drawing.layers.append(layer);
            drawing.pens.append(pen);
        }
    }
    return drawing;
}

} // namespace tessera

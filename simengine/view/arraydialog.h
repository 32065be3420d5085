// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDialog>
#include <QSizeF>

class QDoubleSpinBox;
class QSpinBox;

namespace sim {

/// An array of copies: the selection is the first cell.
struct ArrayCells {
    int columns = 1;
    int rows = 1;
    double stepX = 0.0; ///< mm from cell to cell
    double stepY = 0.0;
};

/// Asks for the cells of an array.
class ArrayDialog : public QDialog {
    Q_OBJECT
public:
    /// `size` of one cell in mm, from which the first steps are taken.
    ArrayDialog(const QSizeF& size, QWidget* parent);
    ArrayCells cells() const;

private:
    QSpinBox* m_columns;
    QSpinBox* m_rows;
    QDoubleSpinBox* m_stepX;
    QDoubleSpinBox* m_stepY;
};

} // namespace sim

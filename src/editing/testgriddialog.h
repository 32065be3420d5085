// SPDX-License-Identifier: MIT
#pragma once

#include "editing/testgrid.h"

#include <QDialog>

class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QSpinBox;

/// Asks for a test grid and tells at once how many pens it takes and why it cannot be drawn. Main thread.
class TestGridDialog : public QDialog {
    Q_OBJECT
public:
    /// `kiloHertz`: the pens' frequency is in kHz.
    TestGridDialog(int freePens, QRectF const& field, bool kiloHertz, QWidget* parent = nullptr);

    tessera::TestGrid Grid() const;

private:
    struct AxisRow {
        QComboBox* quantity = nullptr;
        QDoubleSpinBox* from = nullptr;
        QDoubleSpinBox* to = nullptr;
        QSpinBox* count = nullptr;
    };

    AxisRow AddAxis(QGridLayout* layout, int row, char const* key, char const* name, tessera::GridAxis const& axis);
    QDoubleSpinBox* AddLength(QGridLayout* layout, int row, char const* key, char const* name, double value,
                              double least, int decimals);
    tessera::GridAxis Axis(AxisRow const& row) const;
    QString Message() const;
    void ShowState();

    int m_FreePens;
    QRectF m_Field;
    AxisRow m_Columns;
    AxisRow m_Rows;
    QDoubleSpinBox* m_pSize = nullptr;
    QDoubleSpinBox* m_pGap = nullptr;
    QDoubleSpinBox* m_pPitch = nullptr;
    QLabel* m_pState;
    QPushButton* m_pDraw;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QVector>
#include <QWidget>

class QCheckBox;
class QDoubleSpinBox;
class QLabel;

/// A power curve of 20 points as a table: x in ms, or in mm for a line curve over the distance, and y in percent. Of a
/// line curve the first ten rows are the ramp-in and the others the ramp-out. Main thread.
class ListPFEdit : public QWidget {
    Q_OBJECT
public:
    /// `curve` gives 20 points, which are copied.
    ListPFEdit(bool isLine, bool enable, bool xIsDistance, QPointF const* curve, QWidget* parent = nullptr);

    void GetPowerStatus(bool& enable, bool& xIsDistance) const;
    void SetUIText();

signals:
    /// A value of the table was changed; the points are the whole table.
    void PowerChanged(QVector<QPointF>& points);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void EditPowerChanged(double value);
    void CheckBoxStateChanged(int state);
    void SetUIPos();
    QLabel* AddLabel();
    QDoubleSpinBox* AddBox(char axis, int row, double maximum, double value);

    struct Heading {
        QLabel* half;
        QLabel* row;
        QLabel* x;
        QLabel* y;
    };

    QVector<QPointF> m_Points;
    QVector<QDoubleSpinBox*> m_XBoxes;
    QVector<QDoubleSpinBox*> m_YBoxes;
    QVector<QLabel*> m_RowLabels;
    QVector<Heading> m_Headings; ///< of the two blocks of rows
    QCheckBox* m_pEnable;
    QCheckBox* m_pXIsDistance;
    bool IsLine;
    bool Enable;
    bool XIsDistance;
    bool Ready = false;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QPointF>
#include <QVector>
#include <QWidget>

class ListPFEdit;
class QPainter;
class QTouchEvent;

/// Draws a power curve. The wheel and a pinch zoom; the middle button or a finger pans; the curve under the pointer is
/// drawn stronger and with its values. Main thread.
class EditPower : public QWidget {
    Q_OBJECT
public:
    /// `curve` gives 20 points, which are copied. Of a line the first ten are the ramp-in, the others the ramp-out.
    EditPower(bool isLine, QPointF const* curve, QWidget* parent = nullptr);

    /// Follows this table.
    void SetPFEdit(ListPFEdit* edit);
    /// Takes over 20 points; any other number is ignored.
    void PowerChanged(QVector<QPointF>& points);
    /// The curve to store: 20 points. A line's ramp-in starts at 0 and its ramp-out where the ramp-in ended, whatever
    /// the table says.
    QVector<QPointF> GetPower() const;
    /// Power of the last ramp-in point that has an x, 0 when there is none.
    double GetLastPowerStart() const;

    /// Where (x, y) of the curve is drawn, at sx and sy pixels a unit.
    QPointF GetPowerPoint(double x, double y, double sx, double sy) const;
    QPoint PanOffset() const { return m_Pan; }
    double ScaleFactor() const { return Scale; }
    int Zoom() const { return ZoomLevel; }
    /// Drawn stronger: 0 the curve or the ramp-in, 1 the ramp-out, -1 none.
    int HighlightedHalf() const { return m_Highlighted; }
    /// The lines as they are drawn now, in pixels: one for a point curve, two for a line.
    QVector<QVector<QPointF>> DrawnLines() const;

    QSize minimumSizeHint() const override { return {200, 160}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool event(QEvent* event) override;

private:
    void Fill(QPointF const* points);
    void Enlarge(bool in);
    void Touch(QTouchEvent* event);
    void PanBy(QPoint const& offset);
    void Highlight(QPointF const& place);
    QPointF Scales() const;
    void DrawAxes(QPainter& painter) const;
    void DrawTicks(QPainter& painter) const;
    void DrawZeros(QPainter& painter) const;
    void DrawPower(QPainter& painter) const;
    void DrawPowerPoint(QPainter& painter, bool values) const;
    void DrawPowerLine(QPainter& painter) const;
    void DrawHalf(QPainter& painter, int half, bool values) const;

    QVector<QPointF> First;
    QVector<QPointF> Second;
    bool IsLine;
    QPoint m_Pan;
    QPoint m_LastPlace;
    double Scale = 0.8;
    int ZoomLevel = 0;
    int m_Highlighted = -1;
    int m_Fingers = 0;             ///< on the panel
    double m_FingerDistance = 1.0; ///< px, of two fingers
};

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/viewtransform.h"

#include <QWidget>
#include <optional>

namespace sim {

/// A ruler in mm along one edge of the canvas, with a mark at the pointer's place.
class RulerBar : public QWidget {
    Q_OBJECT
public:
    static constexpr int kThickness = 24;

    RulerBar(Qt::Orientation orientation, QWidget* parent);

    /// Repaints only when the part of the field that the ruler shows has changed.
    void setTransform(const ViewTransform& transform);
    /// Place of the pointer along the ruler in pixels, nothing when it is outside the canvas.
    void setCursorMark(std::optional<double> pixel);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintTicks(QPainter& painter) const;
    void paintMark(QPainter& painter) const;
    QRect markRect(double pixel) const;

    Qt::Orientation m_orientation;
    ViewTransform m_transform;
    std::optional<double> m_mark;
};

} // namespace sim

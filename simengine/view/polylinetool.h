// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/canvastool.h"

#include <QPolygonF>

namespace sim {

/// Each press adds a point; the right button, Enter or a double click ends the line, a press on its first point closes
/// it, Backspace takes the last point back. Shift keeps to multiples of 45 degrees.
class PolylineTool : public CanvasTool {
public:
    using CanvasTool::CanvasTool;
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint& point) override;
    void release(const CanvasPoint&) override {}
    void doubleClick(const CanvasPoint& point) override;
    bool key(const QKeyEvent& event) override;
    bool cancel() override;
    bool snaps() const override { return true; }
    void paint(QPainter& painter) const override;
    QCursor cursor() const override { return Qt::CrossCursor; }
    QString readout() const override;

private:
    QPointF snapped(const CanvasPoint& point) const;
    bool closes(const QPointF& pixel) const;
    void finish(bool closed);

    QPolygonF m_points; ///< mm
    CanvasPoint m_current;
};

} // namespace sim

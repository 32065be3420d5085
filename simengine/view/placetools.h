// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"
#include "simengine/view/canvastool.h"

#include <optional>

namespace sim {

/// A press adds a mark point; the right button goes back to selecting.
class PointTool : public CanvasTool {
public:
    using CanvasTool::CanvasTool;
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint&) override {}
    void release(const CanvasPoint&) override {}
    bool cancel() override { return false; }
    bool snaps() const override { return true; }
    QCursor cursor() const override { return Qt::CrossCursor; }
};

/// Draws what two corners or a centre and a place on the edge define: press, drag and release, or two presses. Shift
/// makes a rectangle a square and Control takes the first place as its middle.
class BoxTool : public CanvasTool {
public:
    enum class Makes { Rect, Circle, Zoom };

    BoxTool(CanvasWidget& canvas, Makes makes)
        : CanvasTool(canvas)
        , m_makes(makes) {}
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint& point) override;
    void release(const CanvasPoint& point) override;
    bool cancel() override;
    bool snaps() const override { return m_makes != Makes::Zoom; }
    void paint(QPainter& painter) const override;
    QCursor cursor() const override { return Qt::CrossCursor; }
    QString readout() const override;

private:
    void finish();
    QRectF rectMm() const;
    double radiusMm() const;

    Makes m_makes;
    std::optional<CanvasPoint> m_first;
    CanvasPoint m_current;
};

/// Answers a press of an operator that the document has no object for with a line in the log.
class RefusedTool : public CanvasTool {
public:
    using CanvasTool::CanvasTool;
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint&) override {}
    void release(const CanvasPoint&) override {}
    bool cancel() override { return false; }
    QCursor cursor() const override { return Qt::ForbiddenCursor; }
};

} // namespace sim

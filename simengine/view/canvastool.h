// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QCursor>
#include <QPointF>
#include <QString>
#include <memory>

class QKeyEvent;
class QPainter;

namespace sim {

class CanvasWidget;

/// A press, move or release on the canvas.
struct CanvasPoint {
    QPointF pixel;
    QPointF mm;
    Qt::MouseButton button = Qt::NoButton; ///< Qt::NoButton in a move
    bool held = false;                     ///< the left button or a finger is down
    bool touch = false;
    Qt::KeyboardModifiers modifiers;
};

/// What presses on the canvas do: one class for each operator, or for several that differ in what they place.
class CanvasTool {
public:
    explicit CanvasTool(CanvasWidget& canvas)
        : m_canvas(canvas) {}
    virtual ~CanvasTool() = default;

    virtual void press(const CanvasPoint& point) = 0;
    virtual void move(const CanvasPoint& point) = 0;
    virtual void release(const CanvasPoint& point) = 0;
    virtual void doubleClick(const CanvasPoint&) {}
    /// True when the key was used.
    virtual bool key(const QKeyEvent&) { return false; }
    /// Ends what is going on without a trace: a second finger came, the operator or the document changed. True when
    /// something was going on.
    virtual bool cancel() = 0;
    /// The pointer has left the canvas.
    virtual void leave() {}
    /// Objects or selection are different; the canvas shows them already.
    virtual void documentChanged() {}
    /// The frame around the selection is not drawn.
    virtual bool hidesFrame() const { return false; }
    /// Drawn over the objects, in pixels.
    virtual void paint(QPainter&) const {}
    /// The places of presses and moves are drawn to the snap targets before the tool gets them.
    virtual bool snaps() const { return false; }
    virtual QCursor cursor() const { return Qt::ArrowCursor; }
    /// Numbers of what is going on, shown beside the pointer.
    virtual QString readout() const { return {}; }

protected:
    CanvasWidget& m_canvas;
};

} // namespace sim

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/qrulerview.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/qrulerviewaccess.h"
#include "simengine/view/viewsession.h"
#include "support/temporaryroot.h"

#include <QtTest>

namespace tests {

/// A shown view of one document below a fresh root. Its canvas is 800 by 600 pixels, the field centre in the middle, at
/// 5 pixels a mm.
class ViewFixture {
public:
    ViewFixture();

    sim::ViewSession& session() { return QRulerViewAccess::session(view); }
    sim::CanvasWidget& canvas() { return QRulerViewAccess::canvas(view); }
    sim::StatePtr state() { return session().state(); }
    QPoint pixel(double x, double y) { return canvas().viewTransform().toPixel({x, y}).toPoint(); }

    /// Adds an object with a pen and leaves nothing selected; gives its index.
    int add(const sim::Shape& shape, int pen = 0);
    int addRect(double x, double y, double width, double height, int pen = 0);
    int addCircle(double x, double y, double radius, int pen = 0);
    int addLine(const QPolygonF& points, int pen = 0, bool closed = false);
    sim::Box bounds(int index) { return state()->at(index)->bounds(); }
    QList<int> selected() { return state()->selection.ordered(); }

    void press(double x, double y, Qt::KeyboardModifiers modifiers = {}, Qt::MouseButton button = Qt::LeftButton);
    /// Moves the pointer with the left button down.
    void drag(double x, double y, Qt::KeyboardModifiers modifiers = {}, Qt::MouseButtons buttons = Qt::LeftButton);
    void release(double x, double y, Qt::KeyboardModifiers modifiers = {}, Qt::MouseButton button = Qt::LeftButton);
    void click(double x, double y, Qt::KeyboardModifiers modifiers = {}, Qt::MouseButton button = Qt::LeftButton);
    /// Press, three moves on the way, release.
    void dragFromTo(const QPointF& from, const QPointF& to, Qt::KeyboardModifiers modifiers = {});
    void hover(double x, double y) { drag(x, y, {}, Qt::NoButton); }

    /// Steps back until there is none; gives their number.
    int undoSteps();

    TemporaryRoot root;
    QRulerView view{nullptr};
};

} // namespace tests

// SPDX-License-Identifier: MIT
#include "viewfixture.h"

#include "simengine/view/rulerbar.h"

namespace tests {

ViewFixture::ViewFixture() {
    view.SetFileName(QStringLiteral("drawing"));
    view.resize(800 + sim::RulerBar::kThickness, 600 + sim::RulerBar::kThickness);
    view.show();
    if (!QTest::qWaitForWindowExposed(&view))
        qFatal("the view was not shown");
    sim::ViewTransform transform;
    transform.setViewport(canvas().size());
    transform.zoomAbout(QPointF(canvas().width() / 2.0, canvas().height() / 2.0), 5.0 / transform.scale());
    canvas().setViewTransform(transform);
    // Places are those of the test, unless it is about snapping.
    sim::SnapSettings off;
    off.on = false;
    canvas().snap().setSettings(off);
}

int ViewFixture::add(const sim::Shape& shape, int pen) {
    session().setCurrentPen(pen, false);
    if (!session().addShape(shape))
        qFatal("the object was not added");
    session().document().select({});
    return state()->count() - 1;
}

int ViewFixture::addRect(double x, double y, double width, double height, int pen) {
    return add(sim::RectShape{QRectF(x, y, width, height)}, pen);
}

int ViewFixture::addCircle(double x, double y, double radius, int pen) {
    return add(sim::CircleShape{QPointF(x, y), radius, 0.0, false}, pen);
}

int ViewFixture::addLine(const QPolygonF& points, int pen, bool closed) {
    return add(sim::PolylineShape{points, closed}, pen);
}

void ViewFixture::press(double x, double y, Qt::KeyboardModifiers modifiers, Qt::MouseButton button) {
    QTest::mousePress(&canvas(), button, modifiers, pixel(x, y));
}

// QTest's own move carries neither buttons nor modifiers.
void ViewFixture::drag(double x, double y, Qt::KeyboardModifiers modifiers, Qt::MouseButtons buttons) {
    const QPoint at = pixel(x, y);
    QMouseEvent event(QEvent::MouseMove, at, canvas().mapToGlobal(at), Qt::NoButton, buttons, modifiers);
    QCoreApplication::sendEvent(&canvas(), &event);
}

void ViewFixture::release(double x, double y, Qt::KeyboardModifiers modifiers, Qt::MouseButton button) {
    QTest::mouseRelease(&canvas(), button, modifiers, pixel(x, y));
}

void ViewFixture::click(double x, double y, Qt::KeyboardModifiers modifiers, Qt::MouseButton button) {
    press(x, y, modifiers, button);
    release(x, y, modifiers, button);
}

void ViewFixture::dragFromTo(const QPointF& from, const QPointF& to, Qt::KeyboardModifiers modifiers) {
    press(from.x(), from.y(), modifiers);
    for (const double part : {0.3, 0.7, 1.0}) {
        const QPointF at = from + part * (to - from);
        drag(at.x(), at.y(), modifiers);
    }
    release(to.x(), to.y(), modifiers);
}

int ViewFixture::undoSteps() {
    int steps = 0;
    while (session().document().undo())
        ++steps;
    return steps;
}

} // namespace tests

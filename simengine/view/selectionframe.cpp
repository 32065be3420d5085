// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/selectionframe.h"

#include "simengine/document/limits.h"

#include <QLineF>
#include <QtMath>

namespace sim {

namespace {

/// Side of the box that a handle belongs to: -1 low, 0 middle, 1 high.
struct Side {
    int x;
    int y;
};

constexpr std::array<Side, kScaleHandleCount> kSides = {
    {{-1, 1}, {0, 1}, {1, 1}, {-1, 0}, {1, 0}, {-1, -1}, {0, -1}, {1, -1}}};

constexpr double kSmallestFactor = 0.001;

bool scales(FrameHandle handle) {
    return handle >= FrameHandle::TopLeft && handle <= FrameHandle::BottomRight;
}

double pick(int side, double low, double high) {
    return side < 0 ? low : side > 0 ? high : (low + high) / 2.0;
}

} // namespace

SelectionFrame::SelectionFrame(const Box& box, const ViewTransform& transform)
    : m_box(box) {
    const QPointF topLeft = transform.toPixel({box.minX, box.maxY});
    const QPointF bottomRight = transform.toPixel({box.maxX, box.minY});
    m_rect = QRectF(topLeft, bottomRight).adjusted(-kGap, -kGap, kGap, kGap);
}

QPointF SelectionFrame::handlePos(FrameHandle handle) const {
    if (handle == FrameHandle::Rotate)
        return {m_rect.center().x(), m_rect.top() - kRotateDistance};
    if (handle == FrameHandle::Move)
        return {m_rect.center().x(), m_rect.bottom() + kMoveDistance};
    if (!scales(handle))
        return m_rect.center();
    const Side side = kSides[static_cast<std::size_t>(handle)];
    return {pick(side.x, m_rect.left(), m_rect.right()), pick(-side.y, m_rect.top(), m_rect.bottom())};
}

bool SelectionFrame::hasHandle(FrameHandle handle) const {
    const bool wide = m_box.width() > kNoExtent;
    const bool high = m_box.height() > kNoExtent;
    if (handle == FrameHandle::Move)
        return true;
    if (handle == FrameHandle::Rotate)
        return wide || high;
    if (!scales(handle))
        return false;
    const Side side = kSides[static_cast<std::size_t>(handle)];
    if (side.x != 0 && side.y != 0)
        return wide && high;
    // Edge handles need room between the corners.
    constexpr double kRoom = 36.0;
    if (side.x != 0)
        return wide && (!high || m_rect.height() >= kRoom);
    return high && (!wide || m_rect.width() >= kRoom);
}

FrameHandle SelectionFrame::handleAt(const QPointF& pixel, double reach) const {
    static constexpr FrameHandle kOrder[] = {FrameHandle::BottomRight, FrameHandle::TopRight, FrameHandle::BottomLeft,
                                             FrameHandle::TopLeft,     FrameHandle::Rotate,   FrameHandle::Right,
                                             FrameHandle::Bottom,      FrameHandle::Left,     FrameHandle::Top,
                                             FrameHandle::Move};
    FrameHandle nearest = FrameHandle::None;
    double best = reach;
    for (const FrameHandle handle : kOrder) {
        if (!hasHandle(handle))
            continue;
        const double distance = QLineF(handlePos(handle), pixel).length();
        if (distance < best) {
            best = distance;
            nearest = handle;
        }
    }
    return nearest;
}

QPointF handlePoint(const Box& box, FrameHandle handle) {
    if (!scales(handle))
        return box.center();
    const Side side = kSides[static_cast<std::size_t>(handle)];
    return {pick(side.x, box.minX, box.maxX), pick(side.y, box.minY, box.maxY)};
}

QPointF fixedPoint(const Box& box, FrameHandle handle) {
    if (!scales(handle))
        return box.center();
    const Side side = kSides[static_cast<std::size_t>(handle)];
    return {pick(-side.x, box.minX, box.maxX), pick(-side.y, box.minY, box.maxY)};
}

ScaleDrag scaleDrag(const Box& box, FrameHandle handle, const QPointF& from, const QPointF& to, bool free,
                    bool centered) {
    ScaleDrag drag;
    drag.fixed = centered ? box.center() : fixedPoint(box, handle);
    if (!scales(handle))
        return drag;
    const Side side = kSides[static_cast<std::size_t>(handle)];
    // With the middle fixed, both edges move.
    const double reach = centered ? 2.0 : 1.0;
    if (side.x != 0 && box.width() > kNoExtent)
        drag.scaleX = 1.0 + reach * side.x * (to.x() - from.x()) / box.width();
    if (side.y != 0 && box.height() > kNoExtent)
        drag.scaleY = 1.0 + reach * side.y * (to.y() - from.y()) / box.height();
    if (side.x != 0 && side.y != 0 && !free) {
        const double factor = std::abs(drag.scaleX - 1.0) > std::abs(drag.scaleY - 1.0) ? drag.scaleX : drag.scaleY;
        drag.scaleX = drag.scaleY = factor;
    }
    drag.scaleX = std::max(drag.scaleX, kSmallestFactor);
    drag.scaleY = std::max(drag.scaleY, kSmallestFactor);
    return drag;
}

double rotationDrag(const QPointF& pivot, const QPointF& from, const QPointF& to, bool snap) {
    const QPointF a = from - pivot;
    const QPointF b = to - pivot;
    if (a.isNull() || b.isNull())
        return 0.0;
    double degrees = qRadiansToDegrees(std::atan2(b.y(), b.x()) - std::atan2(a.y(), a.x()));
    if (snap)
        degrees = std::round(degrees / 15.0) * 15.0;
    if (degrees > 180.0)
        degrees -= 360.0;
    else if (degrees <= -180.0)
        degrees += 360.0;
    return degrees;
}

QTransform scaleAbout(const QPointF& fixed, double scaleX, double scaleY) {
    return QTransform::fromTranslate(-fixed.x(), -fixed.y()) * QTransform::fromScale(scaleX, scaleY) *
           QTransform::fromTranslate(fixed.x(), fixed.y());
}

QTransform rotateAbout(const QPointF& pivot, double degrees) {
    QTransform turn;
    turn.rotate(degrees);
    return QTransform::fromTranslate(-pivot.x(), -pivot.y()) * turn * QTransform::fromTranslate(pivot.x(), pivot.y());
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/devicelines.h"

#include <QPainter>
#include <cmath>

namespace sim {

namespace {

/// Square of the distance in pixels below which a vertex adds nothing that can be seen.
constexpr double kSquaredResolution = 0.25;

/// Pixels by which a line may lean and still lie along an axis.
constexpr double kLean = 0.02;

} // namespace

DeviceLines::DeviceLines(const QTransform& toPixel, const QRectF& bounds)
    : m_bounds(bounds)
    , m_xx(toPixel.m11())
    , m_xy(toPixel.m21())
    , m_yx(toPixel.m12())
    , m_yy(toPixel.m22())
    , m_dx(toPixel.dx())
    , m_dy(toPixel.dy()) {}

void DeviceLines::clear() {
    m_points.clear();
    m_ends.clear();
    m_runStart = 0;
}

void DeviceLines::append(double x, double y) {
    m_points.append(QPointF(x, y));
}

void DeviceLines::endRun() {
    if (m_points.size() - m_runStart >= 2) {
        sharpen();
        m_ends.append(m_points.size());
    } else {
        m_points.resize(m_runStart);
    }
    m_runStart = m_points.size();
}

void DeviceLines::sharpen() {
    QPointF* points = m_points.data();
    const auto middle = [](double value) { return std::floor(value) + 0.5; };
    const int last = m_points.size() - 1;
    const QPointF first = points[m_runStart];
    const bool closed = points[last] == first;
    QPointF before = first; // as it was, for its part in the next segment
    for (int i = m_runStart + 1; i < m_points.size(); ++i) {
        const QPointF here = points[i];
        if (std::abs(here.x() - before.x()) < kLean)
            points[i - 1].rx() = points[i].rx() = middle(before.x());
        if (std::abs(here.y() - before.y()) < kLean)
            points[i - 1].ry() = points[i].ry() = middle(before.y());
        before = here;
    }
    if (!closed)
        return;
    QPointF& begin = points[m_runStart];
    if (begin.x() == first.x())
        begin.setX(points[last].x());
    if (begin.y() == first.y())
        begin.setY(points[last].y());
    points[last] = begin;
}

void DeviceLines::addWhole(const QPolygonF& mm) {
    const int count = mm.size();
    if (count < 2)
        return;
    const QPointF* points = mm.constData();
    double lastX = pixelX(points[0]);
    double lastY = pixelY(points[0]);
    append(lastX, lastY);
    for (int i = 1; i < count; ++i) {
        const double x = pixelX(points[i]);
        const double y = pixelY(points[i]);
        const double dx = x - lastX;
        const double dy = y - lastY;
        // The last vertex stays, so that a line smaller than a pixel is still a speck.
        if (dx * dx + dy * dy < kSquaredResolution && i + 1 < count)
            continue;
        append(x, y);
        lastX = x;
        lastY = y;
    }
    endRun();
}

void DeviceLines::add(const QPolygonF& mm) {
    const int count = mm.size();
    if (count < 2)
        return;
    const QPointF* points = mm.constData();
    double lastX = pixelX(points[0]);
    double lastY = pixelY(points[0]);
    bool open = false; // the run's last point is (lastX, lastY)
    for (int i = 1; i < count; ++i) {
        const double x = pixelX(points[i]);
        const double y = pixelY(points[i]);
        const double dx = x - lastX;
        const double dy = y - lastY;
        if (dx * dx + dy * dy < kSquaredResolution && i + 1 < count)
            continue;
        double x1 = lastX, y1 = lastY, x2 = x, y2 = y;
        if (!clip(x1, y1, x2, y2)) {
            if (open)
                endRun();
            open = false;
        } else {
            if (!open)
                append(x1, y1);
            append(x2, y2);
            open = x2 == x && y2 == y;
            if (!open)
                endRun();
        }
        lastX = x;
        lastY = y;
    }
    endRun();
}

// Cuts the segment to the bounds; false when nothing of it is inside.
bool DeviceLines::clip(double& x1, double& y1, double& x2, double& y2) const {
    const double left = m_bounds.left(), right = m_bounds.right();
    const double top = m_bounds.top(), bottom = m_bounds.bottom();
    const auto inside = [&](double x, double y) { return x >= left && x <= right && y >= top && y <= bottom; };
    const bool endInside = inside(x2, y2);
    if (inside(x1, y1) && endInside)
        return true;
    double from = 0.0, to = 1.0;
    const double dx = x2 - x1, dy = y2 - y1;
    const double p[] = {-dx, dx, -dy, dy};
    const double q[] = {x1 - left, right - x1, y1 - top, bottom - y1};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0)
                return false;
        } else if (p[i] < 0.0) {
            from = std::max(from, q[i] / p[i]);
        } else {
            to = std::min(to, q[i] / p[i]);
        }
    }
    if (from > to)
        return false;
    const double startX = x1, startY = y1;
    if (from > 0.0) {
        x1 = startX + from * dx;
        y1 = startY + from * dy;
    }
    if (!endInside) {
        x2 = startX + to * dx;
        y2 = startY + to * dy;
    }
    return true;
}

void DeviceLines::paint(QPainter& painter) const {
    int begin = 0;
    for (const int end : m_ends) {
        painter.drawPolyline(m_points.constData() + begin, end - begin);
        begin = end;
    }
}

QVector<QPolygonF> DeviceLines::runs() const {
    QVector<QPolygonF> result;
    int begin = 0;
    for (const int end : m_ends) {
        result.append(QPolygonF(m_points.mid(begin, end - begin)));
        begin = end;
    }
    return result;
}

} // namespace sim

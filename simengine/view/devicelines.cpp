// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/devicelines.h"

#include "simengine/view/draftraster.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// Square of the distance in pixels below which a vertex adds nothing that can be seen.
constexpr double kSquaredResolution = 0.25;

/// Pixels by which a line may lean and still lie along an axis.
constexpr double kLean = 0.02;

} // namespace

DeviceLines::DeviceLines(const QTransform& toPixel, const QRectF& bounds)
    : m_toPixel(toPixel)
    , m_bounds(bounds) {
    setTransform(toPixel);
}

void DeviceLines::setTransform(const QTransform& toPixel) {
    m_xx = toPixel.m11();
    m_xy = toPixel.m21();
    m_yx = toPixel.m12();
    m_yy = toPixel.m22();
    m_dx = toPixel.dx();
    m_dy = toPixel.dy();
}

void DeviceLines::addPlaced(const QPointF* points, int count, bool closed, const QTransform& toMm, bool whole) {
    const bool inField = toMm.isIdentity();
    if (!inField)
        setTransform(toMm * m_toPixel);
    QVector<QPointF> ring;
    if (closed) {
        ring.reserve(count + 1);
        ring.resize(count);
        std::copy(points, points + count, ring.begin());
        ring.append(points[0]);
        points = ring.constData();
        ++count;
    }
    if (whole)
        addWhole(points, count);
    else
        add(points, count);
    if (!inField)
        setTransform(m_toPixel);
}

void DeviceLines::clear() {
    m_points.clear();
    m_ends.clear();
    m_runStart = 0;
    m_effort = 0.0;
}

void DeviceLines::endRun() {
    if (size() - m_runStart >= 2) {
        finishRun();
        m_ends.push_back(size());
    } else {
        m_points.resize(static_cast<std::size_t>(m_runStart));
    }
    m_runStart = size();
}

void DeviceLines::finishRun() {
    QPointF* points = m_points.data();
    const auto middle = [](double value) { return std::floor(value) + 0.5; };
    const int last = size() - 1;
    const QPointF first = points[m_runStart];
    const bool closed = points[last] == first;
    QPointF before = first; // as it was, for its part in the next segment
    for (int i = m_runStart + 1; i < size(); ++i) {
        const QPointF here = points[i];
        const double dx = std::abs(here.x() - before.x());
        const double dy = std::abs(here.y() - before.y());
        if (dx < kLean)
            points[i - 1].rx() = points[i].rx() = middle(before.x());
        if (dy < kLean)
            points[i - 1].ry() = points[i].ry() = middle(before.y());
        m_effort += dx < kLean || dy < kLean ? kAxisEffort * (dx + dy) : std::hypot(dx, dy);
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

void DeviceLines::addWhole(const QPointF* points, int count) {
    if (count < 2)
        return;
    // Room for all, given back below: a million checks of the capacity would show.
    m_points.resize(m_points.size() + static_cast<std::size_t>(count));
    QPointF* begin = m_points.data() + m_runStart;
    QPointF* out = begin;
    double lastX = pixelX(points[0]);
    double lastY = pixelY(points[0]);
    *out++ = QPointF(lastX, lastY);
    for (int i = 1; i < count; ++i) {
        const double x = pixelX(points[i]);
        const double y = pixelY(points[i]);
        const double dx = x - lastX;
        const double dy = y - lastY;
        // The last vertex stays, so that a line smaller than a pixel is still a speck.
        if (dx * dx + dy * dy < kSquaredResolution && i + 1 < count)
            continue;
        *out++ = QPointF(x, y);
        lastX = x;
        lastY = y;
    }
    m_points.resize(static_cast<std::size_t>(m_runStart + (out - begin)));
    endRun();
}

void DeviceLines::add(const QPointF* points, int count) {
    if (count < 2)
        return;
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
        painter.drawPolyline(m_points.data() + begin, end - begin);
        begin = end;
    }
}

void DeviceLines::paint(DraftRaster& raster) const {
    int begin = 0;
    for (const int end : m_ends) {
        raster.polyline(m_points.data() + begin, end - begin);
        begin = end;
    }
}

QVector<QPolygonF> DeviceLines::runs() const {
    QVector<QPolygonF> result;
    int begin = 0;
    for (const int end : m_ends) {
        result.append(QPolygonF(QVector<QPointF>(m_points.begin() + begin, m_points.begin() + end)));
        begin = end;
    }
    return result;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/viewtransform.h"

#include <algorithm>
#include <cmath>

namespace sim {

QPointF ViewTransform::toPixel(const QPointF& mm) const {
    return {m_viewport.width() / 2.0 + (mm.x() - m_center.x()) * m_scale,
            m_viewport.height() / 2.0 - (mm.y() - m_center.y()) * m_scale};
}

QPointF ViewTransform::toMm(const QPointF& pixel) const {
    return {m_center.x() + (pixel.x() - m_viewport.width() / 2.0) / m_scale,
            m_center.y() - (pixel.y() - m_viewport.height() / 2.0) / m_scale};
}

QTransform ViewTransform::matrix() const {
    const QPointF origin = toPixel({0.0, 0.0});
    return {m_scale, 0.0, 0.0, -m_scale, origin.x(), origin.y()};
}

QRectF ViewTransform::visibleMm() const {
    const double width = m_viewport.width() / m_scale;
    const double height = m_viewport.height() / m_scale;
    return {m_center.x() - width / 2.0, m_center.y() - height / 2.0, width, height};
}

void ViewTransform::setViewport(const QSizeF& size) {
    m_viewport = {std::max(1.0, size.width()), std::max(1.0, size.height())};
}

void ViewTransform::zoomAbout(const QPointF& pixel, double factor) {
    if (!std::isfinite(factor) || factor <= 0.0)
        return;
    const QPointF fixed = toMm(pixel);
    m_scale = std::clamp(m_scale * factor, kMinScale, kMaxScale);
    m_center += fixed - toMm(pixel);
}

void ViewTransform::panBy(const QPointF& pixels) {
    m_center -= QPointF(pixels.x() / m_scale, -pixels.y() / m_scale);
}

void ViewTransform::fit(const QRectF& mm, double margin) {
    m_center = mm.center();
    const double width = std::max(1.0, m_viewport.width() - 2.0 * margin);
    const double height = std::max(1.0, m_viewport.height() - 2.0 * margin);
    double scale = kMaxScale;
    if (mm.width() > 0.0)
        scale = std::min(scale, width / mm.width());
    if (mm.height() > 0.0)
        scale = std::min(scale, height / mm.height());
    if (mm.width() > 0.0 || mm.height() > 0.0)
        m_scale = std::clamp(scale, kMinScale, kMaxScale);
}

bool ViewTransform::operator==(const ViewTransform& other) const {
    return m_scale == other.m_scale && m_center == other.m_center && m_viewport == other.m_viewport;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/draftraster.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace sim {

namespace {

constexpr int kRecentBits = 14;

} // namespace

DraftRaster::DraftRaster(const QSizeF& size, double devicePixelRatio)
    : m_ratio(devicePixelRatio)
    , m_image((size * devicePixelRatio).toSize().expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied)
    , m_recent(std::size_t(1) << kRecentBits, 0) {
    m_image.setDevicePixelRatio(devicePixelRatio);
    m_image.fill(Qt::transparent);
    m_bits = reinterpret_cast<QRgb*>(m_image.bits());
    m_stride = m_image.bytesPerLine() / static_cast<int>(sizeof(QRgb));
}

void DraftRaster::polyline(const QPointF* points, int count) {
    if (count < 2)
        return;
    const auto pixel = [this](double value) { return static_cast<int>(std::floor(value * m_ratio)); };
    int x = pixel(points[0].x());
    int y = pixel(points[0].y());
    for (int i = 1; i < count; ++i) {
        const int nextX = pixel(points[i].x());
        const int nextY = pixel(points[i].y());
        if (!seen(x, y, nextX, nextY))
            line(x, y, nextX, nextY);
        x = nextX;
        y = nextY;
    }
}

void DraftRaster::dot(const QPointF& at) {
    const int x = static_cast<int>(std::floor(at.x() * m_ratio));
    const int y = static_cast<int>(std::floor(at.y() * m_ratio));
    line(x, y, x, y);
}

void DraftRaster::setColor(const QColor& color) {
    m_color = color.rgb() | 0xff000000u;
    // Lines of the pen before are no cover for those of this one.
    std::fill(m_recent.begin(), m_recent.end(), 0);
}

// The ends, in a fixed order, are the key. The first of them is the smaller one, so that no line has the key 0.
bool DraftRaster::seen(int x1, int y1, int x2, int y2) {
    if (y2 < y1 || (y2 == y1 && x2 < x1)) {
        std::swap(x1, x2);
        std::swap(y1, y2);
    }
    const auto part = [](int value) { return static_cast<quint64>(static_cast<quint16>(value)); };
    const quint64 key = (part(x1) | part(y1) << 16 | part(x2) << 32 | part(y2) << 48) ^ 1u;
    const std::size_t slot = static_cast<std::size_t>(key * 0x9E3779B97F4A7C15ull >> (64 - kRecentBits));
    if (m_recent[slot] == key)
        return true;
    m_recent[slot] = key;
    return false;
}

void DraftRaster::line(int x1, int y1, int x2, int y2) {
    const unsigned width = static_cast<unsigned>(m_image.width());
    const unsigned height = static_cast<unsigned>(m_image.height());
    const int dx = std::abs(x2 - x1), stepX = x1 < x2 ? 1 : -1;
    const int dy = -std::abs(y2 - y1), stepY = y1 < y2 ? 1 : -1;
    int error = dx + dy;
    for (;;) {
        if (static_cast<unsigned>(x1) < width && static_cast<unsigned>(y1) < height)
            m_bits[y1 * m_stride + x1] = m_color;
        if (x1 == x2 && y1 == y2)
            return;
        const int twice = 2 * error;
        if (twice >= dy) {
            error += dy;
            x1 += stepX;
        }
        if (twice <= dx) {
            error += dx;
            y1 += stepY;
        }
    }
}

} // namespace sim

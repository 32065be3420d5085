// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/textpreview.h"

#include "simengine/document/flatten.h"
#include "simengine/view/viewtheme.h"

#include <QPainter>

namespace sim {

namespace {

constexpr double kMargin = 14.0; ///< px
constexpr int kSizeHeight = 22;  ///< px for the line with the size
/// Deviation of the shown lines in parts of the text's extent: below a pixel.
constexpr double kFineness = 2.0e-4;

} // namespace

TextPreview::TextPreview(QWidget* parent)
    : QWidget(parent) {
    setMinimumHeight(120);
}

void TextPreview::setOutline(const PathShape& outline) {
    m_filled = false;
    m_lineWidth = 0.0;
    setPath(outline, {});
}

void TextPreview::setCode(const CodeShape& code, double module) {
    m_filled = code.spec.marking == CodeMarking::Outline;
    m_lineWidth = code.spec.marking == CodeMarking::Lines ? module / code.spec.linesPerModule : module;
    setPath(code.outline, code.dots);
}

void TextPreview::setPath(const PathShape& outline, const QVector<QPointF>& dots) {
    m_path = QPainterPath();
    m_path.setFillRule(Qt::OddEvenFill);
    m_dots = dots;
    m_size.clear();
    Box box = shapeBounds(Shape(outline), QTransform());
    for (const QPointF& dot : dots)
        box.add(dot);
    if (box.isValid()) {
        m_bounds = QRectF(box.minX, box.minY, box.width(), box.height());
        const double extent = std::max({box.width(), box.height(), kLeastTextHeight});
        std::vector<FlatLine> lines;
        flattenShape(Shape(outline), QTransform(), lines, kFineness * extent);
        for (const FlatLine& line : lines)
            m_path.addPolygon(line.points);
        m_size = QStringLiteral("%1 × %2 mm").arg(box.width(), 0, 'f', 3).arg(box.height(), 0, 'f', 3);
    }
    update();
}

void TextPreview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), QColor(theme::kCanvas));
    painter.setPen(QColor(theme::kRulerEdge));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    if (m_size.isEmpty())
        return;
    painter.setPen(QColor(theme::kRulerText));
    painter.drawText(rect().adjusted(8, 0, -8, -3), Qt::AlignBottom | Qt::AlignRight, m_size);
    const QRectF room = QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin - kSizeHeight);
    const double scale = std::min(room.width() / std::max(m_bounds.width(), kLeastTextHeight),
                                  room.height() / std::max(m_bounds.height(), kLeastTextHeight));
    const QPointF middle = m_bounds.center();
    painter.translate(room.center());
    painter.scale(scale, -scale);
    painter.translate(-middle);
    if (m_filled) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.fillPath(m_path, Qt::black);
        return;
    }
    QPen pen(Qt::black, m_lineWidth > 0.0 ? m_lineWidth : 1.2);
    pen.setCosmetic(m_lineWidth <= 0.0);
    if (!m_dots.isEmpty())
        pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.drawPath(m_path);
    painter.drawPoints(m_dots.constData(), m_dots.size());
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/canvaswidget.h"
#include "simengine/view/nodeedittool.h"
#include "simengine/view/viewtheme.h"

#include <QPainter>
#include <algorithm>
#include <unordered_set>

namespace sim {

namespace {

constexpr double kHalf = 5.0; ///< px, half a node's side
constexpr double kHandleRadius = 4.0;
/// With more nodes in view each is a dot, and of several in one cell one is drawn.
constexpr int kMostShownNodes = 1500;
constexpr int kCell = 5; ///< px
constexpr int kMostSmoothLines = 3000;
constexpr double kPiece = 6.0; ///< px of a curve that is drawn as one line
constexpr int kMostPieces = 48;

/// The lines that stand for a segment on the screen; none for one that is not in view.
void addSegment(QVector<QLineF>& lines, const CubicPoints& mm, const ViewTransform& view, const QRectF& shown) {
    const CubicPoints p{view.toPixel(mm.p0), view.toPixel(mm.p1), view.toPixel(mm.p2), view.toPixel(mm.p3)};
    const auto [left, right] = std::minmax({p.p0.x(), p.p1.x(), p.p2.x(), p.p3.x()});
    const auto [top, bottom] = std::minmax({p.p0.y(), p.p1.y(), p.p2.y(), p.p3.y()});
    if (right < shown.left() || left > shown.right() || bottom < shown.top() || top > shown.bottom())
        return;
    const double length = QLineF(p.p0, p.p1).length() + QLineF(p.p1, p.p2).length() + QLineF(p.p2, p.p3).length();
    const int pieces = qBound(1, int(length / kPiece), kMostPieces);
    QPointF from = p.p0;
    for (int i = 1; i <= pieces; ++i) {
        const QPointF to = p.at(double(i) / pieces);
        lines.append(QLineF(from, to));
        from = to;
    }
}

} // namespace

void NodeEditTool::paint(QPainter& painter) const {
    if (m_dragging && m_gesture != Gesture::Band)
        paintChanged(painter);
    paintHandles(painter);
    paintNodes(painter);
    if (!m_dragging || m_gesture != Gesture::Band)
        return;
    painter.setPen(QPen(QColor(theme::kAccent), 1.0));
    painter.setBrush(QColor::fromRgba(theme::kAccentSoft));
    painter.drawRect(QRectF(m_from.pixel, m_to.pixel).normalized());
}

// The segments that a drag changes; the document's picture still shows them where they were.
void NodeEditTool::paintChanged(QPainter& painter) const {
    const QRectF shown = QRectF(m_canvas.rect()).adjusted(-2.0, -2.0, 2.0, 2.0);
    QVector<QLineF> lines;
    const std::vector<NodeContour>& contours = m_path.contours();
    for (int c = 0; c < int(contours.size()); ++c) {
        const NodeContour& contour = contours[size_t(c)];
        const int handled = m_gesture == Gesture::Handle && m_handle.node.contour == c ? m_handle.node.node : -1;
        for (int i = 0; i < contour.segmentCount(); ++i) {
            const int next = contour.next(i);
            const bool moved = m_gesture == Gesture::Handle
                                   ? i == handled || next == handled
                                   : contour.nodes[size_t(i)].selected || contour.nodes[size_t(next)].selected;
            if (moved)
                addSegment(lines, segmentPoints(contour, i), m_canvas.viewTransform(), shown);
        }
    }
    // Wide lines with smooth edges take a hundred times as long; of so many none can be told from its neighbour.
    const bool many = lines.size() > kMostSmoothLines;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, !many);
    painter.setPen(QPen(QColor(theme::kAccent), many ? 1.0 : 2.0));
    painter.drawLines(lines);
    painter.restore();
}

void NodeEditTool::paintHandles(QPainter& painter) const {
    const ViewTransform& view = m_canvas.viewTransform();
    for (const HandleRef& ref : shownHandles()) {
        const QPointF at = view.toPixel(handlePlace(ref));
        painter.setPen(QPen(QColor(theme::kAccent), 1.0));
        painter.drawLine(view.toPixel(m_path.node(ref.node).at), at);
        painter.setBrush(QColor(theme::kAccent));
        painter.drawEllipse(at, kHandleRadius, kHandleRadius);
    }
}

void NodeEditTool::paintNode(QPainter& painter, const PathNode& node, bool hovered) const {
    const QPointF at = m_canvas.viewTransform().toPixel(node.at);
    const double half = hovered ? kHalf + 2.0 : kHalf;
    painter.setPen(QPen(QColor(theme::kAccent), 1.5));
    painter.setBrush(QColor(node.selected ? theme::kAccent : theme::kCanvas));
    if (node.kind == NodeKind::Corner)
        painter.drawRect(QRectF(at.x() - half, at.y() - half, 2.0 * half, 2.0 * half));
    else if (node.kind == NodeKind::Smooth)
        painter.drawEllipse(at, half, half);
    else
        painter.drawPolygon(QPolygonF({at + QPointF(0, -half - 1), at + QPointF(half + 1, 0), at + QPointF(0, half + 1),
                                       at + QPointF(-half - 1, 0)}));
}

void NodeEditTool::paintNodes(QPainter& painter) const {
    const ViewTransform& view = m_canvas.viewTransform();
    const QRectF shown = QRectF(m_canvas.rect()).adjusted(-kHalf, -kHalf, kHalf, kHalf);
    std::vector<NodeRef> visible;
    for (int c = 0; c < int(m_path.contours().size()); ++c) {
        const std::vector<PathNode>& nodes = m_path.contours()[size_t(c)].nodes;
        for (int i = 0; i < int(nodes.size()); ++i) {
            if (shown.contains(view.toPixel(nodes[size_t(i)].at)))
                visible.push_back({c, i});
        }
    }
    if (int(visible.size()) <= kMostShownNodes) {
        for (const NodeRef& ref : visible)
            paintNode(painter, m_path.node(ref), ref == m_hover);
        return;
    }
    std::unordered_set<quint64> cells;
    QVector<QPointF> plain;
    QVector<QPointF> selected;
    for (const NodeRef& ref : visible) {
        const PathNode& node = m_path.node(ref);
        const QPointF at = view.toPixel(node.at);
        const quint64 cell = (quint64(quint32(int(at.x()) / kCell)) << 32) | quint32(int(at.y()) / kCell);
        if (cells.insert(cell * 2 + (node.selected ? 1 : 0)).second)
            (node.selected ? selected : plain).append(at);
    }
    painter.setPen(QPen(QColor(theme::kHover), 3.0));
    painter.drawPoints(plain.constData(), plain.size());
    painter.setPen(QPen(QColor(theme::kAccent), 4.0));
    painter.drawPoints(selected.constData(), selected.size());
    if (m_hover.isValid())
        paintNode(painter, m_path.node(m_hover), true);
}

} // namespace sim

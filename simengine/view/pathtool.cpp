// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/pathtool.h"

#include "simengine/document/contour.h"
#include "simengine/document/flatten.h"
#include "simengine/view/anglestep.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QKeyEvent>
#include <QLineF>
#include <QPainter>
#include <QtMath>

namespace sim {

namespace {

constexpr double kMouseClose = 10.0; ///< px around the first node that close the path
constexpr double kTouchClose = 20.0;
constexpr double kMouseDrag = 4.0; ///< px from which a press pulls handles
constexpr double kTouchDrag = 10.0;
constexpr double kSamePlace = 1.0; ///< px within which a press repeats the node before

} // namespace

bool PathTool::closes(const QPointF& pixel) const {
    const double reach = m_current.touch ? kTouchClose : kMouseClose;
    return m_nodes.size() >= 2 && QLineF(m_canvas.viewTransform().toPixel(m_nodes.front().at), pixel).length() <= reach;
}

void PathTool::press(const CanvasPoint& point) {
    if (point.button == Qt::RightButton) {
        if (m_nodes.empty())
            m_canvas.session().finishOperator();
        else
            finish();
        return;
    }
    if (point.button != Qt::LeftButton || m_canvas.session().document().isReadOnly())
        return;
    m_from = m_current = point;
    m_pulling = true;
    m_closing = closes(point.pixel);
    if (m_closing)
        return;
    const ViewTransform& view = m_canvas.viewTransform();
    if (!m_nodes.empty() && QLineF(view.toPixel(m_nodes.back().at), point.pixel).length() <= kSamePlace)
        return;
    PathNode node;
    node.at = node.in = node.out = point.mm;
    m_nodes.push_back(node);
}

// A node that was pulled has curves on both sides; one that was not is a corner, and lines lead from corner to corner.
void PathTool::pull(const CanvasPoint& point) {
    const double least = point.touch ? kTouchDrag : kMouseDrag;
    PathNode& node = m_closing ? m_nodes.front() : m_nodes.back();
    if (node.kind == NodeKind::Corner && QLineF(m_from.pixel, point.pixel).length() < least)
        return;
    QPointF lead = point.mm - node.at;
    if (point.modifiers & Qt::ShiftModifier)
        lead = toAngleStep(lead);
    if (m_closing) {
        // the first node keeps the handle that the path began with
        node.in = node.at - lead;
    } else {
        node.kind = NodeKind::Symmetric;
        node.out = node.at + lead;
        node.in = node.at - lead;
    }
}

void PathTool::move(const CanvasPoint& point) {
    if (m_nodes.empty())
        return;
    m_current = point;
    if (m_pulling)
        pull(point);
    m_canvas.update();
}

void PathTool::release(const CanvasPoint& point) {
    if (!m_pulling || point.button != Qt::LeftButton)
        return;
    m_current = point;
    pull(point);
    m_pulling = false;
    if (m_closing)
        finish();
}

// The press before it has made the node already.
void PathTool::doubleClick(const CanvasPoint& point) {
    m_pulling = false;
    if (point.button == Qt::LeftButton)
        finish();
}

bool PathTool::key(const QKeyEvent& event) {
    if (m_nodes.empty() || m_pulling)
        return false;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finish();
        return true;
    case Qt::Key_Backspace:
        m_nodes.pop_back();
        return true;
    default:
        return false;
    }
}

bool PathTool::cancel() {
    const bool going = !m_nodes.empty();
    m_nodes.clear();
    m_pulling = m_closing = false;
    return going;
}

PathShape PathTool::shape(bool withPointer) const {
    PathShape path;
    const auto lead = [&](const PathNode& from, const PathNode& to) {
        if (from.out == from.at && to.in == to.at)
            path.lineTo(to.at);
        else
            path.cubicTo(from.out, to.in, to.at);
    };
    path.moveTo(m_nodes.front().at);
    for (size_t i = 1; i < m_nodes.size(); ++i)
        lead(m_nodes[i - 1], m_nodes[i]);
    if (m_closing) {
        lead(m_nodes.back(), m_nodes.front());
        // the closing line is part of Close
        if (path.verbs.last() == PathVerb::Line) {
            path.verbs.removeLast();
            path.points.removeLast();
        }
        path.close();
    } else if (withPointer) {
        PathNode pointer;
        pointer.at = pointer.in = pointer.out = m_current.mm;
        lead(m_nodes.back(), pointer);
    }
    return path;
}

void PathTool::finish() {
    const bool draws = m_nodes.size() >= 2;
    const PathShape path = draws ? shape(false) : PathShape();
    // What follows may end this tool; nothing of it is touched afterwards.
    ViewSession& session = m_canvas.session();
    cancel();
    if (draws)
        session.addShape(path);
}

void PathTool::paint(QPainter& painter) const {
    if (m_nodes.empty())
        return;
    const ViewTransform& view = m_canvas.viewTransform();
    std::vector<FlatLine> lines;
    flattenShape(Shape(shape(!m_pulling)), QTransform(), lines, 0.25 / view.scale());
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(theme::kAccent), 1.5));
    for (const FlatLine& line : lines)
        painter.drawPolyline(view.matrix().map(line.points));
    const PathNode& held = m_closing ? m_nodes.front() : m_nodes.back();
    painter.setPen(QPen(QColor(theme::kAccent), 1.0));
    for (const QPointF& handle : {held.in, held.out}) {
        if (handle == held.at)
            continue;
        painter.drawLine(view.toPixel(held.at), view.toPixel(handle));
        painter.setBrush(QColor(theme::kAccent));
        painter.drawEllipse(view.toPixel(handle), 4.0, 4.0);
    }
    const bool closing = closes(m_current.pixel);
    for (size_t i = 0; i < m_nodes.size(); ++i) {
        const bool marked = i == 0 && closing;
        const QPointF at = view.toPixel(m_nodes[i].at);
        const double half = marked ? 6.0 : 4.0;
        painter.setBrush(QColor(marked ? theme::kAccent : theme::kCanvas));
        painter.drawRect(QRectF(at.x() - half, at.y() - half, 2.0 * half, 2.0 * half));
    }
}

QString PathTool::readout() const {
    if (m_nodes.empty())
        return {};
    const QPointF span = m_current.mm - m_nodes.back().at;
    return QStringLiteral("%1 mm  %2°")
        .arg(std::hypot(span.x(), span.y()), 0, 'f', 3)
        .arg(qRadiansToDegrees(std::atan2(span.y(), span.x())), 0, 'f', 1);
}

} // namespace sim

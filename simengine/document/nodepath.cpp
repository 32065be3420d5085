// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/nodepath.h"

#include "simengine/document/limits.h"

#include <QRectF>
#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr double kInLine = 1.0e-6; ///< sine of the angle, and difference of the lengths in parts, that count as none

double length(const QPointF& v) {
    return std::hypot(v.x(), v.y());
}

QPointF unit(const QPointF& v) {
    const double size = length(v);
    return size > 0.0 ? v / size : QPointF();
}

double cross(const QPointF& a, const QPointF& b) {
    return a.x() * b.y() - a.y() * b.x();
}

/// Where the stretch before or after a node leads, seen from the node: its handle, or the other end of a line.
QPointF leadBefore(const NodeContour& c, int i) {
    const PathNode& node = c.nodes[size_t(i)];
    return (c.curvedBefore(i) ? node.in : c.nodes[size_t(c.previous(i))].at) - node.at;
}

QPointF leadAfter(const NodeContour& c, int i) {
    const PathNode& node = c.nodes[size_t(i)];
    return (c.curvedAfter(i) ? node.out : c.nodes[size_t(c.next(i))].at) - node.at;
}

/// A segment becomes a curve along the line that it was.
void bend(NodeContour& c, int i) {
    PathNode& from = c.nodes[size_t(i)];
    PathNode& to = c.nodes[size_t(c.next(i))];
    if (from.curved)
        return;
    from.curved = true;
    from.out = from.at + (to.at - from.at) / 3.0;
    to.in = to.at - (to.at - from.at) / 3.0;
}

void straighten(NodeContour& c, int i) {
    c.nodes[size_t(i)].curved = false;
}

/// Puts the handles of a node in one line.
void align(NodeContour& c, int i, NodeKind kind) {
    if (!c.hasBefore(i) || !c.hasAfter(i))
        return;
    if (kind == NodeKind::Symmetric || (!c.curvedBefore(i) && !c.curvedAfter(i))) {
        bend(c, c.previous(i));
        bend(c, i);
    }
    PathNode& node = c.nodes[size_t(i)];
    const QPointF before = leadBefore(c, i);
    const QPointF after = leadAfter(c, i);
    double inLength = length(before);
    double outLength = length(after);
    QPointF along;
    if (!c.curvedBefore(i))
        along = unit(-before);
    else if (!c.curvedAfter(i))
        along = unit(after);
    else
        along = unit(unit(after) - unit(before));
    if (along.isNull())
        along = unit(c.nodes[size_t(c.next(i))].at - c.nodes[size_t(c.previous(i))].at);
    if (along.isNull())
        return;
    if (kind == NodeKind::Symmetric)
        inLength = outLength = (inLength + outLength) / 2.0;
    if (c.curvedBefore(i))
        node.in = node.at - inLength * along;
    if (c.curvedAfter(i))
        node.out = node.at + outLength * along;
}

/// Parts a segment at t; gives the node between, which `from` and `to` now lead to.
PathNode part(PathNode& from, PathNode& to, double t) {
    const auto between = [t](const QPointF& a, const QPointF& b) { return (1.0 - t) * a + t * b; };
    PathNode made;
    made.curved = from.curved;
    made.at = between(from.at, to.at);
    if (!from.curved)
        return made;
    const QPointF a = between(from.at, from.out);
    const QPointF b = between(from.out, to.in);
    const QPointF c = between(to.in, to.at);
    made.in = between(a, b);
    made.out = between(b, c);
    made.at = between(made.in, made.out);
    made.kind = NodeKind::Smooth;
    from.out = a;
    to.in = c;
    // the handles beside it got shorter
    for (PathNode* end : {&from, &to}) {
        if (end->kind == NodeKind::Symmetric)
            end->kind = NodeKind::Smooth;
    }
    return made;
}

} // namespace

NodeKind kindOfNode(const NodeContour& c, int i) {
    if (!c.curvedBefore(i) && !c.curvedAfter(i))
        return NodeKind::Corner;
    if (!c.hasBefore(i) || !c.hasAfter(i))
        return NodeKind::Corner;
    const QPointF before = leadBefore(c, i);
    const QPointF after = leadAfter(c, i);
    const double a = length(before);
    const double b = length(after);
    const bool inLine = a > 0.0 && b > 0.0 && std::abs(cross(before, after)) <= kInLine * a * b &&
                        QPointF::dotProduct(before, after) < 0.0;
    if (!inLine)
        return NodeKind::Corner;
    const bool both = c.curvedBefore(i) && c.curvedAfter(i);
    return both && std::abs(a - b) <= kInLine * std::max(a, b) ? NodeKind::Symmetric : NodeKind::Smooth;
}

void dropLostKinds(NodeContour& contour) {
    for (int i = 0; i < contour.count(); ++i) {
        PathNode& node = contour.nodes[size_t(i)];
        if (node.kind != NodeKind::Corner)
            node.kind = kindOfNode(contour, i);
    }
}

QPointF CubicPoints::at(double t) const {
    const double s = 1.0 - t;
    return s * s * s * p0 + 3.0 * s * s * t * p1 + 3.0 * s * t * t * p2 + t * t * t * p3;
}

CubicPoints segmentPoints(const NodeContour& contour, int node) {
    const PathNode& from = contour.nodes[size_t(node)];
    const PathNode& to = contour.nodes[size_t(contour.next(node))];
    if (from.curved)
        return {from.at, from.out, to.in, to.at};
    const QPointF third = (to.at - from.at) / 3.0;
    return {from.at, from.at + third, to.at - third, to.at};
}

NodePath NodePath::of(const PathShape& path) {
    NodePath made;
    int next = 0;
    for (PathVerb verb : path.verbs) {
        if (verb == PathVerb::Move) {
            PathNode start;
            start.at = path.points[next++];
            made.m_contours.push_back({{start}, false});
            continue;
        }
        NodeContour& contour = made.m_contours.back();
        if (verb == PathVerb::Close) {
            contour.closed = true;
            continue;
        }
        PathNode node;
        if (verb == PathVerb::Cubic) {
            contour.nodes.back().curved = true;
            contour.nodes.back().out = path.points[next];
            node.in = path.points[next + 1];
            next += 2;
        }
        node.at = path.points[next++];
        contour.nodes.push_back(node);
    }
    for (NodeContour& contour : made.m_contours) {
        // what leads back to the start is the segment that closes
        if (contour.closed && contour.count() > 1 && contour.nodes.back().at == contour.nodes.front().at) {
            contour.nodes.front().in = contour.nodes.back().in;
            contour.nodes.pop_back();
        }
        for (int i = 0; i < contour.count(); ++i)
            contour.nodes[size_t(i)].kind = kindOfNode(contour, i);
    }
    return made;
}

PathShape NodePath::path() const {
    PathShape path;
    for (const NodeContour& contour : m_contours) {
        path.moveTo(contour.nodes.front().at);
        for (int i = 0; i < contour.segmentCount(); ++i) {
            const PathNode& from = contour.nodes[size_t(i)];
            const PathNode& to = contour.nodes[size_t(contour.next(i))];
            const bool closing = contour.closed && i + 1 == contour.count();
            if (from.curved)
                path.cubicTo(from.out, to.in, to.at);
            else if (!closing)
                path.lineTo(to.at);
        }
        if (contour.closed)
            path.close();
    }
    return path;
}

int NodePath::nodeCount() const {
    int count = 0;
    for (const NodeContour& contour : m_contours)
        count += contour.count();
    return count;
}

int NodePath::selectedCount() const {
    int count = 0;
    for (const NodeContour& contour : m_contours)
        count += int(std::count_if(contour.nodes.begin(), contour.nodes.end(),
                                   [](const PathNode& node) { return node.selected; }));
    return count;
}

const PathNode& NodePath::node(const NodeRef& ref) const {
    return m_contours[size_t(ref.contour)].nodes[size_t(ref.node)];
}

PathNode& NodePath::mutableNode(const NodeRef& ref) {
    return m_contours[size_t(ref.contour)].nodes[size_t(ref.node)];
}

template<class Change>
bool NodePath::forSelected(Change change) {
    bool any = false;
    for (NodeContour& contour : m_contours) {
        for (int i = 0; i < contour.count(); ++i) {
            if (contour.nodes[size_t(i)].selected) {
                change(contour, i);
                any = true;
            }
        }
    }
    return any;
}

void NodePath::selectNone() {
    forSelected([](NodeContour& contour, int i) { contour.nodes[size_t(i)].selected = false; });
}

void NodePath::selectAll() {
    for (NodeContour& contour : m_contours) {
        for (PathNode& node : contour.nodes)
            node.selected = true;
    }
}

void NodePath::select(const NodeRef& ref, bool on) {
    mutableNode(ref).selected = on;
}

void NodePath::selectIn(const QRectF& rect) {
    for (NodeContour& contour : m_contours) {
        for (PathNode& node : contour.nodes)
            node.selected = node.selected || rect.contains(node.at);
    }
}

bool NodePath::moveSelected(const QPointF& by) {
    if (by.isNull())
        return false;
    return forSelected([&](NodeContour& contour, int i) {
        PathNode& node = contour.nodes[size_t(i)];
        node.at += by;
        node.in += by;
        node.out += by;
    });
}

bool NodePath::moveHandle(const NodeRef& ref, NodeHandle handle, const QPointF& to) {
    NodeContour& contour = m_contours[size_t(ref.contour)];
    PathNode& node = mutableNode(ref);
    const bool out = handle == NodeHandle::Out;
    if (!(out ? contour.curvedAfter(ref.node) : contour.curvedBefore(ref.node)))
        return false;
    QPointF& moved = out ? node.out : node.in;
    QPointF& other = out ? node.in : node.out;
    const bool otherCurved = out ? contour.curvedBefore(ref.node) : contour.curvedAfter(ref.node);
    const bool otherThere = out ? contour.hasBefore(ref.node) : contour.hasAfter(ref.node);
    QPointF place = to;
    if (node.kind != NodeKind::Corner && otherThere && !otherCurved) {
        // beside a line the handle stays in the line's direction
        const QPointF along = unit(-(out ? leadBefore(contour, ref.node) : leadAfter(contour, ref.node)));
        if (!along.isNull())
            place = node.at + std::max(0.0, QPointF::dotProduct(to - node.at, along)) * along;
    }
    if (place == moved)
        return false;
    moved = place;
    if (node.kind == NodeKind::Corner || !otherCurved)
        return true;
    const QPointF lead = place - node.at;
    if (node.kind == NodeKind::Symmetric)
        other = node.at - lead;
    else if (!lead.isNull())
        other = node.at - length(other - node.at) * unit(lead);
    return true;
}

bool NodePath::setKind(NodeKind kind) {
    return forSelected([kind](NodeContour& contour, int i) {
        contour.nodes[size_t(i)].kind = kind;
        if (kind != NodeKind::Corner)
            align(contour, i, kind);
    });
}

bool NodePath::insert(const NodeRef& segment, double t) {
    NodeContour& contour = m_contours[size_t(segment.contour)];
    if (segment.node < 0 || segment.node >= contour.segmentCount() || !(t > 0.0) || !(t < 1.0))
        return false;
    PathNode made = part(contour.nodes[size_t(segment.node)], contour.nodes[size_t(contour.next(segment.node))], t);
    selectNone();
    made.selected = true;
    contour.nodes.insert(contour.nodes.begin() + segment.node + 1, made);
    return true;
}

bool NodePath::insertBetween() {
    if (!canInsertBetween())
        return false;
    for (NodeContour& contour : m_contours) {
        NodeContour fuller;
        fuller.closed = contour.closed;
        std::vector<std::optional<PathNode>> made(contour.nodes.size());
        for (int i = 0; i < contour.segmentCount(); ++i) {
            PathNode& from = contour.nodes[size_t(i)];
            PathNode& to = contour.nodes[size_t(contour.next(i))];
            if (from.selected && to.selected)
                made[size_t(i)] = part(from, to, 0.5);
        }
        for (size_t i = 0; i < contour.nodes.size(); ++i) {
            fuller.nodes.push_back(contour.nodes[i]);
            fuller.nodes.back().selected = false;
            if (made[i]) {
                made[i]->selected = true;
                fuller.nodes.push_back(*made[i]);
            }
        }
        contour = std::move(fuller);
    }
    return true;
}

bool NodePath::setCurved(bool curved) {
    bool changed = false;
    for (NodeContour& contour : m_contours) {
        for (int i = 0; i < contour.segmentCount(); ++i) {
            const bool between = contour.nodes[size_t(i)].selected && contour.nodes[size_t(contour.next(i))].selected;
            if (!between || contour.nodes[size_t(i)].curved == curved)
                continue;
            if (curved)
                bend(contour, i);
            else
                straighten(contour, i);
            changed = true;
        }
        dropLostKinds(contour);
    }
    return changed;
}

bool NodePath::anySelected() const {
    return std::any_of(m_contours.begin(), m_contours.end(), [](const NodeContour& contour) {
        return std::any_of(contour.nodes.begin(), contour.nodes.end(),
                           [](const PathNode& node) { return node.selected; });
    });
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <optional>
#include <vector>

namespace sim {

/// How the two handles of a node go together.
enum class NodeKind {
    Corner,   ///< each for itself
    Smooth,   ///< in one line, each of its own length
    Symmetric ///< in one line and of one length
};

/// A node of a contour. Handles count only where their segment is a curve.
struct PathNode {
    QPointF at;
    QPointF in;          ///< handle of the segment that ends here
    QPointF out;         ///< handle of the segment that begins here
    bool curved = false; ///< the segment that begins here is a curve
    NodeKind kind = NodeKind::Corner;
    bool selected = false;
};

struct NodeContour {
    std::vector<PathNode> nodes; ///< at least one
    bool closed = false;

    int count() const { return int(nodes.size()); }
    /// A closed contour of one node has a segment only where a curve leads back to it.
    int segmentCount() const { return count() == 1 ? int(closed && nodes[0].curved) : closed ? count() : count() - 1; }
    int next(int node) const { return (node + 1) % count(); }
    int previous(int node) const { return (node + count() - 1) % count(); }
    bool hasBefore(int node) const { return closed || node > 0; }
    bool hasAfter(int node) const { return closed || node + 1 < count(); }
    /// The segment that ends at the node is there and a curve.
    bool curvedBefore(int node) const { return hasBefore(node) && nodes[size_t(previous(node))].curved; }
    bool curvedAfter(int node) const { return hasAfter(node) && nodes[size_t(node)].curved; }
};

/// One node, or the segment that begins there.
struct NodeRef {
    int contour = -1;
    int node = -1;
    bool isValid() const { return contour >= 0; }
    bool operator==(const NodeRef& other) const { return contour == other.contour && node == other.node; }
};

/// A place on a segment.
struct SegmentPlace {
    NodeRef segment;
    double t = 0.0; ///< 0 to 1
    QPointF at;
};

enum class NodeHandle { In, Out };

/// A path as its nodes are edited. Coordinates in mm. Operations act on the selected nodes, keep the selection on what
/// they leave or make, and give whether anything changed.
class NodePath {
public:
    NodePath() = default;
    /// Kinds are told from the handles: in one line within a millionth they are smooth, of one length too symmetric.
    static NodePath of(const PathShape& path);
    PathShape path() const;

    const std::vector<NodeContour>& contours() const { return m_contours; }
    int nodeCount() const;
    int selectedCount() const;
    bool isEmpty() const { return m_contours.empty(); }
    const PathNode& node(const NodeRef& ref) const;

    void selectNone();
    void selectAll();
    void select(const NodeRef& ref, bool on);
    /// Selects the nodes inside the rectangle beside those that are selected.
    void selectIn(const QRectF& rect);

    bool moveSelected(const QPointF& by);
    /// Moves one handle; the other one follows as the node's kind says.
    bool moveHandle(const NodeRef& ref, NodeHandle handle, const QPointF& to);
    /// Smooth and symmetric nodes get their handles in one line; one between two lines gets curves.
    bool setKind(NodeKind kind);
    /// A node on the segment, which keeps its course exactly; it alone is selected.
    bool insert(const NodeRef& segment, double t);
    /// A node in the middle of each segment between two selected nodes.
    bool insertBetween();
    /// The segments beside what goes become one. Contours of one node go with it.
    bool removeSelected();
    /// Lines and curves between selected nodes.
    bool setCurved(bool curved);
    /// Closed contours open at the selected nodes, open ones part there.
    bool breakSelected();
    /// Contours with selected nodes, or all of them when no node is selected. Ends that meet become one node, others
    /// are joined by a line. What is opened loses the one segment between selected nodes, else the last.
    bool setClosed(bool closed);

    bool canInsertBetween() const;
    bool canBreak() const;
    bool canClose() const;
    bool canOpen() const;

    /// The nearest node within `reach` mm, of equally near ones a selected one.
    std::optional<NodeRef> nodeAt(const QPointF& place, double reach) const;
    std::optional<SegmentPlace> segmentAt(const QPointF& place, double reach) const;

private:
    PathNode& mutableNode(const NodeRef& ref);
    bool anySelected() const;
    template<class Change>
    bool forSelected(Change change);

    std::vector<NodeContour> m_contours;
};

/// The segment's four points; of a line the handles lie on it.
struct CubicPoints {
    QPointF p0, p1, p2, p3;
    QPointF at(double t) const;
};
CubicPoints segmentPoints(const NodeContour& contour, int node);

/// What the handles of a node say: corner where they are not in one line.
NodeKind kindOfNode(const NodeContour& contour, int node);

/// Nodes whose handles are in one line no more become corners.
void dropLostKinds(NodeContour& contour);

} // namespace sim

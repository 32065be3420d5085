// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"
#include "simengine/document/nodepath.h"
#include "simengine/view/canvastool.h"

#include <optional>

namespace sim {

/// What the bar and the keys do to the selected nodes.
enum class NodeCommand { Insert, Remove, Corner, Smooth, Symmetric, Line, Curve, Break, Close, Open };

/// Edits the nodes of the one selected path or line. Each drag and each command is one step of undo; the document
/// always holds the whole path as it was after the last one. Ends when something else is selected.
///
/// A press on a node, a handle or a segment takes it, with Shift or Control beside what is selected; a drag from an
/// empty place opens a rubber band. A double click on a segment puts a node there, on a node makes it smooth or a
/// corner, elsewhere it ends the editing.
class NodeEditTool : public CanvasTool {
public:
    /// Null when the one selected object has no nodes, or the document is read-only.
    static std::unique_ptr<NodeEditTool> ofSelection(CanvasWidget& canvas);

    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint& point) override;
    void release(const CanvasPoint& point) override;
    void doubleClick(const CanvasPoint& point) override;
    bool key(const QKeyEvent& event) override;
    bool cancel() override;
    void leave() override;
    void paint(QPainter& painter) const override;
    QCursor cursor() const override;
    QString readout() const override;
    void documentChanged() override;
    bool hidesFrame() const override { return true; }

    bool can(NodeCommand command) const;
    void run(NodeCommand command);
    /// Presses add to the selection without a key, for fingers.
    void setAdds(bool adds) { m_adds = adds; }
    bool adds() const { return m_adds; }
    /// Goes back to selecting objects.
    void finish();

    const NodePath& path() const { return m_path; }

private:
    enum class Gesture { None, Nodes, Handle, Band };
    struct HandleRef {
        NodeRef node;
        NodeHandle handle;
    };

    NodeEditTool(CanvasWidget& canvas, int index);
    void load(int index);
    void commit(bool merge = false);
    void refused();
    void changed();
    double mm(double pixels) const;
    bool addsTo(const CanvasPoint& point) const;

    std::optional<HandleRef> handleAt(const CanvasPoint& point) const;
    /// Those of the segments beside selected nodes.
    std::vector<HandleRef> shownHandles() const;
    QPointF handlePlace(const HandleRef& ref) const;
    void take(const CanvasPoint& point);
    void takeNode(const NodeRef& node, const CanvasPoint& point);
    void takeSegment(const SegmentPlace& place, const CanvasPoint& point);
    void drag(const CanvasPoint& point);
    QPointF dragged(const CanvasPoint& point) const;
    bool nudge(const QKeyEvent& event);
    bool insert();

    void paintChanged(QPainter& painter) const;
    void paintHandles(QPainter& painter) const;
    void paintNodes(QPainter& painter) const;
    void paintNode(QPainter& painter, const PathNode& node, bool hovered) const;

    int m_index = -1;
    ObjectPtr m_object;
    bool m_line = false; ///< the object is a line and stays one while it can
    NodePath m_path;
    NodePath m_before; ///< at the begin of a drag
    bool m_committing = false;
    bool m_adds = false;

    Gesture m_gesture = Gesture::None;
    bool m_pressed = false;
    bool m_dragging = false;
    bool m_onlyThis = false; ///< a press without a drag leaves the node alone selected
    NodeRef m_taken;         ///< pressed node
    HandleRef m_handle{{}, NodeHandle::In};
    QPointF m_handleStart;
    std::optional<SegmentPlace> m_place; ///< pressed on a segment, where Insert puts a node
    CanvasPoint m_from;
    CanvasPoint m_to;
    NodeRef m_hover;
};

/// Begins to edit the nodes of the one selected object. False when it has none.
bool editNodes(CanvasWidget& canvas);

/// The object can be turned into a path whose nodes can then be edited.
bool canBecomePath(const MarkObject& object);

} // namespace sim

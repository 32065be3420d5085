// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/nodepath.h"
#include "simengine/view/canvastool.h"

namespace sim {

/// Draws a path of Bezier curves: a press makes a node, a drag from it pulls its two handles. The right button, Enter
/// or a double click ends the path, a press on its first node closes it, Backspace takes the last node back. Shift
/// keeps handles to multiples of 45 degrees.
class PathTool : public CanvasTool {
public:
    using CanvasTool::CanvasTool;
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint& point) override;
    void release(const CanvasPoint& point) override;
    void doubleClick(const CanvasPoint& point) override;
    bool key(const QKeyEvent& event) override;
    bool cancel() override;
    void paint(QPainter& painter) const override;
    bool snaps() const override { return !m_pulling; }
    QCursor cursor() const override { return Qt::CrossCursor; }
    QString readout() const override;

private:
    bool closes(const QPointF& pixel) const;
    void pull(const CanvasPoint& point);
    void finish();
    PathShape shape(bool withPointer) const;

    std::vector<PathNode> m_nodes;
    bool m_closing = false; ///< the press that goes on closes the path
    bool m_pulling = false; ///< the button is down since a node was made
    CanvasPoint m_from;
    CanvasPoint m_current;
};

} // namespace sim

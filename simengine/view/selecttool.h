// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/canvastool.h"
#include "simengine/view/selectionframe.h"

#include <QList>
#include <optional>

namespace sim {

/// Selecting, and moving, scaling and turning the selection. Every gesture is one step of undo, made at its end.
///
/// A press on an object selects it, with Shift adds it, with Control adds or takes it away. A drag from an empty place
/// opens a rubber band: to the right it takes what lies wholly inside, to the left also what it touches. A double click
/// on a text, a code or what a tool module made asks for another one in its place, on a path or a line it shows the
/// nodes, on an empty place the whole field.
class SelectTool : public CanvasTool {
public:
    using CanvasTool::CanvasTool;
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint& point) override;
    void release(const CanvasPoint& point) override;
    void doubleClick(const CanvasPoint& point) override;
    bool cancel() override;
    void leave() override;
    void paint(QPainter& painter) const override;
    QCursor cursor() const override;
    QString readout() const override;

private:
    enum class Gesture { None, Pressed, Move, Scale, Rotate, Band };

    int objectUnder(const CanvasPoint& point) const;
    /// The uppermost text or code with the place within its bounds: one need not meet a line of it.
    int enteredUnder(const CanvasPoint& point) const;
    std::optional<SelectionFrame> frame() const;
    void selectPressed(const CanvasPoint& point);
    void hover(const CanvasPoint& point);
    void start(const CanvasPoint& point);
    void update(const CanvasPoint& point);
    /// Takes the pointer's place, drawn to the snap targets.
    void track(const CanvasPoint& point);
    QPointF snappedMove(const QPointF& by, bool touch);
    QPointF snappedScale(const QPointF& by, bool touch);
    bool oneAxis() const;
    bool freeScale() const;
    void commit();
    void commitBand();
    QPointF moveDistance() const;
    ScaleDrag scaling() const;
    double turn() const;
    QTransform preview() const;

    Gesture m_gesture = Gesture::None;
    CanvasPoint m_from;
    CanvasPoint m_to;
    FrameHandle m_handle = FrameHandle::None; ///< pressed, or under the pointer
    int m_object = -1;                        ///< pressed object
    bool m_wasSelected = false;               ///< it was selected before the press
    std::vector<QPointF> m_places;            ///< of the selection that may snap, as they were at the press
    bool m_insideFrame = false;               ///< the pointer is where a drag moves the selection
};

} // namespace sim

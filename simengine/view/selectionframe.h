// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/box.h"
#include "simengine/view/viewtransform.h"

#include <QTransform>
#include <array>

namespace sim {

/// Handles of the frame around a selection. The eight that scale are in the order of the base points, without the
/// middle.
enum class FrameHandle {
    None = -1,
    TopLeft = 0,
    Top,
    TopRight,
    Left,
    Right,
    BottomLeft,
    Bottom,
    BottomRight,
    Rotate,
    Move, ///< for selections that are smaller than a finger
};

constexpr int kScaleHandleCount = 8;

/// Where the handles of a selection are on the screen, and what dragging one does to the selection.
class SelectionFrame {
public:
    static constexpr double kGap = 8.0;         ///< px between the selection's box and the frame
    static constexpr double kHandleSize = 10.0; ///< px, drawn
    /// px around a handle's middle that take a press. With the mouse less than the gap, so that the outline itself
    /// stays free for moving; a finger is wide.
    static constexpr double kMouseReach = 7.5;
    static constexpr double kTouchReach = 20.0;
    static constexpr double kTouchSize = 22.0;
    static constexpr double kRotateDistance = 34.0; ///< px from the frame's top edge to the rotation handle
    static constexpr double kMoveDistance = 34.0;   ///< px from the frame's bottom edge to the moving handle

    SelectionFrame(const Box& box, const ViewTransform& transform);

    /// The frame in pixels.
    const QRectF& rect() const { return m_rect; }
    QPointF handlePos(FrameHandle handle) const;
    /// Whether the handle is there: a selection without width or height cannot be scaled in that axis.
    bool hasHandle(FrameHandle handle) const;
    /// The handle at a place in pixels. The corners go first, since edges are near them on a small frame.
    FrameHandle handleAt(const QPointF& pixel, double reach) const;

private:
    Box m_box;
    QRectF m_rect;
};

/// The point of the box that a scale handle drags.
QPointF handlePoint(const Box& box, FrameHandle handle);

/// The point of the box that stays in place while the handle is dragged.
QPointF fixedPoint(const Box& box, FrameHandle handle);

/// What a drag of a scale handle means.
struct ScaleDrag {
    double scaleX = 1.0;
    double scaleY = 1.0;
    QPointF fixed; ///< mm
};

/// `from` and `to` in mm. Corner handles scale in proportion unless `free`; with `centered` about the middle. A factor
/// never gets below a thousandth: a drag past the fixed point does not mirror.
ScaleDrag scaleDrag(const Box& box, FrameHandle handle, const QPointF& from, const QPointF& to, bool free,
                    bool centered);

/// Degrees by which a drag from `from` to `to` about `pivot` turns, counter-clockwise, in (-180, 180]. With `snap` the
/// nearest multiple of 15. 0 when a point lies on the pivot.
double rotationDrag(const QPointF& pivot, const QPointF& from, const QPointF& to, bool snap);

QTransform scaleAbout(const QPointF& fixed, double scaleX, double scaleY);
QTransform rotateAbout(const QPointF& pivot, double degrees);

} // namespace sim

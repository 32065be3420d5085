// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/canvassnap.h"
#include "simengine/view/canvastool.h"
#include "simengine/view/joboverlay.h"
#include "simengine/view/scenedrawer.h"
#include "simengine/view/viewtransform.h"

#include <QElapsedTimer>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <optional>

class QTouchEvent;

namespace sim {

class SelectionFrame;
class ViewSession;

/// The drawing area: shows the session's document and turns mouse, touch and wheel into zooming, panning and the
/// gestures of the current tool.
///
/// The objects are kept as a picture and drawn anew only when they or the transform change. When drawing took long, the
/// kept picture is moved and stretched while the operator zooms or pans, and the fine one follows when that rests.
/// What takes more than a few milliseconds is drawn on another thread, and the kept picture stands in until it is
/// there; a picture that is asked for by QWidget::grab() and render() is always drawn at once.
class CanvasWidget : public QWidget {
    Q_OBJECT
public:
    CanvasWidget(ViewSession& session, QWidget* parent);
    ~CanvasWidget() override;

    ViewSession& session() { return m_session; }
    const ViewTransform& viewTransform() const { return m_transform; }
    /// The operator's view: it stays at the next resize.
    void setViewTransform(const ViewTransform& transform);
    void zoomAbout(const QPointF& pixel, double factor);
    /// Shows the whole field, and follows the size of the widget until the view is moved again.
    void fitField();
    void fitMm(const QRectF& mm);
    /// The field as it can be marked, mm: left and top() are the smallest x and y.
    QRectF fieldMm() const;
    SceneCache& scene() { return m_scene; }
    CanvasSnap& snap() { return m_snap; }
    /// Corner handles scale in proportion, unless Shift is held; without it the other way round.
    bool keepsRatio() const { return m_keepsRatio; }
    void setKeepsRatio(bool on) { m_keepsRatio = on; }
    /// Moves go along one axis, turns in steps, lines in directions of 45 degrees, as with Shift: for fingers.
    bool locksAxis() const { return m_locksAxis; }
    void setLocksAxis(bool on) { m_locksAxis = on; }
    /// The last press was a finger's: handles are drawn in its size.
    bool isTouched() const { return m_touched; }
    /// What a running job of the document has marked.
    JobOverlay& job() { return m_job; }

    CanvasTool& tool() { return *m_tool; }
    /// Takes the place of the operator's tool until it ends or the operator changes.
    void useTool(std::unique_ptr<CanvasTool> tool);
    /// The operator's tool comes back, when `tool` is the present one.
    void endTool(const CanvasTool& tool);
    /// What the present tool can do is different.
    void noteToolChange() { emit toolChanged(); }

    /// Selected objects are shown with `moved` applied while a gesture goes on; nothing ends that.
    void setDragPreview(const std::optional<QTransform>& moved);
    /// Object highlighted under the pointer, -1 for none.
    void setHover(int index);
    int hover() const { return m_hover; }
    /// Ends the gesture that is going on, if any, without a trace.
    bool cancelGesture();
    /// Keys of the current tool, Escape first of all. True when used.
    bool handleKey(const QKeyEvent& event);

    /// Work that the last drawing of all objects took, ms.
    double lastSceneTime() const { return m_sceneTime; }

signals:
    /// Another tool, or another state of it.
    void toolChanged();
    void transformChanged();
    void pointerMoved(QPointF mm, QPointF pixel);
    void pointerLeft();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// A kept picture and what it shows.
    struct Layer {
        QPixmap pixmap;
        ViewTransform transform;
        StatePtr state;
        PenColors colors;
        bool withSelection = true;
        bool valid = false;
    };

    void applyTransform(const ViewTransform& transform);
    void documentChanged();
    void chooseTool();
    void renewTool();
    /// What the tool gets, drawn to the snap targets when it draws.
    CanvasPoint canvasPoint(const QPointF& pixel, Qt::MouseButton button, bool held, bool touch,
                            Qt::KeyboardModifiers modifiers);
    void updateCursor();
    bool touchEvent(QTouchEvent* event);
    void oneFinger(const QTouchEvent& event, const QPointF& place);
    bool takeSecondTap(const QPointF& place);
    struct Pinch;
    void movePinch(const Pinch& pinch);

    void paintScene(QPainter& painter);
    void showBase(QPainter& painter);
    void paintSelectionLayer(QPainter& painter);
    void paintFrame(QPainter& painter) const;
    void paintHandles(QPainter& painter, const SelectionFrame& frame) const;
    void paintReadout(QPainter& painter) const;
    void paintJob(QPainter& painter);
    bool mayDrawLater(const QPainter& painter) const;
    SceneOrder orderBase(bool withSelection) const;
    void takeBase(const ScenePicture& picture);
    void renderSelection();
    void refine();
    QPixmap emptyPixmap() const;

    ViewSession& m_session;
    ViewTransform m_transform;
    SceneCache m_scene;
    SceneDrawer m_drawer{this};
    JobOverlay m_job{this};
    CanvasSnap m_snap;
    bool m_keepsRatio = true;
    bool m_locksAxis = false;
    bool m_touched = false;
    std::unique_ptr<CanvasTool> m_tool;
    std::unique_ptr<CanvasTool> m_formerTool;
    OperatorOnView m_toolOperator;

    Layer m_base;
    Layer m_selection;
    PenColors m_baseColors;
    double m_sceneTime = 0.0;
    bool m_fine = true; ///< the kept pictures must match the transform exactly
    QTimer m_refine;    ///< runs while the view moves
    QElapsedTimer m_sinceOrder;

    std::optional<QTransform> m_dragPreview;
    int m_hover = -1;
    QPointF m_pointer;
    bool m_followsField = true; ///< a resize fits the field again
    bool m_spaceHeld = false;
    std::optional<QPointF> m_panFrom;
    Qt::MouseButton m_panButton = Qt::NoButton;

    /// Two fingers on the canvas, and which ones: when another takes part, the view stays where it is.
    struct Pinch {
        int first = 0, second = 0;
        QPointF center;
        double distance = 0.0;
    };
    static std::optional<Pinch> pinchOf(const QTouchEvent& event);
    std::optional<Pinch> m_pinch;
    bool m_touchGesture = false; ///< one finger drives the tool
    QPointF m_touchStart;
    QElapsedTimer m_tapAge; ///< since the last short touch; invalid when there was none
    QPointF m_tapPlace;
};

} // namespace sim

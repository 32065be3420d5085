// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/selecttool.h"

#include "simengine/view/canvaswidget.h"
#include "simengine/view/codetool.h"
#include "simengine/view/generatedplacetool.h"
#include "simengine/view/hittest.h"
#include "simengine/view/nodeedittool.h"
#include "simengine/view/texttool.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QLineF>
#include <QPainter>

namespace sim {

namespace {

constexpr double kMouseReach = 6.0;  ///< px around a line that hit it
constexpr double kTouchReach = 14.0; ///< the same for a finger
constexpr double kMouseDrag = 4.0;   ///< px from which a press is a drag
constexpr double kTouchDrag = 10.0;
/// Documents of more vertices do not look for the object under the pointer at every move.
constexpr qint64 kMostHoverVertices = 2000000;

double handleReach(const CanvasPoint& point) {
    return point.touch ? SelectionFrame::kTouchReach : SelectionFrame::kMouseReach;
}

Qt::CursorShape scaleCursor(FrameHandle handle) {
    switch (handle) {
    case FrameHandle::TopLeft:
    case FrameHandle::BottomRight:
        return Qt::SizeFDiagCursor;
    case FrameHandle::TopRight:
    case FrameHandle::BottomLeft:
        return Qt::SizeBDiagCursor;
    case FrameHandle::Left:
    case FrameHandle::Right:
        return Qt::SizeHorCursor;
    default:
        return Qt::SizeVerCursor;
    }
}

/// Places of the selection that are drawn to others while it is moved: its bounds, and those of a single object.
std::vector<QPointF> snapPlaces(const DocumentState& state) {
    constexpr std::size_t kMost = 64;
    std::vector<QPointF> places;
    const Box box = selectionBounds(state);
    for (int i = 0; i <= BasePointBottomRight; ++i)
        places.push_back(box.at(static_cast<BasePoint>(i)));
    if (state.selection.count() != 1)
        return places;
    std::vector<SnapPoint> own;
    addSnapPoints(*state.at(state.selection.first()), QTransform(), own);
    for (const SnapPoint& point : own) {
        if (places.size() < kMost)
            places.push_back(point.at);
    }
    return places;
}

} // namespace

int SelectTool::objectUnder(const CanvasPoint& point) const {
    const double scale = m_canvas.viewTransform().scale();
    const double reach = (point.touch ? kTouchReach : kMouseReach) / scale;
    return objectAt(m_canvas.scene(), point.mm, reach, scale);
}

int SelectTool::enteredUnder(const CanvasPoint& point) const {
    const DocumentState& state = *m_canvas.scene().state();
    for (int i = state.count() - 1; i >= 0; --i) {
        const ObjectKind kind = state.at(i)->kind();
        const bool entered = kind == ObjectKind::Text || kind == ObjectKind::Code;
        if (entered && state.at(i)->bounds().contains(point.mm))
            return i;
    }
    return -1;
}

std::optional<SelectionFrame> SelectTool::frame() const {
    const DocumentState& state = *m_canvas.scene().state();
    if (state.selection.isEmpty())
        return std::nullopt;
    return SelectionFrame(selectionBounds(state), m_canvas.viewTransform());
}

void SelectTool::press(const CanvasPoint& point) {
    if (point.button != Qt::LeftButton)
        return;
    m_canvas.setHover(-1);
    m_from = m_to = point;
    m_gesture = Gesture::Pressed;
    m_handle = FrameHandle::None;
    m_object = -1;
    m_wasSelected = false;
    const auto selected = frame();
    const bool readOnly = m_canvas.session().document().isReadOnly();
    if (selected && !readOnly)
        m_handle = selected->handleAt(point.pixel, handleReach(point));
    if (m_handle != FrameHandle::None)
        return;
    m_object = objectUnder(point);
    m_insideFrame = selected && selected->rect().contains(point.pixel);
    if (m_object >= 0)
        selectPressed(point);
}

void SelectTool::selectPressed(const CanvasPoint& point) {
    ViewSession& session = m_canvas.session();
    QList<int> selected = session.state()->selection.ordered();
    m_wasSelected = selected.contains(m_object);
    if (point.modifiers & Qt::ControlModifier) {
        if (m_wasSelected)
            selected.removeAll(m_object);
        else
            selected.append(m_object);
    } else if (point.modifiers & Qt::ShiftModifier) {
        if (!m_wasSelected)
            selected.append(m_object);
    } else if (!m_wasSelected) {
        selected = {m_object};
    }
    session.document().select(selected);
}

void SelectTool::move(const CanvasPoint& point) {
    if (m_gesture == Gesture::None) {
        if (!point.held)
            hover(point);
        return;
    }
    m_to = point;
    if (m_gesture == Gesture::Pressed) {
        if (QLineF(m_from.pixel, point.pixel).length() < (point.touch ? kTouchDrag : kMouseDrag))
            return;
        start(point);
    }
    update(point);
}

// Says what the drag does, from where it began.
void SelectTool::start(const CanvasPoint& point) {
    Q_UNUSED(point)
    const DocumentState& state = *m_canvas.scene().state();
    const bool adds = m_from.modifiers & (Qt::ControlModifier | Qt::ShiftModifier);
    const bool canMove = !m_canvas.session().document().isReadOnly() && !state.selection.isEmpty();
    if (m_handle == FrameHandle::Rotate)
        m_gesture = Gesture::Rotate;
    else if (m_handle == FrameHandle::Move)
        m_gesture = Gesture::Move;
    else if (m_handle != FrameHandle::None)
        m_gesture = Gesture::Scale;
    else if (canMove && m_object >= 0 && state.selection.contains(m_object))
        m_gesture = Gesture::Move;
    else if (canMove && m_object < 0 && m_insideFrame && !adds)
        m_gesture = Gesture::Move;
    else
        m_gesture = Gesture::Band;
    m_places = m_gesture == Gesture::Move ? snapPlaces(state) : std::vector<QPointF>();
}

bool SelectTool::oneAxis() const {
    return (m_to.modifiers & Qt::ShiftModifier) || m_canvas.locksAxis();
}

bool SelectTool::freeScale() const {
    return bool(m_to.modifiers & Qt::ShiftModifier) == m_canvas.keepsRatio();
}

void SelectTool::track(const CanvasPoint& point) {
    m_to = point;
    m_canvas.snap().clear();
    if (point.modifiers & Qt::AltModifier)
        return;
    const QPointF by = m_to.mm - m_from.mm;
    if (m_gesture == Gesture::Move)
        m_to.mm += snappedMove(by, point.touch);
    else if (m_gesture == Gesture::Scale)
        m_to.mm += snappedScale(by, point.touch);
}

QPointF SelectTool::snappedMove(const QPointF& by, bool touch) {
    SnapQuery query;
    query.freeX = !oneAxis() || std::abs(by.x()) >= std::abs(by.y());
    query.freeY = !oneAxis() || !query.freeX;
    const QPointF moved = moveDistance();
    for (const QPointF& place : m_places)
        query.places.push_back(place + moved);
    return m_canvas.snap().correction(query, m_canvas.viewTransform(), m_canvas.scene().state(),
                                      CanvasSnap::Targets::Unselected, touch);
}

// In proportion one axis gives the factor, and only that one snaps.
QPointF SelectTool::snappedScale(const QPointF& by, bool touch) {
    const Box box = selectionBounds(*m_canvas.scene().state());
    const QPointF corner = handlePoint(box, m_handle);
    SnapQuery query;
    query.places = {corner + by};
    query.freeX = corner.x() != box.center().x();
    query.freeY = corner.y() != box.center().y();
    if (query.freeX && query.freeY && !freeScale()) {
        query.freeX = std::abs(by.x()) * box.height() > std::abs(by.y()) * box.width();
        query.freeY = !query.freeX;
    }
    return m_canvas.snap().correction(query, m_canvas.viewTransform(), m_canvas.scene().state(),
                                      CanvasSnap::Targets::Unselected, touch);
}

void SelectTool::update(const CanvasPoint& point) {
    track(point);
    if (m_gesture == Gesture::Band)
        m_canvas.update();
    else
        m_canvas.setDragPreview(preview());
}

void SelectTool::release(const CanvasPoint& point) {
    if (m_gesture == Gesture::None || point.button != Qt::LeftButton)
        return;
    track(point);
    const Gesture done = m_gesture;
    if (done == Gesture::Band) {
        commitBand();
    } else if (done == Gesture::Pressed) {
        const bool plain = !(m_from.modifiers & (Qt::ControlModifier | Qt::ShiftModifier));
        // A click without a drag on one of several selected objects leaves that one alone selected.
        if (m_object >= 0 && m_wasSelected && plain)
            m_canvas.session().document().select({m_object});
        else if (m_object < 0 && m_handle == FrameHandle::None && plain)
            m_canvas.session().document().select({});
    } else {
        commit();
    }
    m_gesture = Gesture::None;
    m_canvas.snap().clear();
    m_canvas.setDragPreview(std::nullopt);
    if (!point.touch)
        hover(point);
}

void SelectTool::commit() {
    Document& document = m_canvas.session().document();
    const Gesture done = std::exchange(m_gesture, Gesture::None);
    if (done == Gesture::Move) {
        const QPointF by = moveDistance();
        document.edit([by](const DocumentState& state) { return edits::move(state, by.x(), by.y()); });
    } else if (done == Gesture::Scale) {
        const ScaleDrag drag = scaling();
        document.edit([drag](const DocumentState& state) {
            return edits::scale(state, drag.scaleX, drag.scaleY, drag.fixed.x(), drag.fixed.y());
        });
    } else if (done == Gesture::Rotate) {
        const QPointF pivot = selectionBounds(*m_canvas.scene().state()).center();
        const double degrees = turn();
        document.edit([=](const DocumentState& state) { return edits::rotate(state, degrees, pivot); });
    }
}

void SelectTool::commitBand() {
    Box area;
    area.add(m_from.mm);
    area.add(m_to.mm);
    const bool crossing = m_to.pixel.x() < m_from.pixel.x();
    const QList<int> found = objectsIn(m_canvas.scene(), area, crossing, m_canvas.viewTransform().scale());
    ViewSession& session = m_canvas.session();
    const Selection before = session.state()->selection;
    QList<int> selected = found;
    if (m_from.modifiers & (Qt::ControlModifier | Qt::ShiftModifier)) {
        selected = before.ordered();
        for (const int index : found) {
            if (!before.contains(index))
                selected.append(index);
        }
    }
    m_gesture = Gesture::None;
    session.document().select(selected);
}

QPointF SelectTool::moveDistance() const {
    QPointF by = m_to.mm - m_from.mm;
    if (oneAxis()) {
        if (std::abs(by.x()) >= std::abs(by.y()))
            by.setY(0.0);
        else
            by.setX(0.0);
    }
    return by;
}

ScaleDrag SelectTool::scaling() const {
    return scaleDrag(selectionBounds(*m_canvas.scene().state()), m_handle, m_from.mm, m_to.mm, freeScale(),
                     m_to.modifiers & Qt::ControlModifier);
}

double SelectTool::turn() const {
    return rotationDrag(selectionBounds(*m_canvas.scene().state()).center(), m_from.mm, m_to.mm, oneAxis());
}

QTransform SelectTool::preview() const {
    switch (m_gesture) {
    case Gesture::Move: {
        const QPointF by = moveDistance();
        return QTransform::fromTranslate(by.x(), by.y());
    }
    case Gesture::Scale: {
        const ScaleDrag drag = scaling();
        return scaleAbout(drag.fixed, drag.scaleX, drag.scaleY);
    }
    case Gesture::Rotate:
        return rotateAbout(selectionBounds(*m_canvas.scene().state()).center(), turn());
    default:
        return {};
    }
}

void SelectTool::hover(const CanvasPoint& point) {
    const auto selected = frame();
    const bool readOnly = m_canvas.session().document().isReadOnly();
    m_handle = selected && !readOnly ? selected->handleAt(point.pixel, handleReach(point)) : FrameHandle::None;
    const bool look = m_handle == FrameHandle::None && m_canvas.scene().vertexCount() <= kMostHoverVertices;
    const int under = look ? objectUnder(point) : -1;
    const bool selectedUnder = under >= 0 && m_canvas.scene().state()->selection.contains(under);
    m_insideFrame = !readOnly && selected && (selectedUnder || (under < 0 && selected->rect().contains(point.pixel)));
    m_canvas.setHover(under);
}

void SelectTool::doubleClick(const CanvasPoint& point) {
    if (point.button != Qt::LeftButton)
        return;
    const int object = objectUnder(point);
    const int edited = object >= 0 ? object : enteredUnder(point);
    if (edited < 0) {
        m_canvas.fitField();
        return;
    }
    const ObjectPtr pressed = m_canvas.scene().state()->at(edited);
    if (pressed->kind() == ObjectKind::Generated)
        editGenerated(m_canvas, pressed);
    else if (pressed->kind() == ObjectKind::Code)
        editCode(m_canvas, pressed);
    else if (pressed->kind() == ObjectKind::Text)
        editText(m_canvas, pressed);
    else
        editNodes(m_canvas);
}

bool SelectTool::cancel() {
    const bool going = m_gesture != Gesture::None;
    m_gesture = Gesture::None;
    m_handle = FrameHandle::None;
    m_canvas.snap().clear();
    return going;
}

void SelectTool::leave() {
    if (m_gesture == Gesture::None)
        m_handle = FrameHandle::None;
    m_insideFrame = false;
}

void SelectTool::paint(QPainter& painter) const {
    if (m_gesture != Gesture::Band)
        return;
    const bool crossing = m_to.pixel.x() < m_from.pixel.x();
    QPen pen(QColor(crossing ? theme::kCrossing : theme::kAccent), 1.0);
    if (crossing)
        pen.setDashPattern({4.0, 3.0});
    painter.setPen(pen);
    painter.setBrush(QColor::fromRgba(crossing ? theme::kCrossingSoft : theme::kAccentSoft));
    const QRectF band = QRectF(QRectF(m_from.pixel, m_to.pixel).normalized().toAlignedRect());
    painter.drawRect(band.translated(0.5, 0.5));
}

QCursor SelectTool::cursor() const {
    if (m_gesture == Gesture::Move)
        return Qt::SizeAllCursor;
    if (m_handle == FrameHandle::Rotate)
        return Qt::PointingHandCursor;
    if (m_handle == FrameHandle::Move)
        return Qt::SizeAllCursor;
    if (m_handle != FrameHandle::None)
        return scaleCursor(m_handle);
    return m_gesture == Gesture::None && m_insideFrame ? Qt::SizeAllCursor : Qt::ArrowCursor;
}

QString SelectTool::readout() const {
    switch (m_gesture) {
    case Gesture::Move: {
        const QPointF by = moveDistance();
        return QStringLiteral("ΔX %1  ΔY %2 mm").arg(by.x(), 0, 'f', 3).arg(by.y(), 0, 'f', 3);
    }
    case Gesture::Scale: {
        const Box box = selectionBounds(*m_canvas.scene().state());
        const ScaleDrag drag = scaling();
        return QStringLiteral("%1 × %2 mm")
            .arg(box.width() * drag.scaleX, 0, 'f', 3)
            .arg(box.height() * drag.scaleY, 0, 'f', 3);
    }
    case Gesture::Rotate:
        return QStringLiteral("%1°").arg(turn(), 0, 'f', 2);
    default:
        return {};
    }
}

} // namespace sim

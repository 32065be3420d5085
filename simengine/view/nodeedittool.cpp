// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/nodeedittool.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "simengine/document/contour.h"
#include "simengine/document/shapeedits.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/viewsession.h"

#include <QKeyEvent>
#include <QLineF>
#include <cmath>

namespace sim {

namespace {

constexpr double kReach = 20.0; ///< px around a node or handle that take a press: 40 px for a finger
constexpr double kMouseSegment = 8.0;
constexpr double kTouchSegment = 16.0;
constexpr double kMouseDrag = 4.0;
constexpr double kTouchDrag = 10.0;
/// More selected nodes show no handles: they would hide the path.
constexpr int kMostHandleNodes = 200;

double away(const QPointF& a, const QPointF& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

bool hasNodes(const MarkObject& object) {
    return object.kind() == ObjectKind::Path || object.kind() == ObjectKind::Polyline;
}

bool samePath(const PathShape& a, const PathShape& b) {
    return a.verbs == b.verbs && a.points == b.points;
}

} // namespace

bool canBecomePath(const MarkObject& object) {
    return !hasNodes(object) && object.kind() != ObjectKind::Point && object.kind() != ObjectKind::Group;
}

bool editNodes(CanvasWidget& canvas) {
    std::unique_ptr<NodeEditTool> tool = NodeEditTool::ofSelection(canvas);
    if (!tool)
        return false;
    canvas.useTool(std::move(tool));
    return true;
}

NodeEditTool::NodeEditTool(CanvasWidget& canvas, int index)
    : CanvasTool(canvas) {
    load(index);
}

std::unique_ptr<NodeEditTool> NodeEditTool::ofSelection(CanvasWidget& canvas) {
    const StatePtr state = canvas.session().state();
    if (state->selection.count() != 1 || canvas.session().document().isReadOnly())
        return nullptr;
    const int index = state->selection.first();
    if (!hasNodes(*state->at(index)))
        return nullptr;
    return std::unique_ptr<NodeEditTool>(new NodeEditTool(canvas, index));
}

void NodeEditTool::load(int index) {
    m_index = index;
    m_object = m_canvas.session().state()->at(index);
    m_line = m_object->kind() == ObjectKind::Polyline;
    m_path = NodePath::of(fieldPath(*m_object).value_or(PathShape()));
    m_place.reset();
    m_hover = NodeRef();
}

void NodeEditTool::changed() {
    m_canvas.noteToolChange();
    m_canvas.update();
}

double NodeEditTool::mm(double pixels) const {
    return pixels / m_canvas.viewTransform().scale();
}

bool NodeEditTool::addsTo(const CanvasPoint& point) const {
    return m_adds || (point.modifiers & (Qt::ShiftModifier | Qt::ControlModifier));
}

std::vector<NodeEditTool::HandleRef> NodeEditTool::shownHandles() const {
    std::vector<HandleRef> shown;
    if (m_path.selectedCount() > kMostHandleNodes)
        return shown;
    const std::vector<NodeContour>& contours = m_path.contours();
    for (int c = 0; c < int(contours.size()); ++c) {
        const NodeContour& contour = contours[size_t(c)];
        for (int i = 0; i < contour.count(); ++i) {
            const bool own = contour.nodes[size_t(i)].selected;
            const bool before = contour.hasBefore(i) && contour.nodes[size_t(contour.previous(i))].selected;
            const bool after = contour.hasAfter(i) && contour.nodes[size_t(contour.next(i))].selected;
            if ((own || before) && contour.curvedBefore(i))
                shown.push_back({{c, i}, NodeHandle::In});
            if ((own || after) && contour.curvedAfter(i))
                shown.push_back({{c, i}, NodeHandle::Out});
        }
    }
    return shown;
}

QPointF NodeEditTool::handlePlace(const HandleRef& ref) const {
    const PathNode& node = m_path.node(ref.node);
    return ref.handle == NodeHandle::In ? node.in : node.out;
}

std::optional<NodeEditTool::HandleRef> NodeEditTool::handleAt(const CanvasPoint& point) const {
    std::optional<HandleRef> best;
    double bestDistance = mm(kReach);
    for (const HandleRef& ref : shownHandles()) {
        const double distance = away(handlePlace(ref), point.mm);
        if (distance < bestDistance) {
            best = ref;
            bestDistance = distance;
        }
    }
    return best;
}

void NodeEditTool::press(const CanvasPoint& point) {
    if (point.button == Qt::RightButton) {
        if (!cancel())
            finish();
        return;
    }
    if (point.button != Qt::LeftButton || m_canvas.session().document().isReadOnly())
        return;
    m_from = m_to = point;
    m_pressed = true;
    m_dragging = false;
    m_onlyThis = false;
    m_place.reset();
    take(point);
    changed();
}

// What is nearest is meant; a handle that lies on its node leaves the press to the node.
void NodeEditTool::take(const CanvasPoint& point) {
    const std::optional<NodeRef> node = m_path.nodeAt(point.mm, mm(kReach));
    const std::optional<HandleRef> handle = handleAt(point);
    const double nodeAway = node ? away(m_path.node(*node).at, point.mm) : HUGE_VAL;
    if (handle && away(handlePlace(*handle), point.mm) < nodeAway) {
        m_gesture = Gesture::Handle;
        m_handle = *handle;
        m_handleStart = handlePlace(*handle);
    } else if (node) {
        takeNode(*node, point);
    } else if (const auto place = m_path.segmentAt(point.mm, mm(point.touch ? kTouchSegment : kMouseSegment))) {
        takeSegment(*place, point);
    } else {
        m_gesture = Gesture::Band;
    }
}

void NodeEditTool::takeNode(const NodeRef& node, const CanvasPoint& point) {
    m_gesture = Gesture::Nodes;
    m_taken = node;
    const bool was = m_path.node(node).selected;
    if (addsTo(point)) {
        m_path.select(node, !was);
    } else if (!was) {
        m_path.selectNone();
        m_path.select(node, true);
    } else {
        m_onlyThis = true;
    }
}

void NodeEditTool::takeSegment(const SegmentPlace& place, const CanvasPoint& point) {
    m_gesture = Gesture::Nodes;
    m_taken = place.segment;
    m_place = place;
    if (!addsTo(point))
        m_path.selectNone();
    m_path.select(place.segment, true);
    const NodeContour& contour = m_path.contours()[size_t(place.segment.contour)];
    m_path.select({place.segment.contour, contour.next(place.segment.node)}, true);
}

void NodeEditTool::move(const CanvasPoint& point) {
    if (!m_pressed) {
        if (point.held)
            return;
        const NodeRef under = m_path.nodeAt(point.mm, mm(kReach)).value_or(NodeRef());
        if (!(under == m_hover)) {
            m_hover = under;
            m_canvas.update();
        }
        return;
    }
    if (!m_dragging) {
        if (QLineF(m_from.pixel, point.pixel).length() < (point.touch ? kTouchDrag : kMouseDrag))
            return;
        m_dragging = true;
        m_before = m_path;
        m_place.reset();
    }
    drag(point);
    m_canvas.update();
}

/// How far the taken node or handle has come: drawn to the snap targets, with Shift or the lock of the view's bar along
/// one axis.
QPointF NodeEditTool::dragged(const CanvasPoint& point) const {
    QPointF by = point.mm - m_from.mm;
    const bool oneAxis = (point.modifiers & Qt::ShiftModifier) || m_canvas.locksAxis();
    if (oneAxis) {
        if (std::abs(by.x()) >= std::abs(by.y()))
            by.setY(0.0);
        else
            by.setX(0.0);
    }
    const QPointF start = m_gesture == Gesture::Handle ? m_handleStart : m_before.node(m_taken).at;
    m_canvas.snap().clear();
    if (!oneAxis && !(point.modifiers & Qt::AltModifier)) {
        SnapQuery query;
        query.places = {start + by};
        by += m_canvas.snap().correction(query, m_canvas.viewTransform(), m_canvas.scene().state(),
                                         CanvasSnap::Targets::Unselected, point.touch);
    }
    return by;
}

void NodeEditTool::drag(const CanvasPoint& point) {
    m_to = point;
    if (m_gesture == Gesture::Nodes) {
        const QPointF by = dragged(point);
        m_path = m_before;
        m_path.moveSelected(by);
    } else if (m_gesture == Gesture::Handle) {
        const QPointF by = dragged(point);
        m_path = m_before;
        m_path.moveHandle(m_handle.node, m_handle.handle, m_handleStart + by);
    }
}

void NodeEditTool::release(const CanvasPoint& point) {
    if (!m_pressed || point.button != Qt::LeftButton)
        return;
    m_pressed = false;
    if (m_dragging)
        drag(point);
    const Gesture done = std::exchange(m_gesture, Gesture::None);
    const bool dragged = std::exchange(m_dragging, false);
    m_canvas.snap().clear();
    if (done == Gesture::Band) {
        if (!addsTo(m_from))
            m_path.selectNone();
        if (dragged)
            m_path.selectIn(QRectF(m_from.mm, m_to.mm).normalized());
    } else if (dragged) {
        commit();
    } else if (done == Gesture::Nodes && m_onlyThis) {
        m_path.selectNone();
        m_path.select(m_taken, true);
    }
    changed();
}

void NodeEditTool::doubleClick(const CanvasPoint& point) {
    if (point.button != Qt::LeftButton)
        return;
    m_pressed = false;
    m_gesture = Gesture::None;
    if (const auto node = m_path.nodeAt(point.mm, mm(kReach))) {
        m_path.selectNone();
        m_path.select(*node, true);
        run(m_path.node(*node).kind == NodeKind::Corner ? NodeCommand::Smooth : NodeCommand::Corner);
        return;
    }
    m_place = m_path.segmentAt(point.mm, mm(point.touch ? kTouchSegment : kMouseSegment));
    if (m_place)
        run(NodeCommand::Insert);
    else
        finish();
}

bool NodeEditTool::cancel() {
    if (m_committing)
        return false;
    const bool going = m_pressed;
    if (m_dragging)
        m_path = m_before;
    m_pressed = m_dragging = false;
    m_gesture = Gesture::None;
    m_canvas.snap().clear();
    return going;
}

void NodeEditTool::leave() {
    m_hover = NodeRef();
}

bool NodeEditTool::nudge(const QKeyEvent& event) {
    const double step = m_canvas.session().keyMoveDistance();
    QPointF by;
    switch (event.key()) {
    case Qt::Key_Left:
        by = {-step, 0.0};
        break;
    case Qt::Key_Right:
        by = {step, 0.0};
        break;
    case Qt::Key_Up:
        by = {0.0, step};
        break;
    case Qt::Key_Down:
        by = {0.0, -step};
        break;
    default:
        return false;
    }
    if (m_path.moveSelected(by))
        commit(true);
    return true;
}

bool NodeEditTool::key(const QKeyEvent& event) {
    if (m_pressed)
        return false;
    if (nudge(event))
        return true;
    if (event.matches(QKeySequence::SelectAll)) {
        m_path.selectAll();
        changed();
        return true;
    }
    switch (event.key()) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        run(NodeCommand::Remove);
        return true;
    case Qt::Key_Insert:
        run(NodeCommand::Insert);
        return true;
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finish();
        return true;
    default:
        return false;
    }
}

bool NodeEditTool::can(NodeCommand command) const {
    switch (command) {
    case NodeCommand::Insert:
        return m_place.has_value() || m_path.canInsertBetween();
    case NodeCommand::Line:
    case NodeCommand::Curve:
        return m_path.canInsertBetween();
    case NodeCommand::Break:
        return m_path.canBreak();
    case NodeCommand::Close:
        return m_path.canClose();
    case NodeCommand::Open:
        return m_path.canOpen();
    default:
        return m_path.selectedCount() > 0;
    }
}

bool NodeEditTool::insert() {
    if (!m_place)
        return m_path.insertBetween();
    const SegmentPlace place = *m_place;
    m_place.reset();
    return m_path.insert(place.segment, place.t);
}

void NodeEditTool::run(NodeCommand command) {
    if (m_canvas.session().document().isReadOnly())
        return;
    bool done = false;
    switch (command) {
    case NodeCommand::Insert:
        done = insert();
        break;
    case NodeCommand::Remove:
        done = m_path.removeSelected();
        break;
    case NodeCommand::Corner:
        done = m_path.setKind(NodeKind::Corner);
        break;
    case NodeCommand::Smooth:
        done = m_path.setKind(NodeKind::Smooth);
        break;
    case NodeCommand::Symmetric:
        done = m_path.setKind(NodeKind::Symmetric);
        break;
    case NodeCommand::Line:
        done = m_path.setCurved(false);
        break;
    case NodeCommand::Curve:
        done = m_path.setCurved(true);
        break;
    case NodeCommand::Break:
        done = m_path.breakSelected();
        break;
    case NodeCommand::Close:
        done = m_path.setClosed(true);
        break;
    case NodeCommand::Open:
        done = m_path.setClosed(false);
        break;
    }
    m_place.reset();
    m_hover = NodeRef();
    if (done)
        commit();
    changed();
}

void NodeEditTool::refused() {
    MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText("修改超出允许范围"));
    load(m_index);
}

// One step of the document; a kind alone changes no coordinate and is none.
void NodeEditTool::commit(bool merge) {
    Document& document = m_canvas.session().document();
    if (m_path.isEmpty()) {
        document.edit(edits::removeSelected); // ends the editing by documentChanged()
        return;
    }
    const PathShape path = m_path.path();
    if (samePath(path, fieldPath(*m_object).value_or(PathShape())))
        return;
    const Shape shape = m_line ? simplestShape(path) : Shape(path);
    m_committing = true;
    const bool done = document.edit(
        [&](const DocumentState& state) -> EditResult {
            // the document may have been edited from elsewhere meanwhile
            if (m_index >= state.count() || state.at(m_index) != m_object)
                return std::nullopt;
            return edits::setFieldShape(state, m_index, shape);
        },
        merge);
    m_committing = false;
    if (!done) {
        refused();
        return;
    }
    m_object = m_canvas.session().state()->at(m_index);
    m_line = m_object->kind() == ObjectKind::Polyline;
}

void NodeEditTool::documentChanged() {
    if (m_committing)
        return;
    const StatePtr state = m_canvas.session().state();
    const int index = state->selection.count() == 1 ? state->selection.first() : -1;
    const bool editable = index >= 0 && hasNodes(*state->at(index)) && !m_canvas.session().document().isReadOnly();
    if (!editable) {
        finish();
        return;
    }
    if (state->at(index) != m_object)
        load(index);
    m_index = index;
    changed();
}

void NodeEditTool::finish() {
    m_canvas.endTool(*this);
}

QCursor NodeEditTool::cursor() const {
    if (m_dragging && m_gesture != Gesture::Band)
        return Qt::SizeAllCursor;
    return m_hover.isValid() ? Qt::PointingHandCursor : Qt::ArrowCursor;
}

QString NodeEditTool::readout() const {
    if (!m_dragging || m_gesture == Gesture::Band)
        return {};
    const QPointF at = m_gesture == Gesture::Handle ? handlePlace(m_handle) : m_path.node(m_taken).at;
    return QStringLiteral("X %1  Y %2 mm").arg(at.x(), 0, 'f', 3).arg(at.y(), 0, 'f', 3);
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/generatedplacetool.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "simengine/document/flatten.h"
#include "simengine/document/shapeedits.h"
#include "simengine/view/askingtool.h"
#include "simengine/view/generateddialog.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/viewtheme.h"

#include <QHash>
#include <QLineF>
#include <QPainter>
#include <cmath>

namespace sim {

namespace {

constexpr double kMouseDrag = 4.0; ///< px from which a press is a drag
constexpr double kTouchDrag = 10.0;
constexpr double kAlike = 1.0e-6; ///< difference of two scales that counts as none, in parts

/// Parameters of the object that was placed last, by the class of its tool.
QHash<QString, QVector<double>>& lastPlaced() {
    static QHash<QString, QVector<double>> values;
    return values;
}

void note(const char* key) {
    MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText(key));
}

void addGenerated(ViewSession& session, const GeneratedTool& tool, const QVector<double>& values,
                  const QPointF& place) {
    const std::optional<GeneratedShape> shape = tool.make(values);
    if (!shape) {
        note("参数不能组成图形");
        return;
    }
    if (session.addShape(*shape, QTransform::fromTranslate(place.x(), place.y())))
        lastPlaced().insert(tool.className(), tool.sound(values));
}

} // namespace

double generatedScale(const QTransform& t) {
    const double x = std::hypot(t.m11(), t.m12());
    const double y = std::hypot(t.m21(), t.m22());
    const double skew = t.m11() * t.m21() + t.m12() * t.m22();
    const bool alike = std::abs(x - y) <= kAlike * x && std::abs(skew) <= kAlike * x * y;
    return x > 0.0 && alike ? x : 1.0;
}

GeneratedPlaceTool::GeneratedPlaceTool(CanvasWidget& canvas, std::shared_ptr<GeneratedTool> tool)
    : CanvasTool(canvas)
    , m_tool(std::move(tool)) {}

QVector<double> GeneratedPlaceTool::lastValues() const {
    return m_tool->sound(lastPlaced().value(m_tool->className()));
}

void GeneratedPlaceTool::press(const CanvasPoint& point) {
    if (point.button == Qt::RightButton) {
        if (!cancel())
            m_canvas.session().finishOperator();
        return;
    }
    if (point.button != Qt::LeftButton)
        return;
    if (m_canvas.session().document().isReadOnly()) {
        note("文档只读");
        return;
    }
    m_from = point;
    m_dragged = false;
}

void GeneratedPlaceTool::move(const CanvasPoint& point) {
    if (!m_from)
        return;
    const double least = point.touch ? kTouchDrag : kMouseDrag;
    m_dragged = m_dragged || QLineF(m_from->pixel, point.pixel).length() >= least;
    if (!m_dragged)
        return;
    shape(point);
    m_canvas.update();
}

void GeneratedPlaceTool::shape(const CanvasPoint& point) {
    m_values = m_tool->placed(lastValues(), point.mm - m_from->mm);
    m_shape = m_tool->make(m_values);
}

void GeneratedPlaceTool::release(const CanvasPoint& point) {
    if (!m_from || point.button != Qt::LeftButton)
        return;
    const QPointF place = m_from->mm;
    if (m_dragged)
        shape(point);
    // What follows may end this tool; nothing of it is touched afterwards.
    const bool dragged = m_dragged;
    const QVector<double> values = m_values;
    const std::shared_ptr<GeneratedTool> tool = m_tool;
    ViewSession& session = m_canvas.session();
    cancel();
    if (dragged)
        addGenerated(session, *tool, values, place);
    else
        ask(place);
}

// The dialog opens when the button is up again: it would take the release away from the canvas.
void GeneratedPlaceTool::ask(const QPointF& place) {
    if (isAsking<GeneratedDialog>(m_canvas))
        return;
    ViewSession& session = m_canvas.session();
    openOver(m_canvas, new GeneratedDialog(m_tool, lastValues(), 1.0, &m_canvas),
             [&session, tool = m_tool, place](const GeneratedDialog& dialog) {
                 addGenerated(session, *tool, dialog.values(), place);
             });
}

bool GeneratedPlaceTool::cancel() {
    const bool going = m_from.has_value();
    m_from.reset();
    m_shape.reset();
    m_dragged = false;
    return going;
}

void GeneratedPlaceTool::paint(QPainter& painter) const {
    if (!m_from || !m_shape)
        return;
    const ViewTransform& view = m_canvas.viewTransform();
    std::vector<FlatLine> lines;
    const QTransform placed = QTransform::fromTranslate(m_from->mm.x(), m_from->mm.y());
    flattenShape(Shape(*m_shape), placed, lines, 0.25 / view.scale());
    painter.setPen(QPen(QColor(theme::kAccent), 1.5));
    painter.setBrush(Qt::NoBrush);
    for (const FlatLine& line : lines)
        painter.drawPolyline(view.matrix().map(line.points));
}

QString GeneratedPlaceTool::readout() const {
    if (!m_from || !m_shape)
        return {};
    const Box box = shapeBounds(Shape(*m_shape), QTransform());
    return QStringLiteral("%1 × %2 mm").arg(box.width(), 0, 'f', 3).arg(box.height(), 0, 'f', 3);
}

void editGenerated(CanvasWidget& canvas, const ObjectPtr& object) {
    ViewSession& session = canvas.session();
    const auto* shape = std::get_if<GeneratedShape>(&object->shape());
    if (!shape || session.document().isReadOnly() || isAsking<GeneratedDialog>(canvas))
        return;
    const std::shared_ptr<GeneratedTool> tool = GeneratedTool::ofClass(shape->toolClass);
    const std::optional<QVector<double>> values = tool ? tool->read(shape->parameters) : std::nullopt;
    if (!values) {
        note("没有该对象的工具模块,不能修改参数");
        return;
    }
    const int index = presentIndex(*session.state(), object, -1);
    const auto accepted = [&session, tool, object, index](const GeneratedDialog& dialog) {
        const std::optional<GeneratedShape> made = tool->make(dialog.values());
        if (!made) {
            note("参数不能组成图形");
            return;
        }
        // the document may have been edited from elsewhere meanwhile
        const int now = presentIndex(*session.state(), object, index);
        if (now >= 0) {
            session.change([&](const DocumentState& state, QString* fault) {
                return edits::setGenerated(state, now, *made, fault);
            });
        }
    };
    const double scale = generatedScale(object->transform());
    openOver(canvas, new GeneratedDialog(tool, *values, scale, &canvas), accepted);
}

} // namespace sim

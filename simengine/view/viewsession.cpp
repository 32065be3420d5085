// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/viewsession.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/marktool.h"
#include "engine/systemparam.h"
#include "simengine/card/cardlink.h"
#include "simengine/document/codeedits.h"
#include "simengine/document/codemaker.h"
#include "simengine/document/codemessage.h"
#include "simengine/document/textedits.h"
#include "simengine/document/textmaker.h"
#include "simengine/document/textmessage.h"
#include "simengine/document/variablestore.h"
#include "simengine/view/runningjob.h"
#include "simengine/view/threepoints.h"

#include <QThread>

namespace sim {

namespace {

/// What was copied last, shared by all open documents.
struct Clipboard {
    ObjectList objects;
    int pastes = 0;
};

Clipboard& clipboard() {
    static Clipboard content;
    return content;
}

constexpr int kPointsOfCircle = 3;

void noteRefused(const QString& reason) {
    MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText("不能添加对象") + ":" + reason);
}

/// The text of a template with the present values; nothing, and the log tells why, when they cannot be had.
std::optional<QString> presentText(const QString& text, bool variables) {
    if (!variables)
        return text;
    VariableProblem problem;
    QString present = variableText(text, problem);
    if (problem.ok())
        return present;
    noteRefused(variableMessage(problem));
    return std::nullopt;
}

std::optional<TextShape> makeNow(const TextSpec& spec) {
    const std::optional<QString> text = presentText(spec.text, spec.variables);
    if (!text)
        return std::nullopt;
    MadeText made = makeText(spec, *text);
    if (made.ok())
        return std::move(made.shape);
    noteRefused(textMessage(made));
    return std::nullopt;
}

std::optional<MadeCode> makeNow(const CodeSpec& spec) {
    const std::optional<QString> text = presentText(spec.text, spec.variables);
    if (!text)
        return std::nullopt;
    MadeCode made = makeCode(spec, *text);
    if (made.ok())
        return made;
    noteRefused(codeMessage(made));
    return std::nullopt;
}

} // namespace

ViewSession::ViewSession(QObject* parent)
    : QObject(parent) {
    m_document.setListener([this] { notify(); });
}

ViewSession::~ViewSession() {
    m_document.setListener(nullptr);
}

// The document tells of a change on the thread that made it; the windows hear of it on theirs.
void ViewSession::notify() {
    if (QThread::currentThread() == thread())
        emit changed();
    else
        QMetaObject::invokeMethod(this, &ViewSession::changed, Qt::QueuedConnection);
}

void ViewSession::setOperatorOnView(OperatorOnView op) {
    if (m_operator == op)
        return;
    m_operator = op;
    m_taught.reset();
    m_confirmed.clear();
    if (op != OperatorAddPluginTool)
        m_addTool.reset();
    emit overlayChanged();
}

// Taught points have a window of their own, and only its close ends them.
void ViewSession::finishOperator() {
    if (m_operator == OperatorSelect || m_operator == OperatorTeach)
        return;
    setOperatorOnView(OperatorSelect);
    emit operatorChanged();
}

void ViewSession::setAddMarkTool(std::unique_ptr<MarkTool> tool) {
    m_addTool = std::move(tool);
    emit addMarkToolChanged();
}

bool ViewSession::addShape(const Shape& shape, const QTransform& transform, const HatchSettings& hatch) {
    ObjectData data;
    data.shape = shape;
    data.transform = transform;
    data.pen = currentPen();
    data.hatch = hatch;
    QString fault;
    const ObjectPtr object = MarkObject::make(std::move(data), &fault);
    if (!object) {
        noteRefused(fault);
        return false;
    }
    return m_document.edit([&](const DocumentState& state) { return edits::add(state, {object}); });
}

bool ViewSession::refusesEdit() const {
    if (m_document.isReadOnly())
        noteRefused(LanguageManager::GetLanText("文档只读"));
    return m_document.isReadOnly();
}

bool ViewSession::addText(const TextSpec& spec, const QPointF& place) {
    if (refusesEdit())
        return false;
    const std::optional<TextShape> text = makeNow(spec);
    return text && addShape(*text, QTransform::fromTranslate(place.x(), place.y()));
}

bool ViewSession::change(const std::function<EditResult(const DocumentState&, QString*)>& edit) {
    QString fault;
    if (m_document.edit([&](const DocumentState& state) { return edit(state, &fault); }))
        return true;
    if (!fault.isEmpty())
        MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText("不能修改对象") + ":" + fault);
    return false;
}

bool ViewSession::changeText(int index, const TextSpec& spec) {
    const std::optional<TextShape> text = makeNow(spec);
    return text && change([&](const DocumentState& state, QString* fault) {
               return edits::setText(state, index, *text, fault);
           });
}

bool ViewSession::addCode(const CodeSpec& spec, const QPointF& place) {
    if (refusesEdit())
        return false;
    const std::optional<MadeCode> made = makeNow(spec);
    return made &&
           addShape(made->shape, QTransform::fromTranslate(place.x(), place.y()), usualCodeHatch(spec, made->module));
}

bool ViewSession::changeCode(int index, const CodeSpec& spec) {
    const std::optional<MadeCode> made = makeNow(spec);
    if (!made)
        return false;
    const HatchSettings hatch = usualCodeHatch(spec, made->module);
    return change([&](const DocumentState& state, QString* fault) {
        return edits::setCode(state, index, made->shape, hatch, fault);
    });
}

bool ViewSession::moveByKey(double dx, double dy) {
    return m_document.edit([=](const DocumentState& state) { return edits::move(state, dx, dy); }, true);
}

bool ViewSession::removeSelected() {
    return m_document.edit(edits::removeSelected);
}

void ViewSession::copySelected() const {
    const ObjectList objects = m_document.selectedObjects();
    if (objects.empty())
        return;
    clipboard() = {objects, 0};
}

bool ViewSession::paste() {
    Clipboard& content = clipboard();
    if (content.objects.empty())
        return false;
    double dx = 0.0, dy = 0.0;
    SystemParam::Instance()->GetPasteOffSet(dx, dy);
    const int count = content.pastes + 1;
    const bool done = m_document.edit(
        [&](const DocumentState& state) { return edits::paste(state, content.objects, dx * count, dy * count); });
    if (done)
        content.pastes = count;
    return done;
}

std::array<QColor, kLayerCount> ViewSession::penColors() const {
    std::array<QColor, kLayerCount> colors;
    const auto channel = [](int value) { return qBound(0, value, 255); };
    const LayerParamEx& pens = m_document.pens();
    for (int i = 0; i < kLayerCount; ++i) {
        LayerData pen;
        pens.GetLayerData(i, pen);
        colors[static_cast<std::size_t>(i)] = QColor(channel(pen.ColorR), channel(pen.ColorG), channel(pen.ColorB));
    }
    return colors;
}

void ViewSession::setCurrentPen(int pen, bool alsoSelection) {
    DocumentSettings settings = m_document.settings();
    settings.currentPen = pen;
    if (!m_document.setSettings(settings) || !alsoSelection)
        return;
    m_document.edit([=](const DocumentState& state) { return edits::setPen(state, pen); });
}

void ViewSession::teach(const QPointF& mm) {
    m_taught = mm;
    if (const auto callback = mirrorCallback.load())
        callback(mm);
    emit overlayChanged();
}

std::optional<QPointF> ViewSession::placeToConfirm() const {
    if (!pilotSpot())
        return m_taught;
    return jobRuns() ? std::nullopt : steeredSpot();
}

void ViewSession::confirmTaughtPoint() {
    const std::optional<QPointF> place = placeToConfirm();
    if (!place)
        return;
    if (m_operator == OperatorTeach) {
        addShape(PointShape{*place, -1.0});
        return;
    }
    if (m_operator != OperatorTeachCircle && m_operator != OperatorTeachArc)
        return;
    if (!m_confirmed.isEmpty() && m_confirmed.last() == *place)
        return;
    m_confirmed.append(*place);
    if (m_confirmed.size() == kPointsOfCircle) {
        const QVector<QPointF> points = std::exchange(m_confirmed, {});
        std::optional<Shape> shape;
        if (m_operator == OperatorTeachCircle)
            shape = circleThrough(points[0], points[1], points[2]);
        else
            shape = arcThrough(points[0], points[1], points[2]);
        if (shape)
            addShape(*shape);
        else
            MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText("三点不能确定圆"));
    }
    emit overlayChanged();
}

} // namespace sim

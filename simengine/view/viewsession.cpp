// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/viewsession.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/marktool.h"
#include "engine/systemparam.h"
#include "simengine/document/textedits.h"
#include "simengine/document/textmaker.h"
#include "simengine/view/textmessage.h"
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
}

bool ViewSession::addShape(const Shape& shape, const QTransform& transform) {
    ObjectData data;
    data.shape = shape;
    data.transform = transform;
    data.pen = currentPen();
    QString fault;
    const ObjectPtr object = MarkObject::make(std::move(data), &fault);
    if (!object) {
        noteRefused(fault);
        return false;
    }
    return m_document.edit([&](const DocumentState& state) { return edits::add(state, {object}); });
}

bool ViewSession::addText(const TextSpec& spec, const QPointF& place) {
    const MadeText made = makeText(spec);
    if (!made.ok() || m_document.isReadOnly()) {
        noteRefused(made.ok() ? LanguageManager::GetLanText("文档只读") : textMessage(made));
        return false;
    }
    return addShape(made.shape, QTransform::fromTranslate(place.x(), place.y()));
}

bool ViewSession::changeText(int index, const TextSpec& spec) {
    const MadeText made = makeText(spec);
    if (!made.ok()) {
        noteRefused(textMessage(made));
        return false;
    }
    return m_document.edit([&](const DocumentState& state) { return edits::setText(state, index, made.shape); });
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

void ViewSession::confirmTaughtPoint() {
    if (!m_taught)
        return;
    if (m_operator == OperatorTeach) {
        addShape(PointShape{*m_taught, -1.0});
        return;
    }
    if (m_operator != OperatorTeachCircle && m_operator != OperatorTeachArc)
        return;
    m_confirmed.append(*m_taught);
    m_taught.reset();
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

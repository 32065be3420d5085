// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/codetool.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "simengine/document/codeedits.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/codedialog.h"
#include "simengine/view/viewsession.h"

namespace sim {

namespace {

bool isAsking(const CanvasWidget& canvas) {
    // one that was answered lives on until the event loop deletes it
    const auto dialogs = canvas.findChildren<CodeDialog*>(QString(), Qt::FindDirectChildrenOnly);
    return std::any_of(dialogs.begin(), dialogs.end(), [](const CodeDialog* dialog) { return dialog->isVisible(); });
}

/// Opens the dialog and comes back; `accepted` is called once the operator confirms it.
template<class Accepted>
void open(CanvasWidget& canvas, CodeDialog* dialog, Accepted accepted) {
    QObject::connect(dialog, &QDialog::accepted, &canvas, [dialog, accepted] { accepted(dialog->spec()); });
    dialog->open();
}

/// Both are the same as far as the operator entered it.
bool sameEntered(const MarkObject& a, const MarkObject& b) {
    if (a.kind() != b.kind() || a.transform() != b.transform())
        return false;
    if (const auto* text = std::get_if<TextShape>(&a.shape()))
        return text->spec.variables && text->spec == std::get<TextShape>(b.shape()).spec;
    if (const auto* code = std::get_if<CodeShape>(&a.shape()))
        return code->spec.variables && code->spec == std::get<CodeShape>(b.shape()).spec;
    return false;
}

} // namespace

int presentIndex(const DocumentState& state, const ObjectPtr& object, int formerIndex) {
    for (int i = 0; i < state.count(); ++i) {
        if (state.at(i) == object)
            return i;
    }
    const bool there = formerIndex >= 0 && formerIndex < state.count();
    return there && sameEntered(*state.at(formerIndex), *object) ? formerIndex : -1;
}

void CodeTool::press(const CanvasPoint& point) {
    if (point.button == Qt::RightButton)
        m_canvas.session().finishOperator();
    else if (point.button == Qt::LeftButton)
        m_place = point.mm;
}

// The dialog opens when the button is up again: it would take the release away from the canvas.
void CodeTool::release(const CanvasPoint& point) {
    if (point.button != Qt::LeftButton || !m_place || isAsking(m_canvas))
        return;
    const QPointF place = *m_place;
    m_place.reset();
    ViewSession& session = m_canvas.session();
    if (session.document().isReadOnly()) {
        MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText("文档只读"));
        return;
    }
    open(m_canvas, new CodeDialog(&m_canvas),
         [&session, place](const CodeSpec& spec) { session.addCode(spec, place); });
}

bool CodeTool::cancel() {
    const bool going = m_place.has_value();
    m_place.reset();
    return going;
}

void editCode(CanvasWidget& canvas, const ObjectPtr& object) {
    ViewSession& session = canvas.session();
    if (session.document().isReadOnly() || object->kind() != ObjectKind::Code || isAsking(canvas))
        return;
    const int index = presentIndex(*session.state(), object, -1);
    open(canvas, new CodeDialog(markedCode(*object), &canvas), [&session, object, index](const CodeSpec& spec) {
        // the document may have been edited from elsewhere meanwhile
        const int now = presentIndex(*session.state(), object, index);
        if (now >= 0)
            session.changeCode(now, ownCode(*object, spec));
    });
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/texttool.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "simengine/document/textedits.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/codetool.h"
#include "simengine/view/textdialog.h"
#include "simengine/view/viewsession.h"

namespace sim {

namespace {

/// Opens the dialog and comes back; `accepted` is called with the dialog once the operator confirms it. It belongs to
/// the canvas and goes with it.
template<class Accepted>
void open(CanvasWidget& canvas, TextDialog* dialog, Accepted accepted) {
    QObject::connect(dialog, &QDialog::accepted, &canvas, [dialog, accepted] { accepted(dialog->spec()); });
    dialog->open();
}

bool isAsking(const CanvasWidget& canvas) {
    // one that was answered lives on until the event loop deletes it
    const auto dialogs = canvas.findChildren<TextDialog*>(QString(), Qt::FindDirectChildrenOnly);
    return std::any_of(dialogs.begin(), dialogs.end(), [](const TextDialog* dialog) { return dialog->isVisible(); });
}

} // namespace

void TextTool::press(const CanvasPoint& point) {
    if (point.button == Qt::RightButton)
        m_canvas.session().finishOperator();
    else if (point.button == Qt::LeftButton)
        m_place = point.mm;
}

// The dialog opens when the button is up again: it would take the release away from the canvas.
void TextTool::release(const CanvasPoint& point) {
    if (point.button != Qt::LeftButton || !m_place || isAsking(m_canvas))
        return;
    const QPointF place = *m_place;
    m_place.reset();
    ViewSession& session = m_canvas.session();
    if (session.document().isReadOnly()) {
        MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText("文档只读"));
        return;
    }
    open(m_canvas, new TextDialog(&m_canvas),
         [&session, place](const TextSpec& spec) { session.addText(spec, place); });
}

bool TextTool::cancel() {
    const bool going = m_place.has_value();
    m_place.reset();
    return going;
}

void editText(CanvasWidget& canvas, const ObjectPtr& object) {
    ViewSession& session = canvas.session();
    if (session.document().isReadOnly() || object->kind() != ObjectKind::Text || isAsking(canvas))
        return;
    const int index = presentIndex(*session.state(), object, -1);
    open(canvas, new TextDialog(markedSpec(*object), &canvas), [&session, object, index](const TextSpec& spec) {
        // the document may have been edited from elsewhere meanwhile
        const int now = presentIndex(*session.state(), object, index);
        if (now >= 0)
            session.changeText(now, ownSpec(*object, spec));
    });
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/texttool.h"

#include "simengine/document/textedits.h"
#include "simengine/view/textdialog.h"
#include "simengine/view/viewsession.h"

namespace sim {

bool TextTool::isOpen() const {
    return isAsking<TextDialog>(m_canvas);
}

void TextTool::ask(const QPointF& place) {
    ViewSession& session = m_canvas.session();
    openOver(m_canvas, new TextDialog(&m_canvas),
             [&session, place](const TextDialog& dialog) { session.addText(dialog.spec(), place); });
}

void editText(CanvasWidget& canvas, const ObjectPtr& object) {
    ViewSession& session = canvas.session();
    if (session.document().isReadOnly() || object->kind() != ObjectKind::Text || isAsking<TextDialog>(canvas))
        return;
    const int index = presentIndex(*session.state(), object, -1);
    openOver(canvas, new TextDialog(markedSpec(*object), &canvas), [&session, object, index](const TextDialog& dialog) {
        // the document may have been edited from elsewhere meanwhile
        const int now = presentIndex(*session.state(), object, index);
        if (now >= 0)
            session.changeText(now, ownSpec(*object, dialog.spec()));
    });
}

} // namespace sim

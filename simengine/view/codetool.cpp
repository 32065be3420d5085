// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/codetool.h"

#include "simengine/document/codeedits.h"
#include "simengine/view/codedialog.h"
#include "simengine/view/viewsession.h"

namespace sim {

bool CodeTool::isOpen() const {
    return isAsking<CodeDialog>(m_canvas);
}

void CodeTool::ask(const QPointF& place) {
    ViewSession& session = m_canvas.session();
    openOver(m_canvas, new CodeDialog(&m_canvas),
             [&session, place](const CodeDialog& dialog) { session.addCode(dialog.spec(), place); });
}

void editCode(CanvasWidget& canvas, const ObjectPtr& object) {
    ViewSession& session = canvas.session();
    if (session.document().isReadOnly() || object->kind() != ObjectKind::Code || isAsking<CodeDialog>(canvas))
        return;
    const int index = presentIndex(*session.state(), object, -1);
    openOver(canvas, new CodeDialog(markedCode(*object), &canvas), [&session, object, index](const CodeDialog& dialog) {
        // the document may have been edited from elsewhere meanwhile
        const int now = presentIndex(*session.state(), object, index);
        if (now >= 0)
            session.changeCode(now, ownCode(*object, dialog.spec()));
    });
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/askingtool.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "simengine/view/viewsession.h"

namespace sim {

void AskingTool::press(const CanvasPoint& point) {
    if (point.button == Qt::RightButton)
        m_canvas.session().finishOperator();
    else if (point.button == Qt::LeftButton)
        m_place = point.mm;
}

// The dialog opens when the button is up again: it would take the release away from the canvas.
void AskingTool::release(const CanvasPoint& point) {
    if (point.button != Qt::LeftButton || !m_place || isOpen())
        return;
    const QPointF place = *m_place;
    m_place.reset();
    if (m_canvas.session().document().isReadOnly())
        MarkLog::Instance()->ShowNode(NoteOperator, LanguageManager::GetLanText("文档只读"));
    else
        ask(place);
}

bool AskingTool::cancel() {
    const bool going = m_place.has_value();
    m_place.reset();
    return going;
}

} // namespace sim

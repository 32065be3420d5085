// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/askingtool.h"

#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "simengine/view/viewsession.h"

namespace sim {

namespace {

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

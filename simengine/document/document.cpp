// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/document.h"

#include "engine/marktypes.h"
#include "simengine/document/mkfcodec.h"

#include <cmath>

namespace sim {

using Lock = std::lock_guard<std::mutex>;

QByteArray Document::penBytes(const LayerParamEx& pens) {
    return encodePens(pens);
}

StatePtr Document::state() const {
    const Lock lock(m_stateMutex);
    return m_state;
}

void Document::install(StatePtr state) {
    const Lock lock(m_stateMutex);
    m_state.swap(state);
    // the old state may hold the last of many objects: it is freed by the caller's argument, after the lock
}

void Document::notify() const {
    if (m_listener)
        m_listener();
}

QString Document::fileName() const {
    const Lock lock(m_stateMutex);
    return m_fileName;
}

void Document::setFileName(const QString& name) {
    const Lock lock(m_stateMutex);
    m_fileName = name;
}

void Document::setContent(const DocumentContent& content) {
    {
        const Lock editLock(m_editMutex);
        // what can fail comes first, so that a document is changed whole or not at all
        auto next = std::make_shared<DocumentState>();
        next->objects = content.objects;
        QByteArray pens = penBytes(content.pens);
        m_pens = content.pens;
        m_savedPens = std::move(pens);
        m_history.clear();
        m_mergeable = false;
        const Lock lock(m_stateMutex);
        m_state = next;
        m_savedObjects = next->objects;
        m_settings = content.settings;
    }
    notify();
}

DocumentContent Document::content() const {
    DocumentContent content;
    content.objects = state()->objects;
    content.pens = m_pens;
    content.settings = settings();
    return content;
}

bool Document::isModified() const {
    {
        const Lock lock(m_stateMutex);
        if (m_state->objects != m_savedObjects)
            return true;
    }
    return penBytes(m_pens) != m_savedPens;
}

void Document::markSaved(const DocumentContent& written) {
    m_savedPens = penBytes(written.pens);
    const Lock lock(m_stateMutex);
    m_savedObjects = written.objects;
}

bool Document::edit(const std::function<EditResult(const DocumentState&)>& edit, bool merge) {
    {
        const Lock editLock(m_editMutex);
        if (isReadOnly())
            return false;
        const StatePtr before = state();
        EditResult result = edit(*before);
        if (!result)
            return false;
        const auto after = std::make_shared<const DocumentState>(std::move(*result));
        m_history.record(before, after, merge && m_mergeable);
        m_mergeable = merge;
        install(after);
    }
    notify();
    return true;
}

bool Document::step(StatePtr (History::*direction)(const StatePtr&)) {
    {
        const Lock editLock(m_editMutex);
        if (isReadOnly())
            return false;
        const StatePtr next = (m_history.*direction)(state());
        if (!next)
            return false;
        m_mergeable = false;
        install(next);
    }
    notify();
    return true;
}

bool Document::undo() {
    return step(&History::undo);
}

bool Document::redo() {
    return step(&History::redo);
}

bool Document::canUndo() const {
    const Lock lock(m_editMutex);
    return m_history.canUndo();
}

bool Document::canRedo() const {
    const Lock lock(m_editMutex);
    return m_history.canRedo();
}

bool Document::isReadOnly() const {
    const Lock lock(m_stateMutex);
    return m_readOnly;
}

void Document::setReadOnly(bool readOnly) {
    const Lock lock(m_stateMutex);
    m_readOnly = readOnly;
}

bool Document::amend(const std::function<EditResult(const DocumentState&)>& change) {
    {
        const Lock editLock(m_editMutex);
        EditResult result = change(*state());
        if (!result)
            return false;
        install(std::make_shared<const DocumentState>(std::move(*result)));
    }
    notify();
    return true;
}

bool Document::showValues(const std::shared_ptr<const ObjectList>& before, std::shared_ptr<const ObjectList> objects) {
    {
        const Lock editLock(m_editMutex);
        const StatePtr now = state();
        if (now->objects != before || objects == before)
            return false;
        auto next = std::make_shared<DocumentState>(*now);
        next->objects = std::move(objects);
        {
            const Lock lock(m_stateMutex);
            if (m_savedObjects == before)
                m_savedObjects = next->objects;
        }
        install(std::move(next));
    }
    notify();
    return true;
}

void Document::select(const QList<int>& ordered) {
    {
        const Lock editLock(m_editMutex);
        const StatePtr before = state();
        const Selection selection(ordered, before->count());
        if (selection == before->selection)
            return;
        auto next = std::make_shared<DocumentState>(*before);
        next->selection = selection;
        m_mergeable = false;
        install(next);
    }
    notify();
}

void Document::selectAll() {
    select(Selection::range(0, state()->count()).ordered());
}

ObjectList Document::selectedObjects() const {
    const StatePtr now = state();
    ObjectList objects;
    for (int index : now->selection.ascending())
        objects.push_back(now->at(index));
    return objects;
}

DocumentSettings Document::settings() const {
    const Lock lock(m_stateMutex);
    return m_settings;
}

bool Document::setSettings(const DocumentSettings& settings) {
    if (!isSound(settings))
        return false;
    const Lock lock(m_stateMutex);
    m_settings = settings;
    return true;
}

bool isSound(const DocumentSettings& settings) {
    return settings.currentPen >= 0 && settings.currentPen < kLayerCount && settings.basePoint >= BasePointTopLeft &&
           settings.basePoint <= BasePointBottomRight && std::isfinite(settings.keyMoveDistance) &&
           settings.keyMoveDistance > 0.0;
}

} // namespace sim

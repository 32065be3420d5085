// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/layerparamex.h"
#include "simengine/document/arrangement.h"
#include "simengine/document/documentstate.h"
#include "simengine/document/edits.h"
#include "simengine/document/history.h"

#include <functional>
#include <mutex>

namespace sim {

/// What of a document is kept in its file beside objects and pens. Changing it does not count as a modification.
struct DocumentSettings {
    int currentPen = 0;                    ///< pen of new objects, 0 to 19
    BasePoint basePoint = BasePointCenter; ///< reference point of the position shown
    double keyMoveDistance = 0.01;         ///< mm an arrow key moves
};

/// All that a document file holds.
struct DocumentContent {
    std::shared_ptr<const ObjectList> objects = std::make_shared<const ObjectList>();
    LayerParamEx pens;
    DocumentSettings settings;
};

/// One mark document: objects, selection, pens, steps back and forth.
///
/// state() and the getters may be called from any thread: an edit prepares the next state aside and exchanges a
/// pointer, so that a run keeps the objects it began with. Edits may come from any thread too and are carried out one
/// after the other. The pens are the exception: they belong to the thread that owns the document, as their address is
/// handed out. They are edited beside the steps back and forth, since the panel that shows them would not follow.
class Document {
public:
    Document() = default;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    /// Objects and selection as they are now.
    StatePtr state() const;

    // File
    QString fileName() const;
    void setFileName(const QString& name);
    /// Takes over what was read from a file: nothing is selected, there are no steps back, and it counts as saved.
    void setContent(const DocumentContent& content);
    DocumentContent content() const;
    /// Objects or pens differ from what was last read or marked as saved.
    bool isModified() const;
    /// `written` is in the file now; what was edited since then stays a modification.
    void markSaved(const DocumentContent& written);

    // Edits
    /// Carries out `edit` (StatePtr's state to EditResult) as one step; false when it has no effect or the document is
    /// read-only. With `merge` it joins the last step if that was merged or begun by a merging edit of the same
    /// selection: a row of key moves is one step.
    bool edit(const std::function<EditResult(const DocumentState&)>& edit, bool merge = false);
    bool undo();
    bool redo();
    bool canUndo() const;
    bool canRedo() const;
    bool isReadOnly() const;
    void setReadOnly(bool readOnly);
    /// Changes an object beside the steps back and forth; for marks that are no edit.
    bool amend(const std::function<EditResult(const DocumentState&)>& change);
    /// Puts these objects in place of `before`, if they are still the document's: they are the same ones and only show
    /// other values. A document that was saved still counts so.
    bool showValues(const std::shared_ptr<const ObjectList>& before, std::shared_ptr<const ObjectList> objects);

    // Selection, no step of undo
    void select(const QList<int>& ordered);
    void selectAll();
    /// The selected objects in marking order, for the clipboard.
    ObjectList selectedObjects() const;

    // Settings
    DocumentSettings settings() const;
    /// False for a pen outside 0 to 19, an unknown base point or a distance that is not finite and above 0; then
    /// nothing changes.
    bool setSettings(const DocumentSettings& settings);

    /// The live pens; stays at its address as long as the document.
    LayerParamEx* pens() { return &m_pens; }
    const LayerParamEx& pens() const { return m_pens; }

    /// Called after each change of objects, selection, or steps, on the thread that made it, with no lock held. Set it
    /// before other threads use the document.
    void setListener(std::function<void()> listener) { m_listener = std::move(listener); }

private:
    void install(StatePtr state);
    void notify() const;
    bool step(StatePtr (History::*direction)(const StatePtr&));

    mutable std::mutex m_editMutex;  ///< one edit at a time; guards m_history, m_mergeable
    mutable std::mutex m_stateMutex; ///< guards the members from here to m_settings; held for moments only
    StatePtr m_state = std::make_shared<const DocumentState>();
    std::shared_ptr<const ObjectList> m_savedObjects = m_state->objects;
    QString m_fileName;
    DocumentSettings m_settings;
    bool m_readOnly = false;

    History m_history;
    bool m_mergeable = false;
    LayerParamEx m_pens;
    QByteArray m_savedPens = penBytes(LayerParamEx());
    std::function<void()> m_listener;

    static QByteArray penBytes(const LayerParamEx& pens);
};

/// The settings can be a document's.
bool isSound(const DocumentSettings& settings);

} // namespace sim

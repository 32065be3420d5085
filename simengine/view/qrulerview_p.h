// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "engine/vzlistviewex.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/rulerbar.h"
#include "simengine/view/variablerefresh.h"
#include "simengine/view/viewbar.h"
#include "simengine/view/viewsession.h"
#include "simengine/view/windowkeys.h"

#include <QPointer>
#include <mutex>

struct QRulerView::Private {
    explicit Private(QRulerView& view);
    ~Private();

    /// One step of undo; what is being drawn or dragged is given up first.
    bool edit(const std::function<sim::EditResult(const sim::DocumentState&)>& change);
    void align(sim::edits::Alignment alignment);
    void sameSize(bool width, bool height);
    void showChange();
    void showTransform();
    bool handleKey(QKeyEvent& event);
    /// F6 while a circle or an arc is taught; points have a key of the main window.
    bool handleConfirm(const QKeyEvent& event);
    bool handleCommand(QKeyEvent& event);
    bool handleArrow(QKeyEvent& event);
    /// Takes the pending direction keys and moves the selection by them. Main thread.
    void takeKeys(bool renewPreview);
    void moveByKeys(const QList<int>& keys, bool renewPreview);
    void place();
    void setName(const QString& given);
    QString givenName() const;
    /// Reads the document's file; a failure is logged.
    bool read();
    /// Opens the playback of the job, or brings it to the front.
    void openPlayback();

    QRulerView& q;
    sim::ViewSession session;
    sim::VariableRefresh variables{session};
    std::unique_ptr<MarkShapeContainer> container;
    sim::WindowKeys windowKeys;
    sim::RulerBar* top;
    sim::RulerBar* left;
    sim::CanvasWidget* canvas;
    sim::ViewBar* bar;
    /// Both live in the left panel once the shell has put them there, each for itself or one inside the other.
    QPointer<QWidget> listFrame;
    QPointer<VZListViewEx> list;
    QPointer<QWidget> playback;

    sim::StatePtr shownState;
    bool moveDue = false; ///< takeKeys() is on its way; guarded by m_DirKeyLock
    bool shownRedo = false;
    bool shownUndo = false;
    mutable std::mutex nameMutex; ///< guards name, which run workers ask for
    QString name;                 ///< as it was set; the document knows the file's path
};

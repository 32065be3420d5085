// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/markshapecontainer.h"
#include "engine/qrulerview.h"
#include "engine/vzlistviewex.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/rulerbar.h"
#include "simengine/view/viewsession.h"

#include <QPointer>

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
    bool handleCommand(QKeyEvent& event);
    bool handleArrow(QKeyEvent& event);
    /// Takes the pending direction keys and moves the selection by them. Main thread.
    void moveByKeys(const QList<int>& keys, bool renewPreview);
    void place();

    QRulerView& q;
    sim::ViewSession session;
    std::unique_ptr<MarkShapeContainer> container;
    sim::RulerBar* top;
    sim::RulerBar* left;
    sim::CanvasWidget* canvas;
    /// Lives in the left panel once the shell has put it there.
    QPointer<VZListViewEx> list;

    sim::StatePtr shownState;
    bool shownRedo = false;
    bool shownUndo = false;
};

// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/vzlistviewex.h"

#include "simengine/document/arrangement.h"
#include "simengine/view/listselection.h"
#include "simengine/view/objectdelegate.h"
#include "simengine/view/objectlistmodel.h"
#include "simengine/view/qrulerviewaccess.h"
#include "simengine/view/viewsession.h"

#include <QPointer>

struct VZListViewEx::Private {
    QPointer<sim::ViewSession> session;
    std::unique_ptr<sim::ObjectListModel> model;
    std::unique_ptr<sim::ListSelection> selection;

    void reorder(sim::edits::OrderMove move) {
        if (session)
            session->document().edit(
                [move](const sim::DocumentState& state) { return sim::edits::reorder(state, move); });
    }
};

VZListViewEx::VZListViewEx(QWidget* parent)
    : QListView(parent)
    , d(std::make_unique<Private>()) {
    setObjectName(QStringLiteral("objectList"));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setUniformItemSizes(true);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(new sim::ObjectDelegate(this));
}

VZListViewEx::~VZListViewEx() {
    // The base class must not find the model, which goes before it.
    d->selection.reset();
    setModel(nullptr);
}

void VZListViewEx::MoveObjUp() {
    d->reorder(sim::edits::OrderMove::Up);
}

void VZListViewEx::MoveObjDown() {
    d->reorder(sim::edits::OrderMove::Down);
}

void VZListViewEx::MoveObj2First() {
    d->reorder(sim::edits::OrderMove::First);
}

void VZListViewEx::MoveObj2Last() {
    d->reorder(sim::edits::OrderMove::Last);
}

void QRulerViewAccess::attach(VZListViewEx& list, sim::ViewSession& session) {
    list.d->session = &session;
    list.d->model = std::make_unique<sim::ObjectListModel>(session, nullptr);
    list.setModel(list.d->model.get());
    list.d->selection = std::make_unique<sim::ListSelection>(session, list, *list.d->model);
}

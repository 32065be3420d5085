// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/listselection.h"

#include "simengine/view/objectlistmodel.h"
#include "simengine/view/viewsession.h"

#include <QListView>
#include <QScopedValueRollback>
#include <vector>

namespace sim {

ListSelection::ListSelection(ViewSession& session, QListView& list, ObjectListModel& model)
    : m_session(session)
    , m_list(list)
    , m_model(model) {
    connect(&session, &ViewSession::changed, this, &ListSelection::fromDocument);
    connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this, &ListSelection::fromList);
    fromDocument();
}

void ListSelection::fromDocument() {
    if (m_busy)
        return;
    const QScopedValueRollback<bool> busy(m_busy, true);
    m_model.refresh();
    const QList<int> rows = m_session.state()->selection.ascending();
    QItemSelection selection;
    for (int i = 0; i < rows.size();) {
        int last = i;
        while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1)
            ++last;
        selection.append(QItemSelectionRange(m_model.index(rows[i]), m_model.index(rows[last])));
        i = last + 1;
    }
    if (m_list.selectionModel()->selection() == selection)
        return;
    m_list.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!rows.isEmpty())
        m_list.scrollTo(m_model.index(rows.first()), QAbstractItemView::EnsureVisible);
}

void ListSelection::fromList(const QItemSelection& selected, const QItemSelection& deselected) {
    if (m_busy)
        return;
    const QScopedValueRollback<bool> busy(m_busy, true);
    const StatePtr state = m_session.state();
    std::vector<bool> gone(static_cast<std::size_t>(state->count()));
    for (const QItemSelectionRange& range : deselected) {
        for (int row = range.top(); row <= range.bottom() && row < state->count(); ++row)
            gone[static_cast<std::size_t>(row)] = true;
    }
    QList<int> ordered;
    for (const int index : state->selection.ordered()) {
        if (!gone[static_cast<std::size_t>(index)])
            ordered.append(index);
    }
    // A row that was selected before is in the list already; the document drops what repeats.
    for (const QItemSelectionRange& range : selected) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            ordered.append(row);
    }
    m_session.document().select(ordered);
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QItemSelection>
#include <QObject>

class QListView;

namespace sim {

class ObjectListModel;
class ViewSession;

/// Keeps the rows of the object list and the document's selection in step, both ways.
class ListSelection : public QObject {
    Q_OBJECT
public:
    ListSelection(ViewSession& session, QListView& list, ObjectListModel& model);

private:
    void fromDocument();
    void fromList(const QItemSelection& selected, const QItemSelection& deselected);

    ViewSession& m_session;
    QListView& m_list;
    ObjectListModel& m_model;
    bool m_busy = false; ///< one side is being set from the other
};

} // namespace sim

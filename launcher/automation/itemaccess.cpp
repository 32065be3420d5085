// SPDX-License-Identifier: MIT
#include "automation/itemaccess.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QItemSelectionModel>
#include <QTabBar>
#include <QTabWidget>

namespace tessera {

ItemAccess::ItemAccess(QObject* object)
    : m_view(qobject_cast<QAbstractItemView*>(object))
    , m_combo(qobject_cast<QComboBox*>(object))
    , m_tabs(qobject_cast<QTabBar*>(object)) {
    if (auto* tabWidget = qobject_cast<QTabWidget*>(object))
        m_tabs = tabWidget->tabBar();
    if (m_view && !m_view->model())
        m_view = nullptr;
}

int ItemAccess::rows() const {
    if (m_view)
        return m_view->model()->rowCount(m_view->rootIndex());
    return m_combo ? m_combo->count() : m_tabs->count();
}

int ItemAccess::columns() const {
    return m_view ? m_view->model()->columnCount(m_view->rootIndex()) : 1;
}

QString ItemAccess::text(int row, int column) const {
    if (m_view) {
        QModelIndex const index = m_view->model()->index(row, column, m_view->rootIndex());
        QString const shown = index.data(Qt::DisplayRole).toString();
        return shown.isEmpty() ? index.data(Qt::AccessibleTextRole).toString() : shown;
    }
    return m_combo ? m_combo->itemText(row) : m_tabs->tabText(row);
}

void ItemAccess::select(int row, int column) const {
    if (m_view) {
        QModelIndex const index = m_view->model()->index(row, column, m_view->rootIndex());
        m_view->scrollTo(index);
        m_view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    } else if (m_combo) {
        m_combo->setCurrentIndex(row);
    } else {
        m_tabs->setCurrentIndex(row);
    }
}

} // namespace tessera

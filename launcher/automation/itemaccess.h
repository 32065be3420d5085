// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QAbstractItemView;
class QComboBox;
class QObject;
class QTabBar;

namespace tessera {

/// The cells of an item view, the entries of a combo box or the tabs of a tab bar or tab widget. Main thread; to be
/// used at once, the object must outlive it.
class ItemAccess {
public:
    explicit ItemAccess(QObject* object);
    bool isValid() const { return m_view || m_combo || m_tabs; }
    int rows() const;
    int columns() const;
    QString text(int row, int column) const;
    /// Makes it the current and, in a view, the only selected cell.
    void select(int row, int column) const;

private:
    QAbstractItemView* m_view = nullptr;
    QComboBox* m_combo = nullptr;
    QTabBar* m_tabs = nullptr;
};

} // namespace tessera

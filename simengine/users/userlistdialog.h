// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/users/userstore.h"

#include <QDialog>

class QLabel;
class QTableWidget;

namespace sim {

/// Users and their rights. An administrator changes rights, deletes users and sets the keypad password; others look.
class UserListDialog : public QDialog {
    Q_OBJECT
public:
    UserListDialog(UserStore& store, User const& current, QWidget* parent);

private:
    void fill();
    void addRow(User const& user);
    User userOf(int row) const;
    void save();
    void deleteUser();

    UserStore& m_store;
    User m_current;
    QTableWidget* m_table;
    QLabel* m_fault;
};

} // namespace sim

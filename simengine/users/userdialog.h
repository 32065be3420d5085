// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/users/userstore.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace sim {

/// Adds a user: name, password twice, rights. The first user of a machine is its administrator.
class UserDialog : public QDialog {
    Q_OBJECT
public:
    enum Kind { NewUser, FirstAdministrator };
    UserDialog(UserStore& store, Kind kind, QWidget* parent);

    /// What was entered.
    User user() const;
    QString password() const;

private:
    void add();

    UserStore& m_store;
    Kind m_kind;
    QLineEdit* m_name;
    QLineEdit* m_password;
    QLineEdit* m_again;
    QCheckBox* m_administrator;
    QVector<QCheckBox*> m_rights; ///< as kRights; empty for the first administrator
    QLabel* m_fault;
};

} // namespace sim

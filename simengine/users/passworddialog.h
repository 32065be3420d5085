// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;

namespace sim {

class LockCountdown;
class Session;
class UserStore;

/// Changes the password of a user who knows the old one.
class PasswordDialog : public QDialog {
    Q_OBJECT
public:
    /// The user is the one of `session`.
    PasswordDialog(UserStore& store, Session& session, QWidget* parent);

private:
    void change();

    UserStore& m_store;
    Session& m_session;
    QString m_name;
    QLineEdit* m_old;
    QLineEdit* m_new;
    QLineEdit* m_again;
    QLabel* m_fault;
    LockCountdown* m_lock;
};

/// Sets the administrator's keypad password: digits, typed twice; empty takes it away.
class AdminPasswordDialog : public QDialog {
    Q_OBJECT
public:
    explicit AdminPasswordDialog(QWidget* parent);

private:
    void change();

    QLineEdit* m_new;
    QLineEdit* m_again;
    QLabel* m_fault;
};

} // namespace sim

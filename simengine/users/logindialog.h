// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;

namespace sim {

class LockCountdown;
class Session;
class UserStore;

/// Asks for user and password and logs in; accepted when that was done. A keypad stands beside for touch panels.
class LoginDialog : public QDialog {
    Q_OBJECT
public:
    LoginDialog(UserStore& store, Session& session, QWidget* parent);

private:
    void tryLogin();

    Session& m_session;
    QComboBox* m_name;
    QLineEdit* m_password;
    QLabel* m_fault;
    LockCountdown* m_lock;
};

/// A line for a password: dots instead of characters, high enough for a finger.
QLineEdit* makePasswordLine(char const* objectName, QWidget* parent);
/// What a key of the keypad does to a line: a digit, 10 back, 11 clear.
void pressKey(QLineEdit* line, int code);
/// A red line for what went wrong, empty at first.
QLabel* makeFaultLabel(QWidget* parent);

} // namespace sim

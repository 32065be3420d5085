// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/logindialog.h"

#include "engine/languagemanager.h"
#include "engine/passwordctrl.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/users/lockcountdown.h"
#include "simengine/users/passwordhash.h"
#include "simengine/users/session.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace sim {

QLineEdit* makePasswordLine(char const* objectName, QWidget* parent) {
    auto* line = new QLineEdit(parent);
    line->setObjectName(QString::fromLatin1(objectName));
    line->setEchoMode(QLineEdit::Password);
    line->setMaxLength(kPasswordMax);
    line->setMinimumHeight(kTouchHeight);
    return line;
}

void pressKey(QLineEdit* line, int code) {
    constexpr int kBack = 10;
    if (code < kBack)
        line->setText(line->text() + QString::number(code));
    else if (code == kBack)
        line->backspace();
    else
        line->clear();
}

QLabel* makeFaultLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(QStringLiteral("labelFault"));
    label->setStyleSheet(QStringLiteral("color: red"));
    label->setWordWrap(true);
    return label;
}

LoginDialog::LoginDialog(UserStore& store, Session& session, QWidget* parent)
    : QDialog(parent)
    , m_session(session)
    , m_name(new QComboBox(this))
    , m_password(makePasswordLine("lineEditPassword", this))
    , m_fault(makeFaultLabel(this)) {
    setObjectName(QStringLiteral("LoginDialog"));
    prepareDialog(this, LanguageManager::GetLanText("用户登录"));
    m_name->setObjectName(QStringLiteral("comboBoxUser"));
    m_name->setMinimumHeight(kTouchHeight);
    for (User const& user : store.users().value_or(QVector<User>()))
        m_name->addItem(user.name);
    auto* keypad = new PassWordCtrl(this);
    ButtonRow const buttons = makeOkCancel(this);
    buttons.ok->setText(LanguageManager::GetLanText("登录"));
    QFormLayout* form = makeForm(this);
    form->addRow(LanguageManager::GetLanText("用户名"), m_name);
    form->addRow(LanguageManager::GetLanText("密码"), m_password);
    form->addRow(m_fault);
    form->addRow(keypad);
    form->addRow(buttons.layout);
    connect(keypad, &PassWordCtrl::BtnClicked, this, [this](int code) {
        m_fault->clear();
        pressKey(m_password, code);
    });
    connect(m_password, &QLineEdit::textEdited, m_fault, &QLabel::clear);
    connect(buttons.ok, &QPushButton::clicked, this, &LoginDialog::tryLogin);
    m_password->setFocus();
    m_lock = new LockCountdown(session, m_fault, {m_password, m_name, keypad, buttons.ok}, this);
    m_lock->look();
}

void LoginDialog::tryLogin() {
    m_fault->clear();
    LoginResult const result = m_session.login(m_name->currentText(), m_password->text());
    if (result == LoginResult::Done) {
        accept();
        return;
    }
    if (result == LoginResult::Wrong)
        m_fault->setText(LanguageManager::GetLanText("登录失败,用户名或密码错误"));
    m_password->clear();
    m_lock->look();
}

} // namespace sim

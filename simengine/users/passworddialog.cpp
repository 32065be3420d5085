// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/passworddialog.h"

#include "engine/languagemanager.h"
#include "engine/msgbox.h"
#include "engine/passwordctrl.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/users/adminpassword.h"
#include "simengine/users/lockcountdown.h"
#include "simengine/users/logindialog.h"
#include "simengine/users/session.h"
#include "simengine/users/userstore.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QRegularExpressionValidator>

namespace sim {

PasswordDialog::PasswordDialog(UserStore& store, Session& session, QWidget* parent)
    : QDialog(parent)
    , m_store(store)
    , m_session(session)
    , m_name(session.user().name)
    , m_old(makePasswordLine("lineEditOld", this))
    , m_new(makePasswordLine("lineEditNew", this))
    , m_again(makePasswordLine("lineEditAgain", this))
    , m_fault(makeFaultLabel(this)) {
    setObjectName(QStringLiteral("PasswordDialog"));
    prepareDialog(this, LanguageManager::GetLanText("修改密码"));
    auto* user = new QLabel(m_name, this);
    user->setTextFormat(Qt::PlainText);
    ButtonRow const buttons = makeOkCancel(this);
    QFormLayout* form = makeForm(this);
    form->addRow(LanguageManager::GetLanText("用户名"), user);
    form->addRow(LanguageManager::GetLanText("原密码"), m_old);
    form->addRow(LanguageManager::GetLanText("新密码"), m_new);
    form->addRow(LanguageManager::GetLanText("确认密码"), m_again);
    form->addRow(m_fault);
    form->addRow(buttons.layout);
    connect(buttons.ok, &QPushButton::clicked, this, &PasswordDialog::change);
    m_lock = new LockCountdown(session, m_fault, {m_old, m_new, m_again, buttons.ok}, this);
    m_lock->look();
}

void PasswordDialog::change() {
    if (m_new->text() != m_again->text()) {
        m_fault->setText(LanguageManager::GetLanText("两次输入的密码不一致"));
        return;
    }
    LoginResult const old = m_session.confirm(m_name, m_old->text());
    if (old != LoginResult::Done) {
        if (old == LoginResult::Wrong)
            m_fault->setText(LanguageManager::GetLanText("原密码错误"));
        m_old->clear();
        m_lock->look();
        return;
    }
    UserResult const result = m_store.setPassword(m_name, m_new->text());
    if (result != UserResult::Done) {
        m_fault->setText(LanguageManager::GetLanText(userResultKey(result)));
        return;
    }
    msgBox::show(LanguageManager::GetLanText("修改密码"), LanguageManager::GetLanText("密码修改成功"), 1);
    accept();
}

AdminPasswordDialog::AdminPasswordDialog(QWidget* parent)
    : QDialog(parent)
    , m_new(makePasswordLine("lineEditNew", this))
    , m_again(makePasswordLine("lineEditAgain", this))
    , m_fault(makeFaultLabel(this)) {
    setObjectName(QStringLiteral("AdminPasswordDialog"));
    prepareDialog(this, LanguageManager::GetLanText("设置管理员密码"));
    for (QLineEdit* line : {m_new, m_again}) {
        line->setInputMethodHints(Qt::ImhDigitsOnly);
        line->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), line));
    }
    auto* keypad = new PassWordCtrl(this);
    ButtonRow const buttons = makeOkCancel(this);
    QFormLayout* form = makeForm(this);
    form->addRow(LanguageManager::GetLanText("新密码"), m_new);
    form->addRow(LanguageManager::GetLanText("确认密码"), m_again);
    form->addRow(m_fault);
    form->addRow(keypad);
    form->addRow(buttons.layout);
    connect(keypad, &PassWordCtrl::BtnClicked, this,
            [this](int code) { pressKey(m_again->hasFocus() ? m_again : m_new, code); });
    connect(buttons.ok, &QPushButton::clicked, this, &AdminPasswordDialog::change);
}

void AdminPasswordDialog::change() {
    if (m_new->text() != m_again->text())
        m_fault->setText(LanguageManager::GetLanText("两次输入的密码不一致"));
    else if (!writeAdminPassword(m_new->text()))
        m_fault->setText(LanguageManager::GetLanText("保存失败"));
    else
        accept();
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/userdialog.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/users/logindialog.h"
#include "simengine/users/rights.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace sim {

UserDialog::UserDialog(UserStore& store, Kind kind, QWidget* parent)
    : QDialog(parent)
    , m_store(store)
    , m_kind(kind)
    , m_name(new QLineEdit(this))
    , m_password(makePasswordLine("lineEditPassword", this))
    , m_again(makePasswordLine("lineEditAgain", this))
    , m_administrator(new QCheckBox(LanguageManager::GetLanText("管理员"), this))
    , m_fault(makeFaultLabel(this)) {
    bool const first = kind == FirstAdministrator;
    setObjectName(QStringLiteral("UserDialog"));
    prepareDialog(this, LanguageManager::GetLanText(first ? "创建管理员" : "新建用户"));
    m_name->setObjectName(QStringLiteral("lineEditName"));
    m_name->setMaxLength(kUserNameMax);
    m_name->setMinimumHeight(kTouchHeight);
    m_name->setText(first ? QStringLiteral("admin") : QString());
    m_administrator->setObjectName(QStringLiteral("checkBoxAdministrator"));
    m_administrator->setMinimumHeight(kTouchHeight);
    m_administrator->setChecked(first);
    m_administrator->setVisible(!first);
    auto* rights = new QGridLayout;
    for (RightRow const& row : kRights) {
        if (first)
            break;
        auto* box = new QCheckBox(LanguageManager::GetLanText(row.key), this);
        box->setObjectName(QStringLiteral("checkBoxRight%1").arg(row.right));
        box->setMinimumHeight(kTouchHeight);
        rights->addWidget(box, m_rights.size() / 2, m_rights.size() % 2);
        m_rights.append(box);
        connect(m_administrator, &QCheckBox::toggled, box, &QWidget::setDisabled);
    }
    ButtonRow const buttons = makeOkCancel(this);
    QFormLayout* form = makeForm(this);
    form->addRow(LanguageManager::GetLanText("用户名"), m_name);
    form->addRow(LanguageManager::GetLanText("密码"), m_password);
    form->addRow(LanguageManager::GetLanText("确认密码"), m_again);
    form->addRow(m_administrator);
    form->addRow(rights);
    form->addRow(m_fault);
    form->addRow(buttons.layout);
    connect(buttons.ok, &QPushButton::clicked, this, &UserDialog::add);
}

User UserDialog::user() const {
    User user;
    user.name = m_name->text().trimmed();
    user.administrator = m_administrator->isChecked();
    for (int i = 0; i < m_rights.size(); ++i) {
        if (m_rights[i]->isChecked())
            user.rights |= kRights[i].right;
    }
    return user;
}

QString UserDialog::password() const {
    return m_password->text();
}

void UserDialog::add() {
    m_fault->clear();
    if (m_password->text() != m_again->text()) {
        m_fault->setText(LanguageManager::GetLanText("两次输入的密码不一致"));
        return;
    }
    UserResult const result = m_store.add(user(), m_password->text());
    if (result == UserResult::Done)
        accept();
    else
        m_fault->setText(LanguageManager::GetLanText(userResultKey(result)));
}

} // namespace sim

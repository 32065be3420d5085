// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/userlistdialog.h"

#include "engine/languagemanager.h"
#include "engine/msgbox.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/users/checkdelegate.h"
#include "simengine/users/logindialog.h"
#include "simengine/users/passworddialog.h"
#include "simengine/users/rights.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace sim {

namespace {

/// Columns: name, administrator, then one for each of kRights.
constexpr int kNameColumn = 0;
constexpr int kAdministratorColumn = 1;
constexpr int kFirstRightColumn = 2;

QTableWidgetItem* makeCheck(bool on, bool editable) {
    auto* item = new QTableWidgetItem;
    item->setFlags(editable ? Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsSelectable
                            : Qt::ItemIsSelectable);
    item->setCheckState(on ? Qt::Checked : Qt::Unchecked);
    return item;
}

} // namespace

UserListDialog::UserListDialog(UserStore& store, User const& current, QWidget* parent)
    : QDialog(parent)
    , m_store(store)
    , m_current(current)
    , m_table(new QTableWidget(0, kFirstRightColumn + static_cast<int>(std::size(kRights)), this))
    , m_fault(makeFaultLabel(this)) {
    setObjectName(QStringLiteral("UserListDialog"));
    prepareDialog(this, LanguageManager::GetLanText("查看权限"));
    QStringList headers{LanguageManager::GetLanText("用户名"), LanguageManager::GetLanText("管理员")};
    for (RightRow const& row : kRights)
        headers.append(LanguageManager::GetLanText(row.key));
    m_table->setItemDelegate(new CheckDelegate(m_table));
    m_table->setObjectName(QStringLiteral("tableWidgetUsers"));
    m_table->setHorizontalHeaderLabels(headers);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignCenter | static_cast<Qt::Alignment>(Qt::TextWordWrap));
    m_table->horizontalHeader()->setMinimumHeight(2 * kTouchHeight);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(kTouchHeight);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    fill();
    auto* buttons = new QHBoxLayout;
    if (current.administrator) {
        QPushButton* admin = makeButton("设置管理员密码", "pushButtonAdminPassword", this);
        QPushButton* remove = makeButton("删除用户", "pushButtonDelete", this);
        QPushButton* keep = makeButton("保存", "pushButtonSave", this);
        for (QPushButton* button : {admin, remove, keep})
            buttons->addWidget(button);
        connect(admin, &QPushButton::clicked, this, [this] { AdminPasswordDialog(this).exec(); });
        connect(remove, &QPushButton::clicked, this, &UserListDialog::deleteUser);
        connect(keep, &QPushButton::clicked, this, &UserListDialog::save);
    }
    buttons->addStretch();
    QPushButton* close = makeButton("关闭", "pushButtonClose", this);
    buttons->addWidget(close);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_table);
    layout->addWidget(m_fault);
    layout->addLayout(buttons);
    resize(980, 440);
}

void UserListDialog::fill() {
    m_table->setRowCount(0);
    std::optional<QVector<User>> const users = m_store.users();
    if (!users) {
        m_fault->setText(LanguageManager::GetLanText("打开失败"));
        return;
    }
    for (User const& user : *users) {
        if (m_current.administrator || user.name == m_current.name)
            addRow(user);
    }
}

void UserListDialog::addRow(User const& user) {
    int const row = m_table->rowCount();
    m_table->insertRow(row);
    auto* name = new QTableWidgetItem(user.name);
    name->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    m_table->setItem(row, kNameColumn, name);
    m_table->setItem(row, kAdministratorColumn, makeCheck(user.administrator, m_current.administrator));
    int column = kFirstRightColumn;
    for (RightRow const& right : kRights)
        m_table->setItem(row, column++, makeCheck((user.rights & right.right) != 0, m_current.administrator));
}

User UserListDialog::userOf(int row) const {
    User user;
    user.name = m_table->item(row, kNameColumn)->text();
    user.administrator = m_table->item(row, kAdministratorColumn)->checkState() == Qt::Checked;
    int column = kFirstRightColumn;
    for (RightRow const& right : kRights) {
        if (m_table->item(row, column++)->checkState() == Qt::Checked)
            user.rights |= right.right;
    }
    return user;
}

/// Administrators first: one may hand the office to another in the same save.
void UserListDialog::save() {
    UserResult result = UserResult::Done;
    for (bool administrators : {true, false}) {
        for (int row = 0; row < m_table->rowCount() && result == UserResult::Done; ++row) {
            User const user = userOf(row);
            if (user.administrator == administrators)
                result = m_store.setRights(user);
        }
    }
    fill();
    m_fault->setText(result == UserResult::Done ? QString() : LanguageManager::GetLanText(userResultKey(result)));
    if (result == UserResult::Done)
        msgBox::show(LanguageManager::GetLanText("保存"), LanguageManager::GetLanText("保存成功"), 1);
}

void UserListDialog::deleteUser() {
    int const row = m_table->currentRow();
    if (row < 0)
        return;
    QString const name = m_table->item(row, kNameColumn)->text();
    QString const question = LanguageManager::GetLanText("是否删除用户") + QStringLiteral(": ") + name;
    if (msgBox::show(LanguageManager::GetLanText("删除用户"), question, 2) != 1)
        return;
    UserResult const result = m_store.remove(name);
    fill();
    m_fault->setText(result == UserResult::Done ? QString() : LanguageManager::GetLanText(userResultKey(result)));
}

} // namespace sim

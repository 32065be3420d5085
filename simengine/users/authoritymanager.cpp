// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/authoritymanager.h"

#include "engine/iautologinoutmsg.h"
#include "engine/languagemanager.h"
#include "engine/msgbox.h"
#include "engine/systemparam.h"
#include "simengine/params/paramstore.h"
#include "simengine/users/adminpassword.h"
#include "simengine/users/autologout.h"
#include "simengine/users/logindialog.h"
#include "simengine/users/passworddialog.h"
#include "simengine/users/session.h"
#include "simengine/users/userdialog.h"
#include "simengine/users/userlistdialog.h"

#include <QApplication>
#include <QPointer>

using namespace sim;

std::atomic<bool> g_bAutoLoginOut{false};
std::atomic<int> g_LoginOutSecond{300};

namespace {

constexpr char kLogoutFile[] = "/ini/AutoLogout.ini";
enum LogoutRow : std::size_t { LogoutEnableRow, LogoutSecondsRow, LogoutRowCount };
constexpr ParamRow kLogoutParams[] = {flagRow("AutoLogout", "Enable", false), intRow("AutoLogout", "Seconds", 300)};
static_assert(std::size(kLogoutParams) == LogoutRowCount, "a row for each name");

QPointer<AutoLogout>& watcher() {
    static QPointer<AutoLogout> instance;
    return instance;
}

void expire() {
    if (!SystemParam::Instance()->IsEnableUserManager() || !session().isLoggedIn())
        return;
    AuthorityManager::Loginout();
    if (IAutoLoginOutMsg* sink = IAutoLoginOutMsg::Instance())
        sink->AutoLoginOut();
}

void applyLimit() {
    if (watcher())
        watcher()->setLimit(g_bAutoLoginOut ? g_LoginOutSecond.load() : 0);
}

bool allowed(Right right) {
    return !SystemParam::Instance()->IsEnableUserManager() || session().has(right);
}

void refuse(char const* key) {
    msgBox::show(LanguageManager::GetLanText("提示"), LanguageManager::GetLanText(key), 1);
}

/// On a machine without users the first one is its administrator. False when that was given up.
bool makeFirstUser(QWidget* parent) {
    UserDialog dialog(userStore(), UserDialog::FirstAdministrator, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    return session().login(dialog.user().name, dialog.password()) == LoginResult::Done;
}

bool isUnused() {
    std::optional<QVector<User>> const users = userStore().users();
    return users && users->isEmpty();
}

/// Users are managed by an administrator; whoever is not is told so.
bool isAdministrator() {
    if (!session().isLoggedIn()) {
        refuse("请先登录");
        return false;
    }
    if (!session().user().administrator) {
        refuse("需要管理员权限");
        return false;
    }
    return true;
}

} // namespace

bool AuthorityManager::CanNewFile() {
    return allowed(RightNewFile);
}

bool AuthorityManager::CanOpenFile() {
    return allowed(RightOpenFile);
}

bool AuthorityManager::CanSaveFile() {
    return allowed(RightSaveFile);
}

bool AuthorityManager::CanDeleteFile() {
    return allowed(RightDeleteFile);
}

bool AuthorityManager::CanAddMarkShape() {
    return allowed(RightAddShape);
}

bool AuthorityManager::CanEditMarkTool() {
    return allowed(RightEditTool);
}

bool AuthorityManager::CanEditMarkParam() {
    return allowed(RightEditParam);
}

QString AuthorityManager::GetCurrentUser() {
    return SystemParam::Instance()->IsEnableUserManager() ? session().user().name : QString();
}

bool AuthorityManager::Logining() {
    QWidget* parent = QApplication::activeWindow();
    if (isUnused())
        return makeFirstUser(parent);
    LoginDialog dialog(userStore(), session(), parent);
    return dialog.exec() == QDialog::Accepted;
}

void AuthorityManager::Loginout() {
    session().logout();
}

void AuthorityManager::ChangePassWord() {
    if (!session().isLoggedIn()) {
        refuse("请先登录");
        return;
    }
    PasswordDialog dialog(userStore(), session(), QApplication::activeWindow());
    dialog.exec();
}

void AuthorityManager::addUser() {
    QWidget* parent = QApplication::activeWindow();
    if (isUnused()) {
        makeFirstUser(parent);
        return;
    }
    if (!isAdministrator())
        return;
    UserDialog dialog(userStore(), UserDialog::NewUser, parent);
    dialog.exec();
}

void AuthorityManager::UsersManagerConfig() {
    if (!session().isLoggedIn()) {
        refuse("请先登录");
        return;
    }
    UserListDialog dialog(userStore(), session().user(), QApplication::activeWindow());
    dialog.exec();
    session().refresh();
}

QString AuthorityManager::GetAdminPassWord() {
    return readAdminPassword();
}

void AuthorityManager::SetAutoLoginOut(bool enable, int seconds) {
    g_bAutoLoginOut = enable;
    g_LoginOutSecond = qMax(1, seconds);
    ParamStore store(QLatin1String(kLogoutFile), kLogoutParams, LogoutRowCount);
    store.setFlag(LogoutEnableRow, g_bAutoLoginOut);
    store.setInteger(LogoutSecondsRow, g_LoginOutSecond);
    if (!store.save())
        refuse("保存失败");
    applyLimit();
}

void AuthorityManager::StartAutoLoginOut() {
    ParamStore const store(QLatin1String(kLogoutFile), kLogoutParams, LogoutRowCount);
    g_bAutoLoginOut = store.flag(LogoutEnableRow);
    g_LoginOutSecond = qMax(1, store.integer(LogoutSecondsRow));
    if (!watcher() && QCoreApplication::instance())
        watcher() = new AutoLogout(QCoreApplication::instance(), expire);
    applyLimit();
}

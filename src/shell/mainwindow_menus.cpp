// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/authoritymanager.h"
#include "engine/filehelpers.h"
#include "engine/languagemanager.h"
#include "engine/lanselect.h"
#include "engine/markcardinstance.h"
#include "engine/marklog.h"
#include "engine/qrulerview.h"
#include "engine/showdebuginfo.h"
#include "run/form_marking.h"
#include "support/approot.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>

namespace {

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

/// Asks and then runs a program of the system, waiting for its end. A program that cannot be run is logged.
void askAndRun(QWidget* parent, char const* title, char const* question, QString const& program,
               QStringList const& arguments) {
    if (QMessageBox::question(parent, text(title), text(question)) != QMessageBox::Yes)
        return;
    const int code = QProcess::execute(program, arguments);
    if (code != 0)
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("%1: %2").arg(program).arg(code));
}

} // namespace

void MainWindow::on_actionShowDebugInfo_triggered() {
    ShowDebugInfo::Instance()->ShowWindow();
}

void MainWindow::on_actionSetLan_triggered() {
    LanSelect dialog(this);
    dialog.exec();
    SetUIText();
    ShowCardState();
    ShowCardVersion();
    UpdateIOSetting();
    QRulerView const* view = GetActiveView();
    SetSelectObjCnt(view ? view->GetSelectedToolCnt() : 0);
    Form_Marking::Instance()->SetUIText();
}

void MainWindow::on_actionResetVZCard_triggered() {
    const QMessageBox::StandardButton answer = QMessageBox::warning(
        this, text("警告"),
        text("注意:卡Flash复位一般为出厂操作,除非必要请不要执行,复位需要几分钟时间,请保证复位过程中不要断电"),
        QMessageBox::StandardButtons(QMessageBox::Ok), QMessageBox::Cancel);
    IMarkCardBase* card = MarkCardInstance::Instance();
    if (answer == QMessageBox::Ok && card->IsCardOpend())
        card->ResetCardFlash();
}

void MainWindow::on_actionReboot_triggered() {
    askAndRun(this, "重启设备", "是否重启设备", QStringLiteral("reboot"), {});
}

void MainWindow::on_actionShutdown_triggered() {
    askAndRun(this, "关闭设备", "是否关闭设备", QStringLiteral("shutdown"),
              {QStringLiteral("-h"), QStringLiteral("now")});
}

void MainWindow::on_actionOpenTerminal_triggered() {
    const int code = QProcess::execute(QStringLiteral("lxterminal"), QStringList());
    if (code != 0)
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("lxterminal: %1").arg(code));
}

void MainWindow::on_actionSetBackImage_triggered() {
    const QString file = QFileDialog::getOpenFileName(this, QString(), QString(),
                                                      QStringLiteral("images(*.png *jpeg *bmp);;All files(*.*)"));
    if (!QFileInfo(file).isFile())
        return;
    const QString target = tessera::rootPath(QStringLiteral("/Res/background.png"));
    if (!CopyFile(file, target))
        MarkLog::Instance()->ShowNote_Error(target + QStringLiteral(": not written"));
}

void MainWindow::on_actionChangeUser_triggered() {
    if (AuthorityManager::Logining())
        UserChange();
}

void MainWindow::on_actionChangePassWord_triggered() {
    AuthorityManager::ChangePassWord();
}

void MainWindow::on_actionNewUser_triggered() {
    AuthorityManager::addUser();
}

void MainWindow::on_actionViewPermission_triggered() {
    AuthorityManager::UsersManagerConfig();
}

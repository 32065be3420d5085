// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "editing/importttffont.h"
#include "engine/authoritymanager.h"
#include "engine/cmtype.h"
#include "engine/filehelpers.h"
#include "engine/languagemanager.h"
#include "engine/lanselect.h"
#include "engine/markcardinstance.h"
#include "engine/marklog.h"
#include "engine/qrulerview.h"
#include "engine/showdebuginfo.h"
#include "files/filemanager.h"
#include "multidoc/multidocmark.h"
#include "run/form_marking.h"
#include "shell/processwindow.h"
#include "support/approot.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QWindow>

namespace {

/// Board whose desktop has the program for the display settings.
constexpr int kBoardWithDesktop = 0;
/// After this time the program shows its window.
constexpr int kWindowShowsMs = 1500;
constexpr int kSettingsMs = 600000;
constexpr int kFramelessOnTop = 0x40800;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

/// Takes the frame from a window of another program and keeps it above this one.
void keepOnTop(unsigned long id) {
    const std::unique_ptr<QWindow> window(QWindow::fromWinId(id));
    if (window)
        window->setFlags(Qt::WindowFlags(kFramelessOnTop));
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

void MainWindow::on_actionImportTTFFont_triggered() {
    ImportTTFFont(this).exec();
}

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
    MultiDocMark::Instance()->SetUIText();
}

/// Asked for with OK alone, Qt adds the default button, so that there is a way back.
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
    QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("lxterminal")});
}

/// The desktop's own program, which the operator must not lose behind this window. The call holds the main thread until
/// the program ends, so nothing can start a job meanwhile; none runs, since a run locks the menus.
void MainWindow::on_action_ResolutionSet_triggered() {
    if (GetCMType() != kBoardWithDesktop)
        return;
    QProcess settings;
    settings.start(QStringLiteral("xfce4-display-settings"), QStringList());
    if (!settings.waitForFinished(kWindowShowsMs)) {
        if (const unsigned long id = get_win_id_from_pid(static_cast<int>(settings.processId())))
            keepOnTop(id);
        settings.waitForFinished(kSettingsMs);
    }
    const QByteArray output = settings.readAllStandardOutput();
    if (!output.isEmpty())
        MarkLog::Instance()->ShowNote(QStringLiteral("分辨率设置结果:") + QString::fromLocal8Bit(output));
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

void MainWindow::on_actionFileManager_triggered() {
    if (!AuthorityManager::CanDeleteFile())
        return;
    FileManager dialog(this, FileManagerManage, MarkFileDocument);
    dialog.exec();
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

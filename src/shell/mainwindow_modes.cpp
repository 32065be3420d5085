// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/iooutputset.h"
#include "engine/markcardinstance.h"
#include "engine/systemparam.h"
#include "multidoc/multidocmark.h"
#include "run/form_marking.h"
#include "shell/alarmctrl.h"
#include "shell/customuitype.h"
#include "shell/windowgeometry.h"
#include "ui_mainwindow.h"

#include <QLabel>

namespace {

/// What MarkWindowIsVisible gives.
constexpr int kNormalMarkWindow = 1;
constexpr int kMultDocMarkWindow = 2;

bool optionalTool(bool enabled) {
    const int mode = SystemParam::Instance()->GetWorkMode();
    return mode == 0 || (mode > 1 && enabled);
}

} // namespace

void MainWindow::SetMarkStatus(bool run) {
    ui->centralwidget->setEnabled(!run);
    ui->toolBar_main->setEnabled(!run);
    ui->menuBar->setEnabled(!run);
}

int MainWindow::VisibleMarkWindow() const {
    Form_Marking const* dialog = Form_Marking::Instance();
    if (dialog && dialog->IsShown())
        return kNormalMarkWindow;
    MultiDocMark const* project = MultiDocMark::Instance();
    return project && project->IsShown() ? kMultDocMarkWindow : 0;
}

int MainWindow::MarkWindowIsVisible() {
    const std::lock_guard<std::mutex> lock(m_MarkWndLock);
    return VisibleMarkWindow();
}

QWidget* MainWindow::MarkWindow(int kind) const {
    if (kind == kNormalMarkWindow)
        return Form_Marking::Instance();
    return kind == kMultDocMarkWindow ? MultiDocMark::Instance() : nullptr;
}

void MainWindow::ShowNormalMarkWindow() {
    Form_Marking::Instance()->ChangeFormSize();
    if (MarkWindowIsVisible() != 0) {
        MoveMarkWindow2Center(false);
        return;
    }
    const std::lock_guard<std::mutex> lock(m_MarkWndLock);
    Form_Marking::Instance()->setVisible(true);
}

/// A dialog that is already up keeps its place, and is centred; the ready output tells the host of the multi-document
/// run in either case.
void MainWindow::ShowMultDocMarkWindow() {
    if (MarkWindowIsVisible() != 0) {
        MoveMarkWindow2Center(false);
    } else {
        const std::lock_guard<std::mutex> lock(m_MarkWndLock);
        MultiDocMark::Instance()->setVisible(true);
    }
    SetReadyOut(1);
}

void MainWindow::MoveMarkWindowToCenter(bool force) {
    emit MoveMarkWnd2Center(force);
}

void MainWindow::onMoveMarkWnd2Center(bool force) {
    MoveMarkWindow2Center(force);
}

void MainWindow::MoveMarkWindow2Center(bool force) {
    QWidget* target = MarkWindow(MarkWindowIsVisible());
    if (!target || (!force && geometry().contains(target->geometry())))
        return;
    target->setGeometry(tessera::CentredRect(geometry(), target->geometry()));
}

void MainWindow::SwitchSysMode(bool remote) {
    SystemParam::Instance()->SetSysMode(remote);
    SystemParam::Instance()->Save();
    emit SetSystemUI();
}

void MainWindow::onSetSystemUI() {
    const bool local = !SystemParam::Instance()->GetSysMode();
    for (QAction* action : {ui->actionMark, ui->actionMultiDocMark, ui->actionRedLoopPreview})
        action->setVisible(local);
    for (QWidget* widget : {static_cast<QWidget*>(m_pBufferTimeLabel), static_cast<QWidget*>(m_pCardStateLabel),
                            static_cast<QWidget*>(m_pLaserAlarm), static_cast<QWidget*>(m_pSafeAlarm),
                            static_cast<QWidget*>(m_pCardVersionLabel), static_cast<QWidget*>(m_pCardStatusLabel),
                            static_cast<QWidget*>(m_pGreenLabel), static_cast<QWidget*>(m_pYellowLabel),
                            static_cast<QWidget*>(m_pRedLabel)})
        widget->setVisible(local);
}

void MainWindow::SetUIMode(bool full) {
    SystemParam const* system = SystemParam::Instance();
    if (system->m_nCustomUIType != tessera::kCustomUIWhole)
        return;
    for (QWidget* widget : {ui->centralwidget, static_cast<QWidget*>(ui->toolBar_main),
                            static_cast<QWidget*>(ui->toolBar), static_cast<QWidget*>(ui->statusbar),
                            static_cast<QWidget*>(m_pCardStateLabel), static_cast<QWidget*>(m_pTimeLabel)})
        widget->setVisible(full);
    if (m_pCustomWindow)
        m_pCustomWindow->setVisible(!full);
    m_bFullUI = full;
    ui->menuBar->setVisible(full || system->m_nHideMainMenu == 0);
    if (full)
        PlaceLabels(ui->toolBar_main, 120);
    if (m_pCustomWindow)
        m_pCustomWindow->move(0, 50);
}

void MainWindow::ChangeUIMode() {
    SetUIMode(!m_bFullUI);
}

void MainWindow::PlaceLabels(QWidget const* bar, int fromRight) {
    m_pCardStateLabel->setGeometry(tessera::CardStateRect(bar->geometry(), fromRight));
    m_pCardStateLabel->raise();
    m_pTimeLabel->setGeometry(tessera::TimeRect(ui->statusbar->size()));
    m_pTimeLabel->raise();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    SystemParam const* system = SystemParam::Instance();
    if (system->m_nCustomUIType == tessera::kCustomUIWhole && m_pCustomWindow) {
        m_pCustomWindow->setGeometry(
            tessera::CustomWindowRect(size(), system->m_nHideMainMenu != 0, ui->menuBar->geometry().bottom()));
    }
    PlaceLabels(ui->toolBar, 140);
}

void MainWindow::onCodeToolVisible() {
    ui->actionAddText->setVisible(optionalTool(SystemParam::Instance()->EnableCodeTool()));
}

void MainWindow::onSplitLaserSetVisible() {
    ui->actionSplitLaserSet->setVisible(optionalTool(SystemParam::Instance()->EnableSplitLaserSet()));
}

void MainWindow::onFlyMarkSetteingVisible() {
    ui->actionFlyMarkingSetting->setVisible(optionalTool(SystemParam::Instance()->EnableFlyMarkTool()));
}

/// Kept: where the camera is not offered, the text tool goes, not the camera's entry.
void MainWindow::onCcdToolVisible() {
    if (optionalTool(SystemParam::Instance()->EnableCcdTool()))
        ui->actionCCD->setVisible(true);
    else
        ui->actionAddText->setVisible(false);
}

void MainWindow::on_actionMark_triggered() {
    ShowNormalMarkWindow();
    SetReadyOut(0);
}

void MainWindow::on_actionMultiDocMark_triggered() {
    ShowMultDocMarkWindow();
}

void MainWindow::on_actionChangeDebug_triggered() {
    ChangeUIMode();
}

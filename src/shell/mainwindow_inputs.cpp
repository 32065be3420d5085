// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/authoritymanager.h"
#include "engine/marklog.h"
#include "engine/qrulerview.h"
#include "engine/systemparam.h"
#include "multidoc/multidocmark.h"
#include "remote/externalresponse.h"
#include "run/form_marking.h"
#include "shell/statuseview.h"

#include <QKeyEvent>
#include <QThread>

QVector<QString> MainWindow::GetAlarmInfos() {
    const QVector<QString> texts = m_Alarms.ActiveTexts();
    if (!texts.isEmpty())
        ShowDebugIno::ShowText(texts, QVector<DebugInfoType>(texts.size(), DebugInfoAlarm));
    return texts;
}

bool MainWindow::CheckAlarmStatus() {
    return GetAlarmInfos().isEmpty();
}

/// Out of a looping red-light preview the job runs once and the preview goes on afterwards; the pause gives the preview
/// time to end.
void MainWindow::IOStartRun() {
    if (MarkWindowIsVisible() == 0)
        return;
    MarkLog::Instance()->ShowNode(NoteRun, QStringLiteral("Normal Mark Start"));
    Form_Marking* dialog = Form_Marking::Instance();
    if (!SystemParam::Instance()->EnableTriggerWhenRedLoop() || !dialog->IsRedLoopRun()) {
        dialog->StartMark(false);
        return;
    }
    dialog->StopMark();
    dialog->SetRunSelection(0, false);
    QThread::msleep(20);
    dialog->StartMark(true);
}

void MainWindow::IOStartPreview() {
    if (MarkWindowIsVisible() != 0)
        Form_Marking::Instance()->StartMarkPreview();
}

void MainWindow::IOPauseRun() {
    if (MarkWindowIsVisible() != 0)
        Form_Marking::Instance()->PauseMark();
}

/// A remote run goes on without a run dialog; whoever asks for a stop at the machine means it too.
void MainWindow::IOStopRun() {
    const int visible = MarkWindowIsVisible();
    if (visible == 1)
        Form_Marking::Instance()->StopMark();
    else if (visible == 2)
        MultiDocMark::Instance()->StopMark();
    ExternalResponse::Instance()->StopRun();
}

bool MainWindow::IsJobUnderWay() const {
    Form_Marking const* dialog = Form_Marking::Instance();
    return (dialog && dialog->IsRunOn()) || IsRemoteRunOn();
}

bool MainWindow::IsLocalRunOn() const {
    Form_Marking const* dialog = Form_Marking::Instance();
    MultiDocMark const* project = MultiDocMark::Instance();
    return (dialog && dialog->IsRunOn()) || (project && project->IsRunOn());
}

bool MainWindow::IsRemoteRunOn() const {
    return ExternalResponse::Instance()->IsRunning();
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (SystemParam::Instance()->m_nResponseShortcut == 0 || key < Qt::Key_F5 || key > Qt::Key_F8) {
        QMainWindow::keyPressEvent(event);
        return;
    }
    if (key == Qt::Key_F5) {
        MoveMarkWindow2Center(true);
        QMainWindow::keyPressEvent(event);
        return;
    }
    if (key == Qt::Key_F6) {
        QRulerView* view = GetCurDoc();
        if (!view)
            return;
        if (event->isAutoRepeat()) // a key that is held down confirms and triggers once
            return;
        if (view->GetOperatorOnView() == OperatorTeach) {
            view->F6Pressed();
            return;
        }
    }
    const int visible = MarkWindowIsVisible();
    if (visible == 0)
        ShowNormalMarkWindow();
    else if (key == Qt::Key_F8)
        IOStopRun();
    else if (visible == 1 && key == Qt::Key_F6)
        IOStartRun();
    else if (visible == 1 && key == Qt::Key_F7)
        IOStartPreview();
}

void MainWindow::keyReleaseEvent(QKeyEvent* event) {
    QMainWindow::keyReleaseEvent(event);
}

void MainWindow::HandDirEventOnRedView(QKeyEvent* event) {
    const int key = event->key();
    QRulerView* view = GetActiveView();
    if (!AuthorityManager::CanEditMarkTool() || key < Qt::Key_Left || key > Qt::Key_Down || !view || !IsRedView())
        return;
    const QMutexLocker lock(&view->m_DirKeyLock);
    if (view->m_DirKeys.isEmpty())
        view->m_DirKeys.append(key);
}

void MainWindow::PassDirKeys() {
    const std::lock_guard<std::mutex> lock(m_DocUseLock);
    Form_Marking const* dialog = Form_Marking::Instance();
    QRulerView* view = GetCurDoc();
    if (view && dialog)
        view->OnKeyUpDonwEvent(IsRedView(), dialog->IsMarkSelect());
}

void MainWindow::ClearTextSub() {
    m_pStatusView->ClearText();
}

/// What the operator is told stays in the debug file after the list has been cleared.
void MainWindow::ShowTextsSub(QString text, DebugInfoType type) {
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [=] { ShowTextsSub(text, type); }, Qt::QueuedConnection);
        return;
    }
    m_pStatusView->ShowText(text, type);
    SaveDebugText(text);
}

void MainWindow::SetTextsSub(QVector<QString> texts, QVector<DebugInfoType> types) {
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [=] { SetTextsSub(texts, types); }, Qt::QueuedConnection);
        return;
    }
    // Who asks in every poll while an alarm lasts must not fill the disk.
    if (m_pStatusView->Shows(texts))
        return;
    m_pStatusView->ClearText();
    for (int i = 0; i < texts.size(); ++i)
        ShowTextsSub(texts.at(i), i < types.size() ? types.at(i) : DebugInfoAlarm);
}

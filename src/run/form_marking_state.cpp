// SPDX-License-Identifier: MIT
#include "run/form_marking.h"

#include "engine/class_cardpara.h"
#include "engine/iooutputset.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/marklog.h"
#include "engine/movecardmanager.h"
#include "engine/showdebugino.h"
#include "engine/systemparam.h"
#include "run/debugtrace.h"
#include "run/jogbuttons.h"
#include "ui_form_marking.h"

#include <QTime>
#include <QtConcurrent>
#include <algorithm>

namespace {

/// Display periods; unequal to the seconds, so that every digit of the run time is seen to move.
constexpr int kRunPeriodMs = 51;
constexpr int kResumedPeriodMs = 91;

} // namespace

void Form_Marking::OnMarkStart() {
    MainWindow::Instance()->SetRedVie(IsRedView());
    IOOutputSet::Instance()->SetGreen(MarkCardInstance::Instance());
    MainWindow::Instance()->SetMarkStatus(true);
    m_bCanExit = false;
    m_nRunTime = 0;
    m_LastTime = QDateTime::currentDateTime();
    m_Timer.start(kRunPeriodMs);
    SetMarkingUI();
}

/// A stop that came after the order to resume wins: the card is not set to run again.
void Form_Marking::OnReMarkStart() {
    if (!m_Thread.IsGoingOn())
        return;
    MainWindow::Instance()->SetRedVie(IsRedView());
    IMarkCardBase* card = MarkCardInstance::Instance();
    IOOutputSet::Instance()->SetGreen(card);
    card->SetMarkStaus(MarkStatusRun);
    card->RestartMark();
    m_LastTime = QDateTime::currentDateTime();
    m_Timer.start(kResumedPeriodMs);
    SetMarkingUI();
}

/// The same for a pause: the card must not be left paused for the next job.
void Form_Marking::OnMarkPause() {
    if (!m_Thread.IsPaused())
        return;
    MainWindow::Instance()->SetRedVie(false);
    IMarkCardBase* card = MarkCardInstance::Instance();
    IOOutputSet::Instance()->SetGreenYellow(card);
    card->PauseMark();
    m_Timer.stop();
    update();
    m_LastTime = QDateTime();
    ShowStatus("background:yellow", "用户暂停");
    ui->pushButtonStart->setText(LanguageManager::GetLanText("开始") + QStringLiteral("(F6)"));
}

/// Every pass counts, also one that was stopped or found nothing to mark.
void Form_Marking::OnMarkFinish(bool, QDateTime time) {
    m_Timer.stop();
    MainWindow::Instance()->UpdateMarkBTTime();
    if (m_LastTime.isValid())
        AddRunTime(time);
    StoreCounter(m_nMarkCnt.Value() + 1);
    emit SendRunData();
    m_Thread.PassCounted();
}

void Form_Marking::OnMarkFinishUI() {
    MainWindow::Instance()->SetRedVie(false);
    IMarkCardBase* card = MarkCardInstance::Instance();
    // A run that was started before this message arrived must not be stopped by it, nor lose its lock and its lamp.
    const bool remote = MainWindow::Instance()->IsRemoteRunOn();
    if (!m_Thread.IsActive() && !remote)
        card->SetMarkStaus(MarkStatusStop);
    SetIdleUI();
    if (!remote) {
        MainWindow::Instance()->SetMarkStatus(false);
        IOOutputSet::Instance()->SetYellow(card);
    }
    m_StopWatcher.Look();
    ShowStopState();
}

void Form_Marking::OnStopStateChanged(tessera::StopState state) {
    if (state != tessera::StopState::None)
        ShowStopState();
    else if (m_bCanExit && !m_Thread.IsActive())
        SetIdleUI();
    emit StopStateChanged(state);
}

/// The job that was triggered out of the red-light loop is done: back to the loop, unless it was stopped or started
/// anew while this message was under way.
void Form_Marking::OnMarkRunSpecial() {
    tessera::ShowTrace(QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz")) +
                       QStringLiteral(":红光循环时触发运行完成"));
    if (!m_Thread.TakeReturn() || MainWindow::Instance()->IsRemoteRunOn()) {
        if (!m_Thread.IsActive())
            OnMarkFinishUI();
        return;
    }
    SetRunSelection(1, true);
    m_Thread.RunTrigerOnly(ui->checkBoxSelectMarking->isChecked(), true, ui->spinBox->value(), MarkTypeRedPreview,
                           false);
}

/// The message of a pass that began before a stop may arrive behind it.
void Form_Marking::SetMarkingUI() {
    ShowStatus("background:green", "运行开始");
    m_StopWatcher.Look();
    ShowStopState();
    EnableOptions(false);
    ui->pushButtonStart->setText(LanguageManager::GetLanText("暂停") + QStringLiteral("(F6)"));
}

void Form_Marking::SetIdleUI() {
    ShowStatus("background:gray", "完成或终止运行");
    EnableOptions(true);
    ui->pushButtonStart->setText(LanguageManager::GetLanText("开始") + QStringLiteral("(F6)"));
    m_bCanExit = true;
}

void Form_Marking::EnableOptions(bool enable) {
    for (QWidget* widget : {static_cast<QWidget*>(ui->radioButtonRun), static_cast<QWidget*>(ui->radioButtonRedPre),
                            static_cast<QWidget*>(ui->radioButtonBox), static_cast<QWidget*>(ui->checkBoxLoopMark),
                            static_cast<QWidget*>(ui->checkBoxSelectMarking), static_cast<QWidget*>(ui->spinBox),
                            static_cast<QWidget*>(ui->labelLoopDelay), static_cast<QWidget*>(ui->pushButtonCancel)})
        widget->setEnabled(enable);
}

void Form_Marking::ShowStatus(char const* color, char const* key) {
    ui->labelStatus->setStyleSheet(QString::fromLatin1(color));
    ui->labelStatus->setText(LanguageManager::GetLanText(key) + QStringLiteral("..."));
}

/// Over the state of the run, which may have ended for this program while the card has not told so.
void Form_Marking::ShowStopState() {
    switch (m_StopWatcher.State()) {
    case tessera::StopState::None:
        break;
    case tessera::StopState::Stopping:
        ShowStatus("background:yellow", "停止中");
        break;
    case tessera::StopState::Unconfirmed:
        ui->labelStatus->setStyleSheet(QStringLiteral("background:red; color:white"));
        ui->labelStatus->setText(LanguageManager::GetLanText("停止未确认,请按硬件急停"));
        break;
    }
}

void Form_Marking::ShowCounter() {
    ui->labelRunCnt->setText(QString::number(m_nMarkCnt.Value()));
}

/// A count that cannot be stored is told once, until storing works again.
void Form_Marking::StoreCounter(int value) {
    const bool stored = m_nMarkCnt.Set(value);
    ShowCounter();
    if (!stored && !m_bCounterFailed) {
        MarkLog::Instance()->ShowNote_Error(m_nMarkCnt.Error());
        ShowDebugIno::ShowText({LanguageManager::GetLanText("运行计数保存失败")}, {DebugInfoAlarm});
    }
    m_bCounterFailed = !stored;
}

/// A short pass may have ended before the message of its start was handled here; no time has been seen of it then.
void Form_Marking::AddRunTime(QDateTime const& until) {
    m_nRunTime += std::max<qint64>(0, m_LastTime.msecsTo(until));
    m_LastTime = until;
    ui->labelRunTime->setText(QString::number(m_nRunTime));
}

void Form_Marking::update() {
    if (m_LastTime.isValid())
        AddRunTime(QDateTime::currentDateTime());
}

void UpdateTime(QWidget* dialog) {
    static int calls = 0;
    auto* form = qobject_cast<Form_Marking*>(dialog);
    if (!form)
        return;
    form->update();
    tessera::ShowTrace(QStringLiteral("UpdateTime:%1").arg(++calls));
}

void Form_Marking::OnUpPressed() {
    MarkLog::Instance()->ShowNode(NoteOperator, QStringLiteral("运行框轴上移按钮"));
    AxisButtonPressed(true);
}

void Form_Marking::OnUpReleased() {
    AxisButtonReleased();
}

void Form_Marking::OnDownPressed() {
    MarkLog::Instance()->ShowNode(NoteOperator, QStringLiteral("运行框轴下移按钮"));
    AxisButtonPressed(false);
}

void Form_Marking::OnDownReleased() {
    AxisButtonReleased();
}

void Form_Marking::on_pushButtonStopAxis_clicked() {
    MoveCardManager::Instance()->StopAll();
}

void Form_Marking::AxisButtonPressed(bool up) {
    MoveCardManager* motion = MoveCardManager::Instance();
    Class_CardPara const* para = Class_CardPara::Instance();
    const int axis = SystemParam::Instance()->GetZAxisnum() - 1;
    if (!motion->IsCardOpened() || axis < 0 || axis >= para->AxisCount || axis >= kAxisSlots)
        return;
    AxisPara const& slow = para->Axis[static_cast<size_t>(axis)];
    const tessera::AxisButtonMove move =
        tessera::MoveOfAxisButton(up, ui->doubleSpinBoxStep->value(), slow.JogLowSpeed, slow.JogLowAcc);
    if (move.jog) {
        motion->AxisMove2Jog(axis, move.speed, move.acc);
        return;
    }
    double position = 0.0;
    if (!motion->AxisGetAltPos(axis, position))
        return;
    m_AxisSteps.erase(std::remove_if(m_AxisSteps.begin(), m_AxisSteps.end(),
                                     [](QFuture<void> const& step) { return step.isFinished(); }),
                      m_AxisSteps.end());
    m_AxisSteps.append(QtConcurrent::run([motion, axis, move, position] {
        motion->AxisMove2(axis, position + move.delta, move.speed, move.acc);
        motion->WaiAxisStop(axis);
    }));
}

void Form_Marking::AxisButtonReleased() {
    if (tessera::IsJogStep(ui->doubleSpinBoxStep->value()))
        MoveCardManager::Instance()->StopAll();
}

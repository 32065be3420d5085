// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/cardfunctions.h"
#include "engine/glassparam.h"
#include "engine/iocheckedsys.h"
#include "engine/iooutputset.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "engine/marklog.h"
#include "engine/qrulerview.h"
#include "engine/rundatagather.h"
#include "engine/systemparam.h"
#include "iosetup/laseralarmpara.h"
#include "laser/runlaserstart.h"
#include "multidoc/multidocmark.h"
#include "remote/externalresponse.h"
#include "run/delayedstop.h"
#include "shell/alarmctrl.h"
#include "shell/laserfinding.h"
#include "shell/safetycheck.h"
#include "shell/updateinputthread.h"

#include <QLabel>

/// A beat that still waits will see the inputs of its own time: while the main thread is held up, by a looped preview
/// for instance, there is no use in a second one behind it.
void MainWindow::timerUpDate() {
    if (!m_bPollWaits.exchange(true))
        emit TimerUpDate();
}

void MainWindow::OnTimerUpDate() {
    m_bPollWaits = false;
    IMarkCardBase* card = MarkCardInstance::Instance();
    if (card->IsCardOpend()) {
        OnResetAlarmStatus();
        CheckInput(card->GetInput());
        CheckFilberLaserAlarm();
        RecordAlarms();
        OnResetAlarmStatus();
    }
    if (m_pInputThread)
        m_pInputThread->PollDone();
}

void MainWindow::OnResetAlarmStatus() {
    bool red = false;
    bool green = false;
    bool yellow = false;
    IOOutputSet::Instance()->GetLightStatus(red, green, yellow);
    m_pRedLabel->setEnabled(red);
    m_pGreenLabel->setEnabled(green);
    m_pYellowLabel->setEnabled(yellow);
}

/// The laser's fault lines are watched whether or not the machine's inputs are.
void MainWindow::CheckInput(unsigned int input) {
    CheckLaserAlarm();
    if (SystemParam::Instance()->m_nResponseIO == 0)
        return;
    CheckSafe(input);
    CheckRunStop(input);
    CheckMultiDoc(input);
    CheckAutoManual(input);
    if (QRulerView const* view = GetActiveView())
        RunDataGather::Instance()->SetCurDocName(view->GetFileName());
}

void MainWindow::CheckLaserAlarm() {
    LaserAlarmPara* para = LaserAlarmPara::Instance();
    const bool watched = para->m_EnableLaserAlarm;
    bool alarmed = false;
    const QString text = watched ? para->DetectAlarm(alarmed) : QString();
    m_bLaserAlarm = alarmed;
    m_LaserAlarmText = text;
    emit LaserAlarm(alarmed, text);
    RunDataGather* runData = RunDataGather::Instance();
    const tessera::LaserFinding finding = tessera::FindLaserAlarm(watched, alarmed, runData->GetRunStatus());
    if (finding.setStatus)
        runData->SetRunStatus(finding.status);
    if (finding.clearError)
        VZ_OutputError(0);
}

/// The text of the cause is for other listeners: the indicator tells good from bad alone.
void MainWindow::on_LaserAlarm(bool alarmed, QString) {
    m_pLaserAlarm->SetStatus(alarmed ? AlarmRed : AlarmGreen,
                             LanguageManager::GetLanText(alarmed ? "激光器报警" : "激光器正常"));
}

tessera::InputEdge MainWindow::IsAccess(QString const& name, unsigned int input) {
    return m_Edges.Ask(IOCheckedSys::Instance()->GetFunObject(name), input);
}

void MainWindow::CheckSafe(unsigned int input) {
    IMarkCardBase* card = MarkCardInstance::Instance();
    GlassParam const* param = GlassParam::Instance();
    // The card is stopped between two documents of a project, and an edge does not come again.
    MultiDocMark const* project = MultiDocMark::Instance();
    const bool runs = card->GetMarkStatus() != MarkStatusStop || (project && project->HasWork());
    const tessera::SafetySettings settings{!param->IsCheckeSafeInRun() || runs,
                                           param->GetSafeTrigerType() != SafeTrigerStop};
    const tessera::SafetyPlan plan = tessera::CheckSafe(
        [=](char const* name) { return IsAccess(QString::fromUtf8(name), input); }, settings, m_Alarms.Mask());
    for (tessera::SafetyStep const& step : plan.steps)
        TakeSafetyStep(step);
    m_pSafeAlarm->SetStatus(plan.indicatorRed ? AlarmRed : AlarmGreen);
    if (plan.light == tessera::StackLight::Red)
        IOOutputSet::Instance()->SetRed(card);
    else if (plan.light == tessera::StackLight::Yellow)
        IOOutputSet::Instance()->SetYellow(card);
}

void MainWindow::TakeSafetyStep(tessera::SafetyStep const& step) {
    switch (step.act) {
    case tessera::SafetyAct::SetBit:
    case tessera::SafetyAct::ClearBit: {
        const bool on = step.act == tessera::SafetyAct::SetBit;
        m_Alarms.Set(on, step.bit);
        MarkLog::Instance()->ShowNode(NoteRun,
                                      QStringLiteral("%1:%2").arg(tessera::SafetyInputName(step.bit)).arg(on ? 1 : 0));
        break;
    }
    case tessera::SafetyAct::Stop:
        IOStopRun();
        break;
    case tessera::SafetyAct::Pause:
        IOPauseRun();
        // Nobody could let a remote run go on again.
        ExternalResponse::Instance()->StopRun();
        break;
    }
}

void MainWindow::CheckRunStop(unsigned int input) {
    switch (tessera::CheckRunStop([=](char const* name) { return IsAccess(QString::fromUtf8(name), input); },
                                  MarkWindowIsVisible(), [this] { return CheckAlarmStatus(); })) {
    case tessera::RunOrder::Nothing:
        break;
    case tessera::RunOrder::Stop: {
        IOFuncList const* function = IOCheckedSys::Instance()->GetFunObject(QStringLiteral("终止"));
        if (function->DelayEnable)
            m_pDelayedStop->Order(function->DelayTime);
        else
            IOStopRun();
        break;
    }
    case tessera::RunOrder::Start:
        IOStartRun();
        break;
    case tessera::RunOrder::Pause:
        IOPauseRun();
        break;
    case tessera::RunOrder::Preview:
        IOStartPreview();
        break;
    case tessera::RunOrder::OpenDialog:
        ShowNormalMarkWindow();
        break;
    }
}

void MainWindow::CheckMultiDoc(unsigned int input) {
    if (MarkWindowIsVisible() == 2)
        MultiDocMark::Instance()->InputChange(input);
}

void MainWindow::CheckAutoManual(unsigned int input) {
    tessera::CheckAutoManual([=](char const* name) { return IsAccess(QString::fromUtf8(name), input); });
}

/// The latch is never taken back: after this alarm the laser is to be looked at and the program started anew.
void MainWindow::CheckFilberLaserAlarm() {
    if (MarkingMParam_VZ::Instance()->GetMarkCardType() != MarkCardFilber ||
        RunLaserStart::Instance()->nFiberAlarm == 0)
        return;
    IMarkCardBase* card = MarkCardInstance::Instance();
    unsigned int word = 0;
    card->SystemIsAlarm(word);
    if ((word & tessera::kFibreAlarmBit) == 0 || m_bFilberAlarm)
        return;
    m_bFilberAlarm = true;
    SetSafeAlarm(true, tessera::AlarmLaser);
    IOOutputSet::Instance()->SetRed(card);
}

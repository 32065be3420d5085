// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/marklog.h"
#include "run/form_marking.h"
#include "shell/alarmhistorydialog.h"
#include "shell/alarmrecorder.h"

#include <QLabel>

namespace {

constexpr char kStoppingStyle[] = "background:yellow; color:black; font-weight:bold; font-size:13px; padding:0 3px";
constexpr char kUnconfirmedStyle[] = "background:red; color:white; font-weight:bold; font-size:13px; padding:0 3px";

} // namespace

/// At the end of each poll: what is active now goes into the history.
void MainWindow::RecordAlarms() {
    IMarkCardBase* card = MarkCardInstance::Instance();
    tessera::AlarmSnapshot snapshot = m_pAlarmRecorder->LastLook();
    snapshot.mask = m_Alarms.Mask();
    snapshot.laser = m_bLaserAlarm;
    snapshot.laserText = m_LaserAlarmText;
    snapshot.fibreLatch = m_bFilberAlarm;
    card->SystemIsAlarm(snapshot.system);
    snapshot.scan = card->GetScanState();
    snapshot.run = card->GetMarkInfo();
    m_pAlarmRecorder->Look(snapshot);
}

void MainWindow::ShowAlarmHistory() {
    if (!m_pAlarmHistory)
        m_pAlarmHistory = new AlarmHistoryDialog(m_pAlarmRecorder.get(), this);
    m_pAlarmHistory->show();
    m_pAlarmHistory->raise();
    m_pAlarmHistory->activateWindow();
}

/// A card that does not report its standstill is for hardware to stop.
void MainWindow::OnStopStateChanged(tessera::StopState state) {
    const bool unconfirmed = state == tessera::StopState::Unconfirmed;
    if (unconfirmed)
        MarkLog::Instance()->ShowNode(NoteRun, LanguageManager::GetLanText("停止未确认"));
    else if (m_pAlarmRecorder->LastLook().stopUnconfirmed)
        MarkLog::Instance()->ShowNode(NoteRun, LanguageManager::GetLanText("停止已确认"));
    tessera::AlarmSnapshot snapshot = m_pAlarmRecorder->LastLook();
    snapshot.stopUnconfirmed = unconfirmed;
    m_pAlarmRecorder->Look(snapshot);
    m_pStopLabel->setText(LanguageManager::GetLanText(unconfirmed ? "停止未确认" : "停止中"));
    m_pStopLabel->setStyleSheet(QLatin1String(unconfirmed ? kUnconfirmedStyle : kStoppingStyle));
    m_pStopLabel->setVisible(state != tessera::StopState::None);
}

// SPDX-License-Identifier: MIT
#include "shell/mainwindow.h"

#include "engine/authoritymanager.h"
#include "engine/cardfunctions.h"
#include "engine/glassparam.h"
#include "engine/iooutputset.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/movecardmanager.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "engine/vzmovecard.h"
#include "engine/waitaxisstop.h"
#include "iosetup/laseralarmpara.h"
#include "shell/homingplan.h"
#include "shell/statuseview.h"
#include "ui_mainwindow.h"

#include <QLabel>

namespace {

/// Bits 22 and 23 of the hardware word are 1 on the cards whose version carries a suffix; bit 12 tells which.
QString versionSuffix(unsigned int hardware) {
    if (((hardware >> 22) & 3U) != 1U)
        return QString();
    return (hardware >> 12) & 1U ? QStringLiteral("-85") : QStringLiteral("-45");
}

} // namespace

void MainWindow::InitMarkCard() {
    VZ_SetFuncMessageDisp(MessageBox, nullptr);
    auto* card = new VZMarkCard;
    MarkCardInstance::SetMarkCardInstance(card);
    if (!SystemParam::Instance()->GetSysMode())
        card->OpenCard();
    MoveCardManager::Instance()->SetMoveCardInstance(new VZMoveCard);
    if (card->HasMotion())
        MoveCardManager::Instance()->InitMoveCard();
    else
        ui->actionMotionSet->setVisible(false);
    ShowCardState();
}

void MainWindow::ShowCardState() {
    QFont font = m_pCardStateLabel->font();
    font.setPixelSize(18);
    m_pCardStateLabel->setFont(font);
    m_pCardStateLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    const bool open = MarkCardInstance::Instance()->IsCardOpend();
    m_pCardStateLabel->setText(SystemParam::Instance()->GetCardName() +
                               LanguageManager::GetLanText(open ? "卡打开成功" : "卡打开失败") + QStringLiteral("  "));
    QPalette palette = m_pCardStateLabel->palette();
    palette.setColor(QPalette::WindowText, open ? Qt::blue : Qt::red);
    m_pCardStateLabel->setPalette(palette);
    // With a style sheet in force Qt forgets a widget's own font and palette whenever it polishes the window anew.
    m_pCardStateLabel->setStyleSheet(
        QStringLiteral("QLabel{ color:%1; font-size:18px}").arg(QLatin1String(open ? "blue" : "red")));
}

void MainWindow::ShowCardVersion() {
    IMarkCardBase* card = MarkCardInstance::Instance();
    if (!card->IsCardOpend())
        return;
    unsigned int hardware = 0;
    VZ_GetHdVer(&hardware);
    m_pCardVersionLabel->setText(LanguageManager::GetLanText("卡版本号") + QStringLiteral(":") +
                                 card->GetCardVersion() + versionSuffix(hardware));
}

void MainWindow::ApplyIOState() {
    SetUIChangeDoc(nullptr);
    IOOutputSet::Instance()->SetYellow(MarkCardInstance::Instance());
    UpdateIOSetting();
    LaserAlarmPara::Instance()->ReadPara();
    connect(this, &MainWindow::LaserAlarm, this, &MainWindow::on_LaserAlarm);
    connect(this, &MainWindow::SetSystemUI, this, &MainWindow::onSetSystemUI);
    emit SetSystemUI();
    OnUserChanged();
}

void MainWindow::UpdateIOSetting() {
    int gasBit = -1;
    double gasDelay = 20.0;
    QString gasName;
    IOOutputSet::Instance()->GetProtectGas(gasBit, gasDelay, gasName);
    m_pStatusView->SetProtectGas(gasBit, gasName);
    int redBit = -1;
    QString redName;
    IOOutputSet::Instance()->GetRedLight(redBit, redName);
    m_pStatusView->SetRedLight(redBit, redName);
}

void MainWindow::HomeAxes() {
    Class_CardPara* para = Class_CardPara::Instance();
    if (!MarkCardInstance::Instance()->HasMotion() || !MoveCardManager::Instance()->IsCardOpened() ||
        !para->HomeAtStart)
        return;
    QVector<AxisMoveStruct> plan = tessera::HomingPlan(*para);
    WaitAxisStop::SearchHome(plan, para, nullptr);
}

void MainWindow::SetReadyOut(int value) {
    IOOutputSet* outputs = IOOutputSet::Instance();
    const int bit = outputs->GetReadyOut();
    if (outputs->EnableReadyOut() && bit >= 0)
        MarkCardInstance::Instance()->SetOutputBit(bit, value);
}

void MainWindow::UpdateMarkBTTime() {
    emit updateMatrBTTime();
}

void MainWindow::ShowBufferRunTime() {
    m_pBufferTimeLabel->setText(QStringLiteral("BT: ") +
                                QString::number(MarkCardInstance::Instance()->GetBufferRunTime(), 'f', 3) +
                                QStringLiteral(" ms"));
}

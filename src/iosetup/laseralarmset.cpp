// SPDX-License-Identifier: MIT
#include "iosetup/laseralarmset.h"

#include "engine/languagemanager.h"
#include "engine/markingmparam_vz.h"
#include "iosetup/laseralarmpara.h"
#include "support/approot.h"
#include "ui_laseralarmset.h"

#include <QPointer>
#include <QTimerEvent>

namespace {

constexpr int kLookMs = 100;
constexpr int kIconSize = 32; ///< px
constexpr char const* kLaserTypeHelp[] = {"0=自定义类型",          "1=SPI",       "2=Fiber", "3=Fiber MOPA-HFM",
                                          "4=Fiber IPG脉宽E27418", "5=Fiber 创鑫"};

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

/// The pictures beside the program may be replaced by a machine builder's; without them the built-in ones serve.
QPixmap statePicture(QString const& name) {
    QPixmap picture(tessera::rootPath(QStringLiteral("/Res/Res/") + name));
    if (picture.isNull())
        picture.load(QStringLiteral(":/Icon/Res/") + name);
    return picture.scaled(kIconSize, kIconSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

LaserAlarmSet::LaserAlarmSet(QWidget* parent)
    : QDialog(parent, Qt::Tool | Qt::WindowStaysOnTopHint)
    , ui(new Ui_LaserAlarmSet) {
    setAttribute(Qt::WA_DeleteOnClose);
    ui->setupUi(this);
    SetUIText();
    LaserAlarmPara::Instance()->ReadPara();
    FillControls();
    ui->labelResetOut->setEnabled(false);
    const auto inputs = tessera::laserAlarmInputs(MarkingMParam_VZ::Instance()->GetMarkCardType());
    for (int i = 0; i < tessera::kLaserAlarmChannels; ++i)
        Channel<QLabel>("labelIn", i)->setText(QString::number(inputs[static_cast<std::size_t>(i)]));
    connect(this, &LaserAlarmSet::AlarmChanged, this, &LaserAlarmSet::OnAlarmChanged);
    ShowState(false);
}

LaserAlarmSet::~LaserAlarmSet() {
    StopLooking();
}

template<typename T>
T* LaserAlarmSet::Channel(char const* name, int channel) const {
    return findChild<T*>(QLatin1String(name) + QString::number(channel + 1));
}

void LaserAlarmSet::SetUIText() {
    setWindowTitle(text("激光器报警设置"));
    ui->checkBoxEnableLaserAlarm->setText(text("启用激光器报警"));
    ui->labelLaserType->setText(text("激光器类型"));
    ui->checkNeg->setText(text("报警信号取反"));
    ui->groupBoxReset->setTitle(text("报警清除(请先设置正确的IO号)"));
    ui->groupBoxInfo->setTitle(text("报警信息"));
    ui->labelResetOut->setText(QStringLiteral("IO"));
    ui->pushButtonReset->setText(text("清除报警"));
    ui->pushButtonSavePara->setText(text("保存"));
    for (int i = 0; i < tessera::kLaserAlarmChannels; ++i) {
        Channel<QCheckBox>("checkBoxIn", i)->setText(text("启用"));
        Channel<QCheckBox>("checkBoxMask", i)->setText(text("高电平"));
    }
    QStringList lines;
    for (char const* line : kLaserTypeHelp)
        lines.append(text(line));
    ui->labelHelp->setText(lines.join(QLatin1Char('\n')));
}

void LaserAlarmSet::FillControls() {
    LaserAlarmPara const* para = LaserAlarmPara::Instance();
    ui->checkBoxEnableLaserAlarm->setChecked(para->m_EnableLaserAlarm);
    ui->spinBoxLaserType->setValue(para->m_LaserType);
    for (int i = 0; i < tessera::kLaserAlarmChannels; ++i) {
        Channel<QCheckBox>("checkBoxIn", i)->setChecked(para->m_CheckIn[i]);
        Channel<QCheckBox>("checkBoxMask", i)->setChecked(para->m_CheckMask[i]);
    }
    ui->checkNeg->setChecked(para->m_CheckNeg);
    ui->spinBoxResetOut->setValue(para->m_ResetOut);
    on_spinBoxLaserType_valueChanged(ui->spinBoxLaserType->value());
}

void LaserAlarmSet::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (m_TimerId < 0)
        m_TimerId = startTimer(kLookMs);
    LaserAlarmPara::Instance()->Hold(true);
}

void LaserAlarmSet::closeEvent(QCloseEvent* event) {
    StopLooking();
    QDialog::closeEvent(event);
}

void LaserAlarmSet::StopLooking() {
    if (m_TimerId < 0)
        return;
    killTimer(m_TimerId);
    m_TimerId = -1;
    LaserAlarmPara::Instance()->Hold(false);
}

void LaserAlarmSet::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_TimerId) {
        QDialog::timerEvent(event);
        return;
    }
    LaserAlarmPara* para = LaserAlarmPara::Instance();
    if (para->m_EnableLaserAlarm)
        emit AlarmChanged(para->DetectAlarm(para->m_Alarm));
}

void LaserAlarmSet::ShowState(bool alarmed) {
    ui->labelAlarmImg->setPixmap(statePicture(alarmed ? QStringLiteral("red.png") : QStringLiteral("green.png")));
    ui->labelAlarmState->setText(text(alarmed ? "激光器报警" : "激光器正常"));
}

void LaserAlarmSet::OnAlarmChanged(QString cause) {
    ShowState(LaserAlarmPara::Instance()->m_Alarm);
    if (ui->textEditShowInfo->toPlainText() != cause)
        ui->textEditShowInfo->setPlainText(cause);
}

/// The operator may close the window while the pulse lasts.
void LaserAlarmSet::on_pushButtonReset_clicked() {
    const QPointer<LaserAlarmSet> self(this);
    LaserAlarmPara::Instance()->ResetAlarm();
    if (self)
        emit AlarmChanged(QString());
}

void LaserAlarmSet::on_pushButtonSavePara_clicked() {
    LaserAlarmPara* para = LaserAlarmPara::Instance();
    para->m_EnableLaserAlarm = ui->checkBoxEnableLaserAlarm->isChecked();
    para->m_LaserType = ui->spinBoxLaserType->value();
    for (int i = 0; i < tessera::kLaserAlarmChannels; ++i) {
        para->m_CheckIn[i] = Channel<QCheckBox>("checkBoxIn", i)->isChecked();
        para->m_CheckMask[i] = Channel<QCheckBox>("checkBoxMask", i)->isChecked();
    }
    para->m_CheckNeg = ui->checkNeg->isChecked();
    para->m_ResetOut = ui->spinBoxResetOut->value();
    para->SavePara();
}

void LaserAlarmSet::on_spinBoxLaserType_valueChanged(int type) {
    const bool custom = type == tessera::kLaserTypeCustom;
    for (int i = 0; i < tessera::kLaserAlarmChannels; ++i) {
        Channel<QLabel>("labelIn", i)->setVisible(custom);
        Channel<QCheckBox>("checkBoxIn", i)->setVisible(custom);
        Channel<QCheckBox>("checkBoxMask", i)->setVisible(custom);
    }
    ui->labelHelp->setVisible(custom);
}

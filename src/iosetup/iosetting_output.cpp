// SPDX-License-Identifier: MIT
#include "engine/glassparam.h"
#include "engine/iooutputset.h"
#include "engine/languagemanager.h"
#include "iosetup/iorules.h"
#include "iosetup/iosetting.h"
#include "ui_iosetting.h"

#include <QSignalBlocker>
#include <unistd.h>

namespace {

constexpr char const* kLevels[] = {"低电平", "高电平"};
constexpr char const* kClearTypes[] = {"阻塞一段时间", "下次运行关闭", "等待应答信号", "多线程阻塞"};
constexpr char kRedLightKey[] = "GasDelay"; ///< kept: plants' translations know the red light by this key
constexpr char kGasKey[] = "ProcGas";
constexpr double kGasTime = 20.0;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

template<std::size_t N>
void setItems(QComboBox* box, char const* const (&keys)[N]) {
    const QSignalBlocker quiet(box);
    const int chosen = qMax(0, box->currentIndex());
    box->clear();
    for (char const* key : keys)
        box->addItem(text(key));
    box->setCurrentIndex(chosen);
}

/// A name as it was stored when the edit still shows it, so that a name given as a key goes on following the language.
QString storedName(QString const& shown, QString const& stored) {
    return !stored.isEmpty() && shown == LanguageManager::GetLanText(stored) ? stored : shown;
}

} // namespace

void IOSetting::SetOutputTexts() {
    ui->checkBoxEndSignal->setText(text("启用完成信号"));
    ui->labelEndOutput->setText(text("输出号"));
    ui->labelEndLevel->setText(text("有效电平"));
    ui->labelClearType->setText(text("清除方式"));
    ui->labelDuration->setText(text("持续时间"));
    ui->labelAckInput->setText(text("应答输入号"));
    ui->labelAckLevel->setText(text("应答电平"));
    ui->labelAckTimeout->setText(text("应答超时时间"));
    ui->checkBoxSelfCheck->setText(text("启用信号自校验"));
    ui->checkBoxStopHasEndSig->setText(text("StopHasEndSig"));
    setItems(ui->comboBoxEndLevel, kLevels);
    setItems(ui->comboBoxAckLevel, kLevels);
    setItems(ui->comboBoxClearType, kClearTypes);
    ui->groupBoxLamps->setTitle(text("灯塔"));
    ui->labelRed->setText(text("红"));
    ui->labelGreen->setText(text("绿"));
    ui->labelYellow->setText(text("黄"));
    ui->labelBuzzer->setText(text("蜂鸣器"));
    ui->checkBoxOutputInv->setText(text("输出反向"));
    ui->groupBoxSwitches->setTitle(text("红光与保护气体"));
    ui->labelRedLight->setText(text("红光名称"));
    ui->labelGasName->setText(text("气体名称"));
    ui->labelGasOutput->setText(text("输出号"));
    ui->labelGasTime->setText(text("延时时间"));
    ui->groupBoxTrigger->setTitle(text("安全门/安全光栅响应方式"));
    ui->radioButtonStop->setText(text("终止"));
    ui->radioButtonPause->setText(text("暂停"));
    ui->checkBoxReady->setText(text("就绪信号启用"));
    ui->pushButtonSaveOut->setText(text("保存"));
}

void IOSetting::InitOutput() {
    IOOutputSet const* outputs = IOOutputSet::Instance();
    bool enable = false;
    bool selfCheck = false;
    int output = -1;
    int level = 0;
    int clearType = 0;
    int duration = 0;
    int ackInput = 0;
    int ackLevel = 0;
    int ackTimeout = 0;
    outputs->GetEndSignal(enable, output, level, clearType, duration, ackInput, ackLevel, ackTimeout, selfCheck);
    ui->checkBoxEndSignal->setChecked(enable);
    ui->spinBoxEndOutput->setValue(output);
    ui->comboBoxEndLevel->setCurrentIndex(level != 0 ? 1 : 0);
    ui->comboBoxClearType->setCurrentIndex(tessera::knownClearType(clearType));
    ui->spinBoxDuration->setValue(duration);
    ui->spinBoxAckInput->setValue(ackInput);
    ui->comboBoxAckLevel->setCurrentIndex(ackLevel != 0 ? 1 : 0);
    ui->spinBoxAckTimeout->setValue(ackTimeout);
    ui->checkBoxSelfCheck->setChecked(selfCheck);
    ui->checkBoxStopHasEndSig->setChecked(outputs->m_bStopHasEndSig);
    int lamps[4] = {-1, -1, -1, -1};
    outputs->GetLight(lamps[0], lamps[1], lamps[2], lamps[3]);
    ui->spinBoxRed->setValue(lamps[0]);
    ui->spinBoxGreen->setValue(lamps[1]);
    ui->spinBoxYellow->setValue(lamps[2]);
    ui->spinBoxBuzzer->setValue(lamps[3]);
    ui->checkBoxOutputInv->setChecked(outputs->IsOutputInv());
    QString name;
    int bit = -1;
    outputs->GetRedLight(bit, name);
    ui->lineEditRedLight->setText(name.isEmpty() ? text(kRedLightKey) : LanguageManager::GetLanText(name));
    double time = kGasTime;
    name.clear();
    outputs->GetProtectGas(bit, time, name);
    ui->spinBoxGasOutput->setValue(bit);
    ui->doubleSpinBoxGasTime->setValue(time);
    ui->lineEditGas->setText(name.isEmpty() ? text(kGasKey) : LanguageManager::GetLanText(name));
    const bool stops = GlassParam::Instance()->GetSafeTrigerType() == SafeTrigerStop;
    ui->radioButtonStop->setChecked(stops);
    ui->radioButtonPause->setChecked(!stops);
    ui->checkBoxReady->setChecked(outputs->EnableReadyOut());
    ui->spinBoxReady->setValue(outputs->GetReadyOut());
    SetOutSignalUI();
}

void IOSetting::SetOutSignalUI() {
    const tessera::EndSignalFields fields = tessera::endSignalFields(ui->comboBoxClearType->currentIndex());
    ui->spinBoxDuration->setEnabled(fields.duration);
    ui->spinBoxAckInput->setEnabled(fields.acknowledge);
    ui->comboBoxAckLevel->setEnabled(fields.acknowledge);
    ui->spinBoxAckTimeout->setEnabled(fields.acknowledge);
    ui->widgetEndSignal->setEnabled(ui->checkBoxEndSignal->isChecked());
}

void IOSetting::StoreEndSignal() {
    IOOutputSet* outputs = IOOutputSet::Instance();
    outputs->SetEndSignal(
        ui->checkBoxEndSignal->isChecked(), ui->spinBoxEndOutput->value(), ui->comboBoxEndLevel->currentIndex(),
        ui->comboBoxClearType->currentIndex(), ui->spinBoxDuration->value(), ui->spinBoxAckInput->value(),
        ui->comboBoxAckLevel->currentIndex(), ui->spinBoxAckTimeout->value(), ui->checkBoxSelfCheck->isChecked());
    outputs->m_bStopHasEndSig = ui->checkBoxStopHasEndSig->isChecked();
}

/// The red light has no output of its own here: the number stored is always -1.
void IOSetting::StoreSwitches() {
    IOOutputSet* outputs = IOOutputSet::Instance();
    QString name;
    int bit = -1;
    double time = kGasTime;
    outputs->GetRedLight(bit, name);
    bit = -1;
    outputs->SetRedLight(bit, storedName(ui->lineEditRedLight->text(), name));
    outputs->GetProtectGas(bit, time, name);
    bit = ui->spinBoxGasOutput->value();
    time = ui->doubleSpinBoxGasTime->value();
    outputs->SetProtectGas(bit, time, storedName(ui->lineEditGas->text(), name));
}

void IOSetting::on_pushButtonSaveOut_clicked() {
    IOOutputSet* outputs = IOOutputSet::Instance();
    StoreEndSignal();
    outputs->SetLight(ui->spinBoxRed->value(), ui->spinBoxGreen->value(), ui->spinBoxYellow->value(),
                      ui->spinBoxBuzzer->value());
    outputs->SetOutputInv(ui->checkBoxOutputInv->isChecked());
    StoreSwitches();
    GlassParam::Instance()->SetSafeTrigerType(ui->radioButtonStop->isChecked() ? SafeTrigerStop : SafeTrigerPause);
    outputs->SetEnableReadyOut(ui->checkBoxReady->isChecked());
    outputs->SetReadyOut(ui->spinBoxReady->value());
    GlassParam::Instance()->SaveParam();
    outputs->Save();
    ::sync();
    emit UpdateValues();
}

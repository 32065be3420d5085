// SPDX-License-Identifier: MIT
#include "engine/cardfunctions.h"
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "engine/markingmparam_vz.h"
#include "engine/profinifile.h"
#include "iosetup/ionametable.h"
#include "iosetup/iosetting.h"
#include "ui_iosetting.h"

#include <QSignalBlocker>
#include <QTimerEvent>
#include <unistd.h>

namespace {

constexpr int kWatchMs = 80;
constexpr int kWaves = 16;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

} // namespace

void IOSetting::SetStatusTexts() {
    ui->groupBoxInputStatus->setTitle(text("输入"));
    ui->groupBoxOutputStatus->setTitle(text("输出"));
    ui->checkBoxTestOutput->setText(text("测试输出"));
    ui->checkBoxSetIOName->setText(text("设置IO名称"));
    ui->pushButtonSaveIOName->setText(text("保存IO名称"));
    ui->labelEncoder->setText(text("编码器"));
    ui->pushButtonRedCtrl->setText(text(m_RedOn ? "关闭红光" : "开启红光"));
    ui->pushButton->setText(text("波形测试"));
}

void IOSetting::ReadNames() {
    const ProfIniFile file(m_NamesPath);
    for (int i = 0; i < tessera::kIOLines; ++i) {
        const QString in = tessera::inputKey(i);
        const QString out = tessera::outputKey(i);
        m_Inputs.names[i] = file.Read(QStringLiteral("Input"), in, in);
        m_Outputs.names[i] = file.Read(QStringLiteral("Output"), out, out);
    }
}

void IOSetting::ChangeIOTextShow() {
    const tessera::IONameTable names = tessera::cardLineNames(MarkingMParam_VZ::Instance()->GetMarkCardType());
    m_Inputs.names = QVector<QString>(names.inputs.begin(), names.inputs.end());
    m_Outputs.names = QVector<QString>(names.outputs.begin(), names.outputs.end());
    ShowNames(m_Inputs);
    ShowNames(m_Outputs);
}

/// Shown without a signal: names that the card gives are not the operator's typing.
void IOSetting::ShowNames(Side& side) {
    for (int i = 0; i < tessera::kIOLines; ++i) {
        QLineEdit* edit = side.nameEdits.at(i);
        const QSignalBlocker quiet(edit);
        edit->setReadOnly(true);
        edit->setText(side.names.at(i));
        edit->setCursorPosition(0);
        side.lineLabels.at(i)->setText(QString::number(i) + QStringLiteral("  ") + side.names.at(i));
    }
}

void IOSetting::on_checkBoxSetIOName_stateChanged(int state) {
    on_checkBox_stateChanged(state);
}

void IOSetting::on_checkBox_stateChanged(int state) {
    const bool editing = state != Qt::Unchecked;
    const QColor window = palette().window().color();
    const QString style =
        editing
            ? QStringLiteral("background-color:rgb(255,255,255)")
            : QStringLiteral("background-color:rgb(%1,%2,%3)").arg(window.red()).arg(window.green()).arg(window.blue());
    for (Side const* side : {&m_Inputs, &m_Outputs}) {
        for (QLineEdit* edit : side->nameEdits) {
            edit->setStyleSheet(style);
            edit->setReadOnly(!editing);
        }
    }
}

bool IOSetting::StoreName(Side& side, QObject* edit, QString const& section, QString const& prefix,
                          QString const& text) {
    for (int i = 0; i < side.nameEdits.size(); ++i) {
        if (side.nameEdits.at(i) != edit)
            continue;
        side.names[i] = LanguageManager::GetLanText(text);
        ProfIniFile(m_NamesPath).Write(section, prefix + QString::number(i), side.names.at(i));
        ::sync();
        return true;
    }
    return false;
}

void IOSetting::on_textChanged(QString const& text) {
    if (ui->checkBoxSetIOName->checkState() != Qt::Checked)
        return;
    if (!StoreName(m_Inputs, sender(), QStringLiteral("Input"), QStringLiteral("In"), text))
        StoreName(m_Outputs, sender(), QStringLiteral("Output"), QStringLiteral("Out"), text);
}

/// Each keystroke is stored already.
void IOSetting::on_pushButtonSaveIOName_clicked() {}

void IOSetting::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (m_TimerId < 0)
        m_TimerId = startTimer(kWatchMs);
}

void IOSetting::closeEvent(QCloseEvent* event) {
    StopTimer();
    QDialog::closeEvent(event);
}

/// The Escape key hides the dialog without a close event.
void IOSetting::hideEvent(QHideEvent* event) {
    StopTimer();
    QDialog::hideEvent(event);
}

void IOSetting::StopTimer() {
    if (m_TimerId >= 0)
        killTimer(m_TimerId);
    m_TimerId = -1;
}

void IOSetting::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_TimerId) {
        QDialog::timerEvent(event);
        return;
    }
    IMarkCardBase const* card = MarkCardInstance::Instance();
    SetInputStatus(card->GetInput());
    SetOutputStatus(card->GetOutput());
    int position = 0;
    VZ_GetEncPos(&position);
    ui->spinBoxEncoder->setValue(position);
}

/// A button that is given its picture again is drawn again, so only those whose line has changed are.
void IOSetting::ShowBits(Side& side, unsigned int word) {
    const unsigned int changed = side.shown ? *side.shown ^ word : ~0U;
    side.shown = word;
    if (changed == 0)
        return;
    const QIcon clear(m_ClearPixmap);
    const QIcon set(m_SetPixmap);
    for (int i = 0; i < side.status.size(); ++i) {
        if (changed >> i & 1U)
            side.status.at(i)->setIcon(word >> i & 1U ? set : clear);
    }
}

void IOSetting::SetInputStatus(unsigned int word) {
    ShowBits(m_Inputs, word);
}

void IOSetting::SetOutputStatus(unsigned int word) {
    ShowBits(m_Outputs, word);
}

void IOSetting::on_SetOutputClick() {
    if (!ui->checkBoxTestOutput->isChecked())
        return;
    for (int i = 0; i < m_Outputs.status.size(); ++i) {
        if (m_Outputs.status.at(i) != sender())
            continue;
        IMarkCardBase* card = MarkCardInstance::Instance();
        card->SetOutputBit(i, card->GetOutputBit(i) ^ 1);
        return;
    }
}

/// The text tells the operator's wish, also on a card that has no such output.
void IOSetting::on_pushButtonRedCtrl_clicked() {
    m_RedOn = !m_RedOn;
    const int output = tessera::redLightOutput(MarkingMParam_VZ::Instance()->GetMarkCardType());
    if (output >= 0)
        MarkCardInstance::Instance()->SetOutputBit(output, m_RedOn ? 1 : 0);
    ui->pushButtonRedCtrl->setText(text(m_RedOn ? "关闭红光" : "开启红光"));
}

void IOSetting::on_pushButton_clicked() {
    VZ_OutputWaveNo(m_WaveNo);
    m_WaveNo = (m_WaveNo + 1) % kWaves;
}

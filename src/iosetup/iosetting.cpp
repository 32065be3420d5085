// SPDX-License-Identifier: MIT
#include "iosetup/iosetting.h"

#include "engine/glassparam.h"
#include "engine/iocheckedsys.h"
#include "engine/languagemanager.h"
#include "iosetup/ionametable.h"
#include "iosetup/iorules.h"
#include "support/approot.h"
#include "ui_iosetting.h"

#include <QSignalBlocker>
#include <unistd.h>

IOSetting* IOSetting::m_pIOSettingInstance = nullptr;
int IOSetting::m_WaveNo = 0;

namespace {

constexpr int kTouch = 40;     ///< px, side of a target for a finger
constexpr int kIconSide = 22;  ///< px
constexpr int kNameWidth = 96; ///< px

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

} // namespace

IOSetting::IOSetting(QWidget* parent)
    : QDialog(parent)
    , ui(new Ui_IOSetting)
    , m_NamesPath(tessera::rootPath(QStringLiteral("/ini/IOName.ini")))
    , m_ClearPixmap(QStringLiteral(":/Icon/Res/green.png"))
    , m_SetPixmap(QStringLiteral(":/Icon/Res/gray.png")) {
    ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    InitUI();
    ConnectAll();
}

IOSetting::~IOSetting() {
    m_pIOSettingInstance = nullptr;
}

IOSetting* IOSetting::Instance(QWidget* parent) {
    if (!m_pIOSettingInstance)
        m_pIOSettingInstance = new IOSetting(parent);
    return m_pIOSettingInstance;
}

void IOSetting::ShowWindow() {
    ui->checkBoxSetIOName->setChecked(false);
    on_checkBox_stateChanged(Qt::Unchecked);
    SetUIText();
    ChangeIOTextShow();
    LoadFunctions();
    InitOutput();
    show();
    raise();
    activateWindow();
}

void IOSetting::InitUI() {
    MakeFunctionRows(ui->widgetInputRows, m_Inputs, QStringLiteral("In"));
    MakeFunctionRows(ui->widgetOutputRows, m_Outputs, QStringLiteral("Out"));
    MakeStatusRows(ui->widgetInputStatus, m_Inputs, QStringLiteral("In"));
    MakeStatusRows(ui->widgetOutputStatus, m_Outputs, QStringLiteral("Out"));
    ReadNames();
    SetUIText();
    ChangeIOTextShow();
    LoadFunctions();
    InitOutput();
}

void IOSetting::MakeFunctionRows(QWidget* holder, Side& side, QString const& prefix) {
    auto* grid = new QGridLayout(holder);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(0, 1);
    for (int i = 0; i < tessera::kIOLines; ++i) {
        auto* name = new QLabel(holder);
        auto* valid = new QCheckBox(holder);
        auto* invert = new QCheckBox(holder);
        valid->setObjectName(QStringLiteral("checkBoxValid%1%2").arg(prefix).arg(i));
        invert->setObjectName(QStringLiteral("checkBoxInvert%1%2").arg(prefix).arg(i));
        name->setObjectName(QStringLiteral("labelFunc%1%2").arg(prefix).arg(i));
        valid->setMinimumHeight(kTouch);
        invert->setMinimumHeight(kTouch);
        grid->addWidget(name, i, 0);
        grid->addWidget(valid, i, 1);
        grid->addWidget(invert, i, 2);
        side.lineLabels.append(name);
        side.valid.append(valid);
        side.invert.append(invert);
    }
}

void IOSetting::MakeStatusRows(QWidget* holder, Side& side, QString const& prefix) {
    auto* grid = new QGridLayout(holder);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(4);
    const int rows = tessera::kIOLines / 2;
    for (int i = 0; i < tessera::kIOLines; ++i) {
        auto* status = new QPushButton(QString::number(i), holder);
        auto* edit = new QLineEdit(holder);
        status->setObjectName(QStringLiteral("pushButton%1%2").arg(prefix).arg(i));
        edit->setObjectName(QStringLiteral("lineEdit%1%2").arg(prefix).arg(i));
        status->setIconSize(QSize(kIconSide, kIconSide));
        status->setMinimumSize(kTouch + 22, kTouch);
        status->setAutoDefault(false);
        edit->setMinimumSize(kNameWidth, kTouch);
        const int column = i / rows * 2;
        grid->addWidget(status, i % rows, column);
        grid->addWidget(edit, i % rows, column + 1);
        side.names.append(QString());
        side.status.append(status);
        side.nameEdits.append(edit);
    }
}

void IOSetting::ConnectAll() {
    ConnectFunctionPage();
    for (Side const* side : {&m_Inputs, &m_Outputs}) {
        for (int i = 0; i < tessera::kIOLines; ++i) {
            connect(side->valid.at(i), &QCheckBox::stateChanged, this, &IOSetting::on_checkBoxIOFunc_stateChanged);
            connect(side->invert.at(i), &QCheckBox::stateChanged, this, &IOSetting::on_checkBoxIOFunc_stateChanged);
            connect(side->nameEdits.at(i), &QLineEdit::textChanged, this, &IOSetting::on_textChanged);
        }
    }
    for (QPushButton* button : m_Outputs.status)
        connect(button, &QPushButton::clicked, this, &IOSetting::on_SetOutputClick);
    connect(ui->comboBoxClearType, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &IOSetting::SetOutSignalUI);
    connect(ui->checkBoxEndSignal, &QCheckBox::stateChanged, this, &IOSetting::SetOutSignalUI);
    connect(ui->pushButtonSaveOut, &QPushButton::clicked, this, &IOSetting::on_pushButtonSaveOut_clicked);
    connect(ui->checkBoxSetIOName, &QCheckBox::stateChanged, this, &IOSetting::on_checkBoxSetIOName_stateChanged);
    connect(ui->pushButtonSaveIOName, &QPushButton::clicked, this, &IOSetting::on_pushButtonSaveIOName_clicked);
    connect(ui->pushButtonRedCtrl, &QPushButton::clicked, this, &IOSetting::on_pushButtonRedCtrl_clicked);
    connect(ui->pushButton, &QPushButton::clicked, this, &IOSetting::on_pushButton_clicked);
}

void IOSetting::ConnectFunctionPage() {
    connect(ui->comboBoxSignalName, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &IOSetting::on_comboBoxSignalName_currentIndexChanged);
    connect(ui->checkBoxEnableInput, &QCheckBox::stateChanged, this, &IOSetting::on_checkBoxEnableInput_stateChanged);
    connect(ui->checkBoxEnableOutput, &QCheckBox::stateChanged, this, &IOSetting::on_checkBoxEnableOutput_stateChanged);
    connect(ui->checkBoxDelay, &QCheckBox::stateChanged, this, &IOSetting::on_checkBoxDelay_stateChanged);
    connect(ui->spinBoxDelayTime, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &IOSetting::on_spinBoxDelayTime_valueChanged);
    connect(ui->pushButtonSave, &QPushButton::clicked, this, &IOSetting::on_pushButtonSave_clicked);
}

void IOSetting::SetUIText() {
    setWindowTitle(text("IO设置"));
    ui->tabWidget->setTabText(0, text("IO功能设置"));
    ui->tabWidget->setTabText(1, text("输出设置"));
    ui->tabWidget->setTabText(2, text("IO状态"));
    ui->labelSignalName->setText(text("功能"));
    ui->checkBoxDelay->setText(text("延时响应"));
    ui->labelDelayTime->setText(text("延时时间"));
    ui->checkBoxCheckSafeInRun->setText(text("只有运行检测安全状态"));
    ui->pushButtonSave->setText(text("保存"));
    ui->groupBoxInput->setTitle(text("输入"));
    ui->groupBoxOutput->setTitle(text("输出"));
    ui->checkBoxEnableInput->setText(text("启用输入"));
    ui->checkBoxEnableOutput->setText(text("启用输出"));
    for (Side const* side : {&m_Inputs, &m_Outputs}) {
        for (int i = 0; i < tessera::kIOLines; ++i) {
            side->valid.at(i)->setText(text("有效"));
            side->invert.at(i)->setText(text("高电平"));
        }
    }
    SetOutputTexts();
    SetStatusTexts();
}

/// The copy and the page are as what is in force; the chosen function stays chosen.
void IOSetting::LoadFunctions() {
    const int chosen = qMax(0, ui->comboBoxSignalName->currentIndex());
    m_Functions = IOCheckedSys::Instance()->GetIOFunctions();
    {
        const QSignalBlocker quiet(ui->comboBoxSignalName);
        ui->comboBoxSignalName->clear();
        for (IOFuncList const& function : m_Functions)
            ui->comboBoxSignalName->addItem(LanguageManager::GetLanText(function.Name));
        ui->comboBoxSignalName->setCurrentIndex(qMin(chosen, m_Functions.size() - 1));
    }
    on_comboBoxSignalName_currentIndexChanged(ui->comboBoxSignalName->currentIndex());
    ui->checkBoxCheckSafeInRun->setChecked(GlassParam::Instance()->IsCheckeSafeInRun());
}

void IOSetting::SetBitValue(unsigned int& word, unsigned int bit, unsigned int value) {
    tessera::setBitValue(word, bit, value);
}

IOFuncList* IOSetting::CurrentFunction() {
    const int index = ui->comboBoxSignalName->currentIndex();
    return m_Ready && index >= 0 && index < m_Functions.size() ? &m_Functions[index] : nullptr;
}

void IOSetting::on_comboBoxSignalName_currentIndexChanged(int index) {
    m_Ready = false;
    if (index >= 0 && index < m_Functions.size()) {
        IOFuncList const& function = m_Functions.at(index);
        ui->checkBoxEnableInput->setChecked(function.InputEnable);
        ui->checkBoxEnableOutput->setChecked(function.OutputEnable);
        for (int i = 0; i < tessera::kIOLines; ++i) {
            m_Inputs.valid.at(i)->setChecked(function.InputMask >> i & 1U);
            m_Inputs.invert.at(i)->setChecked(function.InputValue >> i & 1U);
            m_Outputs.valid.at(i)->setChecked(function.OutputMask >> i & 1U);
            m_Outputs.invert.at(i)->setChecked(function.OutputValue >> i & 1U);
        }
        on_checkBoxEnableInput_stateChanged(ui->checkBoxEnableInput->checkState());
        on_checkBoxEnableOutput_stateChanged(ui->checkBoxEnableOutput->checkState());
        ui->checkBoxDelay->setChecked(function.DelayEnable);
        ui->spinBoxDelayTime->setValue(function.DelayTime);
        ui->spinBoxDelayTime->setEnabled(function.DelayEnable);
    }
    m_Ready = true;
}

bool IOSetting::StoreBit(Side const& side, QObject* box, unsigned int& mask, unsigned int& value) {
    for (int i = 0; i < side.valid.size(); ++i) {
        if (side.valid.at(i) == box) {
            SetBitValue(mask, static_cast<unsigned int>(i), side.valid.at(i)->isChecked());
            return true;
        }
    }
    for (int i = 0; i < side.invert.size(); ++i) {
        if (side.invert.at(i) == box) {
            SetBitValue(value, static_cast<unsigned int>(i), side.invert.at(i)->isChecked());
            return true;
        }
    }
    return false;
}

void IOSetting::on_checkBoxIOFunc_stateChanged(int) {
    IOFuncList* function = CurrentFunction();
    if (function && !StoreBit(m_Inputs, sender(), function->InputMask, function->InputValue))
        StoreBit(m_Outputs, sender(), function->OutputMask, function->OutputValue);
}

void IOSetting::on_checkBoxEnableInput_stateChanged(int state) {
    for (int i = 0; i < tessera::kIOLines; ++i) {
        m_Inputs.valid.at(i)->setEnabled(state != Qt::Unchecked);
        m_Inputs.invert.at(i)->setEnabled(state != Qt::Unchecked);
    }
    if (IOFuncList* function = CurrentFunction())
        function->InputEnable = state != Qt::Unchecked;
}

void IOSetting::on_checkBoxEnableOutput_stateChanged(int state) {
    for (int i = 0; i < tessera::kIOLines; ++i) {
        m_Outputs.valid.at(i)->setEnabled(state != Qt::Unchecked);
        m_Outputs.invert.at(i)->setEnabled(state != Qt::Unchecked);
    }
    if (IOFuncList* function = CurrentFunction())
        function->OutputEnable = state != Qt::Unchecked;
}

void IOSetting::on_checkBoxDelay_stateChanged(int state) {
    ui->spinBoxDelayTime->setEnabled(state != Qt::Unchecked);
    if (IOFuncList* function = CurrentFunction())
        function->DelayEnable = state != Qt::Unchecked;
}

void IOSetting::on_spinBoxDelayTime_valueChanged(int value) {
    if (IOFuncList* function = CurrentFunction())
        function->DelayTime = value;
}

void IOSetting::on_pushButtonSave_clicked() {
    GlassParam::Instance()->SetCheckSafeInRun(ui->checkBoxCheckSafeInRun->isChecked());
    IOCheckedSys* system = IOCheckedSys::Instance();
    system->SetIOFunctions(tessera::withLiveInputs(m_Functions, system->GetIOFunctions()));
    system->SaveFile();
    GlassParam::Instance()->SaveParam();
    ::sync();
}

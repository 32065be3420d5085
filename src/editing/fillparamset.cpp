// SPDX-License-Identifier: MIT
#include "editing/fillparamset.h"

#include "engine/languagemanager.h"
#include "engine/marktypes.h"
#include "ui_fillparamset.h"

namespace {

constexpr char const* kFillTypes[] = {"单向填充", "来回填充", "整体弓形", "分段弓形", "回形填充"};

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

} // namespace

FillParamSet::FillParamSet(QVector<FillParam> fills, bool enableEdge, bool markFillFirst, bool showSimple,
                           QWidget* parent)
    : QDialog(parent)
    , Fills(std::move(fills))
    , EnableEdge(enableEdge)
    , MarkFillFirst(markFillFirst)
    , ShowSimple(showSimple)
    , ui(new Ui_FillParamSet) {
    Fills.resize(kFillCount);
    ui->setupUi(this);
    for (int i = 1; i <= kLayerCount; ++i)
        ui->comboBoxFillLayer->addItem(QString::number(i));
    for (char const* type : kFillTypes)
        ui->comboBoxFillType->addItem(text(type));
    SetUIText();
    ui->checkBoxEnableEdge->setChecked(enableEdge);
    ui->checkBoxMarkFillFirst->setChecked(markFillFirst);
    ui->checkBoxShowSimple->setChecked(showSimple);
    ui->radioButtonFill1->setChecked(true);
}

FillParamSet::~FillParamSet() = default;

void FillParamSet::SetUIText() {
    setWindowTitle(text("填充设置"));
    const QString fill = text("填充");
    ui->radioButtonFill1->setText(fill + QStringLiteral("1"));
    ui->radioButtonFill2->setText(fill + QStringLiteral("2"));
    ui->radioButtonFill3->setText(fill + QStringLiteral("3"));
    ui->checkBoxEnableFill->setText(text("使能填充"));
    ui->labelFillDist->setText(text("填充间距"));
    ui->labelFillAngle->setText(text("填充角度"));
    ui->labelFillLayer->setText(text("填充层号"));
    ui->labelFillOffset->setText(text("填充缩进"));
    ui->labelEdgeCnt->setText(text("绕边次数"));
    ui->labelFillType->setText(text("填充类型"));
    for (int i = 0; i < ui->comboBoxFillType->count(); ++i)
        ui->comboBoxFillType->setItemText(i, text(kFillTypes[i]));
    ui->checkBoxEnableEdge->setText(text("使能轮廓"));
    ui->checkBoxMarkFillFirst->setText(text("先打填充"));
    ui->checkBoxShowSimple->setText(text("ShowSimple"));
    ui->pushButtonOK->setText(text("确认"));
    ui->pushButtonOKCancel->setText(text("取消"));
}

void FillParamSet::Load(int fill) {
    Ready = false;
    const FillParam& param = Fills.at(fill);
    ui->checkBoxEnableFill->setChecked(param.Enable);
    ui->groupBox->setEnabled(param.Enable);
    ui->doubleSpinBoxFillDist->setValue(param.FillDist);
    ui->doubleSpinBoxFillAngle->setValue(param.FillAngle);
    ui->comboBoxFillLayer->setCurrentIndex(param.FillLayer);
    ui->doubleSpinBoxFillOffset->setValue(param.FillOffset);
    ui->spinBoxEdgeCnt->setValue(param.EdgeCnt);
    ui->comboBoxFillType->setCurrentIndex(param.FillType);
    CurrentFill = fill;
    Ready = true;
}

void FillParamSet::on_radioButtonFill1_toggled(bool on) {
    if (on)
        Load(0);
}

void FillParamSet::on_radioButtonFill2_toggled(bool on) {
    if (on)
        Load(1);
}

void FillParamSet::on_radioButtonFill3_toggled(bool on) {
    if (on)
        Load(2);
}

void FillParamSet::on_checkBoxEnableFill_toggled(bool on) {
    ui->groupBox->setEnabled(on);
    Store(&FillParam::Enable, on);
}

void FillParamSet::on_doubleSpinBoxFillDist_valueChanged(double value) {
    Store(&FillParam::FillDist, value);
}

void FillParamSet::on_doubleSpinBoxFillAngle_valueChanged(double value) {
    Store(&FillParam::FillAngle, value);
}

void FillParamSet::on_comboBoxFillLayer_currentIndexChanged(int index) {
    Store(&FillParam::FillLayer, index);
}

void FillParamSet::on_doubleSpinBoxFillOffset_valueChanged(double value) {
    Store(&FillParam::FillOffset, value);
}

void FillParamSet::on_spinBoxEdgeCnt_valueChanged(int value) {
    Store(&FillParam::EdgeCnt, value);
}

void FillParamSet::on_comboBoxFillType_currentIndexChanged(int index) {
    Store(&FillParam::FillType, index);
}

void FillParamSet::on_checkBoxEnableEdge_toggled(bool on) {
    EnableEdge = on;
}

void FillParamSet::on_checkBoxMarkFillFirst_toggled(bool on) {
    MarkFillFirst = on;
}

void FillParamSet::on_pushButtonOK_clicked() {
    ShowSimple = ui->checkBoxShowSimple->isChecked();
    accept();
}

void FillParamSet::on_pushButtonOKCancel_clicked() {
    reject();
}

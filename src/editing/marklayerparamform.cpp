// SPDX-License-Identifier: MIT
#include "editing/marklayerparamform.h"

#include "editing/advancelayerparam.h"
#include "editing/penrules.h"
#include "editing/testgriddialog.h"
#include "engine/languagemanager.h"
#include "engine/layerparamex.h"
#include "engine/marklog.h"
#include "engine/qrulerview.h"
#include "engine/showdebuginfo.h"
#include "engine/systemparam.h"
#include "shell/mainwindow.h"
#include "ui_marklayerparamform.h"

#include <QColorDialog>
#include <QEvent>
#include <QHeaderView>

using tessera::PenMachine;
using tessera::PenRows;

/// A box and the field of the pen that it shows.
struct MarkLayerParamForm::RealRow {
    QDoubleSpinBox* Ui_MarkLayerParamForm::*box;
    QLabel* Ui_MarkLayerParamForm::*label;
    double LayerData::*field;
    char const* key;
    double maximum;
};

struct MarkLayerParamForm::IntRow {
    QDoubleSpinBox* Ui_MarkLayerParamForm::*box;
    QLabel* Ui_MarkLayerParamForm::*label;
    int LayerData::*field;
    char const* key;
    double minimum;
    double maximum;
};

using Form = Ui_MarkLayerParamForm;

// The duty is shown and stored by rules of its own; its row here gives it text and limit.
MarkLayerParamForm::RealRow const MarkLayerParamForm::kRealRows[] = {
    {&Form::doubleSpinBoxMarkSpeed, &Form::labelMarkSpeed, &LayerData::MarkSpeed, "工作速度", 100000.0},
    {&Form::doubleSpinBoxRedSpeed, &Form::labelRedSpeed, &LayerData::RedSpeed, "RedSpeed", 100000.0},
    {&Form::doubleSpinBoxJunpSpeed, &Form::labelJunpSpeed, &LayerData::JumpSpeed, "跳转速度", 100000.0},
    {&Form::doubleSpinBoxPower, &Form::labelPower, &LayerData::Power, "功率百分比", 100.0},
    {&Form::doubleSpinBoxFre, &Form::labelFre, &LayerData::Fre, "频率", 1.0e7},
};

MarkLayerParamForm::IntRow const MarkLayerParamForm::kIntRows[] = {
    {&Form::doubleSpinBoxMarkCnt, &Form::labelMarkCnt, &LayerData::MarkCnt, "工作次数", 0.0, 99999999.0},
    {&Form::doubleSpinBoxWaveNumber, &Form::labelWaveNumber, &LayerData::WaveNumber, "波形号", 0.0, 100.0},
    {&Form::doubleSpinBoxOpenLaserDelay, &Form::labelOpenLaserDelay, &LayerData::OpenLaserDelay, "开光延时", -100000.0,
     100000.0},
    {&Form::doubleSpinBoxCloseLaserDelay, &Form::labelCloseLaserDelay, &LayerData::CloseLaserDelay, "关光延时",
     -10000.0, 10000.0},
    {&Form::doubleSpinBoxEndDelay, &Form::labelEndDelay, &LayerData::EndDelay, "结束延时", -10000.0, 10000.0},
    {&Form::doubleSpinBoxTurnDelay, &Form::labelTurnDelay, &LayerData::TurnDelay, "拐角延时", -10000.0, 10000.0},
};

namespace {

constexpr int kRowHeight = 18;   ///< px, a row of the pen table
constexpr int kNumberWidth = 38; ///< px
constexpr int kMostChannel = 255;

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

/// A channel that no colour has gives an invalid colour.
QColor colorOf(LayerData const& pen) {
    if (pen.ColorR > kMostChannel || pen.ColorG > kMostChannel || pen.ColorB > kMostChannel)
        return QColor();
    return QColor(pen.ColorR, pen.ColorG, pen.ColorB);
}

} // namespace

MarkLayerParamForm::MarkLayerParamForm(QWidget* parent)
    : QWidget(parent)
    , ui(new Ui_MarkLayerParamForm) {
    ui->setupUi(this);
    FillTable();
    SetLimits();
    for (int i = 1; i <= kLayerCount; ++i)
        ui->comboBoxLayerIndex->addItem(QString::number(i));
    SetUIText();
    ResetLayerData();
    ResetUI();
}

MarkLayerParamForm::~MarkLayerParamForm() = default;

void MarkLayerParamForm::FillTable() {
    QTableWidget* table = ui->tableWidgetLayer;
    table->setRowCount(kLayerCount);
    table->setColumnCount(2);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->verticalHeader()->hide();
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    table->verticalHeader()->setMinimumSectionSize(kRowHeight);
    table->setColumnWidth(0, kNumberWidth);
    table->horizontalHeader()->setMinimumSectionSize(kNumberWidth);
    table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table->horizontalHeader()->setStretchLastSection(true);
    connect(table, &QTableWidget::cellClicked, table, &QTableWidget::selectRow);
    for (int row = 0; row < kLayerCount; ++row) {
        table->setRowHeight(row, kRowHeight);
        auto* number = new QTableWidgetItem(QString::asprintf("%02d", row + 1));
        number->setTextAlignment(Qt::AlignCenter);
        table->setItem(row, 0, number);
        auto* color = new QTableWidgetItem();
        color->setBackground(LayerParamEx::GetDefultColor(row));
        // The row's colour is what the cell is there for; the other cell shows the selection.
        color->setFlags(Qt::ItemIsEnabled);
        table->setItem(row, 1, color);
    }
}

void MarkLayerParamForm::SetLimits() {
    for (RealRow const& row : kRealRows) {
        QDoubleSpinBox* box = (*ui).*row.box;
        box->setRange(0.0, row.maximum);
    }
    for (IntRow const& row : kIntRows) {
        QDoubleSpinBox* box = (*ui).*row.box;
        box->setDecimals(0);
        box->setRange(row.minimum, row.maximum);
    }
    for (QDoubleSpinBox* box : findChildren<QDoubleSpinBox*>()) {
        // The wheel over the panel scrolls it and turns no parameter.
        box->setFocusPolicy(Qt::StrongFocus);
        box->installEventFilter(this);
    }
}

bool MarkLayerParamForm::eventFilter(QObject* watched, QEvent* event) {
    auto* box = qobject_cast<QDoubleSpinBox*>(watched);
    if (event->type() != QEvent::Wheel || !box || box->hasFocus())
        return QWidget::eventFilter(watched, event);
    event->ignore();
    return true;
}

void MarkLayerParamForm::SetUIText() {
    ui->tableWidgetLayer->setHorizontalHeaderLabels({text("笔号"), text("颜色")});
    ui->labelLayerIndex->setText(text("层号"));
    ui->labelColor->setText(text("颜色"));
    ui->pushButtonSetLayerColor->setText(text("编辑"));
    ui->pushButtonApply->setText(text("应用"));
    ui->pushButtonSetDefault->setText(text("设为默认参数"));
    ui->pushButtonAdvance->setText(text("高级"));
    ui->pushButtonTestGrid->setText(text("测试网格"));
    ui->checkBoxUseDefault->setText(text("使用默认参数"));
    for (RealRow const& row : kRealRows)
        ((*ui).*row.label)->setText(text(row.key));
    for (IntRow const& row : kIntRows)
        ((*ui).*row.label)->setText(text(row.key));
    const PenRows rows = PenRowsOf(PenMachine::Current());
    ui->labelPWM->setText(rows.dutyIsPulseWidth ? text("脉宽(us)") : text("占空比"));
    ui->unitPWM->setText(rows.dutyIsPulseWidth ? QString() : QStringLiteral("%"));
    ui->doubleSpinBoxPWM->setMaximum(rows.mostDuty);
}

int MarkLayerParamForm::GetWindowsHeight() const {
    QLayout const* contents = ui->scrollAreaWidgetContents->layout();
    const int needed =
        contents->hasHeightForWidth() ? contents->totalHeightForWidth(width()) : contents->totalSizeHint().height();
    return needed + ui->widgetButtons->sizeHint().height() + 2 * ui->scrollArea->frameWidth();
}

void MarkLayerParamForm::DocChange(QRulerView* doc) {
    m_pDoc = doc;
    for (int row = 0; row < kLayerCount; ++row) {
        QColor color = LayerParamEx::GetDefultColor(row);
        if (doc) {
            LayerData pen;
            doc->GetLayerParams()->GetLayerData(row, pen);
            color = colorOf(pen);
        }
        ui->tableWidgetLayer->item(row, 1)->setBackground(color);
    }
}

/// A pen that the document has as its current one is not told back: it would put all selected objects on that pen.
void MarkLayerParamForm::SetLayerIndex(int index) {
    const int pen = index < kLayerCount ? index : 0;
    QRulerView const* active = MainWindow::Instance() ? MainWindow::Instance()->GetActiveView() : nullptr;
    const bool before = EmitLayerChange;
    EmitLayerChange = before && !(active && active->GetCurrentLayer() == pen);
    ui->comboBoxLayerIndex->setCurrentIndex(pen);
    ui->tableWidgetLayer->selectRow(pen);
    EmitLayerChange = before;
}

void MarkLayerParamForm::SelectObjChanged() {
    EmitLayerChange = false;
    if (m_pDoc && m_pDoc->GetSelectedToolCnt() > 0) {
        const int layer = m_pDoc->GetToolLayer(m_pDoc->GetFirstSelectedToolIndex());
        m_pDoc->SetCurrentLayerWithOutChangeLayer(layer);
        if (layer >= 0 && layer < kLayerCount) {
            ui->tableWidgetLayer->selectRow(layer);
            ui->comboBoxLayerIndex->setCurrentIndex(layer);
        }
    }
    EmitLayerChange = true;
}

void MarkLayerParamForm::on_comboBoxLayerIndex_currentIndexChanged(int index) {
    ui->tableWidgetLayer->selectRow(index);
    ResetLayerData();
    if (EmitLayerChange && MainWindow::Instance())
        MainWindow::Instance()->LayerIndexChanged(index);
}

void MarkLayerParamForm::on_tableWidgetLayer_itemSelectionChanged() {
    const QList<QTableWidgetItem*> selected = ui->tableWidgetLayer->selectedItems();
    if (!selected.isEmpty())
        ui->comboBoxLayerIndex->setCurrentIndex(selected.first()->row());
}

LayerData* MarkLayerParamForm::Pen() const {
    const int index = ui->comboBoxLayerIndex->currentIndex();
    if (!m_pDoc || index < 0 || index >= kLayerCount)
        return nullptr;
    LayerData* pen = nullptr;
    m_pDoc->GetLayerParams()->GetLayerData(index, pen);
    return pen;
}

void MarkLayerParamForm::UpdateLayerData() {
    ShowDebugInfo::Instance()->AddShowText(QStringLiteral("Trigger"), DebugInfoTrace);
    ResetLayerData();
}

void MarkLayerParamForm::ResetLayerData() {
    LayerData const* pen = Pen();
    if (!pen)
        return;
    LayerLoaded = false;
    const bool useDefault = pen->UseDefault;
    const LayerData shown = useDefault ? LayerData::GetDefaultLayerData() : *pen;
    ui->widget->setEnabled(!useDefault);
    ui->checkBoxUseDefault->setChecked(useDefault);
    ShowSwatch();
    ShowValues(shown);
    LayerLoaded = true;
}

void MarkLayerParamForm::SetLayerData() {
    if (LayerData const* pen = Pen())
        ShowValues(*pen);
}

void MarkLayerParamForm::SetLayerDataDefault() {
    if (Pen())
        ShowValues(LayerData::GetDefaultLayerData());
}

void MarkLayerParamForm::ShowValues(LayerData const& values) {
    for (RealRow const& row : kRealRows)
        ((*ui).*row.box)->setValue(values.*row.field);
    for (IntRow const& row : kIntRows)
        ((*ui).*row.box)->setValue(values.*row.field);
    ui->doubleSpinBoxPWM->setValue(ShownDuty(values.PWM, PenMachine::Current()));
    EnableRows();
}

void MarkLayerParamForm::EnableRows() {
    const PenRows rows = PenRowsOf(PenMachine::Current());
    ui->labelPower->setEnabled(rows.powerLabel);
    ui->doubleSpinBoxPower->setEnabled(rows.power);
    ui->doubleSpinBoxFre->setEnabled(rows.frequency);
    ui->labelPWM->setEnabled(rows.dutyLabel);
    ui->doubleSpinBoxPWM->setEnabled(rows.duty);
    ui->labelWaveNumber->setEnabled(rows.wave);
    ui->doubleSpinBoxWaveNumber->setEnabled(rows.wave);
}

void MarkLayerParamForm::ResetUI() {
    const PenRows rows = PenRowsOf(PenMachine::Current());
    SetUIText();
    ui->unitFre->setText(rows.kiloHertz ? QStringLiteral("KHz") : QStringLiteral("Hz"));
    ui->labelWaveNumber->setText(rows.waveIsPulseWidth ? text("脉宽") : text("波形号"));
    QDoubleSpinBox* wave = ui->doubleSpinBoxWaveNumber;
    if (wave->value() > rows.mostWave)
        wave->setValue(0.0);
    wave->setMaximum(rows.mostWave);
    EnableRows();
}

void MarkLayerParamForm::ShowSwatch() {
    SetSwatch(ui->tableWidgetLayer->item(ui->comboBoxLayerIndex->currentIndex(), 1)->background().color());
}

void MarkLayerParamForm::SetSwatch(QColor const& color) {
    m_Swatch = color;
    ui->labelLayerColor->setStyleSheet(
        QStringLiteral("background: %1; border: 1px solid #7d8b99;").arg(color.isValid() ? color.name() : "none"));
}

void MarkLayerParamForm::on_pushButtonSetLayerColor_clicked() {
    LayerData* pen = Pen();
    if (!pen)
        return;
    QColorDialog dialog(m_Swatch, this);
    dialog.setWindowTitle(text("颜色"));
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    if (dialog.exec() != QDialog::Accepted || pen != Pen())
        return;
    const QColor color = dialog.selectedColor();
    SetSwatch(color);
    ui->tableWidgetLayer->item(ui->comboBoxLayerIndex->currentIndex(), 1)->setBackground(color);
    pen->ColorR = color.red();
    pen->ColorG = color.green();
    pen->ColorB = color.blue();
    for (QWidget* shown : m_pDoc->findChildren<QWidget*>())
        shown->update();
}

void MarkLayerParamForm::ApplyParam() {
    LayerData* pen = Pen();
    if (!pen)
        return;
    pen->UseDefault = ui->checkBoxUseDefault->isChecked();
    if (m_Swatch.isValid()) {
        pen->ColorR = m_Swatch.red();
        pen->ColorG = m_Swatch.green();
        pen->ColorB = m_Swatch.blue();
    }
    for (RealRow const& row : kRealRows)
        pen->*row.field = ((*ui).*row.box)->value();
    for (IntRow const& row : kIntRows)
        pen->*row.field = static_cast<int>(((*ui).*row.box)->value());
    pen->PWM = StoredDuty(ui->doubleSpinBoxPWM->value(), ui->doubleSpinBoxFre->value(), PenMachine::Current());
}

void MarkLayerParamForm::on_pushButtonApply_clicked() {
    if (!Pen())
        return;
    ApplyParam();
    MarkLog::Instance()->ShowNode(NoteOperator, text("层参数应用"));
}

void MarkLayerParamForm::on_pushButtonSetDefault_clicked() {
    if (!Pen())
        return;
    ApplyParam();
    LayerData::SetDefaultLatyerData(*Pen());
}

void MarkLayerParamForm::on_checkBoxUseDefault_toggled(bool on) {
    if (LayerLoaded) {
        if (!Pen())
            return;
        if (on)
            SetLayerDataDefault();
        else
            SetLayerData();
        ApplyParam();
    }
    ui->widget->setEnabled(!on);
}

void MarkLayerParamForm::on_pushButtonAdvance_clicked() {
    LayerData const* pen = Pen();
    if (!pen)
        return;
    const int index = ui->comboBoxLayerIndex->currentIndex();
    const QPointer<QRulerView> doc = m_pDoc;
    AdvanceLayerParam dialog(*pen, doc->GetLayerParams(), nullptr);
    if (dialog.exec() == QDialog::Accepted && doc)
        doc->GetLayerParams()->SetLayerData(index, dialog.Data());
}

void MarkLayerParamForm::on_pushButtonTestGrid_clicked() {
    LayerData const* pen = Pen();
    if (!pen)
        return;
    const LayerData model = pen->UseDefault ? LayerData::GetDefaultLayerData() : *pen;
    const int labelPen = ui->comboBoxLayerIndex->currentIndex();
    const QPointer<QRulerView> doc = m_pDoc;
    const QRectF field = SystemParam::Instance()->GetCanvasRect();
    const QList<int> free = tessera::FreePens(doc->GetUsedLayers(), labelPen);
    const PenMachine machine = PenMachine::Current();
    TestGridDialog dialog(free.size(), field, PenRowsOf(machine).kiloHertz, this);
    if (dialog.exec() != QDialog::Accepted || !doc)
        return;
    const tessera::GridDrawing drawing = tessera::DrawGrid(dialog.Grid(), model, free, labelPen, field);
    if (!doc->AddDrawing(drawing.squares, drawing.labels))
        return;
    for (int i = 0; i < drawing.layers.size(); ++i) {
        LayerData own = drawing.pens[i];
        LayerData before;
        doc->GetLayerParams()->GetLayerData(drawing.layers[i], before);
        own.ColorR = before.ColorR;
        own.ColorG = before.ColorG;
        own.ColorB = before.ColorB;
        own.PWM = StoredDuty(own.PWM, own.Fre, machine);
        doc->GetLayerParams()->SetLayerData(drawing.layers[i], own);
    }
    MarkLog::Instance()->ShowNode(NoteOperator, text("测试网格"));
    ResetLayerData();
}

// Nothing is applied while it is being typed; the operator presses the button for that.
void MarkLayerParamForm::on_doubleSpinBoxPWM_valueChanged(double) {}

void MarkLayerParamForm::on_doubleSpinBoxFre_valueChanged(double) {}

void MarkLayerParamForm::on_doubleSpinBoxMarkSpeed_valueChanged(double) {}

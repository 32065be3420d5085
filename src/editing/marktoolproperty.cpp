// SPDX-License-Identifier: MIT
#include "editing/marktoolproperty.h"

#include "editing/centertype.h"
#include "editing/fillparamset.h"
#include "engine/equalpos.h"
#include "engine/languagemanager.h"
#include "engine/marklog.h"
#include "engine/markshapecontainer.h"
#include "engine/marktool.h"
#include "engine/qrulerview.h"
#include "ui_marktoolproperty.h"

#include <QStringList>
#include <cmath>

namespace {

/// Angles beyond this tell that nothing is selected; below the negative one, that the objects have different angles.
constexpr double kLargestAngle = 180.0;
constexpr double kRange = 1000000.0; ///< mm, of places and sizes
constexpr char const* kSteps[] = {"10", "1", "0.1", "0.01", "0.001"};
constexpr char kFirstStep[] = "0.01";

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

/// A cleared box keeps its value, so that an empty one is written too.
void showValue(QDoubleSpinBox* box, double value) {
    if (box->cleanText().isEmpty() || !EqualDouble(box->value(), value))
        box->setValue(value);
}

} // namespace

MarkToolProperty::MarkToolProperty(QWidget* parent)
    : QWidget(parent)
    , ui(new Ui_MarkToolProperty)
    , m_pCenterType(new CenterType) {
    ui->setupUi(this);
    ui->layoutBasePoint->addWidget(m_pCenterType);
    for (QDoubleSpinBox* box : {ui->doubleSpinBoxPosX, ui->doubleSpinBoxPosY, ui->doubleSpinBoxWidth,
                                ui->doubleSpinBoxHeight, ui->doubleSpinBoxAngle}) {
        // A half-typed number is no place for an object.
        box->setKeyboardTracking(false);
        if (box == ui->doubleSpinBoxAngle)
            continue;
        box->setDecimals(3);
        box->setRange(-kRange, kRange);
    }
    ui->doubleSpinBoxAngle->setRange(-kLargestAngle, kLargestAngle);
    for (char const* step : kSteps)
        ui->comboBoxMoveDist->addItem(QLatin1String(step));
    ui->comboBoxMoveDist->setInsertPolicy(QComboBox::NoInsert);
    for (int i = 0; i < 2; ++i)
        ui->comboBoxWorkType->addItem(QString());
    SetUIText();

    const auto changed = QOverload<double>::of(&QDoubleSpinBox::valueChanged);
    connect(ui->doubleSpinBoxPosX, changed, this, &MarkToolProperty::ChangePosX);
    connect(ui->doubleSpinBoxPosY, changed, this, &MarkToolProperty::ChangePosY);
    connect(ui->doubleSpinBoxWidth, changed, this, QOverload<double>::of(&MarkToolProperty::ChangeWidth));
    connect(ui->doubleSpinBoxHeight, changed, this, &MarkToolProperty::ChangeHeight);
    connect(ui->doubleSpinBoxAngle, changed, this, &MarkToolProperty::ChangeAngle);
    connect(ui->comboBoxMoveDist, &QComboBox::currentTextChanged, this, &MarkToolProperty::MoveDistChanged);
    connect(ui->pushButtonCenter, &QPushButton::clicked, this, &MarkToolProperty::Move2Center);
    connect(m_pCenterType, &CenterType::BasePointChangedSignal, this, &MarkToolProperty::BasePointChanged);
    ui->comboBoxMoveDist->setCurrentText(QLatin1String(kFirstStep));
    SelectObjChange();
}

MarkToolProperty::~MarkToolProperty() = default;

void MarkToolProperty::SetUIText() {
    ui->labelPosX->setText(text("位置X"));
    ui->labelPosY->setText(text("位置Y"));
    ui->labelWidth->setText(text("宽度"));
    ui->labelHeight->setText(text("高度"));
    ui->labelAngle->setText(text("角度"));
    ui->checkBoxSameScale->setText(text("等比缩放"));
    ui->labelMoveDist->setText(text("对象移动当量"));
    ui->comboBoxWorkType->setItemText(0, text("不工作"));
    ui->comboBoxWorkType->setItemText(1, text("工作"));
    ui->pushButtonCenter->setText(text("居中"));
    ui->pushButtonApply->setText(text("应用<<"));
    ui->pushButtonFill->setText(text("填充设置"));
    ui->labelBasePoint->setText(text("基准点"));
}

void MarkToolProperty::SetRulerView(QRulerView* view) {
    if (view == m_pView)
        return;
    const auto slot =
        QOverload<double, double, double, double, double, int, int>::of(&MarkToolProperty::SelectObjChange);
    if (m_pView)
        disconnect(m_pView, &QRulerView::SelectChanged, this, slot);
    m_pView = view;
    if (view) {
        connect(view, &QRulerView::SelectChanged, this, slot);
        m_pCenterType->setCheck(view->GetBasePoint());
        ShowStep();
    }
    SelectObjChange();
}

/// Each document has its own step of the arrow keys.
void MarkToolProperty::ShowStep() {
    if (ui->comboBoxMoveDist->currentText().toDouble() != m_pView->GetKeyMoveDist())
        ui->comboBoxMoveDist->setCurrentText(QString::number(m_pView->GetKeyMoveDist()));
}

bool MarkToolProperty::Read(Place& place) const {
    return m_pView && m_pView->GetSelectObjPos(place.x, place.y, place.width, place.height, place.angle);
}

bool MarkToolProperty::Editable(Place& place) const {
    return Ready && Read(place);
}

void MarkToolProperty::SelectObjChange(double, double, double, double, double, int, int) {
    SelectObjChange();
}

void MarkToolProperty::SelectObjChange() {
    Ready = false;
    Place place;
    if (!m_pView)
        place.angle = 2.0 * kLargestAngle;
    if (!m_pView || Read(place))
        ShowPlace(place);
    ui->comboBoxWorkType->setCurrentIndex(m_pView ? m_pView->GetSelectObjWorkType() : -1);
    ui->pushButtonFill->setEnabled(CanFill());
    Ready = true;
}

void MarkToolProperty::ShowPlace(Place const& place) {
    const bool selected = place.angle <= kLargestAngle;
    ui->widgetContent->setEnabled(selected);
    if (!selected) {
        for (QDoubleSpinBox* box : {ui->doubleSpinBoxPosX, ui->doubleSpinBoxPosY, ui->doubleSpinBoxWidth,
                                    ui->doubleSpinBoxHeight, ui->doubleSpinBoxAngle})
            box->clear();
        return;
    }
    showValue(ui->doubleSpinBoxPosX, place.x);
    showValue(ui->doubleSpinBoxPosY, place.y);
    showValue(ui->doubleSpinBoxWidth, place.width);
    showValue(ui->doubleSpinBoxHeight, place.height);
    if (place.angle < -kLargestAngle)
        ui->doubleSpinBoxAngle->clear();
    else
        showValue(ui->doubleSpinBoxAngle, place.angle);
}

/// A group is hatched object by object, so that a selection with a group in it has no hatch of its own.
bool MarkToolProperty::CanFill() const {
    if (!m_pView)
        return false;
    const MarkShapeContainer& tools = *m_pView->GetMarkTools();
    const QList<int> selected = tools.GetSelectedIndex();
    return !selected.isEmpty() && std::none_of(selected.begin(), selected.end(), [&](int index) {
        MarkTool* tool = tools[index];
        return tool && tool->GetTool()->GetToolClassName() == QLatin1String("MarkToolCombine");
    });
}

void MarkToolProperty::BasePointChanged(BasePoint point) {
    if (!m_pView || point == m_pView->GetBasePoint())
        return;
    m_pView->SetBasePoint(point);
    SelectObjChange();
}

void MarkToolProperty::MoveDistChanged(QString const& text) {
    bool isNumber = false;
    const double step = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(step))
        return;
    if (m_pView)
        m_pView->SetKeyMoveDist(step);
    for (QDoubleSpinBox* box :
         {ui->doubleSpinBoxPosX, ui->doubleSpinBoxPosY, ui->doubleSpinBoxWidth, ui->doubleSpinBoxHeight})
        box->setSingleStep(step);
}

void MarkToolProperty::ChangePosX(double value) {
    Place now;
    if (!Editable(now) || EqualPos(now.x, value))
        return;
    m_pView->MoveSelectObjRelative(value - now.x, 0.0);
    Log("修改X坐标为", value);
}

void MarkToolProperty::ChangePosY(double value) {
    Place now;
    if (!Editable(now) || EqualPos(now.y, value))
        return;
    m_pView->MoveSelectObjRelative(0.0, value - now.y);
    Log("修改Y坐标为", value);
}

bool MarkToolProperty::ScaleWidth(double value) {
    Place now;
    if (!Editable(now) || value == now.width || value <= 0.0 || now.width <= 0.0)
        return false;
    const double ratio = value / now.width;
    m_pView->ScaleSelectedObj(ratio, ui->checkBoxSameScale->isChecked() ? ratio : 1.0, now.x, now.y);
    return true;
}

void MarkToolProperty::ChangeWidth(double value) {
    if (ScaleWidth(value))
        Log("修改宽度为", value);
}

void MarkToolProperty::ChangeWidth() {
    const double value = ui->doubleSpinBoxWidth->value();
    if (!ScaleWidth(value))
        return;
    Log("修改宽度为", value);
    const MarkShapeContainer& tools = *m_pView->GetMarkTools();
    for (int index : tools.GetSelectedIndex()) {
        if (MarkTool* tool = tools[index])
            tool->GetTool()->SetAngleChanged(false);
    }
}

void MarkToolProperty::ChangeHeight(double value) {
    Place now;
    if (!Editable(now) || value == now.height || value <= 0.0 || now.height <= 0.0)
        return;
    const double ratio = value / now.height;
    m_pView->ScaleSelectedObj(ui->checkBoxSameScale->isChecked() ? ratio : 1.0, ratio, now.x, now.y);
    Log("修改高度为", value);
}

void MarkToolProperty::ChangeAngle(double value) {
    Place now;
    if (!Editable(now) || value == now.angle)
        return;
    m_pView->ChangeSelectedObjAngle(value);
    Log("修改角度为", value);
}

void MarkToolProperty::Move2Center() {
    Place now;
    if (!Editable(now))
        return;
    m_pView->MoveSelected2Center();
    Log("居中");
}

void MarkToolProperty::on_comboBoxWorkType_currentIndexChanged(int index) {
    if (m_pView && index != m_pView->GetSelectObjWorkType())
        m_pView->SetSelectObjWorkType(index);
}

/// A size of 0 gives the factor 0, which the document takes as "unchanged" for an axis without extent.
void MarkToolProperty::on_pushButtonApply_clicked() {
    Place now;
    if (!Editable(now))
        return;
    m_pView->ScaleSelectedObj(now.width == 0.0 ? 0.0 : ui->doubleSpinBoxWidth->value() / now.width,
                              now.height == 0.0 ? 0.0 : ui->doubleSpinBoxHeight->value() / now.height, now.x, now.y);
}

void MarkToolProperty::on_pushButtonFill_clicked() {
    if (!m_pView || m_pView->GetSelectedToolCnt() == 0)
        return;
    const MarkShapeContainer& tools = *m_pView->GetMarkTools();
    const int base = tools.GetBaseSelectedIndex();
    const bool first = base < 0 || tools.GetSelectedToolCnt() == 1;
    MarkTool* tool = tools[first ? tools.GetFirstSelectedIndex() : base];
    if (!tool)
        return;
    bool edge = false;
    bool fillFirst = false;
    bool simple = false;
    const QVector<FillParam> fills = tool->GetFillParam(edge, fillFirst, simple);
    FillParamSet dialog(fills, edge, fillFirst, simple, this);
    if (dialog.exec() == QDialog::Accepted && m_pView)
        m_pView->FillSelectedObj(dialog.Fills, dialog.EnableEdge, dialog.MarkFillFirst, dialog.ShowSimple);
}

void MarkToolProperty::Log(char const* key) const {
    LogText(text(key));
}

void MarkToolProperty::Log(char const* key, double value) const {
    LogText(text(key) + QString::number(value, 'f', 3));
}

void MarkToolProperty::LogText(QString const& what) const {
    QStringList indices;
    for (int index : m_pView->GetMarkTools()->GetSelectedIndex())
        indices.append(QString::number(index));
    MarkLog::Instance()->ShowNode(NoteParamEdit, text("工具") + indices.join(QLatin1Char(',')) + what);
}

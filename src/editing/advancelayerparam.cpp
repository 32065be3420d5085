// SPDX-License-Identifier: MIT
#include "editing/advancelayerparam.h"

#include "editing/editpower.h"
#include "editing/listpfedit.h"
#include "editing/powercurve.h"
#include "engine/languagemanager.h"
#include "engine/systemparam.h"

#include <QApplication>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QTabWidget>

namespace {

constexpr int kHeight = 620; ///< px
constexpr int kWidth = 1000; ///< px
constexpr int kTouch = 40;   ///< px, height of what a finger presses
constexpr int kButtonWidth = 110;
constexpr int kBoxWidth = 240;
constexpr int kGap = 8;
constexpr int kMostDelay = 1000000000; ///< us
constexpr double kMostLength = 1.0e9;  ///< mm or ms
constexpr double kMicrosPerMilli = 1000.0;
constexpr double kLeastPointTime = 1.0; ///< ms
constexpr double kLeastWobble = 0.01;   ///< mm
constexpr double kMostWobble = 100.0;   ///< mm

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

} // namespace

bool AdvanceLayerParam::HasCurves() {
    const int mode = SystemParam::Instance()->GetWorkMode();
    return mode == 0 || (mode >= 2 && SystemParam::Instance()->EnableWaveForm());
}

AdvanceLayerParam::AdvanceLayerParam(LayerData const& pen, LayerParamEx const*, QWidget* parent)
    : QDialog(parent)
    , m_Data(pen)
    , m_pTabs(new QTabWidget(this))
    , m_pConfirm(new QPushButton(text("确认"), this))
    , m_pCancel(new QPushButton(text("取消"), this)) {
    setObjectName(QStringLiteral("AdvanceLayerParam"));
    setWindowTitle(text("高级层参数设置"));
    m_Data.WobbleDiameter = qBound(kLeastWobble, m_Data.WobbleDiameter, kMostWobble);
    m_Data.WobbleSpacing = qBound(kLeastWobble, m_Data.WobbleSpacing, kMostWobble);
    m_pTabs->setObjectName(QStringLiteral("tabWidget"));
    m_pConfirm->setObjectName(QStringLiteral("pushButtonConfirm"));
    m_pCancel->setObjectName(QStringLiteral("pushButtonCancel"));
    AddBasicTab();
    if (HasCurves()) {
        m_PointCurve = AddCurveTab(false, m_Data.PointWaveEnable != 0, false, m_Data.PointWave.data(), "单点波形");
        m_LineCurve =
            AddCurveTab(true, m_Data.LineWaveEnable != 0, m_Data.LineWaveFlag != 0, m_Data.LineWave.data(), "直线波形");
    }
    connect(m_pConfirm, &QPushButton::clicked, this, &AdvanceLayerParam::pushBtnClicked);
    connect(m_pCancel, &QPushButton::clicked, this, &AdvanceLayerParam::pushBtnClicked);
    connect(m_pTabs, &QTabWidget::currentChanged, this, &AdvanceLayerParam::tabPageChanged);
    connect(this, &QDialog::accepted, this, &AdvanceLayerParam::on_AdvanceLayerParam_accepted);
    // A panel of 600 lines has no room for the whole height, and the buttons are at its end.
    const QRect screen = QApplication::primaryScreen()->geometry();
    setFixedHeight(qMin(kHeight, screen.height()));
    resize(qMin(kWidth, screen.width()), height());
}

QSpinBox* AdvanceLayerParam::AddDelay(QFormLayout* form, char const* key, char const* name, int value) {
    auto* box = new QSpinBox;
    box->setObjectName(QLatin1String(name));
    box->setMaximum(kMostDelay);
    box->setValue(value);
    box->setSuffix(QStringLiteral(" µs"));
    box->setMinimumSize(kBoxWidth, kTouch);
    auto* label = new QLabel(text(key));
    label->setMinimumHeight(kTouch);
    form->addRow(label, box);
    return box;
}

QDoubleSpinBox* AdvanceLayerParam::AddLength(QFormLayout* form, char const* key, char const* unit, char const* name) {
    auto* box = new QDoubleSpinBox;
    box->setObjectName(QLatin1String(name));
    box->setSuffix(QLatin1Char(' ') + QLatin1String(unit));
    box->setMinimumSize(kBoxWidth, kTouch);
    auto* label = new QLabel(text(key));
    label->setMinimumHeight(kTouch);
    form->addRow(label, box);
    return box;
}

void AdvanceLayerParam::AddBasicTab() {
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    form->setHorizontalSpacing(3 * kGap);
    form->setVerticalSpacing(kGap);
    m_pMaxJumpDelay = AddDelay(form, "最大跳转延时", "spinBoxMaxJumpDelay", m_Data.MaxJumpDelay);
    m_pMinJumpDelay = AddDelay(form, "最小跳转延时", "spinBoxMinJumpDelay", m_Data.MinJumpDelay);
    m_pMarkDelay = AddDelay(form, "打标延时", "spinBoxMarkDelay", m_Data.MarkDelay);
    m_pMaxJumpDelayDist = AddLength(form, "最大跳转延时距离", "mm", "doubleSpinBoxMaxJumpDelayDist");
    m_pMaxJumpDelayDist->setDecimals(3);
    m_pMaxJumpDelayDist->setMaximum(kMostLength);
    m_pMaxJumpDelayDist->setValue(m_Data.MaxJumpDelayDist);
    m_pPointTime = AddLength(form, "单点时间", "ms", "doubleSpinBoxPointTime");
    m_pPointTime->setDecimals(3);
    m_pPointTime->setRange(kLeastPointTime, kMostLength);
    if (m_Data.PointTime <= 0)
        m_Data.PointTime = static_cast<int>(kLeastPointTime * kMicrosPerMilli);
    m_pPointTime->setValue(m_Data.PointTime / kMicrosPerMilli);
    m_pWobble = new QCheckBox(text("抖动"));
    m_pWobble->setObjectName(QStringLiteral("checkBoxWobbleEnable"));
    m_pWobble->setMinimumHeight(kTouch);
    form->addRow(QString(), m_pWobble);
    m_pWobbleDiameter = AddLength(form, "抖动直径", "mm", "doubleSpinBoxWobbleDiameter");
    m_pWobbleDiameter->setRange(kLeastWobble, kMostWobble);
    m_pWobbleDiameter->setValue(m_Data.WobbleDiameter);
    m_pWobbleSpacing = AddLength(form, "抖动间距", "mm", "doubleSpinBoxWobbleSpacing");
    m_pWobbleSpacing->setRange(kLeastWobble, kMostWobble);
    m_pWobbleSpacing->setValue(m_Data.WobbleSpacing);
    for (QWidget* box : {m_pWobbleDiameter, m_pWobbleSpacing}) {
        connect(m_pWobble, &QCheckBox::toggled, box, &QWidget::setEnabled);
        box->setEnabled(m_Data.WobbleEnable);
    }
    m_pWobble->setChecked(m_Data.WobbleEnable);
    m_pTabs->addTab(page, text("基本参数"));
}

AdvanceLayerParam::Curve AdvanceLayerParam::AddCurveTab(bool isLine, bool enable, bool xIsDistance,
                                                        QPointF const* points, char const* key) {
    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    layout->setContentsMargins(kGap / 2, kGap / 2, kGap / 2, kGap / 2);
    const Curve curve{new ListPFEdit(isLine, enable, xIsDistance, points, page), new EditPower(isLine, points, page)};
    curve.table->setObjectName(isLine ? QStringLiteral("listLine") : QStringLiteral("listPoint"));
    curve.drawing->setObjectName(isLine ? QStringLiteral("powerLine") : QStringLiteral("powerPoint"));
    curve.drawing->SetPFEdit(curve.table);
    layout->addWidget(curve.table);
    layout->addWidget(curve.drawing, 1);
    m_pTabs->addTab(page, text(key));
    return curve;
}

void AdvanceLayerParam::resizeEvent(QResizeEvent* event) {
    if (event)
        QDialog::resizeEvent(event);
    const int buttons = height() - kTouch - kGap;
    m_pTabs->setGeometry(kGap, kGap, width() - 2 * kGap, buttons - 2 * kGap);
    m_pCancel->setGeometry(width() - kGap - kButtonWidth, buttons, kButtonWidth, kTouch);
    m_pConfirm->setGeometry(width() - 2 * (kGap + kButtonWidth), buttons, kButtonWidth, kTouch);
}

void AdvanceLayerParam::tabPageChanged(int) {
    resizeEvent(nullptr);
}

void AdvanceLayerParam::on_AdvanceLayerParam_accepted() {}

void AdvanceLayerParam::pushBtnClicked() {
    if (sender() == m_pCancel) {
        reject();
    } else if (sender() == m_pConfirm) {
        Store();
        accept();
    }
}

void AdvanceLayerParam::Store() {
    m_Data.MaxJumpDelay = m_pMaxJumpDelay->value();
    m_Data.MinJumpDelay = m_pMinJumpDelay->value();
    m_Data.MarkDelay = m_pMarkDelay->value();
    m_Data.MaxJumpDelayDist = m_pMaxJumpDelayDist->value();
    m_Data.PointTime = static_cast<int>(m_pPointTime->value() * kMicrosPerMilli);
    bool enable = false;
    bool xIsDistance = false;
    if (m_PointCurve.table) {
        tessera::takeCurve(m_PointCurve.drawing->GetPower(), m_Data.PointWave);
        m_PointCurve.table->GetPowerStatus(enable, xIsDistance);
        m_Data.PointWaveEnable = enable ? 1 : 0;
    }
    if (m_LineCurve.table) {
        tessera::takeCurve(m_LineCurve.drawing->GetPower(), m_Data.LineWave);
        m_LineCurve.table->GetPowerStatus(enable, xIsDistance);
        m_Data.LineWaveEnable = enable ? 1 : 0;
        m_Data.LineWaveFlag = xIsDistance ? 1 : 0;
    }
    m_Data.WobbleEnable = m_pWobble->isChecked();
    m_Data.WobbleDiameter = m_pWobbleDiameter->value();
    m_Data.WobbleSpacing = m_pWobbleSpacing->value();
}

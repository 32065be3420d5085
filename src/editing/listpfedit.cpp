// SPDX-License-Identifier: MIT
#include "editing/listpfedit.h"

#include "engine/languagemanager.h"
#include "engine/layerdata.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>

namespace {

constexpr int kBlocks = 2;
constexpr int kRows = kWavePointCount / kBlocks; ///< in a block
constexpr double kMaxX = 100000.0;               ///< ms or mm
constexpr double kMaxPower = 100.0;              ///< percent
constexpr int kRowHeight = 40;                   ///< px, where the height allows it
constexpr int kHeadHeight = 24;                  ///< px, a line of headings
constexpr int kGap = 6;                          ///< px
constexpr int kLabelWidth = 34;                  ///< px, the row numbers
constexpr int kLeastWidth = 470;                 ///< px, so that no value is cut off

QString text(char const* key) {
    return LanguageManager::GetLanText(key);
}

} // namespace

ListPFEdit::ListPFEdit(bool isLine, bool enable, bool xIsDistance, QPointF const* curve, QWidget* parent)
    : QWidget(parent)
    , m_pEnable(new QCheckBox(this))
    , m_pXIsDistance(new QCheckBox(this))
    , IsLine(isLine)
    , Enable(enable)
    , XIsDistance(xIsDistance) {
    m_pEnable->setObjectName(QStringLiteral("checkBoxEnable"));
    m_pEnable->setChecked(enable);
    m_pXIsDistance->setObjectName(QStringLiteral("checkBoxXIsDistance"));
    m_pXIsDistance->setChecked(xIsDistance);
    m_pXIsDistance->setVisible(isLine);
    for (QCheckBox* box : {m_pEnable, m_pXIsDistance})
        connect(box, &QCheckBox::stateChanged, this, &ListPFEdit::CheckBoxStateChanged);
    for (int i = 0; i < kBlocks; ++i)
        m_Headings.append({AddLabel(), AddLabel(), AddLabel(), AddLabel()});
    for (int i = 0; i < kWavePointCount; ++i) {
        m_Points.append(curve[i]);
        QLabel* number = AddLabel();
        number->setText(QString::asprintf("%02d", i + 1));
        m_RowLabels.append(number);
        m_XBoxes.append(AddBox('X', i, kMaxX, curve[i].x()));
        m_YBoxes.append(AddBox('Y', i, kMaxPower, curve[i].y()));
    }
    setMinimumWidth(kLeastWidth);
    SetUIText();
    Ready = true;
}

QLabel* ListPFEdit::AddLabel() {
    auto* label = new QLabel(this);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

QDoubleSpinBox* ListPFEdit::AddBox(char axis, int row, double maximum, double value) {
    auto* box = new QDoubleSpinBox(this);
    box->setObjectName(QStringLiteral("doubleSpinBox%1%2").arg(QLatin1Char(axis)).arg(row));
    box->setRange(0.0, maximum);
    box->setValue(value);
    connect(box, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &ListPFEdit::EditPowerChanged);
    return box;
}

void ListPFEdit::SetUIText() {
    m_pEnable->setText(text(IsLine ? "使能直线波形" : "使能单点波形"));
    m_pXIsDistance->setText(text("X轴是否是距离"));
    char const* const halves[kBlocks] = {"渐进", "渐出"};
    for (int i = 0; i < kBlocks; ++i) {
        Heading const& heading = m_Headings[i];
        heading.half->setText(IsLine ? text(halves[i]) : QString());
        heading.row->setText(text("编号"));
        heading.x->setText(IsLine && XIsDistance ? text("距离") + QStringLiteral(" mm")
                                                 : text("时间") + QStringLiteral(" ms"));
        heading.y->setText(text("功率") + QStringLiteral(" (%)"));
    }
    if (IsLine) {
        for (int i = 0; i < kBlocks; ++i)
            m_RowLabels[i * kRows]->setText(text("起始"));
    }
}

void ListPFEdit::GetPowerStatus(bool& enable, bool& xIsDistance) const {
    enable = Enable;
    xIsDistance = XIsDistance;
}

void ListPFEdit::CheckBoxStateChanged(int) {
    Enable = m_pEnable->isChecked();
    XIsDistance = m_pXIsDistance->isChecked();
    SetUIText();
}

void ListPFEdit::EditPowerChanged(double value) {
    if (!Ready)
        return;
    auto* box = qobject_cast<QDoubleSpinBox*>(sender());
    if (const int row = m_XBoxes.indexOf(box); row >= 0)
        m_Points[row].setX(value);
    else if (const int power = m_YBoxes.indexOf(box); power >= 0)
        m_Points[power].setY(value);
    emit PowerChanged(m_Points);
}

void ListPFEdit::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    SetUIPos();
}

/// Two blocks of ten rows side by side, so that a row is as high as a finger needs.
void ListPFEdit::SetUIPos() {
    const int half = width() / 2;
    m_pEnable->setGeometry(kGap, 0, half - kGap, 36);
    m_pXIsDistance->setGeometry(half, 0, half - kGap, 36);
    const int top = 36 + (IsLine ? kHeadHeight : 0);
    const int rows = top + kHeadHeight;
    const int pitch = qBound(20, (height() - rows) / kRows, kRowHeight + 2);
    const int block = (width() - kGap) / kBlocks;
    const int boxWidth = (block - kLabelWidth - 3 * kGap) / 2;
    for (int i = 0; i < kBlocks; ++i) {
        const int left = kGap + i * block;
        const int x = left + kLabelWidth + kGap;
        const int y = x + boxWidth + kGap;
        Heading const& heading = m_Headings[i];
        heading.half->setGeometry(left, 36, block - kGap, IsLine ? kHeadHeight : 0);
        heading.row->setGeometry(left, top, kLabelWidth, kHeadHeight);
        heading.x->setGeometry(x, top, boxWidth, kHeadHeight);
        heading.y->setGeometry(y, top, boxWidth, kHeadHeight);
        for (int row = 0; row < kRows; ++row) {
            const int index = i * kRows + row;
            const int at = rows + row * pitch;
            m_RowLabels[index]->setGeometry(left, at, kLabelWidth, pitch - 2);
            m_XBoxes[index]->setGeometry(x, at, boxWidth, pitch - 2);
            m_YBoxes[index]->setGeometry(y, at, boxWidth, pitch - 2);
        }
    }
}

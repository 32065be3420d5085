// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/headwindow.h"

#include "engine/languagemanager.h"
#include "simengine/card/headmap.h"
#include "simengine/panel/panelparts.h"
#include "simengine/panel/paneltexts.h"

#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace sim {

namespace {

/// How a value is shown: shares in percent, noise in micrometres.
struct Field {
    double SimHeadDistortion::*value;
    const char* key;
    double unit; ///< shown times this
    const char* suffix;
    int decimals;
    double step; ///< as shown
};

constexpr Field kFields[] = {
    {&SimHeadDistortion::scaleX, "X比例", 1.0, "", 5, 0.001},
    {&SimHeadDistortion::scaleY, "Y比例", 1.0, "", 5, 0.001},
    {&SimHeadDistortion::rotation, "旋转", 1.0, " °", 4, 0.1},
    {&SimHeadDistortion::skew, "Y轴倾斜", 1.0, " °", 4, 0.1},
    {&SimHeadDistortion::offsetX, "X偏移量", 1.0, " mm", 4, 0.1},
    {&SimHeadDistortion::offsetY, "Y偏移量", 1.0, " mm", 4, 0.1},
    {&SimHeadDistortion::barrel, "桶形", 100.0, " %", 3, 0.5},
    {&SimHeadDistortion::trapezoidX, "X梯形", 100.0, " %", 3, 0.5},
    {&SimHeadDistortion::trapezoidY, "Y梯形", 100.0, " %", 3, 0.5},
    {&SimHeadDistortion::noise, "噪声", 1000.0, " µm", 2, 1.0},
    {&SimHeadDistortion::seed, "随机种子", 1.0, "", 0, 1.0},
    {&SimHeadDistortion::pilotScaleX, "红光X比例", 1.0, "", 5, 0.001},
    {&SimHeadDistortion::pilotScaleY, "红光Y比例", 1.0, "", 5, 0.001},
    {&SimHeadDistortion::pilotOffsetX, "红光X偏移量", 1.0, " mm", 4, 0.1},
    {&SimHeadDistortion::pilotOffsetY, "红光Y偏移量", 1.0, " mm", 4, 0.1},
};

const char* keyOf(const HeadValueRow& row) {
    for (const Field& field : kFields) {
        if (field.value == row.value)
            return field.key;
    }
    return "";
}

const HeadValueRow& limitsOf(const Field& field) {
    int i = 0;
    while (i + 1 < kHeadValueCount && kHeadValueRows[i].value != field.value)
        ++i;
    return kHeadValueRows[i];
}

} // namespace

HeadWindow::HeadWindow(SimControl& machine, QWidget* parent)
    : QDialog(parent)
    , m_machine(machine) {
    setObjectName(QStringLiteral("headWindow"));
    auto* column = new QVBoxLayout(this);
    auto* grid = new QGridLayout();
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(6);
    constexpr int kRows = (static_cast<int>(std::size(kFields)) + 1) / 2;
    for (int i = 0; i < static_cast<int>(std::size(kFields)); ++i) {
        const Field& field = kFields[i];
        const HeadValueRow& limits = limitsOf(field);
        auto* name = new QLabel(this);
        auto* box = new QDoubleSpinBox(this);
        box->setObjectName(QLatin1String(limits.name));
        box->setMinimumHeight(40);
        box->setMinimumWidth(150);
        box->setDecimals(field.decimals);
        box->setRange(limits.low * field.unit, limits.high * field.unit);
        box->setSingleStep(field.step);
        box->setSuffix(QString::fromUtf8(field.suffix));
        grid->addWidget(name, i % kRows, i / kRows * 2);
        grid->addWidget(box, i % kRows, i / kRows * 2 + 1);
        m_names.append(name);
        m_fields.append(box);
    }
    m_table = new QLabel(this);
    m_table->setObjectName(QStringLiteral("gridCorrection"));
    grid->addWidget(m_table, kRows - 1, 2, 1, 2);
    column->addLayout(grid);
    m_message = new QLabel(this);
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setWordWrap(true);
    column->addWidget(m_message);
    column->addWidget(makeButtons());
    setTexts();
    takeValues();
}

QWidget* HeadWindow::makeButtons() {
    auto* box = new QWidget(this);
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    m_ideal = panelButton(QStringLiteral("idealHead"), box);
    m_measure = panelButton(QStringLiteral("measureHead"), box);
    m_apply = panelButton(QStringLiteral("applyHead"), box);
    row->addWidget(m_ideal);
    row->addWidget(m_measure);
    row->addStretch(1);
    m_close = panelButton(QStringLiteral("closeHead"), box);
    row->addWidget(m_apply);
    row->addWidget(m_close);
    connect(m_ideal, &QPushButton::clicked, this, [this] { apply({}); });
    connect(m_apply, &QPushButton::clicked, this, [this] { apply(values()); });
    connect(m_measure, &QPushButton::clicked, this, &HeadWindow::askMeasure);
    connect(m_close, &QPushButton::clicked, this, &QDialog::close);
    return box;
}

void HeadWindow::setTexts() {
    setWindowTitle(LanguageManager::GetLanText("振镜模型"));
    for (int i = 0; i < m_names.size(); ++i)
        m_names[i]->setText(LanguageManager::GetLanText(kFields[i].key));
    m_ideal->setText(LanguageManager::GetLanText("理想振镜"));
    m_measure->setText(LanguageManager::GetLanText("测量十字"));
    m_apply->setText(LanguageManager::GetLanText("应用"));
    m_close->setText(LanguageManager::GetLanText("关闭"));
}

SimHeadDistortion HeadWindow::values() const {
    SimHeadDistortion head = m_machines;
    for (int i = 0; i < m_fields.size(); ++i) {
        if (m_fields[i]->value() != m_shown[i])
            head.*kFields[i].value = m_fields[i]->value() / kFields[i].unit;
    }
    return head;
}

void HeadWindow::showValues(const SimHeadDistortion& head) {
    m_machines = head;
    m_shown.clear();
    for (int i = 0; i < m_fields.size(); ++i) {
        m_fields[i]->setValue(head.*kFields[i].value * kFields[i].unit);
        m_shown.append(m_fields[i]->value());
    }
}

void HeadWindow::takeValues() {
    SimHeadDistortion head;
    std::string error;
    m_machine.head(head, error);
    showValues(head);
    m_table->setText(
        LanguageManager::GetLanText(m_machine.state().gridCorrection ? "高精度校正已生效" : "高精度校正未生效"));
    tell(QString(), false);
}

void HeadWindow::apply(const SimHeadDistortion& head) {
    std::string reason;
    const SimOutcome outcome = m_machine.setHead(head, reason);
    if (outcome != SimOutcome::Done) {
        QString text = outcomeText(outcome, "");
        if (const HeadValueRow* row = invalidHeadValue(head))
            text.prepend(LanguageManager::GetLanText(keyOf(*row)) + QStringLiteral(": "));
        tell(text, true);
        return;
    }
    takeValues();
    tell(LanguageManager::GetLanText("已应用,下一任务生效"), false);
}

void HeadWindow::measureInto(const QString& file) {
    std::string reason;
    const SimOutcome outcome = m_machine.measureHead(file.toStdString(), reason);
    const bool done = outcome == SimOutcome::Done;
    tell(done ? file : outcomeText(outcome, "没有可测量的十字或标记点"), !done);
}

void HeadWindow::askMeasure() {
    const QString file = QFileDialog::getSaveFileName(this, LanguageManager::GetLanText("测量十字"),
                                                      QStringLiteral("measured.txt"), QStringLiteral("TXT (*.txt)"));
    if (!file.isEmpty())
        measureInto(file);
}

void HeadWindow::tell(const QString& text, bool bad) {
    m_message->setText(text);
    m_message->setProperty("bad", bad);
    m_message->style()->unpolish(m_message);
    m_message->style()->polish(m_message);
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/codedialog.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/document/codemessage.h"
#include "simengine/document/variablestore.h"
#include "simengine/view/textpreview.h"
#include "simengine/view/variablebar.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>

namespace sim {

namespace {

/// Kind and size of the code that was placed last, for the next one.
CodeSpec& lastKind() {
    static CodeSpec kind;
    return kind;
}

QSpinBox* makeCount(const char* name, int least, int most, QWidget* parent) {
    auto* box = new QSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setRange(least, most);
    return box;
}

/// Modules, their width and the quiet zone: what a reader has to resolve.
QString moduleText(const MadeCode& made) {
    return QStringLiteral("%1 × %2, %3 mm").arg(made.columns).arg(made.rows).arg(made.module, 0, 'f', 3);
}

} // namespace

CodeDialog::CodeDialog(QWidget* parent)
    : PreviewDialog("绘制条码", "CodeDialog", parent) {
    build();
    CodeSpec spec = lastKind();
    spec.text.clear();
    spec.variables = false;
    fill(spec);
}

CodeDialog::CodeDialog(const CodeSpec& spec, QWidget* parent)
    : PreviewDialog("编辑条码", "CodeDialog", parent) {
    build();
    fill(spec);
    m_text->selectAll();
}

void CodeDialog::build() {
    PreviewDialog::build(buildLeft(), buildRight());
}

QVBoxLayout* CodeDialog::buildLeft() {
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    addText(*column, "plainTextEditCode", "输入条码内容");
    auto* grid = new QGridLayout;
    fillGrid(*grid);
    column->addLayout(grid);
    column->addStretch(1);
    connect(m_kind, qOverload<int>(&QComboBox::currentIndexChanged), this, &CodeDialog::kindChosen);
    for (QComboBox* box : {m_marking, m_sizing, m_level})
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, &CodeDialog::changed);
    for (QDoubleSpinBox* box : {m_module, m_width, m_barHeight})
        connect(box, qOverload<double>(&QDoubleSpinBox::valueChanged), this, &CodeDialog::changed);
    for (QSpinBox* box : {m_size, m_quietZone, m_lines})
        connect(box, qOverload<int>(&QSpinBox::valueChanged), this, &CodeDialog::changed);
    connect(m_invert, &QCheckBox::toggled, this, &CodeDialog::changed);
    return column;
}

void CodeDialog::fillGrid(QGridLayout& grid) {
    const auto lan = [](const char* key) { return LanguageManager::GetLanText(key); };
    m_kind = makeChoice("comboBoxSymbology", {"Code 128", "EAN-13", "EAN-8", "QR", "Data Matrix"});
    m_marking =
        makeChoice("comboBoxMarking", {LanguageManager::GetLanText("轮廓填充"), LanguageManager::GetLanText("线条"),
                                       LanguageManager::GetLanText("点阵")});
    m_sizing = makeChoice("comboBoxSizing",
                          {LanguageManager::GetLanText("按模块宽度"), LanguageManager::GetLanText("按总宽度")});
    m_module = makeNumber("doubleSpinBoxModule", 3, kLeastModule, kMostModule, 0.05);
    m_width = makeNumber("doubleSpinBoxWidth", 3, kLeastCodeSize, kMostCodeSize, 1.0);
    m_barHeight = makeNumber("doubleSpinBoxBarHeight", 3, kLeastCodeSize, kMostCodeSize, 1.0);
    m_level = makeChoice("comboBoxLevel", {lan("自动"), "L 7%", "M 15%", "Q 25%", "H 30%"});
    m_size = makeCount("spinBoxSize", 0, kQrVersions, this);
    m_size->setSpecialValueText(LanguageManager::GetLanText("自动"));
    m_quietZone = makeCount("spinBoxQuietZone", 0, kMostQuietZone, this);
    m_lines = makeCount("spinBoxLines", 1, kMostLinesPerModule, this);
    m_invert = new QCheckBox(LanguageManager::GetLanText("反色"), this);
    m_invert->setObjectName(QStringLiteral("checkBoxInvert"));
    grid.setHorizontalSpacing(8);
    grid.setVerticalSpacing(6);
    const auto put = [&](int row, int pair, const char* key, QWidget* field) {
        auto* label = new QLabel(LanguageManager::GetLanText(key), this);
        label->setBuddy(field);
        grid.addWidget(label, row, 2 * pair);
        grid.addWidget(field, row, 2 * pair + 1);
        grid.setColumnStretch(2 * pair + 1, 1);
        field->setMinimumHeight(kTouchHeight);
    };
    put(0, 0, "条码类型", m_kind);
    put(0, 1, "打标方式", m_marking);
    put(1, 0, "尺寸方式", m_sizing);
    put(1, 1, "每模块线数", m_lines);
    put(2, 0, "模块宽度(mm)", m_module);
    put(2, 1, "总宽度(mm)", m_width);
    put(3, 0, "条高(mm)", m_barHeight);
    put(3, 1, "静区(模块)", m_quietZone);
    put(4, 0, "纠错等级", m_level);
    put(4, 1, "规格", m_size);
    grid.addWidget(m_invert, 5, 1);
}

QVBoxLayout* CodeDialog::buildRight() {
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    m_preview = new TextPreview(this);
    m_preview->setObjectName(QStringLiteral("codePreview"));
    column->addWidget(m_preview, 1);
    m_message = makeMessage();
    m_message->setMinimumHeight(kTouchHeight);
    column->addWidget(m_message);
    addButtons(*column);
    return column;
}

void CodeDialog::fill(const CodeSpec& spec) {
    m_opened = spec;
    m_text->setPlainText(spec.text);
    m_variables->setOn(spec.variables);
    m_kind->setCurrentIndex(static_cast<int>(spec.symbology));
    m_marking->setCurrentIndex(static_cast<int>(spec.marking));
    m_sizing->setCurrentIndex(spec.fitted ? 1 : 0);
    m_module->setValue(spec.module);
    m_width->setValue(spec.width);
    m_barHeight->setValue(spec.barHeight);
    m_level->setCurrentIndex(spec.errorLevel);
    m_size->setValue(spec.size);
    m_quietZone->setValue(spec.quietZone);
    m_lines->setValue(spec.linesPerModule);
    m_invert->setChecked(spec.invert);
    m_text->setFocus();
    enableFields();
    refresh();
}

/// Another kind begins with the quiet zone that its standard asks for and without the other's options.
void CodeDialog::kindChosen() {
    const auto kind = static_cast<Symbology>(m_kind->currentIndex());
    m_quietZone->setValue(usualQuietZone(kind));
    m_size->setValue(0);
    m_level->setCurrentIndex(0);
    if (!isMatrix(kind) && m_marking->currentIndex() == static_cast<int>(CodeMarking::Dots))
        m_marking->setCurrentIndex(static_cast<int>(CodeMarking::Outline));
    changed();
}

void CodeDialog::enableFields() {
    const auto kind = static_cast<Symbology>(m_kind->currentIndex());
    const bool fitted = m_sizing->currentIndex() == 1;
    m_module->setEnabled(!fitted);
    m_width->setEnabled(fitted);
    m_barHeight->setEnabled(!isMatrix(kind));
    m_level->setEnabled(kind == Symbology::Qr);
    m_size->setEnabled(isMatrix(kind));
    m_size->setMaximum(kind == Symbology::DataMatrix ? kDataMatrixSizes : kQrVersions);
    m_lines->setEnabled(m_marking->currentIndex() == static_cast<int>(CodeMarking::Lines));
}

void CodeDialog::changed() {
    enableFields();
    PreviewDialog::changed();
}

CodeSpec CodeDialog::spec() const {
    CodeSpec spec;
    spec.text = m_text->toPlainText();
    spec.variables = m_variables->isOn();
    spec.symbology = static_cast<Symbology>(m_kind->currentIndex());
    spec.marking = static_cast<CodeMarking>(m_marking->currentIndex());
    spec.fitted = m_sizing->currentIndex() == 1;
    spec.module = valueOf(m_module, m_opened.module);
    spec.width = valueOf(m_width, m_opened.width);
    spec.barHeight = valueOf(m_barHeight, m_opened.barHeight);
    spec.errorLevel = m_level->currentIndex();
    spec.size = m_size->value();
    spec.quietZone = m_quietZone->value();
    spec.linesPerModule = m_lines->value();
    spec.invert = m_invert->isChecked();
    return spec;
}

bool CodeDialog::refresh() {
    m_delay.stop();
    const CodeSpec now = spec();
    VariableProblem problem;
    const QString content = now.variables ? variableText(now.text, problem) : now.text;
    const MadeCode made = problem.ok() ? makeCode(now, content) : MadeCode();
    const bool good = problem.ok() && made.ok();
    m_preview->setCode(good ? made.shape : CodeShape(), made.module);
    QString told = problem.ok() ? codeMessage(made) : variableMessage(problem);
    if (good)
        told = now.variables ? QStringLiteral("%1\n%2").arg(moduleText(made), content.left(60)) : moduleText(made);
    m_message->setText(told);
    m_ok->setEnabled(good);
    return good;
}

void CodeDialog::keep() {
    lastKind() = spec();
}

} // namespace sim

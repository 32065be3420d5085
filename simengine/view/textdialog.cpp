// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/textdialog.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/document/strokefonts.h"
#include "simengine/document/textmessage.h"
#include "simengine/document/variablestore.h"
#include "simengine/view/fontdelegate.h"
#include "simengine/view/fontlistmodel.h"
#include "simengine/view/textpreview.h"
#include "simengine/view/userfonts.h"
#include "simengine/view/variablebar.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

namespace sim {

namespace {

/// Font and size of the text that was placed last, for the next one.
TextSpec& lastStyle() {
    static TextSpec style = [] {
        TextSpec plain;
        plain.family = QLatin1String(strokeFonts().front().name);
        return plain;
    }();
    return style;
}

QStringList texts(std::initializer_list<const char*> keys) {
    QStringList list;
    for (const char* key : keys)
        list << LanguageManager::GetLanText(key);
    return list;
}

} // namespace

TextDialog::TextDialog(QWidget* parent)
    : PreviewDialog("绘制文字", "TextDialog", parent) {
    build();
    TextSpec spec = lastStyle();
    spec.text.clear();
    spec.variables = false;
    fill(spec);
}

TextDialog::TextDialog(const TextSpec& spec, QWidget* parent)
    : PreviewDialog("编辑文字", "TextDialog", parent) {
    build();
    fill(spec);
    m_text->selectAll();
}

void TextDialog::build() {
    registerNewFonts();
    PreviewDialog::build(buildLeft(), buildRight());
}

QVBoxLayout* TextDialog::buildLeft() {
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    addText(*column, "plainTextEditText", "输入文字,可以多行");
    m_height = makeNumber("doubleSpinBoxHeight", 3, kLeastTextHeight, kMostTextHeight, 0.5);
    m_letterSpacing = makeNumber("doubleSpinBoxLetterSpacing", 3, -kMostLetterSpacing, kMostLetterSpacing, 0.1);
    m_lineSpacing = makeNumber("doubleSpinBoxLineSpacing", 2, kLeastLineSpacing, kMostLineSpacing, 0.1);
    m_align = makeChoice("comboBoxAlign", texts({"左对齐", "居中", "右对齐"}));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(6);
    const auto put = [&](int row, int pair, const char* key, QWidget* field) {
        grid->addWidget(new QLabel(LanguageManager::GetLanText(key), this), row, 2 * pair);
        grid->addWidget(field, row, 2 * pair + 1);
        grid->setColumnStretch(2 * pair + 1, 1);
    };
    put(0, 0, "大写字高(mm)", m_height);
    put(0, 1, "对齐", m_align);
    put(1, 0, "字间距(mm)", m_letterSpacing);
    put(1, 1, "行距(字高倍数)", m_lineSpacing);
    column->addLayout(grid);
    column->addLayout(buildStyle());
    m_preview = new TextPreview(this);
    m_preview->setObjectName(QStringLiteral("textPreview"));
    column->addWidget(m_preview, 1);
    for (QDoubleSpinBox* box : {m_height, m_letterSpacing, m_lineSpacing})
        connect(box, qOverload<double>(&QDoubleSpinBox::valueChanged), this, &TextDialog::changed);
    connect(m_align, qOverload<int>(&QComboBox::currentIndexChanged), this, &TextDialog::changed);
    return column;
}

QHBoxLayout* TextDialog::buildStyle() {
    auto* row = new QHBoxLayout;
    m_bold = new QCheckBox(LanguageManager::GetLanText("粗体"), this);
    m_bold->setObjectName(QStringLiteral("checkBoxBold"));
    m_italic = new QCheckBox(LanguageManager::GetLanText("斜体"), this);
    m_italic->setObjectName(QStringLiteral("checkBoxItalic"));
    m_message = makeMessage();
    for (QCheckBox* box : {m_bold, m_italic}) {
        row->addWidget(box);
        connect(box, &QCheckBox::toggled, this, &TextDialog::changed);
    }
    row->addSpacing(10);
    row->addWidget(m_message, 1);
    return row;
}

QVBoxLayout* TextDialog::buildRight() {
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    m_kind = makeChoice("comboBoxFontKind", texts({"全部字体", "单线字体", "轮廓字体"}));
    column->addWidget(m_kind);
    m_model = new FontListModel(this);
    m_fonts = new QListView(this);
    m_fonts->setObjectName(QStringLiteral("listViewFonts"));
    m_fonts->setModel(m_model);
    m_fonts->setItemDelegate(new FontDelegate(m_fonts));
    m_fonts->setUniformItemSizes(true);
    m_fonts->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_fonts->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    column->addWidget(m_fonts, 1);
    addButtons(*column);
    connect(m_kind, qOverload<int>(&QComboBox::currentIndexChanged), this, &TextDialog::listKind);
    connect(m_fonts->selectionModel(), &QItemSelectionModel::currentChanged, this, &TextDialog::fontChosen);
    return column;
}

void TextDialog::fill(const TextSpec& spec) {
    m_opened = spec;
    m_text->setPlainText(spec.text);
    m_variables->setOn(spec.variables);
    m_height->setValue(spec.height);
    m_letterSpacing->setValue(spec.letterSpacing);
    m_lineSpacing->setValue(spec.lineSpacing);
    m_bold->setChecked(spec.bold);
    m_italic->setChecked(spec.italic);
    m_align->setCurrentIndex(static_cast<int>(spec.align));
    if (m_model->rowOf(spec.family, spec.singleLine) < 0)
        m_model->addMissing(spec.family, spec.singleLine);
    chooseFont(spec.family, spec.singleLine);
    m_text->setFocus();
    refresh();
}

void TextDialog::chooseFont(const QString& family, bool singleLine) {
    m_family = family;
    m_singleLine = singleLine;
    m_bold->setEnabled(!singleLine);
    const int row = m_model->rowOf(family, singleLine);
    if (row < 0)
        return;
    const QModelIndex index = m_model->index(row);
    if (m_fonts->currentIndex() != index)
        m_fonts->setCurrentIndex(index);
    m_fonts->scrollTo(index);
}

/// The chosen font stays chosen when the list shows it no more.
void TextDialog::listKind() {
    m_model->setKind(static_cast<FontListModel::Kind>(m_kind->currentIndex()));
    chooseFont(m_family, m_singleLine);
}

void TextDialog::fontChosen() {
    const QModelIndex index = m_fonts->currentIndex();
    if (!index.isValid())
        return;
    chooseFont(index.data(FontListModel::FamilyRole).toString(), index.data(FontListModel::SingleLineRole).toBool());
    changed();
}

TextSpec TextDialog::spec() const {
    TextSpec spec;
    spec.text = m_text->toPlainText();
    spec.variables = m_variables->isOn();
    spec.family = m_family;
    spec.singleLine = m_singleLine;
    spec.bold = !m_singleLine && m_bold->isChecked();
    spec.italic = m_italic->isChecked();
    spec.align = static_cast<TextAlign>(m_align->currentIndex());
    spec.height = valueOf(m_height, m_opened.height);
    spec.letterSpacing = valueOf(m_letterSpacing, m_opened.letterSpacing);
    spec.lineSpacing = valueOf(m_lineSpacing, m_opened.lineSpacing);
    return spec;
}

bool TextDialog::refresh() {
    m_delay.stop();
    const TextSpec now = spec();
    VariableProblem problem;
    const QString shown = now.variables ? variableText(now.text, problem) : now.text;
    const MadeText made = problem.ok() ? makeText(now, shown) : MadeText();
    const bool good = problem.ok() && made.ok();
    m_preview->setOutline(good ? made.shape.outline : PathShape());
    m_message->setText(problem.ok() ? textMessage(made) : variableMessage(problem));
    m_ok->setEnabled(good);
    return good;
}

void TextDialog::keep() {
    lastStyle() = spec();
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/csvpage.h"

#include "engine/languagemanager.h"
#include "simengine/document/variablecsv.h"
#include "support/approot.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDirIterator>
#include <QLineEdit>
#include <QSpinBox>

namespace sim {

namespace {

constexpr int kMostFilesListed = 500;

struct Separator {
    char character;
    const char* shown;
};
constexpr Separator kSeparators[] = {{',', ","}, {';', ";"}, {'\t', "Tab"}, {'|', "|"}};

/// Files below the folder of the documents that may hold rows.
QStringList csvFiles() {
    const QDir folder(tessera::rootPath(QStringLiteral("/MarkFile")));
    QDirIterator files(folder.path(), {QStringLiteral("*.csv"), QStringLiteral("*.txt")}, QDir::Files,
                       QDirIterator::Subdirectories);
    QStringList names;
    while (files.hasNext() && names.size() < kMostFilesListed)
        names << folder.relativeFilePath(files.next());
    names.sort();
    return names;
}

QComboBox* makeChoice(const char* objectName, const QStringList& entries, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QLatin1String(objectName));
    box->addItems(entries);
    return box;
}

/// A name that none of the others has.
QString freeName(const QVector<CsvSource>& sources) {
    for (int i = 1;; ++i) {
        const QString name = QStringLiteral("CSV%1").arg(i);
        const auto has = [&](const CsvSource& source) { return source.name == name; };
        if (std::none_of(sources.begin(), sources.end(), has))
            return name;
    }
}

} // namespace

CsvPage::CsvPage(const QVector<CsvSource>& sources, QWidget* parent)
    : VariablePage("csvPage", 1, parent)
    , m_sources(sources)
    , m_name(new QLineEdit(this))
    , m_file(makeChoice("comboBoxFile", csvFiles(), this))
    , m_separator(makeChoice("comboBoxSeparator", {}, this))
    , m_coding(makeChoice("comboBoxCoding", {QStringLiteral("UTF-8"), QStringLiteral("GBK")}, this))
    , m_header(new QCheckBox(LanguageManager::GetLanText("首行为列名"), this))
    , m_row(new QSpinBox(this))
    , m_atEnd(makeChoice("comboBoxAtEnd",
                         {LanguageManager::GetLanText("停止打标"), LanguageManager::GetLanText("从头开始")}, this)) {
    m_name->setObjectName(QStringLiteral("lineEditName"));
    m_name->setMaxLength(kMaxVariableName);
    m_file->setEditable(true);
    m_header->setObjectName(QStringLiteral("checkBoxHeader"));
    m_row->setObjectName(QStringLiteral("spinBoxRow"));
    m_row->setRange(1, kMostCsvRow);
    for (const Separator& separator : kSeparators)
        m_separator->addItem(QLatin1String(separator.shown), QString(QLatin1Char(separator.character)));
    addField("名称", m_name);
    addField("CSV文件", m_file);
    addField("分隔符", m_separator);
    addField("编码", m_coding);
    addField("列名", m_header);
    addField("当前行", m_row);
    addField("用完之后", m_atEnd);
    connect(m_name, &QLineEdit::textEdited, this, &CsvPage::edited);
    connect(m_file, &QComboBox::editTextChanged, this, &CsvPage::edited);
    for (QComboBox* box : {m_separator, m_coding, m_atEnd})
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, &CsvPage::edited);
    connect(m_header, &QCheckBox::toggled, this, &CsvPage::edited);
    connect(m_row, qOverload<int>(&QSpinBox::valueChanged), this, &CsvPage::edited);
    listAll();
}

void CsvPage::append() {
    CsvSource source;
    source.name = freeName(m_sources);
    source.file = m_file->count() > 0 ? m_file->itemText(0) : QStringLiteral("list.csv");
    m_sources.append(source);
}

void CsvPage::fill(int index) {
    const CsvSource& source = m_sources[index];
    m_name->setText(source.name);
    m_file->setEditText(source.file);
    int separator = m_separator->findData(QString(source.separator));
    if (separator < 0) {
        m_separator->addItem(QString(source.separator), QString(source.separator));
        separator = m_separator->count() - 1;
    }
    m_separator->setCurrentIndex(separator);
    m_coding->setCurrentIndex(static_cast<int>(source.coding));
    m_header->setChecked(source.header);
    m_row->setValue(source.row);
    m_atEnd->setCurrentIndex(static_cast<int>(source.atEnd));
    note(source);
}

void CsvPage::take(int index) {
    CsvSource& source = m_sources[index];
    source.name = m_name->text();
    source.file = m_file->currentText();
    source.separator = m_separator->currentData().toString().at(0);
    source.coding = static_cast<CsvCoding>(m_coding->currentIndex());
    source.header = m_header->isChecked();
    source.row = m_row->value();
    source.atEnd = static_cast<CounterEnd>(m_atEnd->currentIndex());
    note(source);
}

/// What the current row holds, so that separator and encoding can be seen to be right.
void CsvPage::note(const CsvSource& source) {
    if (sourceFault(source)) {
        setNote(QString());
        return;
    }
    VariableProblem problem;
    const CsvRow row = readCsvRow(source, problem);
    setNote(problem.ok()
                ? QStringLiteral("[%1]  %2").arg(row.row).arg(row.fields.join(QStringLiteral("  |  ")).left(200))
                : variableMessage(problem));
}

} // namespace sim

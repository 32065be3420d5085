// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/variablebar.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/document/variablestore.h"
#include "simengine/view/variablesdialog.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>

namespace sim {

namespace {

/// Dates and shifts as plants mostly have them; the menu shows what they come to now.
const char* const kUsual[] = {"{date:yyyy-MM-dd}", "{date:yyMMdd}", "{date:HH:mm:ss}",       "{date:GGGG-WW}",
                              "{date:yyDDD}",      "{shift}",       "{shiftdate:yyyy-MM-dd}"};

/// Columns of one file that the menu lists.
constexpr int kMostColumns = 40;

/// The columns that a source has now: their names, where a brace keeps one out its number.
QStringList columnsOf(const CsvSource& source) {
    VariableProblem problem;
    const CsvRow row = readCsvRow(source, problem);
    QStringList columns;
    const int count = std::min(kMostColumns, std::max(row.header.size(), row.fields.size()));
    for (int i = 0; i < count; ++i) {
        const QString name = row.header.value(i);
        const bool usable = !name.isEmpty() && !name.contains('{') && !name.contains('}') && !name.startsWith('#') &&
                            row.header.indexOf(name) == i;
        columns << (usable ? name : QStringLiteral("#%1").arg(i + 1));
    }
    return columns;
}

} // namespace

VariableBar::VariableBar(QWidget* parent)
    : QWidget(parent)
    , m_on(new QCheckBox(LanguageManager::GetLanText("含变量"), this))
    , m_insert(makeButton("插入变量", "pushButtonInsertVariable", this))
    , m_menu(new QMenu(this)) {
    m_on->setObjectName(QStringLiteral("checkBoxVariables"));
    m_menu->setObjectName(QStringLiteral("menuVariables"));
    m_insert->setAutoDefault(false);
    m_insert->setMenu(m_menu);
    QPushButton* definitions = makeButton("变量设置", "pushButtonVariables", this);
    definitions->setAutoDefault(false);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_on);
    row->addStretch(1);
    row->addWidget(m_insert);
    row->addWidget(definitions);
    connect(m_on, &QCheckBox::toggled, this, &VariableBar::changed);
    connect(m_menu, &QMenu::aboutToShow, this, &VariableBar::fillMenu);
    connect(definitions, &QPushButton::clicked, this, &VariableBar::openDefinitions);
    connect(&VariableStore::instance(), &VariableStore::changed, this, &VariableBar::changed, Qt::QueuedConnection);
}

bool VariableBar::isOn() const {
    return m_on->isChecked();
}

void VariableBar::setOn(bool on) {
    m_on->setChecked(on);
}

void VariableBar::fillMenu() {
    m_menu->clear();
    VariableProblem unread; // of the definitions: no entry has a value then
    const VariableSet set = VariableStore::instance().set(&unread);
    VariableValues values(set, QDateTime::currentDateTime());
    const auto add = [&](const QString& variable) {
        VariableProblem problem = unread;
        const QString now = problem.ok() ? values.text(variable, problem) : QString();
        // an ampersand would mark a key of the menu
        QString shown = QStringLiteral("%1    %2").arg(variable, problem.ok() ? now : variableMessage(problem));
        connect(m_menu->addAction(shown.replace(QLatin1Char('&'), QLatin1String("&&"))), &QAction::triggered, this,
                [this, variable] {
                    setOn(true);
                    emit inserted(variable);
                });
    };
    for (const SerialNumber& serial : set.serials)
        add(QStringLiteral("{serial:%1}").arg(serial.name));
    for (const CsvSource& source : set.sources) {
        for (const QString& column : columnsOf(source))
            add(QStringLiteral("{csv:%1:%2}").arg(source.name, column));
    }
    for (const char* usual : kUsual)
        add(QLatin1String(usual));
}

void VariableBar::openDefinitions() {
    if (findChild<VariablesDialog*>() == nullptr)
        (new VariablesDialog(this))->open();
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/variablesdialog.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/document/variablestore.h"
#include "simengine/view/csvpage.h"
#include "simengine/view/serialpage.h"
#include "simengine/view/shiftpage.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>

namespace sim {

namespace {

constexpr QSize kUsualSize(920, 540);

} // namespace

VariablesDialog::VariablesDialog(QWidget* parent)
    : QDialog(parent) {
    prepareDialog(this, LanguageManager::GetLanText("变量设置"));
    setObjectName(QStringLiteral("VariablesDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    VariableProblem problem;
    m_opened = VariableStore::instance().set(&problem);
    m_serials = new SerialPage(m_opened.serials, this);
    m_sources = new CsvPage(m_opened.sources, this);
    m_shifts = new ShiftPage(m_opened.shifts, this);
    auto* tabs = new QTabWidget(this);
    tabs->setObjectName(QStringLiteral("tabWidgetVariables"));
    tabs->addTab(m_serials, LanguageManager::GetLanText("序列号"));
    tabs->addTab(m_sources, LanguageManager::GetLanText("CSV数据"));
    tabs->addTab(m_shifts, LanguageManager::GetLanText("班次"));
    m_message = new QLabel(this);
    m_message->setObjectName(QStringLiteral("labelMessage"));
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_replace = new QCheckBox(LanguageManager::GetLanText("替换损坏的文件(保留其副本)"), this);
    m_replace->setObjectName(QStringLiteral("checkBoxReplace"));
    m_replace->setMinimumHeight(kTouchHeight);
    m_replace->hide();
    const ButtonRow buttons = makeOkCancel(this);
    m_ok = buttons.ok;
    m_ok->setAutoDefault(false);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_message, 1);
    bottom->addLayout(buttons.layout);
    auto* column = new QVBoxLayout(this);
    column->addWidget(tabs, 1);
    column->addWidget(m_replace);
    column->addLayout(bottom);
    connect(m_ok, &QPushButton::clicked, this, &VariablesDialog::accept);
    connect(m_serials, &VariablePage::changed, this, &VariablesDialog::check);
    connect(m_sources, &VariablePage::changed, this, &VariablesDialog::check);
    connect(m_shifts, &VariablePage::changed, this, &VariablesDialog::check);
    connect(m_replace, &QCheckBox::toggled, this, &VariablesDialog::check);
    if (!problem.ok())
        noteDamage(problem);
    resize(kUsualSize.boundedTo(QGuiApplication::primaryScreen()->availableSize()));
}

VariableSet VariablesDialog::entered() const {
    VariableSet set;
    set.serials = m_serials->serials();
    set.sources = m_sources->sources();
    set.shifts = m_shifts->shifts();
    return set;
}

void VariablesDialog::noteDamage(const VariableProblem& problem) {
    m_damage = variableMessage(problem);
    m_replace->show();
    check();
}

void VariablesDialog::check() {
    const char* fault = setFault(entered());
    m_message->setText(fault ? LanguageManager::GetLanText(fault) : m_damage);
    m_ok->setEnabled(!fault && (m_damage.isEmpty() || m_replace->isChecked()));
}

void VariablesDialog::accept() {
    const auto damaged = m_replace->isChecked() ? VariableStore::Damaged::IsReplaced : VariableStore::Damaged::Stays;
    VariableProblem problem;
    if (VariableStore::instance().save(entered(), m_opened, damaged, &problem))
        QDialog::accept();
    else if (problem.fault == VariableFault::BadDefinitions)
        noteDamage(problem);
    else
        m_message->setText(variableMessage(problem));
}

} // namespace sim

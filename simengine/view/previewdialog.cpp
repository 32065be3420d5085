// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/previewdialog.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"
#include "simengine/view/textpreview.h"
#include "simengine/view/variablebar.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

namespace sim {

namespace {

/// The preview follows this long after the last change, ms: long texts are not made anew at every key.
constexpr int kPreviewDelay = 150;
constexpr QSize kUsualSize(940, 540);
constexpr int kTextHeight = 84;

} // namespace

PreviewDialog::PreviewDialog(const char* title, const char* name, QWidget* parent)
    : QDialog(parent) {
    prepareDialog(this, LanguageManager::GetLanText(title));
    setObjectName(QLatin1String(name));
    setAttribute(Qt::WA_DeleteOnClose);
    m_delay.setSingleShot(true);
    m_delay.setInterval(kPreviewDelay);
    connect(&m_delay, &QTimer::timeout, this, [this] { refresh(); });
}

void PreviewDialog::build(QVBoxLayout* left, QVBoxLayout* right) {
    auto* columns = new QHBoxLayout(this);
    columns->setSpacing(14);
    columns->addLayout(left, 5);
    columns->addLayout(right, 4);
    resize(kUsualSize.boundedTo(QGuiApplication::primaryScreen()->availableSize()));
}

void PreviewDialog::addText(QVBoxLayout& column, const char* name, const char* invitation) {
    m_text = new QPlainTextEdit(this);
    m_text->setObjectName(QLatin1String(name));
    m_text->setPlaceholderText(LanguageManager::GetLanText(invitation));
    m_text->setTabChangesFocus(true);
    m_text->setFixedHeight(kTextHeight);
    m_variables = new VariableBar(this);
    column.addWidget(m_text);
    column.addWidget(m_variables);
    connect(m_text, &QPlainTextEdit::textChanged, this, [this] { changed(); });
    connect(m_variables, &VariableBar::changed, this, [this] { changed(); });
    connect(m_variables, &VariableBar::inserted, m_text, &QPlainTextEdit::insertPlainText);
}

void PreviewDialog::addButtons(QVBoxLayout& column) {
    const ButtonRow buttons = makeOkCancel(this);
    m_ok = buttons.ok;
    // Return begins a new line of the content.
    m_ok->setDefault(false);
    m_ok->setAutoDefault(false);
    column.addLayout(buttons.layout);
    connect(m_ok, &QPushButton::clicked, this, &PreviewDialog::accept);
}

QLabel* PreviewDialog::makeMessage() {
    auto* label = new QLabel(this);
    label->setObjectName(QStringLiteral("labelMessage"));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QDoubleSpinBox* PreviewDialog::makeNumber(const char* name, int decimals, double least, double most, double step) {
    auto* box = new QDoubleSpinBox(this);
    box->setObjectName(QLatin1String(name));
    box->setDecimals(decimals);
    box->setRange(least, most);
    box->setSingleStep(step);
    return box;
}

QComboBox* PreviewDialog::makeChoice(const char* name, const QStringList& entries) {
    auto* box = new QComboBox(this);
    box->setObjectName(QLatin1String(name));
    box->addItems(entries);
    return box;
}

double PreviewDialog::valueOf(const QDoubleSpinBox* box, double opened, double factor) {
    const QString shown = box->locale().toString(opened * factor, 'f', box->decimals());
    const bool untouched = shown == box->locale().toString(box->value(), 'f', box->decimals());
    return untouched ? opened : box->value() / factor;
}

void PreviewDialog::accept() {
    if (!refresh())
        return;
    keep();
    QDialog::accept();
}

} // namespace sim

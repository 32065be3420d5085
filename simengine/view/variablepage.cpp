// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/variablepage.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>

namespace sim {

VariablePage::VariablePage(const char* objectName, int columns, QWidget* parent)
    : QWidget(parent)
    , m_list(new QListWidget(this))
    , m_fields(new QWidget(this))
    , m_columns(columns)
    , m_note(new QLabel(this)) {
    setObjectName(QLatin1String(objectName));
    m_list->setObjectName(QStringLiteral("listWidget"));
    m_list->setMinimumWidth(180);
    QPushButton* add = makeButton("新增", "pushButtonAdd", this);
    m_remove = makeButton("删除", "pushButtonRemove", this);
    for (QPushButton* button : {add, m_remove})
        button->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(m_remove);
    auto* left = new QVBoxLayout;
    left->addWidget(m_list, 1);
    left->addLayout(buttons);
    m_form = new QGridLayout;
    m_form->setVerticalSpacing(6);
    m_form->setHorizontalSpacing(8);
    auto* fieldColumn = new QVBoxLayout(m_fields);
    fieldColumn->setContentsMargins(4, 0, 4, 0);
    fieldColumn->addLayout(m_form);
    fieldColumn->addStretch(1);
    m_note->setObjectName(QStringLiteral("labelNote"));
    m_note->setWordWrap(true);
    m_note->setTextFormat(Qt::PlainText);
    auto* scroll = new QScrollArea(this);
    scroll->setWidget(m_fields);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    // the ground of the page, not of a list
    scroll->viewport()->setAutoFillBackground(false);
    m_fields->setAutoFillBackground(false);
    auto* right = new QVBoxLayout;
    right->addWidget(scroll, 1);
    right->addWidget(m_note);
    auto* sides = new QHBoxLayout(this);
    sides->addLayout(left, 1);
    sides->addLayout(right, 1 + columns);
    connect(add, &QPushButton::clicked, this, &VariablePage::addOne);
    connect(m_remove, &QPushButton::clicked, this, &VariablePage::removeOne);
    connect(m_list, &QListWidget::currentRowChanged, this, &VariablePage::choose);
}

int VariablePage::current() const {
    return m_list->currentRow();
}

void VariablePage::listAll() {
    for (int i = 0; i < count(); ++i)
        list(i);
    m_list->setCurrentRow(count() > 0 ? 0 : -1);
    choose();
}

void VariablePage::addField(const char* key, QWidget* field) {
    field->setMinimumHeight(kTouchHeight);
    const int row = m_fieldCount / m_columns;
    const int column = 2 * (m_fieldCount++ % m_columns);
    m_form->addWidget(new QLabel(LanguageManager::GetLanText(key), m_fields), row, column);
    m_form->addWidget(field, row, column + 1);
    m_form->setColumnStretch(column + 1, 1);
}

void VariablePage::list(int index) {
    auto* item = new QListWidgetItem(nameOf(index), m_list);
    item->setSizeHint(QSize(0, kTouchHeight));
}

void VariablePage::setNote(const QString& text) {
    m_note->setText(text);
}

void VariablePage::edited() {
    const int index = current();
    if (m_filling || index < 0)
        return;
    take(index);
    m_list->item(index)->setText(nameOf(index));
    emit changed();
}

void VariablePage::choose() {
    const int index = current();
    m_fields->setVisible(index >= 0);
    m_note->setVisible(index >= 0);
    m_remove->setEnabled(index >= 0);
    if (index < 0 || index >= count())
        return;
    m_filling = true;
    fill(index);
    m_filling = false;
}

void VariablePage::addOne() {
    append();
    list(count() - 1);
    m_list->setCurrentRow(count() - 1);
    emit changed();
}

void VariablePage::removeOne() {
    const int index = current();
    if (index < 0)
        return;
    removeAt(index);
    m_filling = true; // the list chooses a neighbour before the row is gone
    delete m_list->takeItem(index);
    m_filling = false;
    choose();
    emit changed();
}

} // namespace sim

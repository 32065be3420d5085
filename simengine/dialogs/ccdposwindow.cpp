// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/dialogs/ccdposwindow.h"

#include "engine/languagemanager.h"
#include "engine/msgbox.h"
#include "simengine/dialogs/dialogparts.h"

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace sim {

namespace {

enum Column { NameColumn, XColumn, YColumn, ColumnCount };

QDoubleSpinBox* makeCoordinate(double value) {
    auto* box = new QDoubleSpinBox;
    box->setDecimals(3);
    box->setRange(-100000.0, 100000.0);
    box->setValue(value);
    return box;
}

double coordinate(QTableWidget const* table, int row, Column column) {
    return qobject_cast<QDoubleSpinBox*>(table->cellWidget(row, column))->value();
}

} // namespace

CcdPosWindow::CcdPosWindow(QWidget* parent)
    : QDialog(parent)
    , m_table(new QTableWidget(0, ColumnCount, this)) {
    setObjectName(QStringLiteral("CCDPosSet"));
    setAttribute(Qt::WA_DeleteOnClose);
    prepareDialog(this, LanguageManager::GetLanText("CCD拍照位设置"));
    m_table->setObjectName(QStringLiteral("tableWidgetPos"));
    m_table->setHorizontalHeaderLabels(
        {LanguageManager::GetLanText("名称"), QStringLiteral("X (mm)"), QStringLiteral("Y (mm)")});
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->verticalHeader()->setDefaultSectionSize(kTouchHeight);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    for (CcdPosition const& position : loadCcdPositions())
        addRow(position);
    auto* buttons = new QHBoxLayout;
    QPushButton* add = makeButton("添加", "pushButtonAdd", this);
    QPushButton* remove = makeButton("删除", "pushButtonDelete", this);
    QPushButton* store = makeButton("保存", "pushButtonSave", this);
    QPushButton* leave = makeButton("关闭", "pushButtonClose", this);
    for (QPushButton* button : {add, remove, store, leave}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_table);
    layout->addLayout(buttons);
    resize(520, 360);
    connect(add, &QPushButton::clicked, this, [this] {
        addRow({LanguageManager::GetLanText("拍照位") + QString::number(m_table->rowCount() + 1), 0.0, 0.0});
    });
    connect(remove, &QPushButton::clicked, this, &CcdPosWindow::deleteRow);
    connect(store, &QPushButton::clicked, this, &CcdPosWindow::save);
    connect(leave, &QPushButton::clicked, this, &QWidget::close);
}

void CcdPosWindow::addRow(CcdPosition const& position) {
    int const row = m_table->rowCount();
    m_table->insertRow(row);
    m_table->setItem(row, NameColumn, new QTableWidgetItem(position.name));
    m_table->setCellWidget(row, XColumn, makeCoordinate(position.x));
    m_table->setCellWidget(row, YColumn, makeCoordinate(position.y));
    m_table->setCurrentCell(row, NameColumn);
}

void CcdPosWindow::deleteRow() {
    if (m_table->currentRow() >= 0)
        m_table->removeRow(m_table->currentRow());
}

void CcdPosWindow::save() {
    QVector<CcdPosition> positions;
    for (int row = 0; row < m_table->rowCount(); ++row)
        positions.append({m_table->item(row, NameColumn)->text(), coordinate(m_table, row, XColumn),
                          coordinate(m_table, row, YColumn)});
    bool const saved = saveCcdPositions(positions);
    msgBox::show(LanguageManager::GetLanText("保存"), LanguageManager::GetLanText(saved ? "保存成功" : "保存失败"), 1);
}

} // namespace sim

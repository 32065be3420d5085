// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/arraydialog.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <cmath>

namespace sim {

namespace {

QSpinBox* countBox(const char* name, QWidget* parent) {
    auto* box = new QSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setRange(1, 1000);
    box->setValue(2);
    box->setMinimumHeight(kTouchHeight);
    return box;
}

QDoubleSpinBox* stepBox(const char* name, double value, QWidget* parent) {
    auto* box = new QDoubleSpinBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setDecimals(3);
    box->setRange(-1000000.0, 1000000.0);
    box->setValue(value);
    box->setMinimumHeight(kTouchHeight);
    return box;
}

/// A step that leaves a tenth of the cell free, in whole millimetres.
double firstStep(double extent) {
    return std::ceil(extent * 1.1 + 0.5);
}

} // namespace

ArrayDialog::ArrayDialog(const QSizeF& size, QWidget* parent)
    : QDialog(parent)
    , m_columns(countBox("spinBoxColumns", this))
    , m_rows(countBox("spinBoxRows", this))
    , m_stepX(stepBox("doubleSpinBoxStepX", firstStep(size.width()), this))
    , m_stepY(stepBox("doubleSpinBoxStepY", firstStep(size.height()), this)) {
    setObjectName(QStringLiteral("ArrayDialog"));
    prepareDialog(this, LanguageManager::GetLanText("对象阵列"));
    QFormLayout* form = makeForm(this);
    form->addRow(LanguageManager::GetLanText("列数"), m_columns);
    form->addRow(LanguageManager::GetLanText("行数"), m_rows);
    form->addRow(LanguageManager::GetLanText("列间距(mm)"), m_stepX);
    form->addRow(LanguageManager::GetLanText("行间距(mm)"), m_stepY);
    const ButtonRow buttons = makeOkCancel(this);
    form->addRow(buttons.layout);
    connect(buttons.ok, &QPushButton::clicked, this, &QDialog::accept);
}

ArrayCells ArrayDialog::cells() const {
    return {m_columns->value(), m_rows->value(), m_stepX->value(), m_stepY->value()};
}

} // namespace sim

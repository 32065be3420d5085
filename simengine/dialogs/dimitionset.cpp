// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/dimitionset.h"

#include "engine/languagemanager.h"
#include "simengine/dialogs/dialogparts.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>

namespace {

/// The patterns and their numbers. Those with corners need straight lines to hold their shape.
struct Pattern {
    char const* key;
    int type;
    bool linesOnly;
};
constexpr Pattern kPatterns[] = {{"锯齿", 0, true}, {"正弦", 1, false}, {"方波", 2, true}};

QDoubleSpinBox* makeLength(char const* objectName, double value, QWidget* parent) {
    auto* box = new QDoubleSpinBox(parent);
    box->setObjectName(QString::fromLatin1(objectName));
    box->setDecimals(3);
    box->setRange(0.001, 1000.0);
    box->setSingleStep(0.1);
    box->setValue(value);
    box->setMinimumHeight(sim::kTouchHeight);
    return box;
}

} // namespace

struct DimitionSet::Private {
    QComboBox* type = nullptr;
    QDoubleSpinBox* amplitude = nullptr;
    QDoubleSpinBox* pitch = nullptr;
};

DimitionSet::DimitionSet(bool lines, QWidget* parent, bool modal)
    : QDialog(parent)
    , d(std::make_unique<Private>()) {
    setObjectName(QStringLiteral("DimitionSet"));
    sim::prepareDialog(this, LanguageManager::GetLanText("曲线异化"));
    setModal(modal);
    DissimilationParam const defaults;
    d->type = new QComboBox(this);
    d->type->setObjectName(QStringLiteral("comboBoxType"));
    d->type->setMinimumHeight(sim::kTouchHeight);
    for (Pattern const& pattern : kPatterns) {
        if (lines || !pattern.linesOnly)
            d->type->addItem(LanguageManager::GetLanText(pattern.key), pattern.type);
    }
    d->amplitude = makeLength("doubleSpinBoxAmplitude", defaults.Amplitude, this);
    d->pitch = makeLength("doubleSpinBoxPitch", defaults.Pitch, this);
    QFormLayout* form = sim::makeForm(this);
    form->addRow(LanguageManager::GetLanText("异化类型"), d->type);
    form->addRow(LanguageManager::GetLanText("幅值(mm)"), d->amplitude);
    form->addRow(LanguageManager::GetLanText("周期(mm)"), d->pitch);
    sim::ButtonRow const buttons = sim::makeOkCancel(this);
    form->addRow(buttons.layout);
    connect(buttons.ok, &QPushButton::clicked, this, &QDialog::accept);
}

DimitionSet::~DimitionSet() = default;

void DimitionSet::GetDimitionParam(DissimilationParam& param) const {
    param.Type = d->type->currentData().toInt();
    param.Amplitude = d->amplitude->value();
    param.Pitch = d->pitch->value();
}

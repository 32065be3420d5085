// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/borderbar.h"

#include "engine/languagemanager.h"
#include "engine/msgbox.h"
#include "simengine/card/penparams.h"
#include "simengine/panel/panelparts.h"

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace sim {

namespace {
constexpr int kHeight = 40; ///< px, for a finger
} // namespace

BorderBar::BorderBar(SimControl& machine, QWidget* parent)
    : QWidget(parent)
    , m_machine(machine)
    , m_title(new QLabel(this))
    , m_speed(new QDoubleSpinBox(this)) {
    setObjectName(QStringLiteral("borderBar"));
    m_title->setProperty("title", true);
    m_rectangle = makeOutline("borderRectangle", SimBorderOutline::Rectangle);
    m_hull = makeOutline("borderHull", SimBorderOutline::Hull);
    m_speed->setObjectName(QStringLiteral("borderSpeed"));
    m_speed->setMinimumHeight(kHeight);
    m_speed->setRange(0.0, kMaxSpeed);
    m_speed->setDecimals(1);
    m_speed->setSingleStep(100.0);
    m_speed->setSuffix(QStringLiteral(" mm/s"));
    m_speed->setKeyboardTracking(false);
    connect(m_speed, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this](double speed) {
        SimBorder border = m_machine.border();
        border.speed = speed;
        set(border);
    });
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_title);
    row->addWidget(m_rectangle);
    row->addWidget(m_hull);
    row->addStretch(1);
    row->addWidget(m_speed);
    refresh();
}

QPushButton* BorderBar::makeOutline(const char* name, SimBorderOutline outline) {
    QPushButton* button = panelButton(QLatin1String(name), this);
    button->setCheckable(true);
    connect(button, &QPushButton::clicked, this, [this, outline] {
        SimBorder border = m_machine.border();
        border.outline = outline;
        set(border);
    });
    return button;
}

void BorderBar::set(const SimBorder& border) {
    std::string error;
    if (!m_machine.setBorder(border, error)) // the field holds the speed to what is taken
        msgBox::show(LanguageManager::GetLanText("边框预览"), LanguageManager::GetLanText("保存失败"), 1);
    refresh();
}

void BorderBar::refresh() {
    const SimBorder border = m_machine.border();
    m_rectangle->setChecked(border.outline == SimBorderOutline::Rectangle);
    m_hull->setChecked(border.outline == SimBorderOutline::Hull);
    if (m_speed->hasFocus())
        return;
    const QSignalBlocker blocker(m_speed);
    m_speed->setValue(border.speed);
}

void BorderBar::setTexts() {
    m_title->setText(LanguageManager::GetLanText("边框预览"));
    m_rectangle->setText(LanguageManager::GetLanText("外接矩形"));
    m_hull->setText(LanguageManager::GetLanText("凸包"));
    m_speed->setSpecialValueText(LanguageManager::GetLanText("红光速度"));
}

} // namespace sim

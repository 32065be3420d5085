// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/faultpanel.h"

#include "engine/class_cardpara.h"
#include "simengine/panel/paneltexts.h"

#include <QGridLayout>
#include <QPushButton>
#include <algorithm>

namespace sim {

namespace {
constexpr int kColumns = 3;

/// Faults of the axes that the machine has.
std::vector<std::string> shownNames(std::vector<std::string> names) {
    const Class_CardPara& axes = *Class_CardPara::Instance();
    const int count = axes.EnableMotion ? axes.AxisCount : 0;
    names.erase(std::remove_if(names.begin(), names.end(),
                               [count](const std::string& name) { return faultAxis(name) > count; }),
                names.end());
    return names;
}
} // namespace

FaultPanel::FaultPanel(SimControl& machine, QWidget* parent)
    : QScrollArea(parent)
    , m_machine(machine)
    , m_inside(new QWidget(this))
    , m_grid(new QGridLayout(m_inside)) {
    setObjectName(QStringLiteral("faults"));
    m_inside->setObjectName(QStringLiteral("faultsInside"));
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_grid->setContentsMargins(0, 0, 4, 0);
    m_grid->setSpacing(4);
    setWidget(m_inside);
    refresh();
}

void FaultPanel::refresh() {
    const std::vector<std::string> names = shownNames(m_machine.faultNames());
    if (names != m_names)
        rebuild(names);
    for (int i = 0; i < m_buttons.size(); ++i)
        m_buttons[i]->setChecked(m_machine.faultIsOn(m_names[static_cast<std::size_t>(i)]));
}

void FaultPanel::rebuild(const std::vector<std::string>& names) {
    qDeleteAll(m_buttons);
    m_buttons.clear();
    m_names = names;
    for (const std::string& name : names) {
        auto* button = new QPushButton(m_inside);
        button->setObjectName(QStringLiteral("fault_") + QString::fromStdString(name));
        button->setCheckable(true);
        button->setMinimumHeight(40);
        button->setToolTip(QString::fromStdString(name));
        connect(button, &QPushButton::clicked, this, [this, name](bool on) { m_machine.setFault(name, on); });
        m_grid->addWidget(button, m_buttons.size() / kColumns, m_buttons.size() % kColumns);
        m_buttons.append(button);
    }
    setTexts();
}

void FaultPanel::setTexts() {
    for (int i = 0; i < m_buttons.size(); ++i)
        m_buttons[i]->setText(faultText(m_names[static_cast<std::size_t>(i)]));
}

} // namespace sim

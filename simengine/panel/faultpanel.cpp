// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/faultpanel.h"

#include "engine/class_cardpara.h"
#include "simengine/motion/cardaxes.h"
#include "simengine/panel/paneltexts.h"

#include <QGridLayout>
#include <QPushButton>
#include <algorithm>
#include <set>

namespace sim {

namespace {
constexpr int kMostColumns = 3;

/// Numbers of the motors that axes in use drive, from 1.
std::set<int> motorsInUse() {
    const Class_CardPara& para = *Class_CardPara::Instance();
    std::set<int> motors;
    for (int axis = 0; para.EnableMotion && axis < qMin(para.AxisCount, kAxisSlots); ++axis)
        motors.insert(motorOf(para, axis) + 1);
    return motors;
}

std::vector<std::string> shownNames(std::vector<std::string> names) {
    const std::set<int> motors = motorsInUse();
    names.erase(std::remove_if(names.begin(), names.end(),
                               [&motors](const std::string& name) {
                                   const int motor = faultMotor(name);
                                   return motor > 0 && motors.count(motor) == 0;
                               }),
                names.end());
    return names;
}
} // namespace

FaultPanel::FaultPanel(SimControl& machine, QWidget* parent)
    : GridPage(QStringLiteral("faults"), parent)
    , m_machine(machine) {
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
        QPushButton* button = panelButton(QStringLiteral("fault_") + QString::fromStdString(name), inside());
        button->setCheckable(true);
        button->setToolTip(QString::fromStdString(name));
        connect(button, &QPushButton::clicked, this, [this, name](bool on) { m_machine.setFault(name, on); });
        m_buttons.append(button);
    }
    setTexts();
}

void FaultPanel::setTexts() {
    for (int i = 0; i < m_buttons.size(); ++i)
        m_buttons[i]->setText(faultText(m_names[static_cast<std::size_t>(i)]));
    arrange();
}

void FaultPanel::arrange() {
    int widest = 1;
    for (const QPushButton* button : qAsConst(m_buttons))
        widest = qMax(widest, button->sizeHint().width());
    const int spacing = grid()->horizontalSpacing();
    const QMargins margins = grid()->contentsMargins();
    const int room = viewport()->width() - margins.left() - margins.right() + spacing;
    const int columns = qBound(1, room / (widest + spacing), kMostColumns);
    for (int i = 0; i < m_buttons.size(); ++i)
        grid()->addWidget(m_buttons[i], i / columns, i % columns);
    for (int column = 0; column < kMostColumns; ++column)
        grid()->setColumnStretch(column, column < columns ? 1 : 0);
}

void FaultPanel::resizeEvent(QResizeEvent* event) {
    GridPage::resizeEvent(event);
    arrange();
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/simcontrol.h"

#include <QScrollArea>
#include <QVector>

class QGridLayout;
class QPushButton;

namespace sim {

/// A button that stays down for each fault of the machine, as far as its axes are in use.
class FaultPanel : public QScrollArea {
    Q_OBJECT
public:
    FaultPanel(SimControl& machine, QWidget* parent);
    /// Takes over new faults and those that were switched elsewhere.
    void refresh();
    void setTexts();

private:
    void rebuild(const std::vector<std::string>& names);

    SimControl& m_machine;
    QWidget* m_inside;
    QGridLayout* m_grid;
    std::vector<std::string> m_names;
    QVector<QPushButton*> m_buttons;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/panel/panelparts.h"
#include "simengine/simcontrol.h"

#include <QVector>

namespace sim {

/// A button that stays down for each fault of the machine; of the motors, for those that an axis in use drives.
class FaultPanel : public GridPage {
    Q_OBJECT
public:
    FaultPanel(SimControl& machine, QWidget* parent);
    /// Takes over new faults and those that were switched elsewhere.
    void refresh();
    void setTexts();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    /// In as many columns as the widest text leaves room for.
    void arrange();
    void rebuild(const std::vector<std::string>& names);

    SimControl& m_machine;
    std::vector<std::string> m_names;
    QVector<QPushButton*> m_buttons;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/simcontrol.h"

#include <QWidget>

class QDoubleSpinBox;
class QLabel;
class QPushButton;

namespace sim {

/// The outline and the speed of border previews, as the card keeps them. What is chosen counts from the next pass on; a
/// choice that could not be kept is told by a message box and taken back.
class BorderBar : public QWidget {
    Q_OBJECT
public:
    BorderBar(SimControl& machine, QWidget* parent);
    /// Takes over what was set elsewhere; a speed that is being typed stays.
    void refresh();
    void setTexts();

private:
    QPushButton* makeOutline(const char* name, SimBorderOutline outline);
    void set(const SimBorder& border);

    SimControl& m_machine;
    QLabel* m_title;
    QPushButton* m_rectangle = nullptr;
    QPushButton* m_hull = nullptr;
    QDoubleSpinBox* m_speed;
};

} // namespace sim

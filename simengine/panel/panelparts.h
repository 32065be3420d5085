// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QScrollArea>

class QGridLayout;
class QPushButton;

namespace sim {

/// A button tall enough for a finger.
QPushButton* panelButton(const QString& name, QWidget* parent);

/// A page of the panel that is scrolled up and down: a grid of widgets on `inside()`, which is named after the page.
class GridPage : public QScrollArea {
    Q_OBJECT
public:
    GridPage(const QString& name, QWidget* parent);

protected:
    QWidget* inside() const { return m_inside; }
    QGridLayout* grid() const { return m_grid; }

private:
    QWidget* m_inside;
    QGridLayout* m_grid;
};

} // namespace sim

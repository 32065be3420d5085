// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/panel/panelparts.h"
#include "simengine/simcontrol.h"

#include <QVector>

class QDoubleSpinBox;
class QLabel;
class QPushButton;

namespace sim {

/// The values of what stands beside the card: belt, encoder, beam splitter, flash; and the flash's image as a file.
class DevicePage : public GridPage {
    Q_OBJECT
public:
    DevicePage(SimControl& machine, QWidget* parent);
    /// Shows the machine's values; one that is being typed stays.
    void refresh();
    void setTexts();
    /// False and the reason in `error` when the image could not be written.
    bool exportFlash(const QString& file, QString& error);

private:
    struct Row {
        std::string name;
        QLabel* title = nullptr;
        QLabel* value = nullptr;        ///< of what can only be read
        QDoubleSpinBox* edit = nullptr; ///< of what can be set
    };

    void addRow(const SimDevice& device);
    void askFlash();

    SimControl& m_machine;
    QVector<Row> m_rows;
    QPushButton* m_flash;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/dialogs/ccdpositions.h"

#include <QDialog>

class QTableWidget;

namespace sim {

/// The table of photo positions: add, delete, edit in place, save.
class CcdPosWindow : public QDialog {
    Q_OBJECT
public:
    explicit CcdPosWindow(QWidget* parent);

private:
    void addRow(CcdPosition const& position);
    void deleteRow();
    void save();

    QTableWidget* m_table;
};

} // namespace sim

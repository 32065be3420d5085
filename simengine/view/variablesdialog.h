// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variableproblem.h"
#include "simengine/document/variableset.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QPushButton;

namespace sim {

class CsvPage;
class SerialPage;
class ShiftPage;

/// The variables of the machine: serial numbers, CSV sources, shifts. "确定" keeps them all; it is enabled while they
/// are sound. Counters that a job moves meanwhile stay where it brought them, unless they were entered anew. Where the
/// file is damaged, "确定" waits until the operator has agreed to replace it.
class VariablesDialog : public QDialog {
    Q_OBJECT
public:
    explicit VariablesDialog(QWidget* parent);

    void accept() override;

private:
    VariableSet entered() const;
    void check();
    void noteDamage(const VariableProblem& problem);

    VariableSet m_opened;
    SerialPage* m_serials = nullptr;
    CsvPage* m_sources = nullptr;
    ShiftPage* m_shifts = nullptr;
    QString m_damage; ///< what is told of a damaged file, empty without one
    QLabel* m_message = nullptr;
    QCheckBox* m_replace = nullptr; ///< shown of a damaged file
    QPushButton* m_ok = nullptr;
};

} // namespace sim

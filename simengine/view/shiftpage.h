// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variableset.h"
#include "simengine/view/variablepage.h"

class QLineEdit;
class QTimeEdit;

namespace sim {

/// The shifts of the day.
class ShiftPage : public VariablePage {
    Q_OBJECT
public:
    ShiftPage(const QVector<Shift>& shifts, QWidget* parent);
    const QVector<Shift>& shifts() const { return m_shifts; }

protected:
    int count() const override { return m_shifts.size(); }
    QString nameOf(int index) const override;
    void append() override;
    void removeAt(int index) override { m_shifts.removeAt(index); }
    void fill(int index) override;
    void take(int index) override;

private:
    QVector<Shift> m_shifts;
    QTimeEdit* m_begin;
    QLineEdit* m_code;
};

} // namespace sim

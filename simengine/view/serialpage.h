// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variableset.h"
#include "simengine/view/variablepage.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;

namespace sim {

/// The serial numbers.
class SerialPage : public VariablePage {
    Q_OBJECT
public:
    SerialPage(const QVector<SerialNumber>& serials, QWidget* parent);
    const QVector<SerialNumber>& serials() const { return m_serials; }

protected:
    int count() const override { return m_serials.size(); }
    QString nameOf(int index) const override;
    void append() override;
    void removeAt(int index) override { m_serials.removeAt(index); }
    void fill(int index) override;
    void take(int index) override;

private:
    QLineEdit* numberField(const char* objectName);
    void note(const SerialNumber& serial);

    QVector<SerialNumber> m_serials;
    QLineEdit* m_name;
    QLineEdit* m_value;
    QLineEdit* m_first;
    QLineEdit* m_last;
    QLineEdit* m_step;
    QSpinBox* m_digits;
    QSpinBox* m_radix;
    QSpinBox* m_repeat;
    QComboBox* m_atEnd;
    QCheckBox* m_daily;
};

} // namespace sim

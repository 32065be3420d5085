// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variableset.h"
#include "simengine/view/variablepage.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;

namespace sim {

/// The CSV sources.
class CsvPage : public VariablePage {
    Q_OBJECT
public:
    CsvPage(const QVector<CsvSource>& sources, QWidget* parent);
    const QVector<CsvSource>& sources() const { return m_sources; }

protected:
    int count() const override { return m_sources.size(); }
    QString nameOf(int index) const override { return m_sources[index].name; }
    void append() override;
    void removeAt(int index) override { m_sources.removeAt(index); }
    void fill(int index) override;
    void take(int index) override;

private:
    void note(const CsvSource& source);

    QVector<CsvSource> m_sources;
    QLineEdit* m_name;
    QComboBox* m_file;
    QComboBox* m_separator;
    QComboBox* m_coding;
    QCheckBox* m_header;
    QSpinBox* m_row;
    QComboBox* m_atEnd;
};

} // namespace sim

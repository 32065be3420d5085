// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/codemaker.h"
#include "simengine/view/previewdialog.h"

class QCheckBox;
class QGridLayout;
class QSpinBox;

namespace sim {

/// Asks for a bar or matrix code.
class CodeDialog : public PreviewDialog {
    Q_OBJECT
public:
    /// A code to be placed, of the kind and size that were chosen last.
    explicit CodeDialog(QWidget* parent);
    /// A code to be changed, sizes as they are marked.
    CodeDialog(const CodeSpec& spec, QWidget* parent);

    /// What was entered. Sizes that were not touched keep the exact value that they were opened with.
    CodeSpec spec() const;

protected:
    void changed() override;
    bool refresh() override;
    void keep() override;

private:
    void build();
    QVBoxLayout* buildLeft();
    QVBoxLayout* buildRight();
    void fillGrid(QGridLayout& grid);
    void fill(const CodeSpec& spec);
    void kindChosen();
    void enableFields();

    CodeSpec m_opened;
    QComboBox* m_kind = nullptr;
    QComboBox* m_marking = nullptr;
    QComboBox* m_sizing = nullptr;
    QDoubleSpinBox* m_module = nullptr;
    QDoubleSpinBox* m_width = nullptr;
    QDoubleSpinBox* m_barHeight = nullptr;
    QComboBox* m_level = nullptr;
    QSpinBox* m_size = nullptr;
    QSpinBox* m_quietZone = nullptr;
    QSpinBox* m_lines = nullptr;
    QCheckBox* m_invert = nullptr;
};

} // namespace sim

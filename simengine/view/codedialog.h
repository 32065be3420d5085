// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/codemaker.h"

#include <QDialog>
#include <QTimer>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;
class QVBoxLayout;

namespace sim {

class TextPreview;
class VariableBar;

/// Asks for a bar or matrix code, and shows it as it will be marked. "确定" is enabled while the code can be marked.
class CodeDialog : public QDialog {
    Q_OBJECT
public:
    /// A code to be placed, of the kind and size that were chosen last.
    explicit CodeDialog(QWidget* parent);
    /// A code to be changed, sizes as they are marked.
    CodeDialog(const CodeSpec& spec, QWidget* parent);

    /// What was entered. Sizes that were not touched keep the exact value that they were opened with.
    CodeSpec spec() const;

    void accept() override;

private:
    void build();
    QVBoxLayout* buildLeft();
    QVBoxLayout* buildRight();
    void fillGrid(QGridLayout& grid);
    void fill(const CodeSpec& spec);
    void kindChosen();
    void enableFields();
    void changed();
    /// Makes the code anew; gives whether it can be marked.
    bool refresh();

    CodeSpec m_opened;
    QPlainTextEdit* m_text = nullptr;
    VariableBar* m_variables = nullptr;
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
    TextPreview* m_preview = nullptr;
    QLabel* m_message = nullptr;
    QPushButton* m_ok = nullptr;
    QTimer m_delay;
};

} // namespace sim

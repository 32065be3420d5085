// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/textmaker.h"

#include <QDialog>
#include <QTimer>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QHBoxLayout;
class QLabel;
class QListView;
class QPlainTextEdit;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace sim {

class FontListModel;
class TextPreview;
class VariableBar;

/// Asks for a text, its font and its size, and shows it as it will be marked. "确定" is enabled while the text can be
/// marked. Imported fonts are looked for each time it is made.
class TextDialog : public QDialog {
    Q_OBJECT
public:
    /// A text to be placed, in the font and size that were chosen last.
    explicit TextDialog(QWidget* parent);
    /// A text to be changed, sizes as they are marked.
    TextDialog(const TextSpec& spec, QWidget* parent);

    /// What was entered. Sizes that were not touched keep the exact value that they were opened with.
    TextSpec spec() const;

    void accept() override;

private:
    void build();
    QVBoxLayout* buildLeft();
    QVBoxLayout* buildRight();
    QHBoxLayout* buildStyle();
    void fill(const TextSpec& spec);
    void chooseFont(const QString& family, bool singleLine);
    void listKind();
    void fontChosen();
    void changed();
    /// Makes the text anew; gives whether it can be marked.
    bool refresh();

    TextSpec m_opened;
    QString m_family;
    bool m_singleLine = true;

    QPlainTextEdit* m_text = nullptr;
    VariableBar* m_variables = nullptr;
    QComboBox* m_kind = nullptr;
    QListView* m_fonts = nullptr;
    FontListModel* m_model = nullptr;
    QDoubleSpinBox* m_height = nullptr;
    QDoubleSpinBox* m_letterSpacing = nullptr;
    QDoubleSpinBox* m_lineSpacing = nullptr;
    QCheckBox* m_bold = nullptr;
    QCheckBox* m_italic = nullptr;
    QComboBox* m_align = nullptr;
    TextPreview* m_preview = nullptr;
    QLabel* m_message = nullptr;
    QPushButton* m_ok = nullptr;
    QTimer m_delay;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/textmaker.h"
#include "simengine/view/previewdialog.h"

class QCheckBox;
class QHBoxLayout;
class QListView;

namespace sim {

class FontListModel;

/// Asks for a text, its font and its size. Imported fonts are looked for each time it is made.
class TextDialog : public PreviewDialog {
    Q_OBJECT
public:
    /// A text to be placed, in the font and size that were chosen last.
    explicit TextDialog(QWidget* parent);
    /// A text to be changed, sizes as they are marked.
    TextDialog(const TextSpec& spec, QWidget* parent);

    /// What was entered. Sizes that were not touched keep the exact value that they were opened with.
    TextSpec spec() const;

protected:
    bool refresh() override;
    void keep() override;

private:
    void build();
    QVBoxLayout* buildLeft();
    QVBoxLayout* buildRight();
    QHBoxLayout* buildStyle();
    void fill(const TextSpec& spec);
    void chooseFont(const QString& family, bool singleLine);
    void listKind();
    void fontChosen();

    TextSpec m_opened;
    QString m_family;
    bool m_singleLine = true;

    QComboBox* m_kind = nullptr;
    QListView* m_fonts = nullptr;
    FontListModel* m_model = nullptr;
    QDoubleSpinBox* m_height = nullptr;
    QDoubleSpinBox* m_letterSpacing = nullptr;
    QDoubleSpinBox* m_lineSpacing = nullptr;
    QCheckBox* m_bold = nullptr;
    QCheckBox* m_italic = nullptr;
    QComboBox* m_align = nullptr;
};

} // namespace sim

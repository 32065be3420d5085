// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDialog>
#include <QTimer>

class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QVBoxLayout;

namespace sim {

class TextPreview;
class VariableBar;

/// Asks for a content with variables and how it is to be marked, and shows it as it will be. "确定" is enabled while it
/// can be marked.
class PreviewDialog : public QDialog {
    Q_OBJECT
public:
    void accept() override;

    /// The value of a box that shows `factor` times as much, exact where it still shows what it was opened with.
    static double valueOf(const QDoubleSpinBox* box, double opened, double factor = 1.0);

protected:
    /// `title` is a key.
    PreviewDialog(const char* title, const char* name, QWidget* parent);

    /// Two columns; the dialog gets its usual size.
    void build(QVBoxLayout* left, QVBoxLayout* right);
    /// The field of the content and the bar of its variables.
    void addText(QVBoxLayout& column, const char* name, const char* invitation);
    void addButtons(QVBoxLayout& column);
    QLabel* makeMessage();
    QDoubleSpinBox* makeNumber(const char* name, int decimals, double least, double most, double step);
    QComboBox* makeChoice(const char* name, const QStringList& entries);

    /// Something was entered: the preview follows a little later.
    virtual void changed() { m_delay.start(); }
    /// Makes the object anew; gives whether it can be marked.
    virtual bool refresh() = 0;
    /// What was confirmed is where the next dialog begins.
    virtual void keep() = 0;

    QPlainTextEdit* m_text = nullptr;
    VariableBar* m_variables = nullptr;
    TextPreview* m_preview = nullptr;
    QLabel* m_message = nullptr;
    QPushButton* m_ok = nullptr;
    QTimer m_delay;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/generatedtool.h"

#include <QDialog>
#include <QTimer>

class QFormLayout;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace sim {

class TextPreview;

/// Asks for the parameters of what a module's tool makes and shows the outline that they give. "确定" is enabled while
/// there is one. Lengths are shown `scale` times as large as the tool has them: as they are marked.
class GeneratedDialog : public QDialog {
    Q_OBJECT
public:
    GeneratedDialog(std::shared_ptr<GeneratedTool> tool, const QVector<double>& values, double scale, QWidget* parent);

    /// What was entered, in the tool's own sizes. Numbers that were not touched keep the exact value they were opened
    /// with.
    QVector<double> values() const;

    void accept() override;

private:
    QWidget* makeField(int index);
    QVBoxLayout* buildRight();
    double factor(int index) const;
    double entered(int index) const;
    void changed();
    /// Makes the outline anew; gives whether there is one.
    bool refresh();

    std::shared_ptr<GeneratedTool> m_tool;
    QVector<double> m_opened;
    double m_scale;
    QVector<QWidget*> m_fields;
    TextPreview* m_preview = nullptr;
    QLabel* m_message = nullptr;
    QPushButton* m_ok = nullptr;
    QTimer m_delay;
};

} // namespace sim

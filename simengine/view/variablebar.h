// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

class QCheckBox;
class QMenu;
class QPushButton;

namespace sim {

/// The row below an entry of a text or a code: whether it holds variables, a menu that puts one in, and the way to the
/// definitions.
class VariableBar : public QWidget {
    Q_OBJECT
public:
    explicit VariableBar(QWidget* parent);

    bool isOn() const;
    void setOn(bool on);

signals:
    /// Switched, or the definitions are different.
    void changed();
    /// This is to be put in at the cursor, such as "{serial:A}".
    void inserted(const QString& variable);

private:
    void fillMenu();
    void openDefinitions();

    QCheckBox* m_on = nullptr;
    QPushButton* m_insert = nullptr;
    QMenu* m_menu = nullptr;
};

} // namespace sim

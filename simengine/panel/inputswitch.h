// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractButton>

namespace sim {

/// A slide switch for one input with its number and the functions that watch it.
class InputSwitch : public QAbstractButton {
    Q_OBJECT
public:
    InputSwitch(int bit, QWidget* parent);
    int bit() const { return m_bit; }
    /// What watches the input; empty when nothing does.
    void setFunctions(const QStringList& names);
    QSize sizeHint() const override { return {120, 40}; }
    QSize minimumSizeHint() const override { return {84, 40}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_bit;
    QString m_text;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/panel/paneltexts.h"

#include <QWidget>

namespace sim {

/// 32 lamps in four rows of eight, lit by the bits of the output word.
class OutputLamps : public QWidget {
    Q_OBJECT
public:
    explicit OutputLamps(QWidget* parent);
    void setWord(std::uint32_t word);
    std::uint32_t word() const { return m_word; }
    /// What drives each output, for its tool tip.
    void setFunctions(const std::array<QStringList, kPanelLines>& names) { m_names = names; }
    QSize sizeHint() const override { return {400, 112}; }
    QSize minimumSizeHint() const override { return {320, 96}; }
    /// Middle of a lamp.
    QPointF lampAt(int bit) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    std::uint32_t m_word = 0;
    std::array<QStringList, kPanelLines> m_names;
};

/// The machine's stack light.
class StackLight : public QWidget {
    Q_OBJECT
public:
    explicit StackLight(QWidget* parent);
    void setLamps(bool red, bool yellow, bool green);
    bool red() const { return m_red; }
    bool yellow() const { return m_yellow; }
    bool green() const { return m_green; }
    QSize sizeHint() const override { return {108, 36}; }
    QSize minimumSizeHint() const override { return {108, 32}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_red = false;
    bool m_yellow = false;
    bool m_green = false;
};

} // namespace sim

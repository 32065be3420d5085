// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/simcontrol.h"

#include <QDialog>
#include <QVector>

class QDoubleSpinBox;
class QLabel;
class QPushButton;

namespace sim {

/// The values of the built head: what its distortion is, to be changed and taken back, and the instrument that measures
/// what it marked.
class HeadWindow : public QDialog {
    Q_OBJECT
public:
    HeadWindow(SimControl& machine, QWidget* parent);

    /// Shows the machine's values; what was typed and not applied is lost.
    void takeValues();
    void setTexts();
    /// What the fields have now. One that nobody changed stands for the machine's value, which may be finer than shown.
    SimHeadDistortion values() const;
    /// Measures into a file; the result is told in the window.
    void measureInto(const QString& file);

private:
    void apply(const SimHeadDistortion& head);
    void showValues(const SimHeadDistortion& head);
    void tell(const QString& text, bool bad);
    void askMeasure();
    QWidget* makeButtons();

    SimControl& m_machine;
    QVector<QLabel*> m_names;
    QVector<QDoubleSpinBox*> m_fields;
    SimHeadDistortion m_machines; ///< values last taken over,
    QVector<double> m_shown;      ///< and what the fields showed of them
    QLabel* m_table = nullptr;
    QLabel* m_message = nullptr;
    QPushButton* m_apply = nullptr;
    QPushButton* m_ideal = nullptr;
    QPushButton* m_measure = nullptr;
    QPushButton* m_close = nullptr; ///< a touch screen has no window manager's one
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QWidget>

class QToolButton;
class VZListViewEx;

namespace sim {

/// The strip below an object list that moves the selected objects in the marking order.
class OrderButtons : public QWidget {
    Q_OBJECT
public:
    static constexpr int kHeight = 48;

    explicit OrderButtons(VZListViewEx& list);
    /// Only with something selected in a document that may be edited.
    void setUsable(bool usable);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void place();
    void setTexts();

    VZListViewEx& m_list;
    QList<QToolButton*> m_buttons;
};

} // namespace sim

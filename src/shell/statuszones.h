// SPDX-License-Identifier: MIT
#pragma once

#include <QVector>
#include <QWidget>

namespace tessera {

/// Content of the status bar: parts left and right of the clock, in as many rows as the width asks for. Main thread.
class StatusZones : public QWidget {
    Q_OBJECT
public:
    explicit StatusZones(QWidget* parent = nullptr);
    void AddLeft(QWidget* widget);
    /// The part below the clock; it gets the room that the clock has.
    void SetMiddle(QWidget* widget);
    /// `touch`: the part is pressed by the operator.
    void AddRight(QWidget* widget, bool touch);
    QSize minimumSizeHint() const override { return QSize(0, 0); }

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    struct Part {
        QWidget* widget;
        bool touch;
    };
    void Lay();

    QVector<Part> m_Left;
    QVector<Part> m_Right;
    QWidget* m_pMiddle = nullptr;
};

} // namespace tessera

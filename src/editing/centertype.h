// SPDX-License-Identifier: MIT
#pragma once

#include "engine/basepoint.h"

#include <QWidget>
#include <array>

class QRadioButton;

/// The nine reference points of a rectangle as a 3 x 3 grid of radio buttons. A press beside the small buttons goes to
/// the nearest one. Main thread.
class CenterType : public QWidget {
    Q_OBJECT
public:
    explicit CenterType(QWidget* parent = nullptr);

    /// Checks the given button alone; none for a value outside the grid.
    void setCheck(BasePoint point);
    QSize sizeHint() const override;

signals:
    /// The operator, or setCheck, switched the button of `point` on.
    void BasePointChangedSignal(BasePoint point);

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    void BasePointChanged(bool on);

    std::array<QRadioButton*, 9> m_Buttons{};
};

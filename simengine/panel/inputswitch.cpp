// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/panel/inputswitch.h"

#include "simengine/panel/paneltheme.h"

#include <QPainter>

namespace sim {

InputSwitch::InputSwitch(int bit, QWidget* parent)
    : QAbstractButton(parent)
    , m_bit(bit) {
    setObjectName(QStringLiteral("input%1").arg(bit));
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void InputSwitch::setFunctions(const QStringList& names) {
    const QString text = names.join(QStringLiteral(", "));
    if (text == m_text)
        return;
    m_text = text;
    setToolTip(text);
    update();
}

void InputSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr double kKnob = 9.0;
    const QRectF track(2, height() / 2.0 - 11, 44, 22);
    const QRectF right = track.adjusted(20, 0, -2, 0), left = track.adjusted(2, 0, -20, 0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(isChecked() ? paneltheme::kSwitchOn : paneltheme::kSwitchOff));
    painter.drawRoundedRect(track, 11, 11);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(isChecked() ? track.right() - 11 : track.left() + 11, track.center().y()), kKnob,
                        kKnob);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(QColor(paneltheme::kFocus), 1.5));
        painter.drawRoundedRect(track.adjusted(-1, -1, 1, 1), 12, 12);
    }
    // The number stands in the free half of the track.
    QFont number = font();
    number.setPixelSize(12);
    number.setBold(true);
    painter.setFont(number);
    painter.setPen(Qt::white);
    painter.drawText(isChecked() ? left : right, Qt::AlignCenter, QString::number(m_bit));
    QFont name = font();
    name.setPixelSize(11);
    painter.setFont(name);
    painter.setPen(QColor(paneltheme::kText));
    painter.drawText(rect().adjusted(51, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextWordWrap, m_text);
}

} // namespace sim

// SPDX-License-Identifier: MIT
#include "editing/centertype.h"

#include <QMouseEvent>
#include <QRadioButton>

namespace {

constexpr int kColumns = 3;
constexpr int kSize = 13;  ///< px, a button
constexpr int kPitch = 14; ///< px, from button to button
constexpr int kFirst = 1;  ///< px, place of the first one

} // namespace

CenterType::CenterType(QWidget* parent)
    : QWidget(parent) {
    for (int i = 0; i < int(m_Buttons.size()); ++i) {
        auto* button = new QRadioButton(this);
        button->setObjectName(QStringLiteral("radioButton%1").arg(i));
        // One group of nine would not let go of its last checked button; setCheck() keeps them apart itself.
        button->setAutoExclusive(false);
        button->setGeometry(kFirst + i % kColumns * kPitch, kFirst + i / kColumns * kPitch, kSize, kSize);
        connect(button, &QRadioButton::toggled, this, &CenterType::BasePointChanged);
        connect(button, &QRadioButton::clicked, this, [this, i] { setCheck(static_cast<BasePoint>(i)); });
        m_Buttons[std::size_t(i)] = button;
    }
    setMinimumSize(sizeHint());
}

QSize CenterType::sizeHint() const {
    return {2 * kFirst + kColumns * kPitch, 2 * kFirst + kColumns * kPitch};
}

void CenterType::setCheck(BasePoint point) {
    for (std::size_t i = 0; i < m_Buttons.size(); ++i) {
        if (int(i) != point)
            m_Buttons[i]->setChecked(false);
    }
    if (point >= 0 && std::size_t(point) < m_Buttons.size())
        m_Buttons[std::size_t(point)]->setChecked(true);
}

void CenterType::mousePressEvent(QMouseEvent* event) {
    const auto nearest = [](int place) { return qBound(0, (place - kFirst) / kPitch, kColumns - 1); };
    setCheck(static_cast<BasePoint>(nearest(event->y()) * kColumns + nearest(event->x())));
}

void CenterType::BasePointChanged(bool on) {
    const auto* button = qobject_cast<QRadioButton*>(sender());
    const auto found = std::find(m_Buttons.begin(), m_Buttons.end(), button);
    if (on && found != m_Buttons.end())
        emit BasePointChangedSignal(static_cast<BasePoint>(found - m_Buttons.begin()));
}

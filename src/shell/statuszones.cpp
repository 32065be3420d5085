// SPDX-License-Identifier: MIT
#include "shell/statuszones.h"

#include "shell/statuslayout.h"

#include <QEvent>

namespace tessera {

namespace {

int widthOf(QWidget const* widget) {
    return std::max(widget->minimumWidth(), widget->sizeHint().width());
}

} // namespace

StatusZones::StatusZones(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(kTouchHeight);
}

void StatusZones::AddLeft(QWidget* widget) {
    widget->setParent(this);
    m_Left.append({widget, false});
}

void StatusZones::SetMiddle(QWidget* widget) {
    widget->setParent(this);
    m_pMiddle = widget;
}

void StatusZones::AddRight(QWidget* widget, bool touch) {
    widget->setParent(this);
    m_Right.append({widget, touch});
}

void StatusZones::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Lay();
}

bool StatusZones::event(QEvent* event) {
    const bool done = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Polish)
        Lay();
    return done;
}

/// Hidden parts take no room. The height follows from the width alone, so this settles after one turn.
void StatusZones::Lay() {
    QVector<int> left;
    QVector<StatusItem> right;
    QVector<QWidget*> leftWidgets;
    QVector<QWidget*> rightWidgets;
    for (Part const& part : qAsConst(m_Left)) {
        if (part.widget->isHidden())
            continue;
        left.append(widthOf(part.widget));
        leftWidgets.append(part.widget);
    }
    for (Part const& part : qAsConst(m_Right)) {
        if (part.widget->isHidden())
            continue;
        right.append({widthOf(part.widget), part.touch});
        rightWidgets.append(part.widget);
    }
    const StatusPlaces places = LayStatusBar(width(), left, right);
    for (int i = 0; i < leftWidgets.size(); ++i)
        leftWidgets.at(i)->setGeometry(places.left.at(i));
    for (int i = 0; i < rightWidgets.size(); ++i)
        rightWidgets.at(i)->setGeometry(places.right.at(i));
    if (m_pMiddle)
        m_pMiddle->setGeometry(places.middle);
    if (height() != places.height)
        setFixedHeight(places.height);
}

} // namespace tessera

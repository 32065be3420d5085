// SPDX-License-Identifier: MIT
#include "shell/rightpanel.h"

#include <QResizeEvent>

RightPanel::RightPanel(QWidget* parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_StyledBackground);
    hide();
}

void RightPanel::AddWnd(QWidget* widget) {
    if (widget->parentWidget() != this)
        widget->setParent(this);
    widget->show();
    show();
}

void RightPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    emit SizeChanged(event);
}

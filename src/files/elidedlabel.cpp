// SPDX-License-Identifier: MIT
#include "files/elidedlabel.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace tessera {

QSize ElidedLabel::minimumSizeHint() const {
    return QSize(0, QLabel::minimumSizeHint().height());
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    const QRect area = contentsRect();
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, area.width());
    style()->drawItemText(&painter, area, Qt::AlignLeft | Qt::AlignVCenter, option.palette, isEnabled(), shown,
                          foregroundRole());
}

} // namespace tessera

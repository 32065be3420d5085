// SPDX-License-Identifier: MIT
#include "maintenance/backimgwidget.h"

#include <QPainter>
#include <QResizeEvent>
#include <algorithm>

namespace {

constexpr int kTextLeft = 20; ///< px

/// Height of the strip for the text: what it asks for, its own height when it asks for nothing.
int stripHeight(QWidget const* child) {
    const int asked = child->sizeHint().height();
    return std::max(child->minimumHeight(), asked > 0 ? asked : child->height());
}

} // namespace

BackImgWidget::BackImgWidget(QWidget* parent)
    : QWidget(parent) {}

void BackImgWidget::SetPixmap(QPixmap const& pixmap) {
    m_Pixmap = pixmap;
    update();
}

void BackImgWidget::SetTextColor(QColor color) {
    setStyleSheet(QStringLiteral("color: rgb(%1,%2,%3);").arg(color.red()).arg(color.green()).arg(color.blue()));
}

void BackImgWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_Pixmap.isNull())
        painter.fillRect(rect(), Qt::white);
    else
        painter.drawPixmap(rect(), m_Pixmap);
}

void BackImgWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    auto* child = findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    if (!child)
        return;
    const int strip = stripHeight(child);
    child->setGeometry(kTextLeft, height() - strip, width() - kTextLeft, strip);
}

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/objectdelegate.h"

#include "simengine/view/viewtheme.h"

#include <QIcon>
#include <QMouseEvent>
#include <QPainter>

namespace sim {

void ObjectDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QRect row = option.rect;
    const bool selected = option.state & QStyle::State_Selected;
    const bool works = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    const bool enabled = index.flags() & Qt::ItemIsUserCheckable;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (selected) {
        painter->fillRect(row, QColor(theme::kRowSelected));
        painter->fillRect(QRect(row.left(), row.top(), 3, row.height()), QColor(theme::kAccent));
    }
    painter->fillRect(QRect(row.left(), row.bottom(), row.width(), 1), QColor(theme::kGridMajor));
    const QRect sign(row.left() + 12, row.center().y() - 12, 24, 24);
    index.data(Qt::DecorationRole).value<QIcon>().paint(painter, sign);
    const QRect text = row.adjusted(46, 0, -kSwitchWidth, 0);
    painter->setPen(QColor(works ? theme::kRulerText : theme::kNotWorking));
    const QString shown = option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, text.width());
    painter->drawText(text, Qt::AlignVCenter | Qt::AlignLeft, shown);

    const QRectF box(row.right() - kSwitchWidth + 14.5, row.center().y() - 9.5, 20, 20);
    QColor frame(works && enabled ? theme::kAccent : theme::kNotWorking);
    painter->setPen(QPen(frame, 1.5));
    painter->setBrush(works ? QBrush(frame) : QBrush(QColor(theme::kCanvas)));
    painter->drawRoundedRect(box, 4, 4);
    if (works) {
        painter->setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF at = box.topLeft();
        painter->drawPolyline(QPolygonF({at + QPointF(4.5, 10.5), at + QPointF(8.5, 14.5), at + QPointF(15.5, 6.0)}));
    }
    painter->restore();
}

QSize ObjectDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.rect.width(), kRowHeight};
}

bool ObjectDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) {
    if (event->type() != QEvent::MouseButtonRelease || !(index.flags() & Qt::ItemIsUserCheckable))
        return false;
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const QRect turns = option.rect.adjusted(option.rect.width() - kSwitchWidth, 0, 0, 0);
    if (mouse->button() != Qt::LeftButton || !turns.contains(mouse->pos()))
        return false;
    const bool works = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    return model->setData(index, works ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

} // namespace sim

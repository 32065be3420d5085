// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/checkdelegate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

namespace sim {

namespace {

constexpr int kMarkSide = 26; ///< pixels

bool turnsOver(QEvent const& event, QRect const& cell) {
    if (event.type() == QEvent::KeyPress) {
        int const key = static_cast<QKeyEvent const&>(event).key();
        return key == Qt::Key_Space || key == Qt::Key_Select;
    }
    if (event.type() != QEvent::MouseButtonRelease)
        return false;
    auto const& mouse = static_cast<QMouseEvent const&>(event);
    return mouse.button() == Qt::LeftButton && cell.contains(mouse.pos());
}

} // namespace

void CheckDelegate::paint(QPainter* painter, QStyleOptionViewItem const& option, QModelIndex const& index) const {
    QVariant const state = index.data(Qt::CheckStateRole);
    if (!state.isValid()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    QWidget const* view = option.widget;
    QStyle const* style = view ? view->style() : QApplication::style();
    cell.features &= ~QStyleOptionViewItem::HasCheckIndicator;
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, view);
    bool const on = state.toInt() == Qt::Checked;
    QRect mark(0, 0, kMarkSide, kMarkSide);
    mark.moveCenter(option.rect.center());
    bool const editable = (index.flags() & Qt::ItemIsUserCheckable) != 0;
    QPalette const& colors = option.palette;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(colors.color(editable ? QPalette::Active : QPalette::Disabled, QPalette::Text), 1.5));
    painter->setBrush(colors.color(QPalette::Base));
    painter->drawRoundedRect(QRectF(mark).adjusted(1, 1, -1, -1), 4, 4);
    if (on) {
        double const side = kMarkSide;
        QPolygonF const tick({QPointF(0.24, 0.52) * side, QPointF(0.43, 0.72) * side, QPointF(0.77, 0.30) * side});
        painter->setPen(QPen(painter->pen().color(), 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPolyline(tick.translated(mark.topLeft()));
    }
    painter->restore();
}

bool CheckDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, QStyleOptionViewItem const& option,
                                QModelIndex const& index) {
    constexpr Qt::ItemFlags kNeeded = Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
    QVariant const state = index.data(Qt::CheckStateRole);
    if (!state.isValid() || (index.flags() & kNeeded) != kNeeded || !turnsOver(*event, option.rect))
        return false;
    return model->setData(index, state.toInt() == Qt::Checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

} // namespace sim

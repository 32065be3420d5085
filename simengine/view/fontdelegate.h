// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace sim {

/// A row of the list of fonts: the name, a sample in the font itself, and a sign at the single-line ones.
class FontDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    static constexpr int kRowHeight = 48;

    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace sim

// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace tessera {

/// Height of a row that a finger hits, px.
constexpr int kTouchRowHeight = 40;

/// Lays rows out high enough for a finger whatever size their items ask for. A style sheet cannot: an item that has a
/// size hint of its own is not asked of the style.
class TouchRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(QStyleOptionViewItem const& option, QModelIndex const& index) const override {
        return QStyledItemDelegate::sizeHint(option, index).expandedTo(QSize(0, kTouchRowHeight));
    }
};

} // namespace tessera

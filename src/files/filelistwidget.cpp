// SPDX-License-Identifier: MIT
#include "files/filelistwidget.h"

#include "engine/authoritymanager.h"
#include "files/touchrowdelegate.h"

#include <QKeyEvent>
#include <algorithm>

namespace {

/// More open documents than these are scrolled, so that the list of objects keeps its room.
constexpr int kMostRowsShown = 3;

} // namespace

FileListWidget::FileListWidget(QWidget* parent)
    : QListWidget(parent) {
    setItemDelegate(new tessera::TouchRowDelegate(this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void FileListWidget::ChangeIndex(int from, int to) {
    emit ChangeFileIndex(from, to);
}

QSize FileListWidget::sizeHint() const {
    const int rows = std::clamp(count(), 1, kMostRowsShown);
    return {QListWidget::sizeHint().width(), rows * tessera::kTouchRowHeight + 2 * frameWidth()};
}

QSize FileListWidget::minimumSizeHint() const {
    return {0, tessera::kTouchRowHeight + 2 * frameWidth()};
}

/// No key reaches the base class, which would move the selection and search by letters.
void FileListWidget::keyPressEvent(QKeyEvent* event) {
    if (!AuthorityManager::CanEditMarkTool())
        return;
    const int row = currentRow();
    if (event->key() == Qt::Key_Up && row > 0)
        ChangeIndex(row, row - 1);
    else if (event->key() == Qt::Key_Down && row >= 0 && row < count() - 1)
        ChangeIndex(row, row + 1);
}

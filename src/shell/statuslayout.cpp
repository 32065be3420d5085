// SPDX-License-Identifier: MIT
#include "shell/statuslayout.h"

#include <algorithm>

namespace tessera {

namespace {

/// The clock's room left and right of the middle, with a gap on either side.
constexpr int kClockLeft = 224;
constexpr int kClockRight = 184;
constexpr int kGap = 8;
constexpr int kRowHeight = 26;

/// Breaks `widths` into rows of at most `room` pixels; the row of each. A part wider than the room has a row alone.
QVector<int> rowsOf(QVector<int> const& widths, int room) {
    QVector<int> rows;
    int row = 0;
    int used = 0;
    for (int width : widths) {
        if (used > 0 && used + width > room) {
            ++row;
            used = 0;
        }
        rows.append(row);
        used += width + kGap;
    }
    return rows;
}

int rowCount(QVector<int> const& rows) {
    return rows.isEmpty() ? 1 : rows.last() + 1;
}

/// Places parts row by row from `x` on.
QVector<QRect> placeRows(QVector<int> const& widths, QVector<int> const& rows, int x, int rowHeight) {
    QVector<QRect> places;
    int at = x;
    for (int i = 0; i < widths.size(); ++i) {
        if (i > 0 && rows.at(i) != rows.at(i - 1))
            at = x;
        places.append(QRect(at, rows.at(i) * rowHeight, widths.at(i), rowHeight));
        at += widths.at(i) + kGap;
    }
    return places;
}

int spanOf(QVector<int> const& widths) {
    int span = 0;
    for (int width : widths)
        span += width + (span > 0 ? kGap : 0);
    return span;
}

} // namespace

StatusPlaces LayStatusBar(int width, QVector<int> const& left, QVector<StatusItem> const& right) {
    QVector<int> all;
    QVector<int> flowing;
    int column = 0;
    int pressed = 0;
    for (StatusItem const& item : right) {
        all.append(item.width);
        if (item.touch) {
            column = std::max(column, item.width);
            ++pressed;
        } else {
            flowing.append(item.width);
        }
    }
    const int leftRoom = width / 2 - kClockLeft - kGap;
    const int rightFrom = width / 2 + kClockRight;
    const QVector<int> leftRows = rowsOf(left, leftRoom);
    StatusPlaces places;
    places.middle = QRect(QPoint(width / 2 - kClockLeft, 0), QPoint(rightFrom - 1, 0));

    if (rowCount(leftRows) == 1 && spanOf(all) <= width - rightFrom - kGap) {
        places.height = kTouchHeight;
        places.left = placeRows(left, leftRows, kGap, places.height);
        places.right = placeRows(all, QVector<int>(all.size(), 0), width - kGap - spanOf(all), places.height);
    } else {
        const int columnFrom = width - kGap - column;
        const QVector<int> rightRows = rowsOf(flowing, columnFrom - kGap - rightFrom);
        const int rows = std::max(rowCount(leftRows), rowCount(rightRows));
        places.height = std::max(rows * kRowHeight, pressed * kTouchHeight);
        const int rowHeight = places.height / rows;
        places.left = placeRows(left, leftRows, kGap, rowHeight);
        const QVector<QRect> flow = placeRows(flowing, rightRows, rightFrom, rowHeight);
        int nextFlow = 0;
        int nextPressed = 0;
        for (StatusItem const& item : right) {
            if (item.touch)
                places.right.append(
                    QRect(columnFrom, places.height / pressed * nextPressed++, column, places.height / pressed));
            else
                places.right.append(flow.at(nextFlow++));
        }
    }
    places.middle.setHeight(places.height);
    return places;
}

} // namespace tessera

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

/// A row of two pressed parts at most, and the lines of the others beside them.
struct PairRow {
    QVector<int> pressed;        ///< of `right`
    QVector<QVector<int>> lines; ///< of `right`, at least one line, two at most beside pressed parts
    int height = kRowHeight;
};

QVector<int> widthsOf(QVector<int> const& items, QVector<StatusItem> const& right) {
    QVector<int> widths;
    for (int item : items)
        widths.append(right.at(item).width);
    return widths;
}

/// Fills the lines in the order of the parts. Behind the last pressed part more rows come as they are needed.
QVector<PairRow> pairRows(int width, int from, QVector<StatusItem> const& right) {
    QVector<PairRow> rows;
    int pressed = 0;
    for (int i = 0; i < right.size(); ++i) {
        if (!right.at(i).touch)
            continue;
        if (pressed++ % 2 == 0)
            rows.append(PairRow{{}, {{}}, kTouchHeight});
        rows.last().pressed.append(i);
    }
    int row = 0;
    for (int i = 0; i < right.size(); ++i) {
        if (right.at(i).touch)
            continue;
        for (;;) {
            if (row == rows.size())
                rows.append(PairRow{{}, {{}}, kRowHeight});
            PairRow& now = rows[row];
            const int taken = spanOf(widthsOf(now.pressed, right));
            const int room = width - kGap - from - (taken > 0 ? taken + kGap : 0);
            QVector<int>& line = now.lines.last();
            const bool fits = spanOf(widthsOf(line + QVector<int>{i}, right)) <= room;
            if (fits || (now.pressed.isEmpty() && line.isEmpty())) {
                line.append(i);
                break;
            }
            if (!line.isEmpty() && now.lines.size() < 2 && !now.pressed.isEmpty() && right.at(i).width <= room)
                now.lines.append(QVector<int>());
            else
                ++row;
        }
    }
    return rows;
}

StatusPlaces layPairs(int width, int from, QVector<int> const& left, QVector<int> const& leftRows,
                      QVector<StatusItem> const& right) {
    const QVector<PairRow> rows = pairRows(width, from, right);
    StatusPlaces places;
    places.right.resize(right.size());
    int top = 0;
    for (PairRow const& row : rows) {
        int at = width - kGap - spanOf(widthsOf(row.pressed, right));
        for (int item : row.pressed) {
            places.right[item] = QRect(at, top, right.at(item).width, row.height);
            at += right.at(item).width + kGap;
        }
        const int lineHeight = row.height / row.lines.size();
        for (int line = 0; line < row.lines.size(); ++line) {
            at = from;
            for (int item : row.lines.at(line)) {
                places.right[item] = QRect(at, top + line * lineHeight, right.at(item).width, lineHeight);
                at += right.at(item).width + kGap;
            }
        }
        top += row.height;
    }
    places.height = std::max(top, rowCount(leftRows) * kRowHeight);
    places.left = placeRows(left, leftRows, kGap, places.height / rowCount(leftRows));
    return places;
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
    const bool oneRow = rowCount(leftRows) == 1 && spanOf(all) <= width - rightFrom - kGap;
    StatusPlaces places;
    if (!oneRow && pressed > 2)
        places = layPairs(width, rightFrom, left, leftRows, right);
    places.middle = QRect(QPoint(width / 2 - kClockLeft, 0), QPoint(rightFrom - 1, 0));

    if (oneRow) {
        places.height = kTouchHeight;
        places.left = placeRows(left, leftRows, kGap, places.height);
        places.right = placeRows(all, QVector<int>(all.size(), 0), width - kGap - spanOf(all), places.height);
    } else if (pressed <= 2) {
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

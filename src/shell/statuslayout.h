// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QVector>

namespace tessera {

/// Something on the right of the clock. What is pressed stays large enough for a finger.
struct StatusItem {
    int width = 0;
    bool touch = false;
};

/// Places of the parts of a status bar.
struct StatusPlaces {
    int height = 0;
    QVector<QRect> left;
    QRect middle; ///< the clock's room
    QVector<QRect> right;
};

/// Height of what a finger presses.
constexpr int kTouchHeight = 40;

/// Lays a status bar of `width` pixels out: one row on a wide screen. Where the sides beside the clock are too narrow
/// for that, both sides break into rows, and what is pressed stands in a column of its own at the right edge; more than
/// two such parts stand there two beside each other, so that the bar does not grow.
StatusPlaces LayStatusBar(int width, QVector<int> const& left, QVector<StatusItem> const& right);

} // namespace tessera

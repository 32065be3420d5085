// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRect>

namespace tessera {

/// The desktop's panel keeps this strip at the bottom of the screen, pixels.
constexpr int kBottomStrip = 50;

/// Place of the main window on a screen.
inline QRect WindowRect(QRect const& screen) {
    return screen.adjusted(0, 0, 0, -kBottomStrip);
}

/// `target` centred over an area of the size of `area`, its size kept. The spans are counted from edge to edge, right
/// minus left and bottom minus top, and halved without rest.
inline QRect CentredRect(QRect const& area, QRect const& target) {
    const int left = ((area.right() - area.left()) - (target.right() - target.left())) / 2;
    const int top = ((area.bottom() - area.top()) - (target.bottom() - target.top())) / 2;
    return QRect(QPoint(left, top), target.size());
}

/// Place of the card-state label: from `fromRight` pixels left of the right edge of `bar` to one pixel left of it.
inline QRect CardStateRect(QRect const& bar, int fromRight) {
    return QRect(QPoint(bar.right() - fromRight, bar.top()), QPoint(bar.right() - 1, bar.bottom()));
}

/// Place of the time label in the middle of a status bar of this size, in the bar's own coordinates.
inline QRect TimeRect(QSize const& bar) {
    const int middle = bar.width() / 2;
    return QRect(QPoint(middle - 220, 0), QPoint(middle + 179, bar.height() - 1));
}

} // namespace tessera

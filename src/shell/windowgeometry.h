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

/// A window of this size in the middle of the lower edge of `screen`.
inline QRect BottomCentredRect(QRect const& screen, QSize const& size) {
    const int left = screen.left() + (screen.width() - size.width()) / 2;
    return QRect(QPoint(left, screen.top() + screen.height() - size.height()), size);
}

/// Place of the card status window of this size beside the lower right corner of the main window's rectangle: the
/// status bar stays free as far as it is one row high.
inline QRect CardStatusRect(QRect const& window, QSize const& size) {
    constexpr int kRightGap = 10;
    constexpr int kBottomGap = 35;
    QRect place(QPoint(0, 0), size);
    place.moveBottomRight(window.bottomRight() - QPoint(kRightGap, kBottomGap));
    return place;
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

/// Place of a custom window for the whole screen in a client area of this size: below a menu bar whose last row is
/// `menuBottom` and 6 pixels short of the lower edge, or the whole area when the menu bar is hidden.
inline QRect CustomWindowRect(QSize const& client, bool menuHidden, int menuBottom) {
    const QRect area(QPoint(0, 0), client);
    return menuHidden ? area : QRect(QPoint(0, menuBottom + 1), QPoint(area.right(), area.bottom() - 6));
}

/// Places of the pages in the right panel.
struct RightPageRects {
    QRect toolProperty;
    QRect motion; ///< null without a motion page
    QRect layerForm;
};

/// `motionHeight` is negative without a motion page, which else keeps its height; the layer page takes the rest.
inline RightPageRects RightPages(QSize const& panel, int motionHeight) {
    constexpr int kToolPropertyHeight = 185;
    const int right = panel.width() - 1;
    RightPageRects rects;
    rects.toolProperty = QRect(0, 0, panel.width(), kToolPropertyHeight);
    int top = kToolPropertyHeight;
    if (motionHeight >= 0) {
        rects.motion = QRect(0, top, panel.width(), motionHeight);
        top += motionHeight;
    }
    rects.layerForm = QRect(QPoint(0, top), QPoint(right, panel.height() - 1));
    return rects;
}

} // namespace tessera

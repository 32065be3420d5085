// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/viewtheme.h"

namespace sim::theme {

namespace {

// Share of light that the eye takes from a colour, 0 to 255.
int luma(const QColor& color) {
    return (299 * color.red() + 587 * color.green() + 114 * color.blue()) / 1000;
}

} // namespace

QColor onCanvas(const QColor& pen) {
    if (!pen.isValid())
        return QColor(kRulerText);
    constexpr int kLightest = 165;
    QColor color = pen;
    while (luma(color) > kLightest)
        color = color.darker(112);
    return color;
}

} // namespace sim::theme

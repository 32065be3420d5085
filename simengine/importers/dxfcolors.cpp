// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfcolors.h"

namespace sim {

namespace {

constexpr QRgb kFirst[] = {0xff000000, 0xffff0000, 0xffffff00, 0xff00ff00, 0xff00ffff,
                           0xff0000ff, 0xffff00ff, 0xff000000, 0xff808080, 0xffc0c0c0};
constexpr int kGreys[] = {0x33, 0x5b, 0x84, 0xad, 0xd6, 0xff};
/// Brightness of the five pairs within one hue, of 255.
constexpr int kValues[] = {255, 189, 129, 104, 79};

} // namespace

QColor dxfColor(int number) {
    if (number >= 1 && number <= 9)
        return QColor(kFirst[number]);
    if (number >= 250 && number <= 255)
        return QColor(kGreys[number - 250], kGreys[number - 250], kGreys[number - 250]);
    if (number < 10 || number > 249)
        return QColor(Qt::black);
    const int hue = (number - 10) / 10 * 15;
    const int shade = number % 10;
    // the odd number of each pair is half as strong
    return QColor::fromHsv(hue, shade % 2 == 0 ? 255 : 128, kValues[shade / 2]).toRgb();
}

} // namespace sim

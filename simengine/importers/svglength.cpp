// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svglength.h"

#include "simengine/importers/svgnumbers.h"

#include <cmath>

namespace sim {

namespace {

struct Unit {
    const char* name;
    double pixels;
};

constexpr Unit kUnits[] = {
    {"", 1.0},
    {"px", 1.0},
    {"mm", kSvgPixelsPerInch / kMmPerInch},
    {"cm", 10.0 * kSvgPixelsPerInch / kMmPerInch},
    {"q", 0.25 * kSvgPixelsPerInch / kMmPerInch},
    {"in", kSvgPixelsPerInch},
    {"pt", kSvgPixelsPerInch / 72.0},
    {"pc", kSvgPixelsPerInch / 6.0},
    {"em", 16.0},
    {"ex", 8.0},
};

} // namespace

std::optional<SvgLength> parseSvgLength(const QString& text) {
    // a number without blanks within, then a unit or nothing
    const QStringRef whole = QStringRef(&text).trimmed();
    if (whole.isEmpty() || whole.startsWith(QLatin1Char(',')))
        return std::nullopt;
    int end = whole.size();
    while (end > 0 && (whole[end - 1].isLetter() || whole[end - 1] == QLatin1Char('%')))
        --end;
    const QString unit = whole.mid(end).toString().toLower();
    const QStringRef number = whole.left(end).trimmed();
    SvgNumbers in(number);
    const auto value = in.number();
    if (!value || !in.atEnd())
        return std::nullopt;
    SvgLength length;
    length.number = *value;
    if (unit == QLatin1String("%")) {
        length.percent = true;
        return length;
    }
    for (const Unit& known : kUnits) {
        if (unit == QLatin1String(known.name)) {
            length.number *= known.pixels;
            return length;
        }
    }
    return std::nullopt;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svglength.h"

#include <QRegularExpression>
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
    static const QRegularExpression form(
        QStringLiteral("^\\s*([+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?)\\s*([a-zA-Z]*|%)\\s*$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    SvgLength length;
    length.number = match.captured(1).toDouble();
    const QString unit = match.captured(2).toLower();
    if (!std::isfinite(length.number))
        return std::nullopt;
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

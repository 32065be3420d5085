// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/card/gridcorrection.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace sim {

namespace {

double readDouble(const unsigned char* bytes) {
    std::uint64_t bits = 0;
    for (int i = 7; i >= 0; --i)
        bits = bits << 8 | bytes[i];
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace

std::shared_ptr<const GridCorrection> GridCorrection::parse(const unsigned char* bytes, std::size_t size, double fieldX,
                                                            double fieldY, std::string& error) {
    if (!(fieldX > 0.0 && fieldY > 0.0 && std::isfinite(fieldX) && std::isfinite(fieldY))) {
        error = "the field has no size";
        return nullptr;
    }
    if (size != kBytes) {
        error = std::to_string(size) + " bytes instead of " + std::to_string(kBytes);
        return nullptr;
    }
    const std::shared_ptr<GridCorrection> table(new GridCorrection);
    table->m_fieldX = fieldX;
    table->m_fieldY = fieldY;
    table->m_cells.resize(std::size_t(kSide) * kSide);
    for (std::size_t i = 0; i < table->m_cells.size(); ++i, bytes += 2 * sizeof(double)) {
        const Point cell{readDouble(bytes), readDouble(bytes + sizeof(double))};
        // Written so that what is no number is refused too.
        if (!(std::fabs(cell.x) <= fieldX && std::fabs(cell.y) <= fieldY)) {
            error = "cell " + std::to_string(i % kSide) + ", " + std::to_string(i / kSide) +
                    " is no number or leads out of the field";
            return nullptr;
        }
        table->m_cells[i] = cell;
    }
    return table;
}

Point GridCorrection::at(Point place) const {
    const double u = (place.x / m_fieldX + 0.5) * (kSide - 1);
    const double v = (place.y / m_fieldY + 0.5) * (kSide - 1);
    if (!(u >= 0.0 && u <= kSide - 1 && v >= 0.0 && v <= kSide - 1))
        return {};
    const int i = std::min(static_cast<int>(u), kSide - 2);
    const int j = std::min(static_cast<int>(v), kSide - 2);
    const double s = u - i;
    const double t = v - j;
    const auto blend = [s, t](double a, double b, double c, double d) {
        return (a * (1.0 - s) + b * s) * (1.0 - t) + (c * (1.0 - s) + d * s) * t;
    };
    const Point &a = cell(i, j), &b = cell(i + 1, j), &c = cell(i, j + 1), &d = cell(i + 1, j + 1);
    return {blend(a.x, b.x, c.x, d.x), blend(a.y, b.y, c.y, d.y)};
}

} // namespace sim

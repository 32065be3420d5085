// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/shape.h"

#include <QByteArray>

namespace sim {

/// The letters of a plotter's label: size, direction, slant and place as the file sets them.
class PltLabel {
public:
    /// The letters in mm, the label's place at the origin; `next` is where the pen stands behind it, `missing` counts
    /// the characters that the font lacks. Carriage return and line feed are obeyed.
    PathShape strokes(const QByteArray& text, QPointF& next, int& missing) const;

    void setSize(double widthMm, double heightMm) { m_width = widthMm, m_height = heightMm; }
    void setDirection(double radians) { m_direction = radians; }
    void setSlant(double tangent) { m_slant = tangent; }
    /// 1 to 9, or 11 to 19 with half a letter's distance: a column of three places, from the bottom left upwards.
    void setOrigin(int origin) { m_origin = origin; }
    /// Way of so many letters and lines, mm.
    QPointF step(double letters, double lines) const;

private:
    double lineWidth(const QString& line) const;

    double m_width = 1.9; ///< mm, of a letter on an A4 sheet
    double m_height = 2.7;
    double m_direction = 0.0;
    double m_slant = 0.0;
    int m_origin = 1;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/pltlabel.h"

#include "simengine/importers/strokeletters.h"

#include <QStringList>
#include <cmath>

namespace sim {

namespace {

/// From letter to letter and from line to line, in widths and heights of a letter.
constexpr double kLetterStep = 1.5;
constexpr double kLineStep = 2.0;

} // namespace

QPointF PltLabel::step(double letters, double lines) const {
    const QTransform turn(std::cos(m_direction), std::sin(m_direction), -std::sin(m_direction), std::cos(m_direction),
                          0, 0);
    return turn.map(QPointF(letters * kLetterStep * m_width, lines * kLineStep * m_height));
}

double PltLabel::lineWidth(const QString& line) const {
    return line.isEmpty() ? 0.0 : (line.size() * kLetterStep - (kLetterStep - 1.0)) * m_width;
}

PathShape PltLabel::strokes(const QByteArray& text, QPointF& next, int& missing) const {
    StrokeLetters letters;
    PathShape all;
    QString plain = QString::fromLatin1(text);
    plain.remove(QLatin1Char('\r'));
    const QStringList lines = plain.split(QLatin1Char('\n'));
    const int place = (m_origin % 10 + 9) % 10; // 0 to 8
    const double away = m_origin > 10 ? 0.5 : 0.0;
    const double across = (place / 3) / 2.0; // 0 left, 0.5 middle, 1 right
    const double down = (place % 3) / 2.0;   // 0 base line, 0.5 middle, 1 top
    QPointF end;
    for (int row = 0; row < lines.size(); ++row) {
        const QString& line = lines[row];
        const double from = -across * lineWidth(line) + away * m_width * (1.0 - 2.0 * across);
        const double base = -down * m_height + away * m_height * (1.0 - 2.0 * down);
        for (int i = 0; i < line.size(); ++i) {
            const uint c = line[i].unicode();
            const StrokeGlyph& glyph = letters.letter(c);
            if (!glyph.known && c > 32)
                ++missing;
            // letters of one width, as a plotter draws them
            const double width = glyph.width > 0.0 ? m_width / glyph.width : m_width;
            const QTransform letter = QTransform(width, 0, 0, m_height, 0, 0) * QTransform(1, 0, m_slant, 1, 0, 0) *
                                      QTransform::fromTranslate(from + i * kLetterStep * m_width, base) *
                                      QTransform(std::cos(m_direction), std::sin(m_direction), -std::sin(m_direction),
                                                 std::cos(m_direction), 0, 0);
            const PathShape mapped =
                mapPath(glyph.path, letter * QTransform::fromTranslate(step(0, -row).x(), step(0, -row).y()));
            all.verbs += mapped.verbs;
            all.points += mapped.points;
        }
        end = step(line.size(), -row);
    }
    next = end;
    return all;
}

} // namespace sim

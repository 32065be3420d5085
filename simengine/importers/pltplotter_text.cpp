// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/pltplotter.h"

#include <cmath>

namespace sim {

namespace {

/// Letters of a label that are drawn.
constexpr int kMostLabel = 10000;
/// What one of them costs the budget, drawn or blank.
constexpr qint64 kLetterCost = 64;

/// Digits of an encoded polyline: the first value of a digit that others follow, and of the last one.
struct EncodedDigits {
    int more;
    int last;
    int base;
};
constexpr EncodedDigits kEightBit{63, 191, 64};
constexpr EncodedDigits kSevenBit{63, 95, 32};

double orient(double value, double missing) {
    return std::isfinite(value) ? value : missing;
}

} // namespace

/// Pairs of numbers in digits to the base 64, or 32 on lines of seven bits: "<" lifts the pen for the next pair, "="
/// makes it a place and not a way, ">" sets the bits behind the point, ":" the pen.
void PltPlotter::encodedPolyline() {
    EncodedDigits digits = kEightBit;
    int fraction = 0;
    bool up = false;
    bool absolute = false;
    char wants = 0; // a flag that takes one number
    std::vector<double> pair;
    qint64 value = 0;
    qint64 weight = 1;
    m_down = true;
    while (const auto byte = m_in.encoded()) {
        const int c = digits.base == 32 ? *byte & 0x7f : *byte;
        if (c == '7') {
            digits = kSevenBit;
        } else if (c == '<') {
            up = true;
        } else if (c == '=') {
            absolute = true;
        } else if (c == ':' || c == '>') {
            wants = char(c);
        } else if (c >= digits.more && c < digits.last + digits.base) {
            const bool last = c >= digits.last;
            const qint64 digit = c - (last ? digits.last : digits.more);
            if (digit >= digits.base || weight > (qint64(1) << 50)) {
                tell(Note::BadNumber);
                value = 0, weight = 1;
                continue;
            }
            value += digit * weight;
            weight *= digits.base;
            if (!last)
                continue;
            const double number = double(value % 2 != 0 ? -(value / 2) : value / 2);
            value = 0, weight = 1;
            if (wants == ':') {
                choosePen(number);
            } else if (wants == '>') {
                fraction = int(std::max(-26.0, std::min(26.0, number)));
            } else {
                pair.push_back(std::ldexp(number, -fraction));
            }
            wants = 0;
            if (pair.size() == 2) {
                encodedMove({pair[0], pair[1]}, up, absolute);
                pair.clear();
                up = absolute = false;
            }
        } else {
            tell(Note::BadNumber);
        }
        if (!m_budget.step())
            return;
    }
}

void PltPlotter::encodedMove(const QPointF& given, bool up, bool absolute) {
    if (up)
        finishStroke();
    m_down = !up;
    travel(absolute ? given : m_at + given);
    m_down = true;
}

void PltPlotter::label() {
    finishStroke();
    QByteArray text = m_in.text(m_terminator);
    if (text.size() > kMostLabel) {
        m_result.skip(QStringLiteral("LB"), noteText(Note::TextTooLong), text.size() - kMostLabel);
        text.truncate(kMostLabel);
    }
    if (!m_budget.step(text.size() * kLetterCost))
        return;
    QPointF next;
    int missing = 0;
    PathShape path = m_label.strokes(text, next, missing);
    if (missing > 0)
        m_result.skip(QStringLiteral("LB"), noteText(Note::NoGlyph), missing);
    if (!m_budget.points(path.points.size()))
        return;
    const QPointF place = m_frame.toSheet().map(m_at);
    for (QPointF& p : path.points)
        p += place;
    if (!path.verbs.isEmpty()) {
        m_result.convert(QStringLiteral("LB"), noteText(Note::FontReplaced));
        deliver(std::move(path), QStringLiteral("LB"));
    }
    m_at = m_frame.toSheet().inverted().map(place + next);
}

void PltPlotter::labelTerminator() {
    m_terminator = m_in.character().value_or('\x03');
    m_in.numbers();
}

void PltPlotter::labelSize() {
    const QVector<double> v = m_in.numbers();
    // cm
    if (v.size() >= 2 && inRange({v[0], v[1]}))
        m_label.setSize(v[0] * 10.0, v[1] * 10.0);
    else
        m_label = PltLabel();
}

/// Percent of the frame.
void PltPlotter::labelRelativeSize() {
    const QVector<double> v = m_in.numbers();
    const QSizeF frame = m_frame.frameSize();
    const double across = v.size() >= 2 ? v[0] : 0.75;
    const double high = v.size() >= 2 ? v[1] : 1.5;
    if (inRange({across, high}))
        m_label.setSize(across * frame.width() / 100.0, high * frame.height() / 100.0);
}

void PltPlotter::labelDirection() {
    const QVector<double> v = m_in.numbers();
    m_label.setDirection(v.size() >= 2 ? orient(std::atan2(v[1], v[0]), 0.0) : 0.0);
}

void PltPlotter::labelRelativeDirection() {
    const QVector<double> v = m_in.numbers();
    const QSizeF frame = m_frame.frameSize();
    m_label.setDirection(v.size() >= 2 ? orient(std::atan2(v[1] * frame.height(), v[0] * frame.width()), 0.0) : 0.0);
}

void PltPlotter::labelSlant() {
    const QVector<double> v = m_in.numbers();
    const double tangent = v.isEmpty() ? 0.0 : v.first();
    if (std::abs(tangent) <= 100.0)
        m_label.setSlant(tangent);
    else
        tell(Note::BadArguments);
}

void PltPlotter::labelOrigin() {
    const QVector<double> v = m_in.numbers();
    const double origin = v.isEmpty() ? 1.0 : v.first();
    if ((origin >= 1.0 && origin <= 9.0) || (origin >= 11.0 && origin <= 19.0))
        m_label.setOrigin(int(origin));
    else
        tell(Note::BadArguments);
}

/// Moves the pen by letters and lines, or without numbers to the beginning of the next line.
void PltPlotter::characterPlot() {
    finishStroke();
    const QVector<double> v = m_in.numbers();
    const QPointF by = v.size() >= 2 ? m_label.step(v[0], v[1]) : m_label.step(0.0, -1.0);
    const QPointF place = m_frame.toSheet().inverted().map(m_frame.toSheet().map(m_at) + by);
    if (inRange(place))
        m_at = place;
}

} // namespace sim

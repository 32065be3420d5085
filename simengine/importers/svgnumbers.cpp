// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgnumbers.h"

#include "simengine/importers/svglength.h"

#include <QVector>
#include <algorithm>
#include <cmath>

namespace sim {

namespace {

bool isBlank(QChar c) {
    const ushort u = c.unicode();
    return u == ' ' || u == '\t' || u == '\n' || u == '\r' || u == '\f';
}

bool isDigit(const QChar* at, const QChar* end) {
    return at < end && at->unicode() >= '0' && at->unicode() <= '9';
}

/// Exact powers; a product or quotient with one of them is rounded once.
constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                              1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

double scaled(quint64 digits, int exponent) {
    if (digits == 0)
        return 0.0;
    if (digits < (quint64(1) << 53) && exponent >= -22 && exponent <= 22)
        return exponent < 0 ? double(digits) / kPowers[-exponent] : double(digits) * kPowers[exponent];
    return double(digits) * std::pow(10.0, exponent);
}

} // namespace

ushort SvgNumbers::peek() {
    while (m_at < m_end && (isBlank(*m_at) || *m_at == QLatin1Char(',')))
        ++m_at;
    return m_at < m_end ? m_at->unicode() : 0;
}

std::optional<double> SvgNumbers::number() {
    peek();
    const QChar* at = m_at;
    const bool negative = at < m_end && *at == QLatin1Char('-');
    if (at < m_end && (negative || *at == QLatin1Char('+')))
        ++at;
    quint64 digits = 0;
    const auto take = [&] {
        const QChar* const first = at;
        for (unsigned digit = 0; at < m_end && (digit = unsigned(at->unicode()) - '0') <= 9; ++at)
            digits = digits * 10 + digit;
        return int(at - first);
    };
    int count = take();
    int fraction = 0;
    if (at < m_end && *at == QLatin1Char('.')) {
        ++at;
        fraction = take();
        count += fraction;
    }
    if (count == 0)
        return std::nullopt;
    // nearly all numbers are as short as that
    constexpr int kMostDigits = 15;
    if (count > kMostDigits || (at < m_end && (at->unicode() | 0x20) == 'e'))
        return longNumber();
    m_at = at;
    const double value = double(digits) / kPowers[fraction];
    return negative ? -value : value;
}

/// The same for any number of digits and with an exponent.
std::optional<double> SvgNumbers::longNumber() {
    const QChar* at = m_at;
    bool negative = false;
    if (at < m_end && (*at == QLatin1Char('-') || *at == QLatin1Char('+'))) {
        negative = *at == QLatin1Char('-');
        ++at;
    }
    quint64 digits = 0;
    int exponent = 0;
    bool any = false;
    // digits beyond the nineteenth do not change a double
    const auto take = [&](bool fraction) {
        for (; isDigit(at, m_end); ++at) {
            any = true;
            if (digits < quint64(1000000000000000000u)) {
                digits = digits * 10 + (at->unicode() - '0');
                exponent -= fraction ? 1 : 0;
            } else if (!fraction && exponent < 100000) {
                ++exponent;
            }
        }
    };
    take(false);
    if (at < m_end && *at == QLatin1Char('.')) {
        ++at;
        take(true);
    }
    if (!any)
        return std::nullopt;
    if (at < m_end && (at->unicode() | 0x20) == 'e') {
        const QChar* e = at + 1;
        const bool down = e < m_end && *e == QLatin1Char('-');
        if (e < m_end && (*e == QLatin1Char('-') || *e == QLatin1Char('+')))
            ++e;
        if (isDigit(e, m_end)) {
            int given = 0;
            for (; isDigit(e, m_end); ++e)
                given = std::min(100000, given * 10 + (e->unicode() - '0'));
            exponent += down ? -given : given;
            at = e;
        }
    }
    const double value = scaled(digits, exponent);
    if (!std::isfinite(value))
        return std::nullopt;
    m_at = at;
    return negative ? -value : value;
}

std::optional<bool> SvgNumbers::flag() {
    const ushort c = peek();
    if (c != '0' && c != '1')
        return std::nullopt;
    ++m_at;
    return c == '1';
}

namespace {

/// Units that a style may have behind a number: pixels and degrees count as one each.
struct TransformUnit {
    const char* name;
    double factor;
};

constexpr TransformUnit kTransformUnits[] = {
    {"", 1.0},
    {"px", 1.0},
    {"in", kSvgPixelsPerInch},
    {"cm", 10.0 * kSvgPixelsPerInch / kMmPerInch},
    {"mm", kSvgPixelsPerInch / kMmPerInch},
    {"pt", kSvgPixelsPerInch / 72.0},
    {"pc", kSvgPixelsPerInch / 6.0},
    {"deg", 1.0},
    {"grad", 0.9},
    {"turn", 360.0},
    {"rad", 180.0 / M_PI},
};

/// The letters that come next.
QString takeWord(SvgNumbers& in) {
    QString word;
    for (ushort c = in.peek(); (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); c = in.peek()) {
        word += QChar(c);
        in.skip();
    }
    return word;
}

/// Up to seven numbers with their units; nothing when a unit is unknown.
std::optional<QVector<double>> takeNumbers(SvgNumbers& in) {
    QVector<double> numbers;
    while (numbers.size() < 7) {
        const auto number = in.number();
        if (!number)
            break;
        const QString name = takeWord(in);
        const auto unit = std::find_if(std::begin(kTransformUnits), std::end(kTransformUnits),
                                       [&](const TransformUnit& u) { return name == QLatin1String(u.name); });
        if (unit == std::end(kTransformUnits))
            return std::nullopt;
        numbers.append(*number * unit->factor);
    }
    return numbers;
}

/// One transform of a list; nothing when there is none of that name and number of arguments.
std::optional<QTransform> namedTransform(const QString& name, const QVector<double>& v) {
    const int n = v.size();
    const auto is = [&](const char* known, int least, int most) {
        return n >= least && n <= most && name == QLatin1String(known);
    };
    if (is("matrix", 6, 6))
        return QTransform(v[0], v[1], v[2], v[3], v[4], v[5]);
    if (is("translate", 1, 2))
        return QTransform::fromTranslate(v[0], n > 1 ? v[1] : 0.0);
    if (is("translateX", 1, 1))
        return QTransform::fromTranslate(v[0], 0.0);
    if (is("translateY", 1, 1))
        return QTransform::fromTranslate(0.0, v[0]);
    if (is("scale", 1, 2))
        return QTransform::fromScale(v[0], n > 1 ? v[1] : v[0]);
    if (is("scaleX", 1, 1))
        return QTransform::fromScale(v[0], 1.0);
    if (is("scaleY", 1, 1))
        return QTransform::fromScale(1.0, v[0]);
    if (is("rotate", 1, 1))
        return QTransform().rotate(v[0]);
    if (is("rotate", 3, 3))
        return QTransform().translate(v[1], v[2]).rotate(v[0]).translate(-v[1], -v[2]);
    if (is("skewX", 1, 1))
        return QTransform(1, 0, std::tan(v[0] * M_PI / 180.0), 1, 0, 0);
    if (is("skewY", 1, 1))
        return QTransform(1, std::tan(v[0] * M_PI / 180.0), 0, 1, 0, 0);
    return std::nullopt;
}

} // namespace

std::optional<QTransform> parseSvgTransform(const QStringRef& text) {
    QTransform all;
    SvgNumbers in(text);
    while (in.peek() != 0) {
        const QString name = takeWord(in);
        if (in.peek() != '(')
            return std::nullopt;
        in.skip();
        const auto numbers = takeNumbers(in);
        if (!numbers || in.peek() != ')')
            return std::nullopt;
        in.skip();
        const auto transform = namedTransform(name, *numbers);
        if (!transform)
            return std::nullopt;
        all = *transform * all;
    }
    for (double m : {all.m11(), all.m12(), all.m21(), all.m22(), all.dx(), all.dy()}) {
        if (!std::isfinite(m) || std::abs(m) > 1e12)
            return std::nullopt;
    }
    return all;
}

} // namespace sim

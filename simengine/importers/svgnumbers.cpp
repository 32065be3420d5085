// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgnumbers.h"

#include <QVector>
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

std::optional<QTransform> parseSvgTransform(const QStringRef& text) {
    QTransform all;
    SvgNumbers in(text);
    while (const ushort first = in.peek()) {
        QString name;
        for (ushort c = first; (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); c = in.peek()) {
            name += QChar(c);
            in.skip();
        }
        if (in.peek() != '(')
            return std::nullopt;
        in.skip();
        QVector<double> v;
        while (v.size() < 7) {
            const auto number = in.number();
            if (!number)
                break;
            v.append(*number);
        }
        if (in.peek() != ')')
            return std::nullopt;
        in.skip();
        const int n = v.size();
        QTransform t;
        if (name == QLatin1String("matrix") && n == 6)
            t = QTransform(v[0], v[1], v[2], v[3], v[4], v[5]);
        else if (name == QLatin1String("translate") && (n == 1 || n == 2))
            t = QTransform::fromTranslate(v[0], n > 1 ? v[1] : 0.0);
        else if (name == QLatin1String("scale") && (n == 1 || n == 2))
            t = QTransform::fromScale(v[0], n > 1 ? v[1] : v[0]);
        else if (name == QLatin1String("rotate") && n == 1)
            t.rotate(v[0]);
        else if (name == QLatin1String("rotate") && n == 3)
            t.translate(v[1], v[2]).rotate(v[0]).translate(-v[1], -v[2]);
        else if (name == QLatin1String("skewX") && n == 1)
            t = QTransform(1, 0, std::tan(v[0] * M_PI / 180.0), 1, 0, 0);
        else if (name == QLatin1String("skewY") && n == 1)
            t = QTransform(1, std::tan(v[0] * M_PI / 180.0), 0, 1, 0, 0);
        else
            return std::nullopt;
        all = t * all;
    }
    for (double m : {all.m11(), all.m12(), all.m21(), all.m22(), all.dx(), all.dy()}) {
        if (!std::isfinite(m) || std::abs(m) > 1e12)
            return std::nullopt;
    }
    return all;
}

} // namespace sim

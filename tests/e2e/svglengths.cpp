// SPDX-License-Identifier: MIT
#include "e2e/svglengths.h"

#include <QPointF>
#include <QRegularExpression>
#include <QStringList>
#include <QTransform>
#include <QXmlStreamReader>
#include <QtMath>
#include <algorithm>
#include <cmath>

namespace {

constexpr int kSamples = 400; ///< of a curve

using Contour = QVector<QPointF>;

QVector<double> numbersOf(QString const& text) {
    static QRegularExpression const number(QStringLiteral("[-+]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][-+]?\\d+)?"));
    QVector<double> numbers;
    for (auto match = number.globalMatch(text); match.hasNext();)
        numbers.append(match.next().captured().toDouble());
    return numbers;
}

double lengthOf(Contour const& contour, QTransform const& transform) {
    double sum = 0;
    for (int i = 1; i < contour.size(); ++i) {
        QPointF const step = transform.map(contour.at(i)) - transform.map(contour.at(i - 1));
        sum += std::hypot(step.x(), step.y());
    }
    return sum;
}

template<typename Curve>
void sample(Contour& contour, Curve curve) {
    for (int i = 1; i <= kSamples; ++i)
        contour.append(curve(double(i) / kSamples));
}

void cubic(Contour& contour, QPointF a, QPointF b, QPointF end) {
    QPointF const start = contour.last();
    sample(contour, [=](double t) {
        double const s = 1 - t;
        return start * (s * s * s) + a * (3 * s * s * t) + b * (3 * s * t * t) + end * (t * t * t);
    });
}

void quadratic(Contour& contour, QPointF control, QPointF end) {
    QPointF const start = contour.last();
    sample(contour, [=](double t) {
        double const s = 1 - t;
        return start * (s * s) + control * (2 * s * t) + end * (t * t);
    });
}

/// Arc by its end points, converted to its centre as appendix B.2.4 of the SVG recommendation tells.
void arc(Contour& contour, double rx, double ry, double turn, bool large, bool sweep, QPointF end) {
    QPointF const start = contour.last();
    double const phi = qDegreesToRadians(turn);
    QPointF const half = (start - end) / 2;
    double const x = std::cos(phi) * half.x() + std::sin(phi) * half.y();
    double const y = -std::sin(phi) * half.x() + std::cos(phi) * half.y();
    double const lambda = x * x / (rx * rx) + y * y / (ry * ry);
    if (lambda > 1) {
        rx *= std::sqrt(lambda);
        ry *= std::sqrt(lambda);
    }
    double const over = rx * rx * ry * ry - rx * rx * y * y - ry * ry * x * x;
    double const root = std::sqrt(std::max(0.0, over / (rx * rx * y * y + ry * ry * x * x)));
    double const sign = large == sweep ? -1 : 1;
    double const cx = sign * root * rx * y / ry;
    double const cy = -sign * root * ry * x / rx;
    double const from = std::atan2((y - cy) / ry, (x - cx) / rx);
    double span = std::atan2((-y - cy) / ry, (-x - cx) / rx) - from;
    if (sweep && span < 0)
        span += 2 * M_PI;
    if (!sweep && span > 0)
        span -= 2 * M_PI;
    QPointF const centre(std::cos(phi) * cx - std::sin(phi) * cy + (start.x() + end.x()) / 2,
                         std::sin(phi) * cx + std::cos(phi) * cy + (start.y() + end.y()) / 2);
    sample(contour, [=](double t) {
        double const angle = from + span * t;
        double const u = rx * std::cos(angle);
        double const v = ry * std::sin(angle);
        return centre + QPointF(std::cos(phi) * u - std::sin(phi) * v, std::sin(phi) * u + std::cos(phi) * v);
    });
}

/// Reads the commands of a path's data.
class PathReader {
public:
    QVector<Contour> read(QString const& data) {
        static QRegularExpression const part(QStringLiteral("([A-Za-z])([^A-Za-z]*)"));
        for (auto match = part.globalMatch(data); match.hasNext();) {
            QRegularExpressionMatch const found = match.next();
            command(found.captured(1).at(0), numbersOf(found.captured(2)));
        }
        finish();
        return m_contours;
    }

private:
    void finish() {
        if (m_contour.size() > 1)
            m_contours.append(m_contour);
    }
    QPointF point(double x, double y, bool relative) const {
        return relative ? m_contour.last() + QPointF(x, y) : QPointF(x, y);
    }

    void command(QChar letter, QVector<double> const& values) {
        static QString const kinds = QStringLiteral("MLHVCSQTAZ");
        static int const counts[] = {2, 2, 1, 1, 6, 4, 4, 2, 7, 0};
        int const kind = kinds.indexOf(letter.toUpper());
        if (kind < 0)
            qFatal("unknown path command %c", letter.toLatin1());
        int const count = counts[kind];
        for (int i = 0; i == 0 || (count && i + count <= values.size()); i += std::max(1, count)) {
            QChar const now = kind == 0 && i > 0 ? QLatin1Char('L') : letter.toUpper();
            step(now, values.constData() + i, letter.isLower());
            if (!count)
                break;
        }
    }

    void step(QChar kind, double const* v, bool relative) {
        QPointF control = m_contour.isEmpty() ? QPointF() : m_contour.last();
        switch (kind.toLatin1()) {
        case 'M': {
            QPointF const start =
                relative && !m_contour.isEmpty() ? m_contour.last() + QPointF(v[0], v[1]) : QPointF(v[0], v[1]);
            finish();
            m_contour = {start};
            control = start;
            break;
        }
        case 'L':
            m_contour.append(point(v[0], v[1], relative));
            break;
        case 'H':
            m_contour.append(QPointF(relative ? m_contour.last().x() + v[0] : v[0], m_contour.last().y()));
            break;
        case 'V':
            m_contour.append(QPointF(m_contour.last().x(), relative ? m_contour.last().y() + v[0] : v[0]));
            break;
        case 'C':
            control = point(v[2], v[3], relative);
            cubic(m_contour, point(v[0], v[1], relative), control, point(v[4], v[5], relative));
            break;
        case 'S': {
            QPointF const first = mirrored("CS");
            control = point(v[0], v[1], relative);
            cubic(m_contour, first, control, point(v[2], v[3], relative));
            break;
        }
        case 'Q':
            control = point(v[0], v[1], relative);
            quadratic(m_contour, control, point(v[2], v[3], relative));
            break;
        case 'T':
            control = mirrored("QT");
            quadratic(m_contour, control, point(v[0], v[1], relative));
            break;
        case 'A':
            arc(m_contour, v[0], v[1], v[2], v[3] != 0, v[4] != 0, point(v[5], v[6], relative));
            break;
        case 'Z': {
            QPointF const start = m_contour.first();
            m_contour.append(start);
            finish();
            m_contour = {start};
            break;
        }
        }
        m_lastKind = kind;
        m_lastControl = control;
    }

    /// The last control point mirrored at the present point, after one of `kinds`; else the present point.
    QPointF mirrored(char const* kinds) const {
        return QString::fromLatin1(kinds).contains(m_lastKind) ? 2 * m_contour.last() - m_lastControl
                                                               : m_contour.last();
    }

    QVector<Contour> m_contours;
    Contour m_contour;
    QChar m_lastKind;
    QPointF m_lastControl;
};

QTransform transformOf(QString const& text) {
    static QRegularExpression const part(QStringLiteral("(\\w+)\\s*\\(([^)]*)\\)"));
    QTransform whole;
    for (auto match = part.globalMatch(text); match.hasNext();) {
        QRegularExpressionMatch const found = match.next();
        QString const name = found.captured(1);
        QVector<double> const v = numbersOf(found.captured(2));
        QTransform one;
        if (name == QLatin1String("translate")) {
            one.translate(v.at(0), v.value(1));
        } else if (name == QLatin1String("scale")) {
            one.scale(v.at(0), v.size() > 1 ? v.at(1) : v.at(0));
        } else if (name == QLatin1String("rotate")) {
            one.translate(v.value(1), v.value(2));
            one.rotate(v.at(0));
            one.translate(-v.value(1), -v.value(2));
        } else if (name == QLatin1String("matrix")) {
            one = QTransform(v.at(0), v.at(1), v.at(2), v.at(3), v.at(4), v.at(5));
        } else {
            qFatal("unknown transform %s", qPrintable(name));
        }
        whole = one * whole;
    }
    return whole;
}

Contour ellipse(double cx, double cy, double rx, double ry) {
    Contour contour{{cx + rx, cy}};
    sample(contour,
           [=](double t) { return QPointF(cx + rx * std::cos(2 * M_PI * t), cy + ry * std::sin(2 * M_PI * t)); });
    return contour;
}

Contour rectangle(double x, double y, double width, double height, double rx, double ry) {
    rx = std::min(rx, width / 2);
    ry = std::min(ry, height / 2);
    Contour contour{{x + rx, y}};
    contour.append({x + width - rx, y});
    if (rx > 0)
        arc(contour, rx, ry, 0, false, true, {x + width, y + ry});
    contour.append({x + width, y + height - ry});
    if (rx > 0)
        arc(contour, rx, ry, 0, false, true, {x + width - rx, y + height});
    contour.append({x + rx, y + height});
    if (rx > 0)
        arc(contour, rx, ry, 0, false, true, {x, y + height - ry});
    contour.append({x, y + ry});
    if (rx > 0)
        arc(contour, rx, ry, 0, false, true, {x + rx, y});
    return contour;
}

QVector<Contour> contoursOf(QStringRef const& element, QXmlStreamAttributes const& attributes) {
    auto number = [&attributes](char const* name, double otherwise = 0.0) {
        return attributes.hasAttribute(QLatin1String(name)) ? attributes.value(QLatin1String(name)).toDouble()
                                                            : otherwise;
    };
    if (element == QLatin1String("path"))
        return PathReader().read(attributes.value(QLatin1String("d")).toString());
    if (element == QLatin1String("circle"))
        return {ellipse(number("cx"), number("cy"), number("r"), number("r"))};
    if (element == QLatin1String("ellipse"))
        return {ellipse(number("cx"), number("cy"), number("rx"), number("ry"))};
    if (element == QLatin1String("rect"))
        return {rectangle(number("x"), number("y"), number("width"), number("height"), number("rx", number("ry")),
                          number("ry", number("rx")))};
    if (element == QLatin1String("line"))
        return {{{number("x1"), number("y1")}, {number("x2"), number("y2")}}};
    if (element != QLatin1String("polyline") && element != QLatin1String("polygon"))
        return {};
    QVector<double> const values = numbersOf(attributes.value(QLatin1String("points")).toString());
    Contour contour;
    for (int i = 0; i + 1 < values.size(); i += 2)
        contour.append({values.at(i), values.at(i + 1)});
    if (element == QLatin1String("polygon"))
        contour.append(contour.first());
    return {contour};
}

} // namespace

QVector<double> svgContourLengths(QByteArray const& svg) {
    QVector<double> lengths;
    QVector<QTransform> stack{QTransform()};
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement())
            stack.removeLast();
        if (!reader.isStartElement())
            continue;
        QXmlStreamAttributes const attributes = reader.attributes();
        QTransform transform = transformOf(attributes.value(QLatin1String("transform")).toString()) * stack.last();
        if (reader.name() == QLatin1String("svg")) {
            QVector<double> const box = numbersOf(attributes.value(QLatin1String("viewBox")).toString());
            double const width = numbersOf(attributes.value(QLatin1String("width")).toString()).at(0);
            double const height = numbersOf(attributes.value(QLatin1String("height")).toString()).at(0);
            transform.scale(width / box.at(2), height / box.at(3));
        }
        stack.append(transform);
        for (Contour const& contour : contoursOf(reader.name(), attributes))
            lengths.append(lengthOf(contour, transform));
    }
    if (reader.hasError())
        qFatal("the drawing cannot be read: %s", qPrintable(reader.errorString()));
    std::sort(lengths.begin(), lengths.end());
    return lengths;
}

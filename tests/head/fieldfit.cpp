// SPDX-License-Identifier: MIT
#include "fieldfit.h"

#include <QDataStream>
#include <cmath>

namespace fieldfit {

namespace {

/// Solves the least squares problem |A c - b| for two right sides at once. `a` is row by row and is used up.
void solve(QVector<QVector<double>> a, QVector<double> bx, QVector<double> by, QVector<double>& cx,
           QVector<double>& cy) {
    int const rows = a.size();
    int const columns = a.first().size();
    for (int k = 0; k < columns; ++k) {
        double norm = 0.0;
        for (int i = k; i < rows; ++i)
            norm += a[i][k] * a[i][k];
        norm = std::sqrt(norm);
        double const alpha = a[k][k] > 0.0 ? -norm : norm;
        QVector<double> v(rows, 0.0);
        for (int i = k; i < rows; ++i)
            v[i] = a[i][k];
        v[k] -= alpha;
        double length = 0.0;
        for (double const value : qAsConst(v))
            length += value * value;
        auto const reflect = [&](auto get, auto set) {
            double dot = 0.0;
            for (int i = k; i < rows; ++i)
                dot += v[i] * get(i);
            for (int i = k; i < rows; ++i)
                set(i, get(i) - 2.0 * v[i] * dot / length);
        };
        for (int j = k; j < columns; ++j)
            reflect([&](int i) { return a[i][j]; }, [&](int i, double value) { a[i][j] = value; });
        reflect([&](int i) { return bx[i]; }, [&](int i, double value) { bx[i] = value; });
        reflect([&](int i) { return by[i]; }, [&](int i, double value) { by[i] = value; });
    }
    cx.fill(0.0, columns);
    cy.fill(0.0, columns);
    for (int k = columns - 1; k >= 0; --k) {
        double x = bx[k];
        double y = by[k];
        for (int j = k + 1; j < columns; ++j) {
            x -= a[k][j] * cx[j];
            y -= a[k][j] * cy[j];
        }
        cx[k] = x / a[k][k];
        cy[k] = y / a[k][k];
    }
}

} // namespace

FieldMap::FieldMap(QVector<QPointF> const& commanded, QVector<QPointF> const& measured, double reach, int degree)
    : m_reach(reach)
    , m_degree(degree) {
    QVector<QVector<double>> rows;
    QVector<double> bx;
    QVector<double> by;
    for (int i = 0; i < commanded.size(); ++i) {
        rows.append(terms(commanded[i]));
        bx.append(measured[i].x());
        by.append(measured[i].y());
    }
    solve(rows, bx, by, m_x, m_y);
}

QVector<double> FieldMap::terms(QPointF const& at) const {
    double const x = at.x() / m_reach;
    double const y = at.y() / m_reach;
    QVector<double> list;
    for (int sum = 0; sum <= m_degree; ++sum) {
        for (int i = 0; i <= sum; ++i)
            list.append(std::pow(x, sum - i) * std::pow(y, i));
    }
    return list;
}

QPointF FieldMap::marked(QPointF const& commanded) const {
    QVector<double> const list = terms(commanded);
    double x = 0.0;
    double y = 0.0;
    for (int i = 0; i < list.size(); ++i) {
        x += m_x[i] * list[i];
        y += m_y[i] * list[i];
    }
    return {x, y};
}

QPointF FieldMap::commandFor(QPointF const& wanted) const {
    constexpr double kStep = 1e-4;
    QPointF c = wanted;
    for (int i = 0; i < 20; ++i) {
        QPointF const off = wanted - marked(c);
        if (std::hypot(off.x(), off.y()) < 1e-9)
            break;
        QPointF const dx = (marked(c + QPointF(kStep, 0)) - marked(c - QPointF(kStep, 0))) / (2 * kStep);
        QPointF const dy = (marked(c + QPointF(0, kStep)) - marked(c - QPointF(0, kStep))) / (2 * kStep);
        double const det = dx.x() * dy.y() - dy.x() * dx.y();
        c += QPointF((off.x() * dy.y() - dy.x() * off.y()) / det, (dx.x() * off.y() - off.x() * dx.y()) / det);
    }
    return c;
}

QByteArray correctionTable(FieldMap const& map, double fieldEdge, double bound) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.setFloatingPointPrecision(QDataStream::DoublePrecision);
    for (int j = 0; j < 257; ++j) {
        for (int i = 0; i < 257; ++i) {
            QPointF const place(-fieldEdge / 2 + i * fieldEdge / 256, -fieldEdge / 2 + j * fieldEdge / 256);
            QPointF correction;
            if (std::fabs(place.x()) < bound && std::fabs(place.y()) < bound)
                correction = map.commandFor(place) - place;
            stream << correction.x() << correction.y();
        }
    }
    return bytes;
}

QVector<QPointF> readPoints(QByteArray const& text) {
    QVector<QPointF> points;
    for (QByteArray const& line : text.split('\n')) {
        QList<QByteArray> const parts = line.split(',');
        if (parts.size() == 2)
            points.append({parts[0].toDouble(), parts[1].toDouble()});
    }
    return points;
}

} // namespace fieldfit

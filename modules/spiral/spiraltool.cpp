// SPDX-License-Identifier: MIT
#include "spiral/spiraltool.h"

#include <QtMath>
#include <algorithm>
#include <cmath>

namespace toolmodules {

namespace {

enum { Inner, Pitch, Turns, Angle, Clockwise, BackWay };

constexpr double kMostTurns = 1000.0;
constexpr int kPiecesOfTurn = 24;
constexpr int kMostPieces = 30000; ///< keeps the outline, there and back, below the points an object may have

/// r = radius + growth * t and an angle of `angle` + turning * t, t in radians from 0.
struct Arm {
    double radius = 0.0;
    double growth = 0.0; ///< mm a radian
    double angle = 0.0;
    double turning = 1.0; ///< 1 counter-clockwise, -1 clockwise

    QPointF at(double t) const {
        const double a = angle + turning * t;
        return (radius + growth * t) * QPointF(std::cos(a), std::sin(a));
    }
    QPointF slope(double t) const {
        const double a = angle + turning * t;
        const QPointF radial(std::cos(a), std::sin(a));
        return growth * radial + (radius + growth * t) * turning * QPointF(-radial.y(), radial.x());
    }
};

void follow(ToolContour& contour, const Arm& arm, double sweep) {
    const int wanted = int(std::ceil(sweep / (2.0 * M_PI) * kPiecesOfTurn));
    const int pieces = qBound(1, wanted, kMostPieces);
    const double step = sweep / pieces;
    const double handle = 4.0 / 3.0 * std::tan(step / 4.0); // exact for a circle, of which a turn is nearly one
    for (int i = 0; i < pieces; ++i) {
        ToolSegment piece;
        piece.curved = true;
        piece.handle1 = arm.at(i * step) + handle * arm.slope(i * step);
        piece.end = arm.at((i + 1) * step);
        piece.handle2 = piece.end - handle * arm.slope((i + 1) * step);
        contour.segments.append(piece);
    }
}

void goBack(ToolContour& contour) {
    const QVector<ToolSegment> there = contour.segments;
    for (int i = there.size() - 1; i >= 0; --i) {
        ToolSegment back = there.at(i);
        std::swap(back.handle1, back.handle2);
        back.end = i > 0 ? there.at(i - 1).end : contour.start;
        contour.segments.append(back);
    }
}

} // namespace

SpiralTool::SpiralTool()
    : NumberTool(
          kClass,
          {{"inner", real("内半径", "mm", 0.0, 10000.0, 0.0)},
           {"pitch", real("圈距", "mm", 0.001, 1000.0, 1.0)},
           {"turns", real("圈数", "", 0.05, kMostTurns, 5.0, 2)},
           {"angle", real("起始角度", "°", -360.0, 360.0, 0.0, 2)},
           {"clockwise", toggle("顺时针", false)},
           {"back",
            choice("返回方式", {QStringLiteral("不返回"), QStringLiteral("原路返回"), QStringLiteral("继续旋转返回")},
                   NoBack)}},
          true) {}

QVector<ToolContour> SpiralTool::MakeOutline(QVector<double> const& values) const {
    const double sweep = 2.0 * M_PI * values.at(Turns);
    Arm out;
    out.radius = values.at(Inner);
    out.growth = values.at(Pitch) / (2.0 * M_PI);
    out.angle = qDegreesToRadians(values.at(Angle));
    out.turning = values.at(Clockwise) > 0.5 ? -1.0 : 1.0;
    ToolContour contour;
    contour.start = out.at(0.0);
    follow(contour, out, sweep);
    const int back = int(values.at(BackWay));
    if (back == SameWay) {
        goBack(contour);
    } else if (back == TurningOn) {
        const Arm in{out.radius + out.growth * sweep, -out.growth, out.angle + out.turning * sweep, out.turning};
        follow(contour, in, sweep);
    }
    return {contour};
}

// The pitch is what the process asks for, so that a larger spiral has more turns.
void SpiralTool::Place(QPointF const& drag, QVector<double>& values) const {
    const double outer = std::hypot(drag.x(), drag.y());
    values[Turns] = std::min((outer - values.at(Inner)) / values.at(Pitch), kMostTurns);
}

} // namespace toolmodules

// SPDX-License-Identifier: MIT
#include "polygon/polygontool.h"

#include "polygon/roundedcorners.h"

#include <QtMath>
#include <cmath>

namespace toolmodules {

namespace {

constexpr double kLeastRadius = 0.01; ///< mm
constexpr double kMostRadius = 10000.0;
constexpr int kMostCorners = 500;

namespace polygon {
enum { Corners, Radius, Rounding, Angle };
}
namespace star {
enum { Corners, Radius, Inner, Rounding, Angle };
}

QPointF onCircle(double radius, double degrees) {
    const double angle = qDegreesToRadians(degrees);
    return {radius * std::cos(angle), radius * std::sin(angle)};
}

double angleOf(const QPointF& drag) {
    return drag.isNull() ? 0.0 : qRadiansToDegrees(std::atan2(drag.y(), drag.x()));
}

Number corners(int preset) {
    return {"corners", whole("角数", 3, kMostCorners, preset)};
}

Number radius() {
    return {"radius", real("外接圆半径", "mm", kLeastRadius, kMostRadius, 10.0)};
}

Number rounding() {
    return {"rounding", real("圆角半径", "mm", 0.0, kMostRadius, 0.0)};
}

Number startAngle() {
    return {"angle", real("起始角度", "°", -360.0, 360.0, 90.0, 2)};
}

} // namespace

PolygonTool::PolygonTool()
    : NumberTool(kClass, {corners(6), radius(), rounding(), startAngle()}, false) {}

QVector<ToolContour> PolygonTool::MakeOutline(QVector<double> const& values) const {
    const int count = int(values.at(polygon::Corners));
    QVector<QPointF> places;
    for (int i = 0; i < count; ++i)
        places.append(onCircle(values.at(polygon::Radius), values.at(polygon::Angle) + 360.0 * i / count));
    return {roundedOutline(places, values.at(polygon::Rounding))};
}

void PolygonTool::Place(QPointF const& drag, QVector<double>& values) const {
    values[polygon::Radius] = std::hypot(drag.x(), drag.y());
    values[polygon::Angle] = angleOf(drag);
}

StarTool::StarTool()
    : NumberTool(kClass,
                 {corners(5), radius(), {"inner", real("内径比例", "", 0.01, 1.0, 0.4)}, rounding(), startAngle()},
                 false) {}

QVector<ToolContour> StarTool::MakeOutline(QVector<double> const& values) const {
    const int count = int(values.at(star::Corners));
    const double outer = values.at(star::Radius);
    QVector<QPointF> places;
    for (int i = 0; i < 2 * count; ++i)
        places.append(
            onCircle(i % 2 ? outer * values.at(star::Inner) : outer, values.at(star::Angle) + 180.0 * i / count));
    return {roundedOutline(places, values.at(star::Rounding))};
}

void StarTool::Place(QPointF const& drag, QVector<double>& values) const {
    values[star::Radius] = std::hypot(drag.x(), drag.y());
    values[star::Angle] = angleOf(drag);
}

} // namespace toolmodules

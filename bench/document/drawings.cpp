// SPDX-License-Identifier: MIT
#include "drawings.h"

#include "engine/marktypes.h"

#include <cmath>

namespace bench {

namespace {

using namespace sim;

ObjectPtr lineObject(QPolygonF points, int pen) {
    ObjectData data;
    PolylineShape shape;
    shape.points = std::move(points);
    data.shape = std::move(shape);
    data.pen = pen;
    return MarkObject::make(std::move(data));
}

ObjectList spiral() {
    constexpr int kVertices = 1000000;
    QPolygonF points;
    points.reserve(kVertices);
    for (int i = 0; i < kVertices; ++i) {
        const double t = static_cast<double>(i) / kVertices;
        const double angle = t * 2.0 * M_PI * 60.0;
        points << QPointF(48.0 * t * std::cos(angle), 48.0 * t * std::sin(angle));
    }
    return {lineObject(std::move(points), 1)};
}

/// Small waves in rows and columns.
ObjectList waves(int objects, int vertices) {
    ObjectList list;
    list.reserve(static_cast<std::size_t>(objects));
    const int side = static_cast<int>(std::ceil(std::sqrt(objects)));
    const double pitch = 96.0 / side;
    for (int i = 0; i < objects; ++i) {
        QPolygonF points;
        points.reserve(vertices);
        const QPointF corner(-48.0 + (i % side) * pitch, -48.0 + i / side * pitch);
        for (int k = 0; k < vertices; ++k) {
            const double t = static_cast<double>(k) / vertices;
            points << corner + pitch * QPointF(t * 0.9, 0.45 + 0.4 * std::sin(t * 12.0));
        }
        list.push_back(lineObject(std::move(points), i % kLayerCount));
    }
    return list;
}

} // namespace

const std::vector<Drawing>& drawings() {
    static const std::vector<Drawing> all = {
        {"1 object x 1000000 vertices", spiral},
        {"10000 objects x 100 vertices", [] { return waves(10000, 100); }},
        {"100000 objects x 10 vertices", [] { return waves(100000, 10); }},
    };
    return all;
}

} // namespace bench

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/painterpath.h"

namespace sim {

PathShape pathFromPainter(const QPainterPath& path, const QTransform& transform) {
    PathShape shape;
    int contourStart = -1;
    const auto finish = [&] {
        if (contourStart < 0)
            return;
        if (shape.verbs.last() == PathVerb::Move) {
            shape.verbs.removeLast();
            shape.points.removeLast();
        } else if (shape.points.size() - contourStart > 2 && shape.points.last() == shape.points[contourStart]) {
            if (shape.verbs.last() == PathVerb::Line) {
                shape.verbs.removeLast();
                shape.points.removeLast();
            }
            shape.close();
        }
    };
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        const QPointF p = transform.map(QPointF(element));
        switch (element.type) {
        case QPainterPath::MoveToElement:
            finish();
            contourStart = shape.points.size();
            shape.moveTo(p);
            break;
        case QPainterPath::LineToElement:
            shape.lineTo(p);
            break;
        case QPainterPath::CurveToElement:
            shape.cubicTo(p, transform.map(QPointF(path.elementAt(i + 1))),
                          transform.map(QPointF(path.elementAt(i + 2))));
            i += 2;
            break;
        case QPainterPath::CurveToDataElement:
            break;
        }
    }
    finish();
    return shape;
}

} // namespace sim

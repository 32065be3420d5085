// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/box.h"
#include "simengine/document/codespec.h"
#include "simengine/document/textspec.h"

#include <QByteArray>
#include <QPolygonF>
#include <QRectF>
#include <QTransform>
#include <QVector>
#include <memory>
#include <variant>
#include <vector>

namespace sim {

class MarkObject;
using ObjectPtr = std::shared_ptr<const MarkObject>;
/// Objects in marking order.
using ObjectList = std::vector<ObjectPtr>;

/// The kinds of object. The values stand in document files.
enum class ObjectKind : quint8 {
    Point = 1,
    Polyline = 2,
    Rect = 3,
    Circle = 4,
    Arc = 5,
    Path = 6,
    Group = 7,
    Text = 8,
    Code = 9,
    Generated = 10
};

struct PointShape {
    QPointF pos;
    /// Laser time in µs; below 0 the pen's time.
    double dwellUs = -1.0;
};

struct PolylineShape {
    QPolygonF points; ///< at least one; the first is not repeated at the end of a closed one
    bool closed = false;
};

/// Marked from the bottom left corner counter-clockwise.
struct RectShape {
    QRectF rect; ///< x and y are the bottom left corner; width and height of 0 or more
};

/// A full circle; with an object's transform also an ellipse.
struct CircleShape {
    QPointF center;
    double radius = 0.0;
    double startAngle = 0.0; ///< degrees, counter-clockwise from the x axis
    bool clockwise = false;
};

struct ArcShape {
    QPointF center;
    double radius = 0.0;
    double startAngle = 0.0; ///< degrees, counter-clockwise from the x axis
    double sweepAngle = 0.0; ///< degrees, -360 to 360, positive counter-clockwise
};

/// Values stand in document files. Move and Line take one point, Cubic three, Close none.
enum class PathVerb : quint8 { Move = 0, Line = 1, Cubic = 2, Close = 3 };

/// One or more contours of lines and cubic Bezier curves. Each contour begins with a Move; a Close ends it.
struct PathShape {
    QVector<PathVerb> verbs;
    QVector<QPointF> points;

    void moveTo(const QPointF& p);
    void lineTo(const QPointF& p);
    void cubicTo(const QPointF& c1, const QPointF& c2, const QPointF& p);
    void close();
    /// Number of Move verbs.
    int contourCount() const;
};

/// Objects held together. Their own transforms apply first, then the group's.
struct GroupShape {
    ObjectList children;
};

/// A text as it was entered, and its outline: a document marks the same where the font is missing.
struct TextShape {
    TextSpec spec;
    QString shown; ///< the text that the outline has of a spec with variables; else empty
    /// Contours of each letter that draws something, in the order of the letters; letters that lie over each other
    /// count as one.
    QVector<int> characterContours;
    PathShape outline; ///< strokes of a single-line font are open contours, all others are closed
};

/// What the tool of a module made of its parameters. The outline is kept, so a document marks the same where the module
/// is missing; the parameters are the tool's own bytes, which nobody else reads.
struct GeneratedShape {
    QString toolClass;
    QByteArray parameters;
    PathShape outline;
};

/// A code as it was entered, and what is marked of it: a document marks the same where the encoder differs.
struct CodeShape {
    CodeSpec spec;
    QString shown;         ///< what is encoded of a spec with variables; else empty
    PathShape outline;     ///< closed contours of what is marked, or its lines, open ones; empty when it is dots
    QVector<QPointF> dots; ///< mark points; empty when it is an outline or lines
};

/// Geometry in the object's own coordinates, in the order of ObjectKind.
using Shape = std::variant<PointShape, PolylineShape, RectShape, CircleShape, ArcShape, PathShape, GroupShape,
                           TextShape, CodeShape, GeneratedShape>;

ObjectKind kindOf(const Shape& shape);

/// The class name is that of one of this program's own kinds, which no module may give its objects.
bool isOwnClass(const QString& className);

/// Why the geometry cannot be an object: not finite, negative extents, verbs that do not fit the points, empty groups,
/// texts that specFault() refuses or that do not fit their outline, codes likewise, what a module made beyond the
/// limits. Null when it can.
const char* shapeFault(const Shape& shape);

/// Exact bounds of the transformed geometry. Groups give the bounds of their children.
Box shapeBounds(const Shape& shape, const QTransform& transform);

/// Number of defining points, groups with all that is in them.
qint64 shapePointCount(const Shape& shape);

/// The outline of each letter of a text.
std::vector<PathShape> letterPaths(const TextShape& text);

/// The same geometry as a path: arcs and circles become curves of at most 45 degrees, off by less than 5 millionths of
/// the radius. A point gives an empty path, a group and the dots of a code too.
PathShape shapeToPath(const Shape& shape);

/// The path with every coordinate mapped.
PathShape mapPath(const PathShape& path, const QTransform& transform);

} // namespace sim

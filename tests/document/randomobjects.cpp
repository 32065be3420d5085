// SPDX-License-Identifier: MIT
#include "randomobjects.h"

#include "engine/marktypes.h"
#include "simengine/document/codemaker.h"
#include "simengine/document/strokefonts.h"
#include "simengine/document/textmaker.h"

#include <cstring>

namespace randomobjects {

using namespace sim;

namespace {

using Random = QRandomGenerator;

double between(Random& random, double low, double high) {
    return low + random.generateDouble() * (high - low);
}
QPointF place(Random& random) {
    return {between(random, -90.0, 90.0), between(random, -90.0, 90.0)};
}
bool coin(Random& random) {
    return random.bounded(2) == 1;
}

QString letters(Random& random, int most, const QString& of) {
    QString text;
    const int count = random.bounded(1, most + 1);
    for (int i = 0; i < count; ++i)
        text.append(of.at(random.bounded(of.size())));
    return text;
}

Shape randomPoint(Random& random) {
    return PointShape{place(random), coin(random) ? -1.0 : between(random, 0.0, 1e6)};
}
Shape randomPolyline(Random& random) {
    PolylineShape shape;
    const int count = random.bounded(1, 40);
    for (int i = 0; i < count; ++i)
        shape.points << place(random);
    shape.closed = coin(random);
    return shape;
}
Shape randomRect(Random& random) {
    return RectShape{QRectF(place(random), QSizeF(between(random, 0.0, 50.0), between(random, 0.0, 50.0)))};
}
Shape randomCircle(Random& random) {
    return CircleShape{place(random), between(random, 0.0, 40.0), between(random, -720.0, 720.0), coin(random)};
}
Shape randomArc(Random& random) {
    return ArcShape{place(random), between(random, 0.0, 40.0), between(random, -720.0, 720.0),
                    between(random, -360.0, 360.0)};
}
PathShape anyPath(Random& random) {
    PathShape shape;
    const int contours = random.bounded(1, 4);
    for (int i = 0; i < contours; ++i) {
        shape.moveTo(place(random));
        const int segments = random.bounded(1, 8);
        for (int k = 0; k < segments; ++k) {
            if (coin(random))
                shape.lineTo(place(random));
            else
                shape.cubicTo(place(random), place(random), place(random));
        }
        if (coin(random))
            shape.close();
    }
    return shape;
}
Shape randomPath(Random& random) {
    return anyPath(random);
}
Shape randomGroup(Random& random) {
    GroupShape shape;
    const int count = random.bounded(1, 5);
    for (int i = 0; i < count; ++i) {
        // groups among the first kinds would nest without end
        const int kind = random.bounded(int(kinds().size()) + 3) % int(kinds().size());
        shape.children.push_back(make(kinds()[size_t(kind)], random));
    }
    return shape;
}
Shape randomText(Random& random) {
    for (;;) {
        TextSpec spec;
        spec.text = letters(random, 12, QStringLiteral("ABCabc019 -\n"));
        const auto& fonts = strokeFonts();
        spec.family = QString::fromLatin1(fonts[size_t(random.bounded(int(fonts.size())))].name);
        spec.italic = coin(random);
        spec.align = TextAlign(random.bounded(3));
        spec.height = between(random, 0.1, 20.0);
        spec.letterSpacing = between(random, -0.5, 3.0);
        spec.lineSpacing = between(random, 0.5, 3.0);
        // blanks only, or a letter that the font lacks
        if (const MadeText made = makeText(spec); made.ok())
            return made.shape;
    }
}
Shape randomCode(Random& random) {
    for (;;) {
        CodeSpec spec;
        spec.symbology = coin(random) ? Symbology::Code128 : coin(random) ? Symbology::Qr : Symbology::DataMatrix;
        spec.text = letters(random, 16, QStringLiteral("ABC0123456789"));
        spec.quietZone = random.bounded(6);
        spec.fitted = coin(random);
        spec.module = between(random, 0.1, 1.0);
        spec.width = between(random, 5.0, 40.0);
        spec.barHeight = between(random, 1.0, 20.0);
        spec.invert = coin(random);
        spec.marking = CodeMarking(random.bounded(3));
        spec.linesPerModule = random.bounded(1, 6);
        if (const MadeCode made = makeCode(spec); made.ok())
            return made.shape;
    }
}
Shape randomGenerated(Random& random) {
    GeneratedShape shape;
    shape.toolClass = QStringLiteral("Sample") + letters(random, 8, QStringLiteral("ABCabc"));
    shape.parameters.resize(random.bounded(100));
    for (char& byte : shape.parameters)
        byte = char(random.bounded(256));
    shape.outline = anyPath(random);
    return shape;
}

bool same(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}
bool same(const QPointF& a, const QPointF& b) {
    return same(a.x(), b.x()) && same(a.y(), b.y());
}
template<typename Points>
bool samePoints(const Points& a, const Points& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const QPointF& p, const QPointF& q) { return same(p, q); });
}
bool samePath(const PathShape& a, const PathShape& b) {
    return a.verbs == b.verbs && samePoints(a.points, b.points);
}

/// One function for each kind: a new kind without one does not compile.
struct SameShape {
    const Shape& other;

    template<typename T>
    const T& same() const {
        return std::get<T>(other);
    }
    bool operator()(const PointShape& a) const {
        const auto& b = same<PointShape>();
        return randomobjects::same(a.pos, b.pos) && randomobjects::same(a.dwellUs, b.dwellUs);
    }
    bool operator()(const PolylineShape& a) const {
        const auto& b = same<PolylineShape>();
        return a.closed == b.closed && samePoints(a.points, b.points);
    }
    bool operator()(const RectShape& a) const {
        const auto& b = same<RectShape>();
        return randomobjects::same(a.rect.topLeft(), b.rect.topLeft()) &&
               randomobjects::same(a.rect.width(), b.rect.width()) &&
               randomobjects::same(a.rect.height(), b.rect.height());
    }
    bool operator()(const CircleShape& a) const {
        const auto& b = same<CircleShape>();
        return randomobjects::same(a.center, b.center) && randomobjects::same(a.radius, b.radius) &&
               randomobjects::same(a.startAngle, b.startAngle) && a.clockwise == b.clockwise;
    }
    bool operator()(const ArcShape& a) const {
        const auto& b = same<ArcShape>();
        return randomobjects::same(a.center, b.center) && randomobjects::same(a.radius, b.radius) &&
               randomobjects::same(a.startAngle, b.startAngle) && randomobjects::same(a.sweepAngle, b.sweepAngle);
    }
    bool operator()(const PathShape& a) const { return samePath(a, same<PathShape>()); }
    bool operator()(const GroupShape& a) const { return equal(a.children, same<GroupShape>().children); }
    bool operator()(const TextShape& a) const {
        const auto& b = same<TextShape>();
        return a.spec == b.spec && a.shown == b.shown && a.characterContours == b.characterContours &&
               samePath(a.outline, b.outline);
    }
    bool operator()(const CodeShape& a) const {
        const auto& b = same<CodeShape>();
        return a.spec == b.spec && a.shown == b.shown && samePath(a.outline, b.outline) && samePoints(a.dots, b.dots);
    }
    bool operator()(const GeneratedShape& a) const {
        const auto& b = same<GeneratedShape>();
        return a.toolClass == b.toolClass && a.parameters == b.parameters && samePath(a.outline, b.outline);
    }
};

bool sameFill(const FillParam& a, const FillParam& b) {
    return a.Enable == b.Enable && same(a.FillDist, b.FillDist) && same(a.FillAngle, b.FillAngle) &&
           a.FillLayer == b.FillLayer && same(a.FillOffset, b.FillOffset) && a.EdgeCnt == b.EdgeCnt &&
           a.FillType == b.FillType;
}

} // namespace

const Kinds& kinds() {
    static const Kinds all = {{
        {ObjectKind::Point, "point", randomPoint},
        {ObjectKind::Polyline, "polyline", randomPolyline},
        {ObjectKind::Rect, "rectangle", randomRect},
        {ObjectKind::Circle, "circle", randomCircle},
        {ObjectKind::Arc, "arc", randomArc},
        {ObjectKind::Path, "path", randomPath},
        {ObjectKind::Group, "group", randomGroup},
        {ObjectKind::Text, "text", randomText},
        {ObjectKind::Code, "code", randomCode},
        {ObjectKind::Generated, "generated", randomGenerated},
    }};
    return all;
}

ObjectPtr make(const Kind& kind, Random& random) {
    for (;;) {
        ObjectData data;
        data.shape = kind.make(random);
        const double stretch = between(random, 0.2, 3.0);
        data.transform = QTransform::fromScale(stretch, between(random, 0.2, 3.0)).rotate(between(random, 0.0, 360.0)) *
                         QTransform::fromTranslate(between(random, -100.0, 100.0), between(random, -100.0, 100.0));
        data.pen = random.bounded(kLayerCount);
        data.work = coin(random) ? WorkType::On : WorkType::Off;
        data.angle = between(random, -179.0, 180.0);
        data.angleChanged = coin(random);
        data.hatch.enableEdge = coin(random);
        data.hatch.markFillFirst = coin(random);
        data.hatch.showSimple = coin(random);
        for (FillParam& fill : data.hatch.fills) {
            if (coin(random))
                fill = {random.bounded(8) == 0,
                        between(random, 1.0, 9.0),
                        between(random, -360.0, 360.0),
                        random.bounded(kLayerCount),
                        between(random, 0.0, 2.0),
                        random.bounded(3),
                        random.bounded(5)};
        }
        if (coin(random))
            data.name = letters(random, 30, QStringLiteral("标签 plate-ß0"));
        // a hatch can have too many lines
        if (ObjectPtr object = MarkObject::make(std::move(data)))
            return object;
    }
}

ObjectList several(int count, Random& random) {
    ObjectList objects;
    for (int i = 0; i < count; ++i)
        objects.push_back(make(kinds()[size_t(random.bounded(int(kinds().size())))], random));
    return objects;
}

bool equal(const MarkObject& a, const MarkObject& b) {
    const ObjectData& x = a.data();
    const ObjectData& y = b.data();
    const QTransform& s = x.transform;
    const QTransform& t = y.transform;
    const bool fields = x.shape.index() == y.shape.index() && same(s.m11(), t.m11()) && same(s.m12(), t.m12()) &&
                        same(s.m21(), t.m21()) && same(s.m22(), t.m22()) && same(s.dx(), t.dx()) &&
                        same(s.dy(), t.dy()) && x.pen == y.pen && x.work == y.work && same(x.angle, y.angle) &&
                        x.angleChanged == y.angleChanged && x.hatch.enableEdge == y.hatch.enableEdge &&
                        x.hatch.markFillFirst == y.hatch.markFillFirst && x.hatch.showSimple == y.hatch.showSimple &&
                        x.name == y.name;
    return fields &&
           std::equal(x.hatch.fills.begin(), x.hatch.fills.end(), y.hatch.fills.begin(), y.hatch.fills.end(),
                      sameFill) &&
           std::visit(SameShape{y.shape}, x.shape);
}

bool equal(const ObjectList& a, const ObjectList& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ObjectPtr& x, const ObjectPtr& y) { return equal(*x, *y); });
}

} // namespace randomobjects

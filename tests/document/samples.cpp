// SPDX-License-Identifier: MIT
#include "samples.h"

#include "simengine/document/codemaker.h"
#include "simengine/document/mkfcodec.h"
#include "simengine/document/textmaker.h"

namespace samples {

using namespace sim;

ObjectPtr object(Shape shape, const QTransform& transform, int pen) {
    ObjectData data;
    data.shape = std::move(shape);
    data.transform = transform;
    data.pen = pen;
    return MarkObject::make(std::move(data));
}

ObjectPtr point(double x, double y) {
    PointShape shape;
    shape.pos = {x, y};
    return object(shape);
}

ObjectPtr line(const QVector<QPointF>& points, bool closed) {
    return object(PolylineShape{points, closed});
}

ObjectPtr rect(double x, double y, double width, double height) {
    return object(RectShape{QRectF(x, y, width, height)});
}

ObjectPtr circle(double x, double y, double radius) {
    CircleShape shape;
    shape.center = {x, y};
    shape.radius = radius;
    return object(shape);
}

ObjectPtr arc(double x, double y, double radius, double start, double sweep) {
    return object(ArcShape{{x, y}, radius, start, sweep});
}

ObjectPtr path() {
    PathShape shape;
    shape.moveTo({0, 0});
    shape.lineTo({10, 0});
    shape.cubicTo({20, 0}, {20, 10}, {10, 10});
    shape.moveTo({30, 0});
    shape.lineTo({35, 0});
    shape.lineTo({30, 5});
    shape.close();
    return object(shape);
}

ObjectPtr group(const ObjectList& children) {
    return object(GroupShape{children});
}

ObjectPtr generated(const QByteArray& parameters) {
    GeneratedShape shape;
    shape.toolClass = QStringLiteral("SampleTriangle");
    shape.parameters = parameters;
    shape.outline.moveTo({0, 0});
    shape.outline.lineTo({10, 0});
    shape.outline.cubicTo({10, 4}, {8, 8}, {0, 8});
    shape.outline.close();
    return object(shape);
}

namespace {

ObjectPtr styledText() {
    TextSpec spec;
    spec.text = QStringLiteral("A1\nbB");
    spec.family = QStringLiteral("futural");
    spec.italic = true;
    spec.align = TextAlign::Right;
    spec.height = 2.5;
    spec.letterSpacing = 0.125;
    spec.lineSpacing = 2.25;
    return object(makeText(spec).shape);
}

ObjectPtr variableCode() {
    CodeSpec spec;
    spec.text = QStringLiteral("N{serial:A}");
    spec.variables = true;
    spec.symbology = Symbology::Code128;
    spec.fitted = true;
    spec.width = 42.5;
    spec.barHeight = 6.25;
    spec.marking = CodeMarking::Lines;
    spec.linesPerModule = 2;
    return object(makeCode(spec, QStringLiteral("N0042")).shape);
}

} // namespace

ObjectPtr text(const QString& characters, double height) {
    TextSpec spec;
    spec.text = characters;
    spec.family = QStringLiteral("rowmans");
    spec.height = height;
    return object(makeText(spec).shape);
}

ObjectList everyKind() {
    PointShape dwelling;
    dwelling.pos = {1.5, -2.5};
    dwelling.dwellUs = 750.0;
    CircleShape clockwise;
    clockwise.center = {-4.0, 9.0};
    clockwise.radius = 3.25;
    clockwise.startAngle = 33.0;
    clockwise.clockwise = true;
    ObjectList bare = {object(dwelling),
                       line({{0, 0}, {1, 2}, {-0.0, 0.1}}, true),
                       rect(-5, -6, 7, 8),
                       object(clockwise),
                       arc(1, 2, 3, 40, -200),
                       path(),
                       group({rect(0, 0, 1, 1), group({circle(5, 5, 1), point(2, 2)})}),
                       styledText(),
                       variableCode(),
                       generated(QByteArray("\0\xff parameters", 13))};
    ObjectList objects;
    for (size_t i = 0; i < bare.size(); ++i) {
        ObjectData data = bare[i]->data();
        data.transform = QTransform(1.1, 0.2, -0.3, 0.9, 0.1 * double(i), 1.0 / 3.0);
        data.pen = int(i) + 2;
        data.work = i % 2 ? WorkType::On : WorkType::Off;
        data.angle = 10.0 * double(i) + 0.1;
        data.angleChanged = i % 3 == 0;
        data.hatch.enableEdge = i % 2 == 0;
        data.hatch.markFillFirst = i % 3 == 1;
        data.hatch.showSimple = i % 4 == 1;
        data.hatch.fills[int(i % 3)] = {true, 0.05, -45.5, 7, 0.25, 3, 4};
        data.name = QStringLiteral("对象 %1").arg(i);
        objects.push_back(MarkObject::make(std::move(data)));
    }
    return objects;
}

namespace {

LayerData pen(int seed) {
    LayerData data;
    int next = seed * 100;
    for (int* field :
         {&data.ColorR, &data.ColorG, &data.ColorB, &data.MarkCnt, &data.WaveNumber, &data.OpenLaserDelay,
          &data.CloseLaserDelay, &data.EndDelay, &data.TurnDelay, &data.MaxJumpDelay, &data.MarkDelay,
          &data.MinJumpDelay, &data.PointTime, &data.LineWaveFlag, &data.PointWaveEnable, &data.LineWaveEnable})
        *field = ++next;
    for (double* field : {&data.MarkSpeed, &data.RedSpeed, &data.Power, &data.Fre, &data.PWM, &data.JumpSpeed,
                          &data.MinJumpDelayDist, &data.MaxJumpDelayDist, &data.WobbleDiameter, &data.WobbleSpacing})
        *field = ++next + 1.0 / 3.0;
    for (int i = 0; i < kWavePointCount; ++i) {
        data.PointWave[size_t(i)] = QPointF(i, ++next / 7.0);
        data.LineWave[size_t(i)] = QPointF(i, ++next / 9.0);
    }
    data.OpenLaserDelay = -seed;
    data.WobbleEnable = seed % 2;
    data.UseDefault = seed % 3 == 0;
    return data;
}

} // namespace

DocumentContent fullContent() {
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(everyKind());
    for (int i = 0; i < kLayerCount; ++i)
        content.pens.SetLayerData(i, pen(i + 1));
    for (int i = 0; i < kQcwWaveCount; ++i)
        content.pens.GetQCWWaves()[i] = {i % 2,   1.0 + i, 2.0 + i, 3.0 + i, 4.0 + i,
                                         5.0 + i, 6.0 + i, 7.0 + i, 8.0 + i, 9.0 + i};
    content.settings = {7, BasePointBottomLeft, 0.125};
    return content;
}

QByteArray bytesOf(const Document& document) {
    return encodeMkf(document.content()).value_or(QByteArray());
}

DocumentState state(const ObjectList& objects, const QList<int>& selected) {
    DocumentState state;
    state.objects = std::make_shared<const ObjectList>(objects);
    state.selection = Selection(selected, state.count());
    return state;
}

} // namespace samples

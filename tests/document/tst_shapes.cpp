// SPDX-License-Identifier: MIT
#include "samples.h"
#include "simengine/view/hittest.h"

#include <QRandomGenerator>
#include <QTest>
#include <cmath>
#include <limits>

using namespace sim;

namespace {

double lengthOf(const MarkObject& object, double tolerance = kFlatteningTolerance) {
    double length = 0.0;
    for (const FlatLine& line : object.flattened(tolerance))
        length += polylineLength(line.points);
    return length;
}

double distanceToLine(const QPointF& p, const QPolygonF& line) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 1; i < line.size(); ++i) {
        const QPointF d = line[i] - line[i - 1];
        const double square = QPointF::dotProduct(d, d);
        const double t = square > 0 ? qBound(0.0, QPointF::dotProduct(p - line[i - 1], d) / square, 1.0) : 0.0;
        const QPointF off = p - (line[i - 1] + t * d);
        best = std::min(best, std::hypot(off.x(), off.y()));
    }
    return best;
}

bool nearly(double a, double b, double within = 1e-9) {
    return std::abs(a - b) <= within;
}

} // namespace

class ShapesTest : public QObject {
    Q_OBJECT

private slots:
    void points_of_curves_are_counted_without_making_them();
    void curves_of_more_points_than_memory_are_refused();
    void curve_without_extent_is_few_points_data() {
        QTest::addColumn<double>("size");
        QTest::addColumn<QPointF>("place");
        for (double size : {0.0, 1.0e-12, 1.0e-6}) {
            for (double place : {0.0, 0.1, 123.456, 987654.321})
                QTest::addRow("%g at %g", size, place) << size << QPointF(place, -place / 3);
        }
    }

    void curve_without_extent_is_few_points() {
        QFETCH(double, size);
        QFETCH(QPointF, place);
        PathShape path;
        path.moveTo(place);
        path.cubicTo(place + QPointF(size, size / 3), place + QPointF(size / 7, -size),
                     place + QPointF(size / 2, size));
        std::vector<FlatLine> lines;
        flattenShape(Shape(path), QTransform(), lines, 1.0e-5);
        QCOMPARE(lines.size(), size_t(1));
        QVERIFY2(lines[0].points.size() <= 200, qPrintable(QString::number(lines[0].points.size())));
    }

    void class_names_data();
    void class_names();
    void unsound_objects_are_refused_data();
    void unsound_objects_are_refused();
    void flattened_circle_keeps_within_two_micrometres_data();
    void flattened_circle_keeps_within_two_micrometres();
    void flattened_curve_keeps_within_two_micrometres();
    void flattened_cusp_keeps_its_length();
    void flat_ellipse_keeps_its_length_data();
    void flat_ellipse_keeps_its_length();
    void small_circle_keeps_its_length();
    void straight_objects_flatten_exactly();
    void closed_lines_end_where_they_begin();
    void lone_move_draws_nothing();
    void bounds_are_exact_data();
    void bounds_are_exact();
    void bounds_of_random_curves_hold_every_point_tightly();
    void hit_data();
    void hit();
    void pivot_stays_when_the_object_turns();
    void path_of_an_arc_follows_it();
    void open_curves();
};

void ShapesTest::class_names_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    const char* names[] = {"MarkToolPoint", "MarkToolLine",    "MarkToolRect", "MarkToolCircle", "MarkToolArc",
                           "MarkToolPath",  "MarkToolCombine", "MarkToolText", "MarkToolCode",   "SampleTriangle"};
    for (int i = 0; i < int(std::size(names)); ++i)
        QTest::newRow(names[i]) << i << QString(names[i]);
}

void ShapesTest::class_names() {
    QFETCH(int, index);
    QTEST(samples::everyKind().at(size_t(index))->className(), "name");
}

void ShapesTest::unsound_objects_are_refused_data() {
    QTest::addColumn<int>("index");
    const char* rows[] = {
        "no points",       "not a number",        "infinite radius", "negative width", "sweep beyond a turn",
        "segment unbegun", "too few path points", "empty group",     "pen 20",         "outside the limit",
        "two fills",       "fill on pen 20",      "transform",       "long name",      "empty path"};
    for (int i = 0; i < int(std::size(rows)); ++i)
        QTest::newRow(rows[i]) << i;
}

void ShapesTest::unsound_objects_are_refused() {
    QFETCH(int, index);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    ObjectData data;
    data.shape = RectShape{QRectF(0, 0, 1, 1)};
    QVERIFY(MarkObject::make(data));
    PathShape unbegun;
    unbegun.lineTo({1, 1});
    PathShape missing;
    missing.verbs = {PathVerb::Move, PathVerb::Cubic};
    missing.points = {{0, 0}, {1, 1}};
    CircleShape wide;
    wide.radius = inf;
    const Shape shapes[] = {
        PolylineShape{}, PointShape{{nan, 0}}, wide, RectShape{QRectF(0, 0, -1, 1)}, ArcShape{{}, 1, 0, 361}, unbegun,
        missing,         GroupShape{}};
    if (index < int(std::size(shapes)))
        data.shape = shapes[index];
    else if (index == 8)
        data.pen = 20;
    else if (index == 9)
        data.transform = QTransform::fromTranslate(kMaxCoordinate, 0);
    else if (index == 10)
        data.hatch.fills.removeLast();
    else if (index == 11)
        data.hatch.fills[1].FillLayer = 20;
    else if (index == 12)
        data.transform = QTransform(1, 0, 0, 1, nan, 0);
    else if (index == 13)
        data.name = QString(kMaxNameLength + 1, 'n');
    else
        data.shape = PathShape();
    QString fault;
    QVERIFY(!MarkObject::make(data, &fault));
    QVERIFY(!fault.isEmpty());
}

void ShapesTest::flattened_circle_keeps_within_two_micrometres_data() {
    QTest::addColumn<double>("radius");
    for (double radius : {0.001, 0.05, 1.0, 55.0, 1000.0})
        QTest::newRow(qPrintable(QString::number(radius))) << radius;
}

void ShapesTest::flattened_circle_keeps_within_two_micrometres() {
    QFETCH(double, radius);
    const ObjectPtr circle = samples::circle(3, -4, radius);
    const QPolygonF line = circle->flattened().front().points;
    double worst = 0.0;
    for (int i = 1; i < line.size(); ++i) {
        const QPointF middle = (line[i] + line[i - 1]) / 2.0 - QPointF(3, -4);
        worst = std::max(worst, radius - std::hypot(middle.x(), middle.y()));
    }
    QVERIFY2(worst <= 0.002, qPrintable(QString::number(worst)));
    const double exact = 2 * M_PI * radius;
    QVERIFY(std::abs(lengthOf(*circle) - exact) <= 0.001 * exact);
}

void ShapesTest::flattened_curve_keeps_within_two_micrometres() {
    QRandomGenerator random(1);
    for (int round = 0; round < 200; ++round) {
        const double size = std::pow(10.0, random.bounded(5.0) - 2.0);
        QPointF p[4];
        for (QPointF& q : p)
            q = QPointF(random.bounded(2.0) - 1.0, random.bounded(2.0) - 1.0) * size;
        PathShape shape;
        shape.moveTo(p[0]);
        shape.cubicTo(p[1], p[2], p[3]);
        const ObjectPtr object = samples::object(shape);
        const QPolygonF line = object->flattened().front().points;
        double exact = 0.0;
        QPointF before = p[0];
        for (int i = 1; i <= 4000; ++i) {
            const double t = i / 4000.0;
            const double s = 1 - t;
            const QPointF q = s * s * s * p[0] + 3 * s * s * t * p[1] + 3 * s * t * t * p[2] + t * t * t * p[3];
            exact += std::hypot(q.x() - before.x(), q.y() - before.y());
            before = q;
            if (i % 40 == 17)
                QVERIFY(distanceToLine(q, line) <= 0.002 + 1e-9);
        }
        QVERIFY(std::abs(polylineLength(line) - exact) <= 0.001 * exact);
    }
}

void ShapesTest::flattened_cusp_keeps_its_length() {
    // runs 0.001 mm out and back: smaller than the tolerance, the length counts all the same
    PathShape shape;
    shape.moveTo({0, 0});
    shape.cubicTo({0.002, 0}, {0.002, 0}, {0, 0});
    const double exact = 2 * 0.0015;
    QVERIFY(std::abs(lengthOf(*samples::object(shape)) - exact) <= 0.001 * exact);
}

void ShapesTest::flat_ellipse_keeps_its_length_data() {
    QTest::addColumn<double>("longer");
    QTest::addColumn<double>("start");
    for (double longer : {0.01, 1.0, 100.0}) {
        for (double start : {0.0, 3.75, 45.0})
            QTest::newRow(qPrintable(QString("%1 mm from %2").arg(longer).arg(start))) << longer << start;
    }
}

void ShapesTest::flat_ellipse_keeps_its_length() {
    QFETCH(double, longer);
    QFETCH(double, start);
    CircleShape shape;
    shape.radius = longer;
    shape.startAngle = start;
    const ObjectPtr ellipse = samples::object(shape, QTransform(1, 0, 0, 0.001, 0, 0));
    double exact = 0.0;
    for (int i = 0; i < 200000; ++i) {
        const double t = 2 * M_PI * (i + 0.5) / 200000;
        exact += std::hypot(longer * std::sin(t), 0.001 * longer * std::cos(t)) * 2 * M_PI / 200000;
    }
    QVERIFY(std::abs(lengthOf(*ellipse) - exact) <= 0.001 * exact);
}

void ShapesTest::small_circle_keeps_its_length() {
    const double exact = 2 * M_PI * 0.0005;
    QVERIFY(std::abs(lengthOf(*samples::circle(0, 0, 0.0005)) - exact) <= 0.001 * exact);
}

void ShapesTest::straight_objects_flatten_exactly() {
    const QTransform turned = QTransform(0, 1, -1, 0, 5, 0);
    const auto lines = samples::object(RectShape{QRectF(1, 2, 3, 4)}, turned)->flattened();
    QCOMPARE(lines.size(), size_t(1));
    QCOMPARE(lines[0].points, QPolygonF({{3, 1}, {3, 4}, {-1, 4}, {-1, 1}, {3, 1}}));
    QVERIFY(lines[0].closed);
    const auto open = samples::line({{0, 0}, {1, 1}, {2, 0}})->flattened();
    QCOMPARE(open[0].points, QPolygonF({{0, 0}, {1, 1}, {2, 0}}));
    QVERIFY(!open[0].closed);
    QCOMPARE(samples::point(7, 8)->flattened()[0].points, QPolygonF({{7, 8}}));
}

void ShapesTest::closed_lines_end_where_they_begin() {
    for (const ObjectPtr& object : samples::everyKind()) {
        for (const FlatLine& line : object->flattened()) {
            if (line.closed)
                QCOMPARE(line.points.first(), line.points.last());
        }
    }
    QCOMPARE(samples::line({{0, 0}, {1, 0}, {0, 1}}, true)->flattened()[0].points.size(), 4);
    QCOMPARE(samples::path()->flattened().size(), size_t(2));
}

void ShapesTest::lone_move_draws_nothing() {
    PathShape shape;
    shape.moveTo({1, 1});
    shape.moveTo({2, 2});
    shape.lineTo({3, 3});
    QCOMPARE(samples::object(shape)->flattened().size(), size_t(1));
}

void ShapesTest::bounds_are_exact_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QVector<double>>("expected");
    QTest::newRow("point") << 0 << QVector<double>{2, 3, 2, 3};
    QTest::newRow("line without height") << 1 << QVector<double>{-1, 5, 4, 5};
    QTest::newRow("rectangle") << 2 << QVector<double>{1, 2, 4, 6};
    QTest::newRow("circle") << 3 << QVector<double>{-4, -3, 6, 7};
    QTest::newRow("quarter arc") << 4 << QVector<double>{0, 0, 10, 10};
    QTest::newRow("arc over the top, clockwise")
        << 5 << QVector<double>{-std::sqrt(0.5), std::sqrt(0.5), std::sqrt(0.5), 1};
    QTest::newRow("curve that bulges past its ends") << 6 << QVector<double>{0, 0, 7.5, 10};
    QTest::newRow("turned square") << 7 << QVector<double>{-std::sqrt(2), -std::sqrt(2), std::sqrt(2), std::sqrt(2)};
    QTest::newRow("group with a transform") << 8 << QVector<double>{10, -2, 14, 4};
}

void ShapesTest::bounds_are_exact() {
    QFETCH(int, index);
    QFETCH(QVector<double>, expected);
    PathShape bulge;
    bulge.moveTo({0, 0});
    bulge.cubicTo({10, 0}, {10, 10}, {0, 10});
    const double c = std::sqrt(0.5);
    const ObjectPtr objects[] = {
        samples::point(2, 3),
        samples::line({{4, 5}, {-1, 5}}),
        samples::rect(1, 2, 3, 4),
        samples::circle(1, 2, 5),
        samples::arc(0, 0, 10, 0, 90),
        samples::arc(0, 0, 1, 135, -90),
        samples::object(bulge),
        samples::object(RectShape{QRectF(-1, -1, 2, 2)}, QTransform(c, c, -c, c, 0, 0)),
        samples::object(GroupShape{{samples::rect(0, -1, 2, 1), samples::point(1, 2)}}, QTransform(2, 0, 0, 2, 10, 0))};
    const Box box = objects[index]->bounds();
    QVERIFY(nearly(box.minX, expected[0]));
    QVERIFY(nearly(box.minY, expected[1]));
    QVERIFY(nearly(box.maxX, expected[2]));
    QVERIFY(nearly(box.maxY, expected[3]));
}

void ShapesTest::bounds_of_random_curves_hold_every_point_tightly() {
    QRandomGenerator random(2);
    for (int round = 0; round < 300; ++round) {
        PathShape shape;
        const auto place = [&] { return QPointF(random.bounded(100.0) - 50.0, random.bounded(100.0) - 50.0); };
        shape.moveTo(place());
        shape.cubicTo(place(), place(), place());
        const QTransform t(random.bounded(2.0), random.bounded(2.0), random.bounded(2.0), random.bounded(2.0), 1, 2);
        const ObjectPtr object = samples::object(shape, t);
        Box sampled;
        for (const FlatLine& line : object->flattened(1e-5)) {
            for (const QPointF& p : line.points)
                sampled.add(p);
        }
        const Box box = object->bounds();
        QVERIFY(nearly(box.minX, sampled.minX, 1e-4) && box.minX <= sampled.minX + 1e-9);
        QVERIFY(nearly(box.minY, sampled.minY, 1e-4) && box.minY <= sampled.minY + 1e-9);
        QVERIFY(nearly(box.maxX, sampled.maxX, 1e-4) && box.maxX >= sampled.maxX - 1e-9);
        QVERIFY(nearly(box.maxY, sampled.maxY, 1e-4) && box.maxY >= sampled.maxY - 1e-9);
    }
}

void ShapesTest::hit_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QPointF>("place");
    QTest::addColumn<bool>("hit");
    QTest::newRow("point near") << 0 << QPointF(1.05, 1) << true;
    QTest::newRow("point far") << 0 << QPointF(1.2, 1) << false;
    QTest::newRow("rectangle edge") << 1 << QPointF(5, 10.05) << true;
    QTest::newRow("rectangle inside without hatch") << 1 << QPointF(5, 5) << false;
    QTest::newRow("hatched rectangle inside") << 2 << QPointF(5, 5) << true;
    QTest::newRow("hatched rectangle outside") << 2 << QPointF(5, 11) << false;
    QTest::newRow("circle edge") << 3 << QPointF(std::sqrt(0.5) * 5, std::sqrt(0.5) * 5) << true;
    QTest::newRow("circle corner of its bounds") << 3 << QPointF(4.9, 4.9) << false;
    QTest::newRow("child of a moved group") << 4 << QPointF(100, 5) << true;
    QTest::newRow("between the children") << 4 << QPointF(115, 5) << false;
}

void ShapesTest::hit() {
    QFETCH(int, index);
    QFETCH(QPointF, place);
    ObjectData hatched;
    hatched.shape = RectShape{QRectF(0, 0, 10, 10)};
    hatched.hatch.fills[1].Enable = true;
    const ObjectPtr objects[] = {
        samples::point(1, 1), samples::rect(0, 0, 10, 10), MarkObject::make(hatched), samples::circle(0, 0, 5),
        samples::object(GroupShape{{samples::rect(0, 0, 10, 10), samples::rect(20, 0, 10, 10)}},
                        QTransform::fromTranslate(100, 0))};
    SceneCache scene;
    scene.setState(std::make_shared<const DocumentState>(samples::state({objects[index]}, {})));
    QTEST(objectAt(scene, place, 0.1, 100.0) == 0, "hit");
}

void ShapesTest::pivot_stays_when_the_object_turns() {
    const ObjectPtr object = samples::line({{0, 0}, {7, 1}, {3, 9}});
    const QPointF pivot = object->pivot();
    DocumentState state = samples::state({object}, {0});
    for (int i = 0; i < 7; ++i)
        state = *edits::setAngle(state, 20.0 * (i + 1));
    state = *edits::setAngle(state, 0.0);
    QVERIFY(nearly(state.at(0)->pivot().x(), pivot.x()));
    QVERIFY(nearly(state.at(0)->bounds().minX, 0.0) && nearly(state.at(0)->bounds().maxY, 9.0));
}

void ShapesTest::path_of_an_arc_follows_it() {
    for (const Shape& shape : {Shape(ArcShape{{1, 2}, 100.0, 30.0, -300.0}), samples::circle(1, 2, 100)->shape()}) {
        const ObjectPtr path = samples::object(shapeToPath(shape));
        for (const FlatLine& line : path->flattened(1e-4)) {
            for (const QPointF& p : line.points)
                QVERIFY(nearly(std::hypot(p.x() - 1, p.y() - 2), 100.0, 100.0 * 5e-6));
        }
        QVERIFY(nearly(lengthOf(*path, 1e-4), lengthOf(*samples::object(shape), 1e-4), 0.01));
    }
}

void ShapesTest::points_of_curves_are_counted_without_making_them() {
    QRandomGenerator random(7);
    const auto number = [&](double size) { return size * (2.0 * random.generateDouble() - 1.0); };
    qint64 counted = 0;
    qint64 made = 0;
    for (int i = 0; i < 4000; ++i) {
        const double size = std::pow(10.0, number(3.0));
        const double flat = i % 5 == 0 ? 1e-4 : 1.0;
        const auto place = [&] { return QPointF(number(size), flat * number(size)); };
        PathShape path;
        path.moveTo(place());
        path.lineTo(place());
        const QPointF end = place();
        path.cubicTo(place(), i % 7 == 0 ? path.points.last() : place(), end);
        path.close();
        Shape shape = path;
        if (i % 4 == 1)
            shape = CircleShape{place(), size, 0.0, false};
        else if (i % 4 == 2)
            shape = ArcShape{place(), size, number(180.0), number(360.0)};
        const QTransform transform(1.0, 0.0, number(0.5), flat, number(10.0), 0.0);
        std::vector<FlatLine> lines;
        flattenShape(shape, transform, lines);
        const qint64 points = lines.front().points.size();
        const qint64 count = flattenedPointCount(shape, transform);
        QVERIFY2(4 * count >= points && count <= 4 * points + 128,
                 qPrintable(QString("%1: %2 counted, %3 made").arg(i).arg(count).arg(points)));
        if (flat == 1.0) {
            counted += count;
            made += points;
        }
    }
    QVERIFY2(counted > 0.95 * made && counted < 1.3 * made, qPrintable(QString("%1 %2").arg(counted).arg(made)));
    const ObjectPtr group = samples::object(GroupShape{samples::everyKind()});
    qint64 sum = 0;
    for (const FlatLine& line : group->flattened())
        sum += line.points.size();
    const qint64 count = flattenedPointCount(group->shape(), group->transform());
    QVERIFY2(count >= sum && count <= 1.3 * sum, qPrintable(QString("%1 %2").arg(count).arg(sum)));
}

void ShapesTest::curves_of_more_points_than_memory_are_refused() {
    PathShape path;
    path.moveTo({-900000.0, -900000.0});
    for (int i = 0; i < 1000; ++i)
        path.cubicTo({900000.0, 900000.0}, {-900000.0, 900000.0}, {900000.0, -900000.0 + i});
    ObjectData data;
    data.shape = path;
    QString fault;
    QVERIFY(!MarkObject::make(data, &fault));
    QVERIFY2(fault.contains("20000000"), qPrintable(fault));
    // the same lines small are an object, which cannot become as large
    data.transform = QTransform::fromScale(0.0001, 0.0001);
    const ObjectPtr small = MarkObject::make(data, &fault);
    QVERIFY2(small, qPrintable(fault));
    QVERIFY(small->transformed(QTransform::fromTranslate(5.0, 5.0)));
    QVERIFY(!small->transformed(QTransform::fromScale(10000.0, 10000.0)));
    // nor can many in a group
    const ObjectPtr part = samples::object(path, QTransform::fromScale(0.01, 0.01));
    data = ObjectData();
    data.shape = GroupShape{ObjectList(4, part)};
    QVERIFY(MarkObject::make(data));
    data.shape = GroupShape{ObjectList(40, part)};
    QVERIFY(!MarkObject::make(data, &fault));
}

void ShapesTest::open_curves() {
    QVERIFY(samples::line({{0, 0}, {1, 0}})->isOpenCurve());
    QVERIFY(!samples::line({{0, 0}, {1, 0}, {0, 1}}, true)->isOpenCurve());
    QVERIFY(samples::arc(0, 0, 1, 0, 90)->isOpenCurve());
    QVERIFY(!samples::arc(0, 0, 1, 0, 360)->isOpenCurve());
    QVERIFY(!samples::circle(0, 0, 1)->isOpenCurve());
    QVERIFY(!samples::point(0, 0)->isOpenCurve());
    QVERIFY(!samples::path()->isOpenCurve());
    QVERIFY(samples::object(shapeToPath(ArcShape{{}, 1, 0, 90}))->isOpenCurve());
}

QTEST_GUILESS_MAIN(ShapesTest)
#include "tst_shapes.moc"

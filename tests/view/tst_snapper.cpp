// SPDX-License-Identifier: MIT
// What places are drawn to.
#include "simengine/view/snapper.h"
#include "support/temporaryroot.h"

#include <QtTest>

using namespace sim;

namespace {

ObjectPtr object(const Shape& shape, const QTransform& transform = QTransform()) {
    ObjectData data;
    data.shape = shape;
    data.transform = transform;
    return MarkObject::make(std::move(data));
}

DocumentState state(const ObjectList& objects) {
    DocumentState made;
    made.objects = std::make_shared<const ObjectList>(objects);
    return made;
}

const QRectF kAll(-1000, -1000, 2000, 2000);

SnapTargets targetsOf(const ObjectList& objects) {
    return snapTargets(state(objects), kAll, [](int) { return false; });
}

bool has(const std::vector<SnapPoint>& points, const QPointF& at, SnapKind kind) {
    return std::any_of(points.begin(), points.end(), [&](const SnapPoint& point) {
        return point.kind == kind && QLineF(point.at, at).length() < 1e-9;
    });
}

SnapQuery queryAt(double x, double y, double reach = 1.0) {
    SnapQuery query;
    query.places = {{x, y}};
    query.reach = reach;
    return query;
}

SnapSettings only(bool objects, bool guides, bool grid) {
    SnapSettings settings;
    settings.objects = objects;
    settings.guides = guides;
    settings.grid = grid;
    return settings;
}

} // namespace

class tst_Snapper : public QObject {
    Q_OBJECT

private slots:
    void places_of_each_kind() {
        std::vector<SnapPoint> points;
        addSnapPoints(*object(PointShape{{1, 2}, -1.0}), {}, points);
        QVERIFY(has(points, {1, 2}, SnapKind::End));

        points.clear();
        PolylineShape line;
        line.points << QPointF(0, 0) << QPointF(4, 0) << QPointF(4, 2);
        addSnapPoints(*object(line), {}, points);
        QVERIFY(has(points, {0, 0}, SnapKind::End) && has(points, {4, 2}, SnapKind::End));
        QVERIFY(has(points, {2, 0}, SnapKind::Middle) && has(points, {4, 1}, SnapKind::Middle));
        QVERIFY(!has(points, {2, 1}, SnapKind::Middle));
        line.closed = true;
        points.clear();
        addSnapPoints(*object(line), {}, points);
        QVERIFY(has(points, {2, 1}, SnapKind::Middle));

        points.clear();
        addSnapPoints(*object(RectShape{QRectF(0, 0, 4, 2)}), QTransform::fromTranslate(10, 0), points);
        QVERIFY(has(points, {14, 2}, SnapKind::End) && has(points, {12, 2}, SnapKind::Middle));
        QVERIFY(has(points, {12, 1}, SnapKind::Center));

        points.clear();
        addSnapPoints(*object(CircleShape{{0, 0}, 5.0, 0.0, false}), {}, points);
        QVERIFY(has(points, {0, 0}, SnapKind::Center) && has(points, {0, -5}, SnapKind::Bounds));

        points.clear();
        addSnapPoints(*object(ArcShape{{0, 0}, 5.0, 0.0, 180.0}), {}, points);
        QVERIFY(has(points, {5, 0}, SnapKind::End) && has(points, {-5, 0}, SnapKind::End));
        QVERIFY(has(points, {0, 5}, SnapKind::Middle) && has(points, {0, 0}, SnapKind::Center));

        points.clear();
        PathShape path;
        path.moveTo({0, 0});
        path.lineTo({6, 0});
        path.cubicTo({7, 0}, {8, 1}, {8, 2});
        addSnapPoints(*object(path), {}, points);
        QVERIFY(has(points, {3, 0}, SnapKind::Middle) && has(points, {8, 2}, SnapKind::End));
        QVERIFY(!has(points, {7, 0}, SnapKind::End));
    }

    void groups_are_looked_into() {
        const ObjectPtr inner = object(RectShape{QRectF(0, 0, 2, 2)}, QTransform::fromTranslate(10, 0));
        const ObjectPtr group = object(GroupShape{{inner}}, QTransform::fromTranslate(0, 5));
        std::vector<SnapPoint> points;
        addSnapPoints(*group, {}, points);
        QVERIFY(has(points, {12, 7}, SnapKind::End));
    }

    void lines_of_many_nodes_give_their_ends() {
        PolylineShape line;
        for (int i = 0; i < 1000; ++i)
            line.points << QPointF(i, i % 2);
        std::vector<SnapPoint> points;
        addSnapPoints(*object(line), {}, points);
        QCOMPARE(points.size(), std::size_t(2));
    }

    void targets_are_in_view_and_not_left_out() {
        const ObjectList objects = {object(RectShape{QRectF(0, 0, 2, 2)}), object(RectShape{QRectF(50, 0, 2, 2)}),
                                    object(RectShape{QRectF(4, 0, 2, 2)})};
        const SnapTargets targets =
            snapTargets(state(objects), QRectF(-5, -5, 20, 20), [](int index) { return index == 2; });
        QVERIFY(has(targets.points, {2, 2}, SnapKind::End));
        QVERIFY(!has(targets.points, {50, 0}, SnapKind::End));
        QVERIFY(!has(targets.points, {4, 0}, SnapKind::End));
        QCOMPARE(targets.xs.size(), std::size_t(3));
    }

    void targets_are_bounded() {
        ObjectList objects;
        for (int i = 0; i < 5000; ++i)
            objects.push_back(object(RectShape{QRectF(i * 0.1, 0, 0.05, 1)}));
        QVERIFY(targetsOf(objects).points.size() < SnapTargets::kMostPoints + 100);
    }

    void the_nearest_place_within_reach_wins() {
        const SnapTargets targets = targetsOf({object(PointShape{{0, 0}, -1.0}), object(PointShape{{3, 0}, -1.0})});
        const SnapResult near = snap(queryAt(2.4, 0.3), targets, only(true, false, false));
        QCOMPARE(near.by, QPointF(3.0 - 2.4, -0.3));
        QCOMPARE(int(near.hints.size()), 1);
        QCOMPARE(near.hints[0].at, QPointF(3, 0));
        const SnapResult far = snap(queryAt(1.5, 1.5), targets, only(true, false, false));
        QVERIFY(far.by.isNull() && far.hints.empty());
    }

    void guides_draw_each_axis_by_itself() {
        const SnapTargets targets = targetsOf({object(RectShape{QRectF(0, 0, 4, 2)})});
        const SnapResult result = snap(queryAt(4.3, 40.0), targets, only(true, true, false));
        QCOMPARE(result.by, QPointF(4.0 - 4.3, 0.0));
        QCOMPARE(int(result.hints.size()), 1);
        QCOMPARE(int(result.hints[0].kind), int(SnapKind::Guide));
        QCOMPARE(result.hints[0].guide, QLineF(4, 0, 4, 40));
        const SnapResult both =
            snap(queryAt(1.9, 30.2),
                 targetsOf({object(RectShape{QRectF(0, 0, 4, 2)}), object(RectShape{QRectF(50, 30, 4, 2)})}),
                 only(true, true, false));
        QCOMPARE(both.by, QPointF(2.0 - 1.9, 30.0 - 30.2));
        QCOMPARE(int(both.hints.size()), 2);
    }

    void the_grid_comes_after_guides() {
        const SnapTargets targets = targetsOf({object(RectShape{QRectF(0, 0, 4.4, 2)})});
        SnapQuery query = queryAt(4.3, 40.3);
        query.gridStep = 2.0;
        const SnapResult result = snap(query, targets, only(true, true, true));
        QCOMPARE(result.by.x(), 4.4 - 4.3);
        QCOMPARE(result.by.y(), 40.0 - 40.3);
        query.gridStep = 0.0;
        QCOMPARE(snap(query, targets, only(false, false, true)).by, QPointF());
    }

    void a_fixed_axis_stays() {
        const SnapTargets targets = targetsOf({object(PointShape{{0, 0}, -1.0})});
        SnapQuery query = queryAt(0.4, 0.3);
        query.freeY = false;
        QCOMPARE(snap(query, targets, only(true, true, false)).by, QPointF(-0.4, 0.0));
        query.freeX = false;
        QVERIFY(snap(query, targets, only(true, true, true)).hints.empty());
    }

    void several_places_move_together() {
        const SnapTargets targets = targetsOf({object(PointShape{{10, 0}, -1.0})});
        SnapQuery query = queryAt(0, 0);
        query.places = {{0, 0}, {5, 0}, {9.5, 0.2}};
        QCOMPARE(snap(query, targets, only(true, false, false)).by, QPointF(0.5, -0.2));
    }

    void switched_off_nothing_is_drawn_anywhere() {
        const SnapTargets targets = targetsOf({object(PointShape{{0, 0}, -1.0})});
        SnapSettings off = only(true, true, true);
        off.on = false;
        SnapQuery query = queryAt(0.1, 0.1);
        query.gridStep = 1.0;
        const SnapResult result = snap(query, targets, off);
        QVERIFY(result.by.isNull() && result.hints.empty());
    }

    void settings_are_kept_and_brought_into_range() {
        tests::TemporaryRoot root;
        QCOMPARE(loadSnapSettings(), SnapSettings());
        SnapSettings settings;
        settings.on = false;
        settings.grid = true;
        settings.objects = false;
        settings.guides = false;
        settings.pixels = 25;
        QVERIFY(saveSnapSettings(settings));
        QCOMPARE(loadSnapSettings(), settings);
        settings.pixels = 100000;
        QVERIFY(saveSnapSettings(settings));
        QCOMPARE(loadSnapSettings().pixels, SnapSettings::kMostPixels);
    }
};

QTEST_MAIN(tst_Snapper)
#include "tst_snapper.moc"

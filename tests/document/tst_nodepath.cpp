// SPDX-License-Identifier: MIT
#include "samples.h"
#include "simengine/document/flatten.h"
#include "simengine/document/limits.h"
#include "simengine/document/nodepath.h"

#include <QRandomGenerator>
#include <QTest>
#include <QtMath>
#include <cmath>

using namespace sim;

namespace {

/// A line, a curve and a line: four nodes, open.
PathShape openShape() {
    PathShape path;
    path.moveTo({0, 0});
    path.lineTo({10, 0});
    path.cubicTo({15, 0}, {20, 5}, {20, 10});
    path.lineTo({20, 20});
    return path;
}

/// A circle of four curves about (0, 0).
PathShape ring() {
    PathShape path;
    const double k = 5.522847498;
    path.moveTo({10, 0});
    path.cubicTo({10, k}, {k, 10}, {0, 10});
    path.cubicTo({-k, 10}, {-10, k}, {-10, 0});
    path.cubicTo({-10, -k}, {-k, -10}, {0, -10});
    path.cubicTo({k, -10}, {10, -k}, {10, 0});
    path.close();
    return path;
}

PathShape square() {
    PathShape path;
    path.moveTo({0, 0});
    path.lineTo({10, 0});
    path.lineTo({10, 10});
    path.lineTo({0, 10});
    path.close();
    return path;
}

bool same(const PathShape& a, const PathShape& b) {
    return a.verbs == b.verbs && a.points == b.points;
}

NodePath selected(const PathShape& path, const QVector<int>& nodes, int contour = 0) {
    NodePath made = NodePath::of(path);
    for (int node : nodes)
        made.select({contour, node}, true);
    return made;
}

/// How far a polyline's points lie from a fine polyline of the other shape.
double deviation(const PathShape& a, const PathShape& b) {
    std::vector<FlatLine> la;
    std::vector<FlatLine> lb;
    flattenShape(Shape(a), QTransform(), la, 1e-5);
    flattenShape(Shape(b), QTransform(), lb, 1e-5);
    double worst = 0.0;
    for (const FlatLine& line : la) {
        for (const QPointF& p : line.points) {
            double best = 1e9;
            for (const FlatLine& other : lb) {
                for (int i = 1; i < other.points.size(); ++i) {
                    const QPointF d = other.points[i] - other.points[i - 1];
                    const double square = QPointF::dotProduct(d, d);
                    const double t =
                        square > 0 ? qBound(0.0, QPointF::dotProduct(p - other.points[i - 1], d) / square, 1.0) : 0.0;
                    const QPointF off = p - other.points[i - 1] - t * d;
                    best = std::min(best, std::hypot(off.x(), off.y()));
                }
            }
            worst = std::max(worst, best);
        }
    }
    return worst;
}

} // namespace

/// The nodes of a path: what each edit makes of it, in numbers.
class NodePathTest : public QObject {
    Q_OBJECT

private slots:
    void paths_come_back_as_they_were() {
        QVERIFY(same(NodePath::of(openShape()).path(), openShape()));
        QVERIFY(same(NodePath::of(ring()).path(), ring()));
        QVERIFY(same(NodePath::of(square()).path(), square()));
        const auto mixed = std::get<PathShape>(samples::path()->shape());
        QVERIFY(same(NodePath::of(mixed).path(), mixed));
        PathShape places; // marked points, and a loop of one node
        places.moveTo({1, 1});
        places.moveTo({2, 2});
        places.close();
        places.moveTo({5, 5});
        places.cubicTo({9, 9}, {9, 1}, {5, 5});
        places.close();
        QVERIFY(same(NodePath::of(places).path(), places));
        QCOMPARE(NodePath::of(places).nodeCount(), 3);
    }

    void a_line_back_to_the_start_is_the_closing_one() {
        PathShape explicitly = square();
        explicitly.verbs.insert(4, PathVerb::Line);
        explicitly.points.append({0, 0});
        QVERIFY(same(NodePath::of(explicitly).path(), square()));
    }

    void kinds_are_told_from_the_handles() {
        const NodePath round = NodePath::of(ring());
        for (const PathNode& node : round.contours()[0].nodes)
            QCOMPARE(int(node.kind), int(NodeKind::Symmetric));
        const NodePath open = NodePath::of(openShape());
        const std::vector<PathNode>& nodes = open.contours()[0].nodes;
        QCOMPARE(int(nodes[0].kind), int(NodeKind::Corner));
        QCOMPARE(int(nodes[1].kind), int(NodeKind::Smooth)); // a line goes over into the curve
        QCOMPARE(int(nodes[2].kind), int(NodeKind::Smooth));
        QCOMPARE(int(nodes[3].kind), int(NodeKind::Corner));
        PathShape bent = ring();
        bent.points[2] += QPointF(0, 1); // a handle out of line
        QCOMPARE(int(NodePath::of(bent).contours()[0].nodes[1].kind), int(NodeKind::Corner));
        bent = ring();
        bent.points[2] = {2, 10}; // in line, of another length
        QCOMPARE(int(NodePath::of(bent).contours()[0].nodes[1].kind), int(NodeKind::Smooth));
        const NodePath straight = NodePath::of(square());
        for (const PathNode& node : straight.contours()[0].nodes)
            QCOMPARE(int(node.kind), int(NodeKind::Corner));
    }

    void nodes_move_with_their_handles() {
        NodePath path = selected(openShape(), {1, 2});
        QVERIFY(path.moveSelected({1, -2}));
        PathShape expected = openShape();
        for (int i = 1; i <= 4; ++i)
            expected.points[i] += QPointF(1, -2);
        QVERIFY(same(path.path(), expected));
        QVERIFY(!path.moveSelected({0, 0}));
        path.selectNone();
        QVERIFY(!path.moveSelected({1, 1}));
    }

    void a_handle_of_a_symmetric_node_mirrors_the_other() {
        NodePath path = NodePath::of(ring());
        QVERIFY(path.moveHandle({0, 1}, NodeHandle::Out, {-3, 14}));
        const PathNode& node = path.contours()[0].nodes[1];
        QCOMPARE(node.out, QPointF(-3, 14));
        QCOMPARE(node.in, QPointF(3, 6));
    }

    void a_handle_of_a_smooth_node_turns_the_other() {
        NodePath path = selected(ring(), {1});
        path.setKind(NodeKind::Smooth);
        QVERIFY(path.moveHandle({0, 1}, NodeHandle::In, {0, 20}));
        const PathNode& node = path.contours()[0].nodes[1];
        QCOMPARE(node.in, QPointF(0, 20));
        QVERIFY(QLineF(node.out, QPointF(0, 10 - 5.522847498)).length() < 1e-12);
    }

    void a_handle_of_a_corner_moves_alone() {
        NodePath path = selected(ring(), {1});
        path.setKind(NodeKind::Corner);
        const QPointF other = path.contours()[0].nodes[1].in;
        QVERIFY(path.moveHandle({0, 1}, NodeHandle::Out, {-3, 14}));
        QCOMPARE(path.contours()[0].nodes[1].in, other);
    }

    void a_handle_beside_a_line_stays_in_its_direction() {
        NodePath path = NodePath::of(openShape());
        QVERIFY(path.moveHandle({0, 1}, NodeHandle::Out, {18, 7}));
        QCOMPARE(path.contours()[0].nodes[1].out, QPointF(18, 0));
        QVERIFY(path.moveHandle({0, 1}, NodeHandle::Out, {-50, 7}));
        QCOMPARE(path.contours()[0].nodes[1].out, QPointF(10, 0));
        QVERIFY(!path.moveHandle({0, 1}, NodeHandle::In, {0, 0}));  // a line has no handle
        QVERIFY(!path.moveHandle({0, 3}, NodeHandle::Out, {0, 0})); // the end has none
    }

    void smooth_and_symmetric_put_the_handles_in_one_line() {
        PathShape corner;
        corner.moveTo({0, 0});
        corner.cubicTo({3, 0}, {10, 4}, {10, 10});
        corner.cubicTo({13, 10}, {20, 16}, {20, 20});
        NodePath path = selected(corner, {1});
        QVERIFY(path.setKind(NodeKind::Smooth));
        PathNode node = path.contours()[0].nodes[1];
        QVERIFY(std::abs(QLineF(node.at, node.in).length() - 6.0) < 1e-12);
        QVERIFY(std::abs(QLineF(node.at, node.out).length() - 3.0) < 1e-12);
        QCOMPARE(int(kindOfNode(path.contours()[0], 1)), int(NodeKind::Smooth));
        QVERIFY(path.setKind(NodeKind::Symmetric));
        node = path.contours()[0].nodes[1];
        QVERIFY(std::abs(QLineF(node.at, node.in).length() - 4.5) < 1e-12);
        QCOMPARE(int(kindOfNode(path.contours()[0], 1)), int(NodeKind::Symmetric));
        QCOMPARE(node.at, QPointF(10, 10));
    }

    void a_corner_between_lines_gets_curves() {
        NodePath path = selected(square(), {1});
        QVERIFY(path.setKind(NodeKind::Smooth));
        const NodeContour& contour = path.contours()[0];
        QVERIFY(contour.nodes[0].curved && contour.nodes[1].curved && !contour.nodes[2].curved);
        QCOMPARE(int(kindOfNode(contour, 1)), int(NodeKind::Smooth) + (kindOfNode(contour, 1) == NodeKind::Symmetric));
        QVERIFY(!shapeFault(Shape(path.path())));
        NodePath all = NodePath::of(square());
        all.selectAll();
        QVERIFY(all.setKind(NodeKind::Symmetric));
        for (int i = 0; i < 4; ++i)
            QCOMPARE(int(kindOfNode(all.contours()[0], i)), int(NodeKind::Symmetric));
    }

    void an_inserted_node_leaves_the_course_as_it_was_data() {
        QTest::addColumn<int>("segment");
        QTest::addColumn<double>("t");
        for (int segment = 0; segment < 4; ++segment) {
            for (const double t : {1e-6, 0.1, 0.5, 0.77, 1.0 - 1e-6})
                QTest::addRow("%d at %g", segment, t) << segment << t;
        }
    }

    void an_inserted_node_leaves_the_course_as_it_was() {
        QFETCH(int, segment);
        QFETCH(double, t);
        NodePath path = NodePath::of(ring());
        const CubicPoints whole = segmentPoints(path.contours()[0], segment);
        QVERIFY(path.insert({0, segment}, t));
        QCOMPARE(path.nodeCount(), 5);
        QCOMPARE(path.selectedCount(), 1);
        const NodeContour& contour = path.contours()[0];
        QVERIFY(contour.nodes[size_t(segment) + 1].selected);
        const CubicPoints a = segmentPoints(contour, segment);
        const CubicPoints b = segmentPoints(contour, segment + 1);
        for (int i = 0; i <= 50; ++i) {
            const double u = i / 50.0;
            QVERIFY(QLineF(a.at(u), whole.at(u * t)).length() < 1e-13);
            QVERIFY(QLineF(b.at(u), whole.at(t + u * (1.0 - t))).length() < 1e-13);
        }
        QVERIFY(int(contour.nodes[size_t(segment) + 1].kind) != int(NodeKind::Corner));
    }

    void nodes_are_inserted_only_on_segments() {
        NodePath path = NodePath::of(openShape());
        QVERIFY(!path.insert({0, 3}, 0.5));
        QVERIFY(!path.insert({0, -1}, 0.5));
        for (const double t : {0.0, 1.0, -1.0, 2.0, std::nan("")})
            QVERIFY(!path.insert({0, 0}, t));
        QVERIFY(path.insert({0, 0}, 0.25));
        QCOMPARE(path.contours()[0].nodes[1].at, QPointF(2.5, 0));
        QVERIFY(!path.contours()[0].nodes[1].curved);
    }

    void nodes_are_inserted_between_selected_ones() {
        NodePath path = selected(openShape(), {1, 2, 3});
        QVERIFY(path.canInsertBetween());
        QVERIFY(path.insertBetween());
        QCOMPARE(path.nodeCount(), 6);
        QCOMPARE(path.selectedCount(), 2);
        QVERIFY(path.contours()[0].nodes[2].selected && path.contours()[0].nodes[4].selected);
        QVERIFY(deviation(path.path(), openShape()) < 1e-4);
        NodePath closed = selected(square(), {0, 3});
        QVERIFY(closed.insertBetween());
        QCOMPARE(closed.contours()[0].nodes[4].at, QPointF(0, 5));
        QVERIFY(closed.contours()[0].nodes[4].selected);
        NodePath none = selected(square(), {0, 2});
        QVERIFY(!none.canInsertBetween());
        QVERIFY(!none.insertBetween());
    }

    void nodes_that_go_leave_one_segment() {
        NodePath path = selected(openShape(), {1});
        QVERIFY(path.removeSelected());
        const NodeContour& contour = path.contours()[0];
        QCOMPARE(contour.count(), 3);
        QVERIFY(contour.nodes[0].curved); // of a line and a curve comes a curve
        QCOMPARE(contour.nodes[1].in, QPointF(20, 5));
        QCOMPARE(contour.nodes[0].out, QPointF(20, 10) / 3.0);
        NodePath end = selected(openShape(), {3});
        QVERIFY(end.removeSelected());
        QCOMPARE(end.path().verbs.size(), 3);
        QVERIFY(!shapeFault(Shape(end.path())));
        NodePath corner = selected(square(), {0});
        QVERIFY(corner.removeSelected());
        QVERIFY(same(corner.path(), [] {
            PathShape p;
            p.moveTo({10, 0});
            p.lineTo({10, 10});
            p.lineTo({0, 10});
            p.close();
            return p;
        }()));
    }

    void a_contour_of_one_node_goes() {
        NodePath path = selected(openShape(), {0, 1, 2});
        QVERIFY(path.removeSelected());
        QVERIFY(path.isEmpty());
        const auto two = std::get<PathShape>(samples::path()->shape());
        NodePath one = selected(two, {0, 1, 2}, 1);
        QVERIFY(one.removeSelected());
        QCOMPARE(one.contours().size(), size_t(1));
        QVERIFY(!one.removeSelected()); // nothing is selected any more
    }

    void segments_become_lines_and_curves() {
        NodePath path = selected(ring(), {0, 1});
        QVERIFY(path.setCurved(false));
        QVERIFY(!path.setCurved(false));
        QVERIFY(!path.contours()[0].nodes[0].curved);
        QVERIFY(path.contours()[0].nodes[1].curved);
        QCOMPARE(int(path.contours()[0].nodes[1].kind), int(NodeKind::Corner));
        QVERIFY(path.setCurved(true));
        const PathNode& from = path.contours()[0].nodes[0];
        QVERIFY(QLineF(from.out, QPointF(10, 0) + QPointF(-10, 10) / 3.0).length() < 1e-12);
        NodePath closing = selected(square(), {0, 3});
        QVERIFY(closing.setCurved(true));
        QVERIFY(closing.contours()[0].nodes[3].curved);
        QVERIFY(deviation(closing.path(), square()) < 1e-9);
    }

    void a_closed_contour_opens_at_the_node() {
        NodePath path = selected(ring(), {2});
        QVERIFY(path.canBreak());
        QVERIFY(path.breakSelected());
        QCOMPARE(path.contours().size(), size_t(1));
        const NodeContour& contour = path.contours()[0];
        QVERIFY(!contour.closed);
        QCOMPARE(contour.count(), 5);
        QCOMPARE(contour.nodes.front().at, QPointF(-10, 0));
        QCOMPARE(contour.nodes.back().at, QPointF(-10, 0));
        QVERIFY(deviation(path.path(), ring()) < 1e-9);
        QVERIFY(path.canClose());
        QVERIFY(path.setClosed(true)); // the ends meet: one node again
        QCOMPARE(path.nodeCount(), 4);
        QVERIFY(deviation(path.path(), ring()) < 1e-9);
    }

    void an_open_contour_parts_at_its_inner_nodes() {
        NodePath path = selected(openShape(), {0, 1, 2});
        QVERIFY(path.breakSelected());
        QCOMPARE(path.contours().size(), size_t(3));
        QCOMPARE(path.contours()[1].nodes.front().at, QPointF(10, 0));
        QVERIFY(path.contours()[1].nodes.front().curved);
        QVERIFY(deviation(path.path(), openShape()) < 1e-9);
        QVERIFY(!shapeFault(Shape(path.path())));
        NodePath ends = selected(openShape(), {0, 3});
        QVERIFY(!ends.canBreak());
        QVERIFY(!ends.breakSelected());
        NodePath both = selected(ring(), {1, 3});
        QVERIFY(both.breakSelected());
        QCOMPARE(both.contours().size(), size_t(2));
        QVERIFY(deviation(both.path(), ring()) < 1e-9);
    }

    void contours_close_and_open() {
        NodePath path = NodePath::of(openShape());
        QVERIFY(path.canClose() && !path.canOpen());
        QVERIFY(path.setClosed(true));
        QCOMPARE(path.nodeCount(), 4);
        QVERIFY(path.path().verbs.last() == PathVerb::Close);
        QVERIFY(path.canOpen() && !path.canClose());
        QVERIFY(!path.setClosed(true));
        QVERIFY(path.setClosed(false)); // without a selection the closing segment goes
        QVERIFY(same(path.path(), openShape()));
        NodePath side = selected(square(), {1, 2});
        QVERIFY(side.setClosed(false)); // the segment between the selected nodes
        QCOMPARE(side.contours()[0].nodes.front().at, QPointF(10, 10));
        QCOMPARE(side.contours()[0].nodes.back().at, QPointF(10, 0));
        const auto two = std::get<PathShape>(samples::path()->shape());
        NodePath first = selected(two, {0});
        QVERIFY(first.setClosed(true));
        QVERIFY(first.contours()[0].closed && first.contours()[1].closed);
        QVERIFY(!first.setClosed(true));
    }

    void nodes_and_segments_are_found() {
        NodePath path = NodePath::of(openShape());
        QVERIFY(*path.nodeAt({9.5, 0.5}, 1.0) == (NodeRef{0, 1}));
        QVERIFY(!path.nodeAt({5, 5}, 1.0));
        const auto line = path.segmentAt({4, 0.3}, 0.5);
        QVERIFY(line && line->segment == (NodeRef{0, 0}));
        QVERIFY(std::abs(line->t - 0.4) < 1e-6);
        QVERIFY(QLineF(line->at, QPointF(4, 0)).length() < 1e-6);
        const CubicPoints curve = segmentPoints(path.contours()[0], 1);
        const auto place = path.segmentAt(curve.at(0.37) + QPointF(0.01, 0.0), 0.5);
        QVERIFY(place && place->segment == (NodeRef{0, 1}));
        QVERIFY(std::abs(place->t - 0.37) < 0.01);
        QVERIFY(!path.segmentAt({0, 10}, 1.0));
        NodePath closed = NodePath::of(square());
        QVERIFY(closed.segmentAt({0, 5}, 0.1)->segment == (NodeRef{0, 3}));
        // of two nodes at one place the selected one
        PathShape twice = openShape();
        twice.moveTo({10, 0});
        twice.lineTo({30, 30});
        NodePath over = selected(twice, {0}, 1);
        QVERIFY(*over.nodeAt({10, 0}, 1.0) == (NodeRef{1, 0}));
    }

    void a_rectangle_selects_what_lies_in_it() {
        NodePath path = selected(openShape(), {0});
        path.selectIn(QRectF(15, 5, 10, 10));
        QVERIFY(path.contours()[0].nodes[0].selected && path.contours()[0].nodes[2].selected);
        QCOMPARE(path.selectedCount(), 2);
    }

    void random_edits_leave_a_sound_path_data() {
        QTest::addColumn<int>("seed");
        for (int seed = 1; seed <= 20; ++seed)
            QTest::addRow("%d", seed) << seed;
    }

    void random_edits_leave_a_sound_path() {
        QFETCH(int, seed);
        QRandomGenerator random{quint32(seed)};
        PathShape start = std::get<PathShape>(samples::path()->shape());
        for (const PathShape& more : {ring(), openShape(), square()}) {
            start.verbs += more.verbs;
            start.points += more.points;
        }
        NodePath path = NodePath::of(start);
        int changes = 0;
        for (int round = 0; round < 2000; ++round) {
            if (path.isEmpty() || path.nodeCount() > 200)
                path = NodePath::of(start);
            const int c = int(random.bounded(int(path.contours().size())));
            const NodeRef ref{c, int(random.bounded(path.contours()[size_t(c)].count()))};
            const QPointF place(random.generateDouble() * 40 - 20, random.generateDouble() * 40 - 20);
            switch (random.bounded(14)) {
            case 0:
                path.selectNone();
                break;
            case 1:
            case 2:
            case 3:
                path.select(ref, true);
                break;
            case 4:
                changes += path.moveSelected(place / 10.0);
                break;
            case 5:
                changes += path.moveHandle(ref, random.bounded(2) ? NodeHandle::In : NodeHandle::Out, place);
                break;
            case 6:
                changes += path.setKind(NodeKind(random.bounded(3)));
                break;
            case 7:
                changes += path.insert(ref, random.generateDouble());
                break;
            case 8:
                changes += path.insertBetween();
                break;
            case 9:
                changes += path.removeSelected();
                break;
            case 10:
                changes += path.setCurved(random.bounded(2));
                break;
            case 11:
                changes += path.breakSelected();
                break;
            case 12:
                changes += path.setClosed(random.bounded(2));
                break;
            default:
                path.selectIn(QRectF(place, QSizeF(10, 10)));
            }
            if (path.isEmpty())
                continue;
            const PathShape shape = path.path();
            QVERIFY2(!shapeFault(Shape(shape)), shapeFault(Shape(shape)));
            // an end that lies on the start of its closed contour becomes one node with it
            const NodePath again = NodePath::of(shape);
            QCOMPARE(again.contours().size(), path.contours().size());
            QVERIFY(path.nodeCount() - again.nodeCount() <= int(path.contours().size()));
        }
        QVERIFY(changes > 300);
    }

    void a_path_of_100000_nodes_is_edited_in_linear_time() {
        PathShape large;
        large.moveTo({0, 0});
        for (int i = 1; i < 100000; ++i)
            large.cubicTo({i + 0.3, 1}, {i + 0.6, -1}, {double(i + 1), 0});
        NodePath path = NodePath::of(large);
        QCOMPARE(path.nodeCount(), 100000);
        path.selectAll();
        QVERIFY(path.insertBetween());
        QCOMPARE(path.nodeCount(), 199999);
        path.selectAll();
        QVERIFY(path.setKind(NodeKind::Smooth));
        QVERIFY(path.breakSelected());
        QCOMPARE(path.contours().size(), size_t(199998));
        QVERIFY(path.setClosed(true));
        path.selectNone();
        QVERIFY(path.setClosed(false));
        QVERIFY(path.nodeAt({50000.0, 0.0}, 5.0));
        QVERIFY(path.segmentAt({50000.0, 0.0}, 5.0));
        path.selectAll();
        QVERIFY(path.removeSelected());
        QVERIFY(path.isEmpty());
    }
};

QTEST_APPLESS_MAIN(NodePathTest)
#include "tst_nodepath.moc"

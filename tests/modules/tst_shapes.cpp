// SPDX-License-Identifier: MIT
#include "engine/externmodules.h"
#include "simengine/document/flatten.h"
#include "simengine/document/generatedtool.h"
#include "simengine/document/markobject.h"
#include "support/logtexts.h"
#include "support/temporaryroot.h"

#include <QRandomGenerator>
#include <QtMath>
#include <QtTest>

using namespace sim;

namespace {

std::vector<FlatLine> linesOf(const GeneratedShape& shape) {
    std::vector<FlatLine> lines;
    flattenShape(Shape(shape), QTransform(), lines, 0.0005);
    return lines;
}

/// The only stroke of an outline.
QPolygonF lineOf(const GeneratedShape& shape) {
    return linesOf(shape).at(0).points;
}

double radius(const QPointF& p) {
    return std::hypot(p.x(), p.y());
}

/// Area of a polygon, positive counter-clockwise.
double area(const QPolygonF& points) {
    double twice = 0.0;
    for (int i = 1; i < points.size(); ++i)
        twice += points[i - 1].x() * points[i].y() - points[i].x() * points[i - 1].y();
    return twice / 2.0;
}

} // namespace

/// The outlines of the shipped tools, measured.
class ShapesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<tests::TemporaryRoot> m_root;

private slots:
    void init() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        LoadExternToolModules();
    }
    void cleanup() {
        FreeExternModules();
        m_root.reset();
    }

    void polygon_has_its_corners_on_the_circle() {
        const auto tool = GeneratedTool::ofClass("ToolPolygon");
        for (const int corners : {3, 4, 6, 17, 500}) {
            const auto shape = tool->make({double(corners), 12.5, 0.0, 30.0});
            QVERIFY(shape);
            const auto lines = linesOf(*shape);
            QCOMPARE(lines.size(), size_t(1));
            QVERIFY(lines[0].closed);
            QCOMPARE(lines[0].points.size(), corners + 1);
            for (int i = 0; i < corners; ++i) {
                const double angle = qDegreesToRadians(30.0 + 360.0 * i / corners);
                QVERIFY(QLineF(lines[0].points[i], 12.5 * QPointF(std::cos(angle), std::sin(angle))).length() < 1e-9);
            }
        }
    }

    void rounded_corners_are_arcs_of_their_radius() {
        const auto tool = GeneratedTool::ofClass("ToolPolygon");
        const auto shape = tool->make({4.0, 10.0 * std::sqrt(2.0), 3.0, 45.0}); // a square of 20 mm
        QVERIFY(shape);
        const QPolygonF line = lineOf(*shape);
        QVERIFY(qAbs(area(line) - (400.0 - (4.0 - M_PI) * 9.0)) < 0.02);
        for (const QPointF& p : line) {
            const double x = qAbs(p.x());
            const double y = qAbs(p.y());
            QVERIFY(x < 10.0 + 1e-9 && y < 10.0 + 1e-9);
            if (x > 7.0 + 1e-9 && y > 7.0 + 1e-9)
                QVERIFY(qAbs(std::hypot(x - 7.0, y - 7.0) - 3.0) < 2e-5);
        }
    }

    void a_rounding_larger_than_the_side_allows_gives_a_circle() {
        const auto tool = GeneratedTool::ofClass("ToolPolygon");
        const auto shape = tool->make({4.0, 10.0, 9000.0, 0.0});
        QVERIFY(shape);
        const double inner = 10.0 / std::sqrt(2.0);
        const QPolygonF line = lineOf(*shape);
        for (const QPointF& p : line)
            QVERIFY(qAbs(radius(p) - inner) < 1e-4);
    }

    void star_goes_between_two_circles() {
        const auto tool = GeneratedTool::ofClass("ToolStar");
        const auto shape = tool->make({5.0, 20.0, 0.4, 0.0, 90.0});
        QVERIFY(shape);
        const QPolygonF line = lineOf(*shape);
        QCOMPARE(line.size(), 11);
        for (int i = 0; i < 10; ++i)
            QVERIFY(qAbs(radius(line[i]) - (i % 2 ? 8.0 : 20.0)) < 1e-9);
        QVERIFY(QLineF(line[0], QPointF(0, 20)).length() < 1e-9);
        // rounded inside and outside, it stays within its sharp form at the tips and beyond it in the notches
        const QPolygonF rounded = lineOf(*tool->make({5.0, 20.0, 0.4, 0.5, 90.0}));
        double most = 0.0;
        for (const QPointF& p : rounded)
            most = std::max(most, radius(p));
        QVERIFY(most < 19.5);
        QVERIFY(area(rounded) > 0.0);
    }

    void spiral_grows_by_its_pitch_with_each_turn_data() {
        QTest::addColumn<double>("inner");
        QTest::addColumn<double>("pitch");
        QTest::addColumn<double>("turns");
        QTest::newRow("from the middle") << 0.0 << 1.0 << 5.0;
        QTest::newRow("from a circle") << 3.0 << 0.5 << 7.25;
        QTest::newRow("wide") << 0.0 << 200.0 << 2.0;
        QTest::newRow("part of a turn") << 1.0 << 1.0 << 0.05;
        QTest::newRow("many turns") << 0.0 << 0.05 << 1000.0;
    }

    void spiral_grows_by_its_pitch_with_each_turn() {
        QFETCH(double, inner);
        QFETCH(double, pitch);
        QFETCH(double, turns);
        const auto tool = GeneratedTool::ofClass("ToolSpiral");
        for (const double clockwise : {0.0, 1.0}) {
            const auto shape = tool->make({inner, pitch, turns, 0.0, clockwise, 0.0});
            QVERIFY(shape);
            const auto lines = linesOf(*shape);
            QCOMPARE(lines.size(), size_t(1));
            QVERIFY(!lines[0].closed);
            double angle = 0.0; // unrolled, counter-clockwise
            double last = 0.0;
            double worst = 0.0;
            for (const QPointF& p : lines[0].points) {
                if (radius(p) < 1e-9)
                    continue;
                const double now = std::atan2(p.y(), p.x());
                angle += std::remainder(now - last, 2.0 * M_PI);
                last = now;
                const double expected = inner + pitch * qAbs(angle) / (2.0 * M_PI);
                worst = std::max(worst, qAbs(radius(p) - expected));
            }
            QVERIFY2(worst < 1e-3 * pitch + 1e-4, qPrintable(QString::number(worst)));
            QVERIFY(qAbs(qAbs(angle) / (2.0 * M_PI) - turns) < 1e-3);
            QCOMPARE(angle > 0.0, clockwise < 0.5);
            QVERIFY(shape->outline.points.size() <= 200000);
        }
    }

    void the_way_back_of_a_spiral_ends_where_it_says() {
        const auto tool = GeneratedTool::ofClass("ToolSpiral");
        const auto there = tool->make({2.0, 1.0, 3.0, 0.0, 0.0, 0.0});
        const auto same = tool->make({2.0, 1.0, 3.0, 0.0, 0.0, 1.0});
        const auto on = tool->make({2.0, 1.0, 3.25, 0.0, 0.0, 2.0});
        QVERIFY(there && same && on);
        QCOMPARE(same->outline.points.size(), 2 * there->outline.points.size() - 1);
        QCOMPARE(same->outline.points.last(), same->outline.points.first());
        const int count = same->outline.points.size();
        for (int i = 0; i < count / 2; ++i)
            QCOMPARE(same->outline.points[i], same->outline.points[count - 1 - i]);
        // turning on it comes back to the inner radius, half a turn further: 6.5 turns in all
        QVERIFY(qAbs(radius(on->outline.points.last()) - 2.0) < 1e-9);
        QVERIFY(QLineF(on->outline.points.last(), QPointF(-2.0, 0.0)).length() < 1e-9);
    }

    void the_largest_values_stay_within_the_limits() {
        for (const char* name : {"ToolPolygon", "ToolStar", "ToolSpiral"}) {
            const auto tool = GeneratedTool::ofClass(name);
            QVector<double> most;
            QVector<double> least;
            for (const ToolParameter& p : tool->parameters()) {
                most.append(p.most);
                least.append(p.least);
            }
            QVERIFY2(tool->make(most), name);
            QVERIFY2(tool->make(least), name);
            QVERIFY2(tool->make(tool->presets()), name);
        }
        QVERIFY(tests::logTexts("error").isEmpty());
    }

    void random_values_give_sound_objects_and_come_back_bit_for_bit() {
        QRandomGenerator random(11);
        for (const char* name : {"ToolPolygon", "ToolStar", "ToolSpiral"}) {
            const auto tool = GeneratedTool::ofClass(name);
            for (int round = 0; round < 300; ++round) {
                QVector<double> values;
                for (const ToolParameter& p : tool->parameters()) {
                    const double part = random.generateDouble();
                    values.append(p.least + part * part * part * (p.most - p.least));
                }
                values = tool->sound(values);
                const auto shape = tool->make(values);
                QVERIFY(shape);
                QVERIFY(!shapeFault(Shape(*shape)));
                const auto back = tool->read(shape->parameters);
                QVERIFY(back);
                QCOMPARE(*back, values);
            }
        }
    }

    void parameters_of_other_versions_are_read() {
        const auto tool = GeneratedTool::ofClass("ToolPolygon");
        QCOMPARE(*tool->read("ToolPolygon\ncorners=8\nradius=2.5\nlater=1\n"), QVector<double>({8.0, 2.5, 0.0, 90.0}));
        QVERIFY(!tool->read("ToolStar\ncorners=8\n"));
        QVERIFY(!tool->read("ToolPolygon\ncorners=many\n"));
        QVERIFY(!tool->read(""));
    }

    void a_drag_gives_the_size() {
        const auto polygon = GeneratedTool::ofClass("ToolPolygon");
        const QVector<double> placed = polygon->placed(polygon->presets(), {0.0, -4.0});
        QCOMPARE(placed[1], 4.0);
        QCOMPARE(placed[3], -90.0);
        const auto spiral = GeneratedTool::ofClass("ToolSpiral");
        QCOMPARE(spiral->placed({2.0, 0.5, 1.0, 0.0, 0.0, 0.0}, {6.0, 0.0})[2], 8.0);
        QCOMPARE(spiral->placed({2.0, 0.5, 1.0, 0.0, 0.0, 0.0}, {1.0, 0.0})[2], 0.05);
        for (const char* name : {"ToolPolygon", "ToolStar", "ToolSpiral"}) {
            const auto tool = GeneratedTool::ofClass(name);
            QVERIFY2(tool->make(tool->placed(tool->presets(), {0.0, 0.0})), name);
        }
    }
};

QTEST_MAIN(ShapesTest)
#include "tst_shapes.moc"

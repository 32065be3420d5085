// SPDX-License-Identifier: MIT
#include "simengine/importers/importers.h"

#include "importfixture.h"
#include "simengine/importers/curves.h"
#include "simengine/importers/drawingbuilder.h"
#include "simengine/importers/importfile.h"
#include "simengine/importers/lineclip.h"

#include <QTemporaryDir>
#include <QTest>
#include <stdexcept>

using namespace sim;
using namespace imports;

/// What all importers share.
class ImportersTest : public QObject {
    Q_OBJECT

private slots:
    void importer_is_found_by_the_suffix_data();
    void importer_is_found_by_the_suffix();
    void filter_offers_every_kind();
    void unknown_kind_is_refused();
    void ellipse_curves_keep_within_their_error();
    void bulges_make_arcs_data();
    void bulges_make_arcs();
    void more_objects_than_the_limit_are_gathered_and_told();
    void points_beyond_the_budget_end_the_import();
    void clock_is_looked_at_by_work();
    void memory_that_is_given_back_can_be_taken_again();
    void curves_with_more_points_than_memory_end_the_import();
    void what_a_library_throws_is_a_message();
    void kinds_without_number_fill_no_memory();
    void outline_is_cut_at_a_rectangle();
    void area_is_cut_along_the_clip();
    void notes_all_have_a_text();
};

void ImportersTest::importer_is_found_by_the_suffix_data() {
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("kind");
    QTest::newRow("svg") << "a.svg"
                         << "SVG";
    QTest::newRow("capitals") << "/x/A.B.SVG"
                              << "SVG";
    QTest::newRow("plt") << "a.plt"
                         << "PLT";
    QTest::newRow("dxf") << "a.DXF"
                         << "DXF";
    QTest::newRow("hpgl") << "a.HPGL"
                          << "PLT";
    QTest::newRow("none") << "svg"
                          << "";
    QTest::newRow("other") << "a.svg.txt"
                           << "";
}

void ImportersTest::importer_is_found_by_the_suffix() {
    QFETCH(QString, file);
    QFETCH(QString, kind);
    const Importer* importer = importerFor(file);
    QCOMPARE(importer ? QString(importer->kind) : QString(), kind);
}

void ImportersTest::filter_offers_every_kind() {
    const QString filter = importFilter("All");
    QVERIFY(filter.startsWith("All (*.svg *.SVG *.dxf *.DXF "));
    for (const Importer& importer : importers()) {
        QVERIFY(filter.contains(QString(";;%1 (*.").arg(importer.kind)));
        for (const QString& suffix : QString(importer.suffixes).split(' ')) {
            QCOMPARE(suffix, suffix.toLower());
            QCOMPARE(importerFor("x." + suffix), &importer);
        }
    }
}

void ImportersTest::unknown_kind_is_refused() {
    const ImportResult result = importDrawing("/tmp/a.xyz");
    QVERIFY(result.error.contains(noteText(Note::UnknownKind)) && result.error.contains("a.xyz"));
    QTemporaryDir dir;
    for (const Importer& importer : importers()) {
        const QString file = dir.filePath("none." + QString(importer.suffixes).split(' ').first());
        QVERIFY(importDrawing(file).error.contains(file));
    }
}

void ImportersTest::ellipse_curves_keep_within_their_error() {
    const EllipseAxes circle{{3, 4}, {1000, 0}, {0, 1000}};
    PathShape path;
    path.moveTo(circle.at(0.3));
    appendEllipse(path, circle, 0.3, 4.0);
    double worst = 0.0;
    for (int i = 0; i + 3 < path.points.size(); i += 3) {
        for (double t = 0.0; t <= 1.0; t += 0.01) {
            const double s = 1.0 - t;
            const QPointF p = path.points[i] * s * s * s + path.points[i + 1] * 3 * s * s * t +
                              path.points[i + 2] * 3 * s * t * t + path.points[i + 3] * t * t * t;
            worst = std::max(worst, std::abs(std::hypot(p.x() - 3, p.y() - 4) - 1000));
        }
    }
    QVERIFY2(worst < 1e-4, qPrintable(QString::number(worst)));
    QVERIFY(near(path.points.last(), circle.at(4.3), 1e-9));
}

void ImportersTest::bulges_make_arcs_data() {
    QTest::addColumn<double>("bulge");
    QTest::addColumn<QPointF>("middle");
    QTest::newRow("half circle to the right") << 1.0 << QPointF(5, -5);
    QTest::newRow("half circle to the left") << -1.0 << QPointF(5, 5);
    QTest::newRow("quarter") << std::tan(M_PI / 8) << QPointF(5, 5 - 5 * std::sqrt(2.0));
    QTest::newRow("three quarters") << std::tan(3 * M_PI / 8) << QPointF(5, -5 - 5 * std::sqrt(2.0));
    QTest::newRow("line") << 0.0 << QPointF(5, 0);
}

void ImportersTest::bulges_make_arcs() {
    QFETCH(double, bulge);
    QFETCH(QPointF, middle);
    PathShape path;
    path.moveTo({0, 0});
    appendBulge(path, {10, 0}, bulge);
    QCOMPARE(path.points.last(), QPointF(10, 0));
    std::vector<FlatLine> lines;
    flattenShape(Shape(path), QTransform(), lines, 1e-5);
    double nearest = 1e9;
    for (int i = 1; i < lines[0].points.size(); ++i) {
        const QPointF a = lines[0].points[i - 1];
        const QPointF d = lines[0].points[i] - a;
        const double t = qBound(0.0, QPointF::dotProduct(middle - a, d) / QPointF::dotProduct(d, d), 1.0);
        const QPointF off = middle - a - d * t;
        nearest = std::min(nearest, std::hypot(off.x(), off.y()));
    }
    QVERIFY2(nearest < 1e-4, qPrintable(QString::number(nearest)));
}

void ImportersTest::more_objects_than_the_limit_are_gathered_and_told() {
    ImportResult result;
    ImportBudget budget;
    DrawingBuilder builder(result, budget);
    const int many = DrawingBuilder::kMostSingle + 30000;
    for (int i = 0; i < many; ++i)
        builder.add(PolylineShape{QPolygonF(QVector<QPointF>{{i * 0.01, 0}, {i * 0.01, 1}}), false}, QTransform(),
                    i % 2, "line");
    builder.finish({}, {});
    QVERIFY(budget.ok());
    QCOMPARE(count(result.converted, "path", Note::Gathered), 30000);
    QVERIFY(int(result.objects.size()) < DrawingBuilder::kMostSingle + 20);
    double length = 0.0;
    for (const ObjectPtr& object : result.objects)
        length += lengthOf(*object);
    QVERIFY(std::abs(length - many) < 1e-3);
}

void ImportersTest::points_beyond_the_budget_end_the_import() {
    ImportBudget budget;
    QVERIFY(budget.points(ImportBudget::kMostPoints));
    QVERIFY(!budget.points(1));
    QVERIFY(!budget.ok());
    QCOMPARE(budget.note(), Note::TooManyPoints);
}

void ImportersTest::clock_is_looked_at_by_work() {
    ImportBudget plain(0.0);
    QVERIFY(plain.step());
    // one step that goes through a megabyte takes as long as thousands of plain ones
    ImportBudget large(0.0);
    QVERIFY(!large.step(1 << 20));
    QCOMPARE(large.note(), Note::TooLong);
}

void ImportersTest::memory_that_is_given_back_can_be_taken_again() {
    ImportBudget budget;
    for (int i = 0; i < 10; ++i) {
        QVERIFY(budget.memory(ImportBudget::kMostMemory));
        QVERIFY(budget.memory(-ImportBudget::kMostMemory));
    }
    QVERIFY(budget.memory(ImportBudget::kMostMemory));
    QVERIFY(!budget.memory(1));
    QCOMPARE(budget.note(), Note::TooMuchMemory);
}

void ImportersTest::curves_with_more_points_than_memory_end_the_import() {
    const auto curves = [](int number) {
        PathShape path;
        path.moveTo({-900000.0, -900000.0});
        for (int i = 0; i < number; ++i)
            path.cubicTo({900000.0, 900000.0}, {-900000.0, 900000.0}, {900000.0, -900000.0 + i});
        return path;
    };
    ImportResult result;
    ImportBudget budget;
    DrawingBuilder builder(result, budget);
    // one that could be no object is left out and told
    QVERIFY(builder.addPath(curves(1000), 0, "path"));
    QCOMPARE(count(result.skipped, "path", Note::TooManyPoints), 1);
    int added = 0;
    while (added < 1000 && builder.addPath(curves(10), 0, "path"))
        ++added;
    QVERIFY2(added > 10 && added < 1000, qPrintable(QString::number(added)));
    QCOMPARE(budget.note(), Note::TooManyPoints);
}

void ImportersTest::what_a_library_throws_is_a_message() {
    QTemporaryDir dir;
    QFile file(dir.filePath("a.svg"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("x") == 1);
    file.close();
    const auto error = [&](ImportResult (*read)(const QByteArray&, const ImportOptions&)) {
        return importFile(file.fileName(), {}, read).error;
    };
    QCOMPARE(error([](const QByteArray&, const ImportOptions&) -> ImportResult { throw std::length_error("x"); }),
             file.fileName() + ": " + noteText(Note::Unreadable));
    QCOMPARE(error([](const QByteArray&, const ImportOptions&) -> ImportResult { throw std::bad_alloc(); }),
             file.fileName() + ": " + noteText(Note::NoMemory));
}

void ImportersTest::kinds_without_number_fill_no_memory() {
    ImportResult result;
    for (int i = 0; i < 100000; ++i)
        result.skip(QString("kind%1").arg(i) + QString(1000, 'x'), "because");
    QVERIFY(result.skipped.size() <= 251);
    int sum = 0;
    for (const ImportSkip& skip : result.skipped) {
        sum += skip.count;
        QVERIFY(skip.kind.size() <= 61);
    }
    QCOMPARE(sum, 100000);
}

void ImportersTest::outline_is_cut_at_a_rectangle() {
    PathShape path;
    path.moveTo({-5, 5});
    path.lineTo({5, 5});
    path.lineTo({5, 15});
    path.lineTo({8, 15});
    path.lineTo({8, -5});
    ImportBudget budget;
    const PathShape cut = clippedToRect(path, QRectF(0, 0, 10, 10), budget);
    QCOMPARE(cut.contourCount(), 2);
    QCOMPARE(cut.points, (QVector<QPointF>{{0, 5}, {5, 5}, {5, 10}, {8, 10}, {8, 0}}));
}

void ImportersTest::area_is_cut_along_the_clip() {
    const auto square = [](double x, double y, double size) {
        PathShape path;
        path.moveTo({x, y});
        path.lineTo({x + size, y});
        path.lineTo({x + size, y + size});
        path.lineTo({x, y + size});
        path.close();
        return path;
    };
    ImportBudget budget;
    const PathShape area = clippedToAreas(square(0, 0, 10), {{square(5, 5, 10), false}}, true, budget);
    QCOMPARE(area.contourCount(), 1);
    QCOMPARE(area.verbs.last(), PathVerb::Close);
    QVERIFY(near(shapeBounds(Shape(area), {}).center(), {7.5, 7.5}));
    const PathShape outline = clippedToAreas(square(0, 0, 10), {{square(5, 5, 10), false}}, false, budget);
    double length = 0.0;
    std::vector<FlatLine> lines;
    flattenShape(Shape(outline), {}, lines);
    for (const FlatLine& line : lines)
        length += polylineLength(line.points);
    QVERIFY2(std::abs(length - 10) < 1e-5, qPrintable(QString::number(length)));
    // a hole by the odd-even rule
    PathShape ring = square(0, 0, 10);
    const PathShape hole = square(2, 2, 6);
    ring.verbs += hole.verbs;
    ring.points += hole.points;
    const PathShape inRing = clippedToAreas(square(-5, 4, 2), {{ring, true}}, true, budget);
    QVERIFY(inRing.verbs.isEmpty());
    QCOMPARE(clippedToAreas(square(0, 8.5, 20), {{ring, true}}, true, budget).contourCount(), 1);
    // two areas that overlap are one
    QCOMPARE(unitedAreas({{square(0, 0, 10), false}, {square(5, 5, 10), false}}, budget).path.contourCount(), 1);
    QVERIFY(liesWithin(Box{1, 1, 9, 9}, {square(0, 0, 10), false}));
    QVERIFY(!liesWithin(Box{1, 1, 11, 9}, {square(0, 0, 10), false}));
    QVERIFY(!liesWithin(Box{1, 1, 9, 9}, {ring, true}));
}

void ImportersTest::notes_all_have_a_text() {
    QStringList seen;
    for (int i = 0; i <= int(Note::Tick); ++i) {
        const QString text = noteText(Note(i));
        QVERIFY2(!text.isEmpty(), qPrintable(QString::number(i)));
        QVERIFY2(!seen.contains(text), qPrintable(text));
        seen << text;
    }
}

QTEST_MAIN(ImportersTest)
#include "tst_importers.moc"

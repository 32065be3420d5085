// SPDX-License-Identifier: MIT
#include "importfixture.h"
#include "simengine/importers/pltimport.h"

#include <QTest>

using namespace sim;
using namespace imports;

namespace {

/// The file's origin comes to lie on the field's.
ImportResult read(const QByteArray& bytes) {
    ImportOptions options;
    options.placement = ImportPlacement::CenterPage;
    return importPltData(bytes, options);
}

} // namespace

/// Plotter files.
class PltTest : public QObject {
    Q_OBJECT

private slots:
    void commands_draw_data();
    void commands_draw();
    void arcs_go_the_right_way();
    void pens_are_chosen();
    void dots_become_points();
    void encoded_polyline_data();
    void encoded_polyline();
    void labels_are_strokes_in_their_place();
    void label_ends_at_its_terminator();
    void window_cuts_what_is_drawn();
    void what_is_left_out_is_told_data();
    void what_is_left_out_is_told();
    void letters_beyond_the_longest_label_are_told();
    void files_that_are_none_are_refused_data();
    void files_that_are_none_are_refused();
    void sloppy_files_are_read();
};

void PltTest::commands_draw_data() {
    QTest::addColumn<QByteArray>("plt");
    QTest::addColumn<QString>("kinds");
    QTest::addColumn<QString>("box");
    QTest::addColumn<double>("length");
    const auto row = [](const char* name, const char* plt, const char* kinds, const char* box, double length) {
        QTest::newRow(name) << QByteArray(plt) << QString(kinds) << QString(box) << length;
    };
    row("line", "IN;SP1;PU400,800;PD2000,2000;PU;", "MarkToolLine", "10 20 50 50", 50);
    row("pen down before the move", "IN;SP1;PA0,0;PD;PA400,0;PA400,400;PU", "MarkToolLine", "0 0 10 10", 20);
    row("closed", "IN;SP1;PU0,0PD400,0,400,400,0,400,0,0;PU", "MarkToolLine", "0 0 10 10", 40);
    row("relative", "IN;SP1;PU400,400;PR;PD400,0,0,400;PU;", "MarkToolLine", "10 10 20 20", 20);
    row("two strokes", "IN;SP1;PU0,0;PD400,0;PU0,400;PD400,400;PU;", "MarkToolLine MarkToolLine", "0 0 10 10", 20);
    row("circle", "IN;SP1;PU400,400;CI200;", "MarkToolCircle", "5 5 15 15", 10 * M_PI);
    row("circle with chords", "IN;SP1;PA400,400CI200,5", "MarkToolCircle", "5 5 15 15", 10 * M_PI);
    row("edge rectangle", "IN;SP1;PU0,0;EA400,800;", "MarkToolLine", "0 0 10 20", 60);
    row("relative rectangle", "IN;SP1;PU400,400;ER400,800;", "MarkToolLine", "10 10 20 30", 60);
    row("filled rectangle", "IN;SP1;PU0,0;RA400,800;", "MarkToolLine", "0 0 10 20", 60);
    row("arc absolute", "IN;SP1;PU400,0;PD;AA0,0,90;PU", "MarkToolPath", "0 0 10 10", 5 * M_PI);
    row("arc relative clockwise", "IN;SP1;PU400,0;PD;AR-400,0,-90;PU", "MarkToolPath", "0 -10 10 0", 5 * M_PI);
    row("arc through", "IN;SP1;PU400,0;PD;AT0,400,-400,0;PU", "MarkToolPath", "-10 0 10 10", 10 * M_PI);
    row("wedge", "IN;SP1;PU0,0;EW400,0,90;", "MarkToolPath", "0 0 10 10", 20 + 5 * M_PI);
    row("curve", "IN;SP1;PU0,0;PD;BZ400,0,800,0,1200,0;PU", "MarkToolPath", "0 0 30 0", 30);
    row("polygon edges", "IN;SP1;PU0,0;PM0;PD400,0,400,400;PM2;EP;", "MarkToolLine", "0 0 10 10",
        20 + 10 * std::sqrt(2.0));
    row("polygon of two contours", "IN;SP1;PU0,0;PM0;PD4000,0,4000,4000,0,4000;PM1;PU400,400;CI40;PM2;FP;",
        "MarkToolPath", "0 0 100 100", 400 + 2 * M_PI);
    row("polygon edges of the lowered pen", "IN;SP1;PU0,0;PM0;PD400,0;PU400,400;PD0,400;PM2;EP;", "MarkToolPath",
        "0 0 10 10", 30);
    row("polygon without its closing edge", "IN;SP1;PU0,0;PM0;PD400,0,400,400;PU;PM2;EP;", "MarkToolLine", "0 0 10 10",
        20);
    row("whole contour beside a part of one", "IN;SP1;PU0,0;PM0;PD400,0;PU400,400;PD0,400;PM1;PU800,0;CI40;PM2;EP;",
        "MarkToolPath", "0 -1 21 10", 30 + 2 * M_PI);
    row("area of the lifted pen too", "IN;SP1;PU0,0;PM0;PD400,0;PU400,400;PD0,400;PM2;FP;", "MarkToolLine", "0 0 10 10",
        40);
    row("two curves of one command", "IN;SP1;PU0,0;PD;BZ400,0,800,0,1200,0,1200,400,1200,800,1200,1200;PU",
        "MarkToolPath", "0 0 30 30", 60);
    row("scaled by frame", "IN;SP1;IP0,0,4000,4000;SC0,100,0,200;PU0,0;PD100,200;PU;", "MarkToolLine", "0 0 100 100",
        100 * std::sqrt(2.0));
    row("equal scale", "IN;SP1;IP0,0,4000,2000;SC0,100,0,100,1;PU0,0;PD100,100;PU;", "MarkToolLine", "25 0 75 50",
        50 * std::sqrt(2.0));
    row("equal scale to the left", "IN;SP1;IP0,0,4000,2000;SC0,100,0,100,1,0,0;PU0,0;PD100,100;PU;", "MarkToolLine",
        "0 0 50 50", 50 * std::sqrt(2.0));
    row("units by factor", "IN;SP1;IP0,0,4000,2000;SC0,40,0,40,2;PU0,0;PD30,40;PU;", "MarkToolLine", "0 0 30 40", 50);
    row("scale ends", "IN;SP1;IP0,0,4000,4000;SC0,1,0,1;SC;PU0,0;PD400,0;PU;", "MarkToolLine", "0 0 10 0", 10);
    row("turned", "IN;SP1;RO90;PU0,0;PD400,0;PU;", "MarkToolLine", "0 0 0 10", 10);
    row("turned twice", "IN;SP1;RO180;PU400,0;PD800,40;PU;", "MarkToolLine", "-20 -1 -10 0", std::hypot(10, 1));
    row("small letters and blanks", "in; sp 1; pu 0 0; pd 400 0 400-400; pu;", "MarkToolLine", "0 -10 10 0", 20);
    row("fractions", "IN;SP1;PU.4,0;PD400.4,0;PU;", "MarkToolLine", "0.01 0 10.01 0", 10);
    row("without the last lift", "IN;SP1;PU0,0;PD400,0", "MarkToolLine", "0 0 10 0", 10);
    row("scale makes an ellipse", "IN;SP1;IP0,0,4000,2000;SC-1,1,-1,1;PU0,0;CI1;", "MarkToolPath", "0 0 100 50",
        242.211);
}

void PltTest::commands_draw() {
    QFETCH(QByteArray, plt);
    QFETCH(double, length);
    const ImportResult result = read(plt);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QTEST(classes(result).join(' '), "kinds");
    QTEST(boxText(boundsOf(result)), "box");
    double sum = 0.0;
    for (const ObjectPtr& object : result.objects)
        sum += lengthOf(*object);
    QVERIFY2(std::abs(sum - length) < 0.01, qPrintable(QString::number(sum, 'g', 10)));
    QVERIFY(result.skipped.isEmpty());
}

void PltTest::arcs_go_the_right_way() {
    const ImportResult result = read("IN;SP1;PU400,0;PD;AA0,0,-90;PD0,-800;PU");
    const QPolygonF points = result.objects[0]->flattened()[0].points;
    QVERIFY(near(points.first(), {10, 0}));
    QVERIFY(near(points.last(), {0, -20}));
    QVERIFY(near(points[points.size() - 2], {0, -10}, 1e-9));
}

void PltTest::pens_are_chosen() {
    const ImportResult result = read("IN;PU0,0;PD40,0;PU;SP3;PD80,0;PU;SP0;PD0,0;PU;SP30;PD40,40;PU;SP-1;SP;");
    QList<int> pens;
    for (const ObjectPtr& object : result.objects)
        pens << object->pen();
    QCOMPARE(pens, (QList<int>{0, 2, 19}));
    QCOMPARE(count(result.converted, "SP", Note::NoPenCommand), 1);
    QCOMPARE(count(result.converted, "SP", Note::SharedPen), 1);
    QCOMPARE(count(result.skipped, "SP", Note::BadArguments), 1);
}

void PltTest::dots_become_points() {
    const ImportResult result = read("IN;SP1;PU400,400;PD;PU;PU800,800;PD800,800;PU");
    QCOMPARE(classes(result), (QStringList{"MarkToolPoint", "MarkToolPoint"}));
    QCOMPARE(boxText(boundsOf(result)), QString("10 10 20 20"));
}

void PltTest::encoded_polyline_data() {
    QTest::addColumn<QByteArray>("body");
    // 400 is 800 as a number with its sign behind, 32 + 12 * 64
    const auto digits = [](int value, bool seven) {
        unsigned rest = value < 0 ? unsigned(-value) * 2 + 1 : unsigned(value) * 2;
        const unsigned base = seven ? 32 : 64;
        QByteArray bytes;
        while (rest >= base) {
            bytes += char(63 + rest % base);
            rest /= base;
        }
        return bytes + char((seven ? 95 : 191) + rest);
    };
    for (bool seven : {false, true}) {
        const auto pair = [&](int x, int y) { return digits(x, seven) + digits(y, seven); };
        const char* name = seven ? "seven bits" : "eight bits";
        const QByteArray begin = seven ? "PE7" : "PE";
        QTest::newRow(name) << QByteArray(begin + "<=" + pair(400, 400) + pair(400, 0) + "\r\n" + pair(0, -400) + ";");
        QTest::addRow("%s, fractions", name) << QByteArray(begin + ">" + digits(2, seven) + "<=" + pair(1600, 1600) +
                                                           pair(1600, 0) + pair(0, -1600) + ";");
        QTest::addRow("%s, places", name)
            << QByteArray(begin + "<=" + pair(400, 400) + "=" + pair(800, 400) + "=" + pair(800, 0) + ";");
    }
}

void PltTest::encoded_polyline() {
    QFETCH(QByteArray, body);
    const ImportResult result = read("IN;SP1;" + body);
    QCOMPARE(classes(result), QStringList{"MarkToolLine"});
    const QPolygonF points = result.objects[0]->flattened()[0].points;
    QCOMPARE(points, QPolygonF(QVector<QPointF>{{10, 10}, {20, 10}, {20, 0}}));
    QVERIFY(result.skipped.isEmpty());
}

void PltTest::labels_are_strokes_in_their_place() {
    const ImportResult result = read("IN;SP1;SI1,2;PU400,400;LBHI\x03PD800,400;");
    QCOMPARE(result.objects.size(), size_t(2));
    const Box box = result.objects[0]->bounds();
    QVERIFY2(box.minX >= 10 && box.minX < 14 && std::abs(box.minY - 10) < 0.2, qPrintable(boxText(box)));
    QVERIFY2(std::abs(box.height() - 20) < 0.5 && box.width() > 15 && box.width() < 26, qPrintable(boxText(box)));
    // the pen stands behind the label
    QVERIFY(near(result.objects[1]->flattened()[0].points.first(), {40, 10}));
    QCOMPARE(count(result.converted, "LB", Note::FontReplaced), 1);

    const Box up = read("IN;SP1;SI1,2;DI0,1;PU400,400;LBHI\x03").objects[0]->bounds();
    QVERIFY2(std::abs(up.width() - 20) < 0.5 && std::abs(up.maxX - 10) < 0.2 && up.minY >= 10, qPrintable(boxText(up)));
    const Box middle = read("IN;SP1;SI1,2;LO5;PU400,400;LBH\x03").objects[0]->bounds();
    QVERIFY2(near(middle.center(), {10, 10}, 2.0), qPrintable(boxText(middle)));
    const Box lines = read("IN;SP1;SI1,2;PU400,4000;LBH\r\nH\x03").objects[0]->bounds();
    QVERIFY2(std::abs(lines.height() - 60) < 0.5, qPrintable(boxText(lines)));
}

void PltTest::label_ends_at_its_terminator() {
    const ImportResult result = read("IN;SP1;DT#,1;LBA;PD9#PU0,0;PD400,0;PU;DT;LBB\x03PU0,0;PD40,0;");
    QCOMPARE(result.objects.size(), size_t(4));
    const ImportResult cut = read("IN;SP1;PU0,0;PD400,0;PU;LBend");
    QCOMPARE(count(cut.skipped, "LB/PE", Note::CutOff), 1);
    QCOMPARE(cut.objects.size(), size_t(2));
}

void PltTest::window_cuts_what_is_drawn() {
    const ImportResult result = read("IN;SP1;IW0,0,400,400;PU-400,200;PD800,200;PU;CI40;PU200,200;CI400;IW;PD800,200;");
    QCOMPARE(boxText(result.objects[0]->bounds()), QString("0 5 10 5"));
    QCOMPARE(result.objects.size(), size_t(2));
    QCOMPARE(count(result.converted, "IW", Note::Clipped), 1);
    QCOMPARE(count(result.converted, "IW", Note::ClippedAway), 2);
    // an arc of kilometres would be cut as millions of lines
    const ImportResult large = read("IN;SP1;IW0,0,400,400;PU0,0;CI900000000;PD40,0;PU;");
    QCOMPARE(count(large.skipped, "CI", Note::OutOfRange), 1);
    QCOMPARE(large.objects.size(), size_t(1));
}

void PltTest::what_is_left_out_is_told_data() {
    QTest::addColumn<QByteArray>("plt");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("note");
    QTest::addColumn<bool>("dropped");
    const auto row = [](const char* plt, const char* kind, Note note, bool dropped) {
        QTest::newRow(plt) << QByteArray(plt) << QString(kind) << int(note) << dropped;
    };
    row("ZZ1,2;", "ZZ", Note::UnknownCommand, true);
    row("PD1;", "PD", Note::BadArguments, true);
    row("AA1,2;", "AA", Note::BadArguments, true);
    row("CI;", "CI", Note::BadArguments, true);
    row("EA5;", "EA", Note::BadArguments, true);
    row("SC0,0,1,2;", "SC", Note::BadArguments, true);
    row("IP0,0,1,1,2,2,3,3,4,4;", "IP", Note::BadArguments, true);
    row("BZ1,2,3,4,5;", "BZ", Note::BadArguments, true);
    row("SC0,1,0,1;", "SC", Note::NoFrame, false);
    row("RO45;", "RO", Note::BadArguments, true);
    row("IW1,2;", "IW", Note::BadArguments, true);
    row("LT2,4;", "LT", Note::Dashed, false);
    row("RA40,40;", "RA", Note::AreaAsOutline, false);
    row("XT;", "XT", Note::Tick, true);
    row("PA99999999999999999999,0;", "PA", Note::BadNumber, true);
    row("PM2;", "PM", Note::BadArguments, true);
    row("PM0;PD40,0;", "PM", Note::CutOff, true);
}

void PltTest::what_is_left_out_is_told() {
    QFETCH(QByteArray, plt);
    QFETCH(QString, kind);
    QFETCH(int, note);
    QFETCH(bool, dropped);
    const ImportResult result = read("IN;SP1;PU0,0;PD400,0;PU;" + plt);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(count(dropped ? result.skipped : result.converted, kind, Note(note)), 1);
}

void PltTest::letters_beyond_the_longest_label_are_told() {
    const ImportResult result = read("IN;SP1;PU0,0;LB" + QByteArray(10007, 'I') + "\x03");
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(count(result.skipped, "LB", Note::TextTooLong), 7);
}

void PltTest::files_that_are_none_are_refused_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zeros") << QByteArray(10000, '\0');
    QTest::newRow("digits") << QByteArray("1 2 3 4");
    QTest::newRow("high bytes") << QByteArray(1000, '\xfe');
}

void PltTest::files_that_are_none_are_refused() {
    QFETCH(QByteArray, bytes);
    const ImportResult result = read(bytes);
    QCOMPARE(result.error, noteText(Note::NotPlt));
    QVERIFY(result.objects.empty());
}

void PltTest::sloppy_files_are_read() {
    const ImportResult result =
        read("\x1b%-12345X@PJL ENTER LANGUAGE=HPGL2\r\n\x1b%0B\x1b.(;\x1b.I81;;17:IN;VS10;FS2;SP1;WU0;PW0.3;"
             "PU0,0;PD400,0;PU;PG;\x1b%0A\x1b"
             "E");
    QCOMPARE(classes(result), QStringList{"MarkToolLine"});
    QVERIFY2(result.skipped.isEmpty(),
             qPrintable(result.skipped.isEmpty() ? QString() : result.skipped[0].kind + result.skipped[0].reason));
}

QTEST_APPLESS_MAIN(PltTest)
#include "tst_plt.moc"

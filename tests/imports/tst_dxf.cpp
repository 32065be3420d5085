// SPDX-License-Identifier: MIT
#include "dxftext.h"
#include "importfixture.h"

#include <QTest>

using namespace sim;
using namespace imports;

/// DXF drawings: entities, blocks, layers and units.
class DxfTest : public QObject {
    Q_OBJECT

private slots:
    void entities_become_objects_data();
    void entities_become_objects();
    void arc_seen_from_below_is_mirrored();
    void units_are_honoured_data();
    void units_are_honoured();
    void lines_that_meet_are_joined();
    void layers_and_colours_choose_pens();
    void blocks_are_inserted_data();
    void blocks_are_inserted();
    void blocks_hand_on_layer_and_colour();
    void names_are_the_same_in_capital_and_small_letters();
    void block_that_is_defined_again_keeps_its_first_definition();
    void hatch_comes_as_its_outline_data();
    void hatch_comes_as_its_outline();
    void what_is_left_out_is_told_data();
    void what_is_left_out_is_told();
    void hidden_layers_are_left_out();
    void files_that_cannot_be_used_are_refused_data();
    void files_that_cannot_be_used_are_refused();
    void blocks_in_a_circle_are_refused();
    void line_ends_of_every_kind_are_read();
};

void DxfTest::entities_become_objects_data() {
    QTest::addColumn<QByteArray>("entities");
    QTest::addColumn<QString>("kinds");
    QTest::addColumn<QString>("box");
    QTest::addColumn<double>("length");
    const auto row = [](const char* name, const char* text, const char* kinds, const char* box, double length) {
        QTest::newRow(name) << QByteArray(text) << QString(kinds) << QString(box) << length;
    };
    row("line", "0,LINE;8,0;10,1;20,2;30,0;11,31;21,42;31,0;", "MarkToolLine", "1 2 31 42", 50);
    row("point", "0,POINT;8,0;10,3;20,4;", "MarkToolPoint", "3 4 3 4", 0);
    row("circle", "0,CIRCLE;8,0;10,5;20,6;40,2.5;", "MarkToolCircle", "2.5 3.5 7.5 8.5", 5 * M_PI);
    row("arc", "0,ARC;8,0;10,0;20,0;40,10;50,0;51,90;", "MarkToolPath", "0 0 10 10", 5 * M_PI);
    row("arc over zero", "0,ARC;8,0;10,0;20,0;40,10;50,270;51,90;", "MarkToolPath", "0 -10 10 10", 10 * M_PI);
    row("ellipse", "0,ELLIPSE;8,0;10,0;20,0;11,20;21,0;40,0.5;41,0;42,6.283185307179586;", "MarkToolPath",
        "-20 -10 20 10", 96.8845);
    row("half ellipse", "0,ELLIPSE;8,0;10,0;20,0;11,0;21,20;40,0.5;41,0;42,3.141592653589793;", "MarkToolPath",
        "-10 -20 0 20", 48.4422);
    row("polyline", "0,LWPOLYLINE;8,0;90,3;70,0;10,0;20,0;10,30;20,40;10,30;20,0;", "MarkToolLine", "0 0 30 40", 90);
    row("closed polyline", "0,LWPOLYLINE;8,0;90,3;70,1;10,0;20,0;10,30;20,40;10,30;20,0;", "MarkToolLine", "0 0 30 40",
        120);
    row("bulge", "0,LWPOLYLINE;8,0;90,2;70,0;10,0;20,0;42,1;10,10;20,0;", "MarkToolPath", "0 -5 10 0", 5 * M_PI);
    row("bulges all round", "0,LWPOLYLINE;8,0;90,2;70,1;10,0;20,0;42,1;10,10;20,0;42,1;", "MarkToolPath", "0 -5 10 5",
        10 * M_PI);
    row("old polyline",
        "0,POLYLINE;8,0;66,1;70,1;0,VERTEX;8,0;10,0;20,0;0,VERTEX;8,0;10,30;20,40;0,VERTEX;8,0;10,30;20,0;0,SEQEND;",
        "MarkToolLine", "0 0 30 40", 120);
    row("old polyline without its end",
        "0,POLYLINE;8,0;66,1;70,0;0,VERTEX;8,0;10,0;20,0;0,VERTEX;8,0;10,10;20,0;0,POINT;8,0;10,3;20,4;",
        "MarkToolLine MarkToolPoint", "0 0 10 4", 10);
    row("frame of a spline polyline is no line",
        "0,POLYLINE;8,0;66,1;70,4;0,VERTEX;8,0;10,0;20,0;70,8;0,VERTEX;8,0;10,5;20,50;70,16;0,VERTEX;8,0;10,10;20,0;70,"
        "8;0,SEQEND;",
        "MarkToolLine", "0 0 10 0", 10);
    row("solid", "0,SOLID;8,0;10,0;20,0;11,10;21,0;12,0;22,10;13,10;23,10;", "MarkToolLine", "0 0 10 10", 40);
    row("solid of three corners", "0,SOLID;8,0;10,0;20,0;11,30;21,0;12,30;22,40;13,30;23,40;", "MarkToolLine",
        "0 0 30 40", 120);
    row("face", "0,3DFACE;8,0;10,0;20,0;11,10;21,0;12,10;22,10;13,0;23,10;", "MarkToolLine", "0 0 10 10", 40);
    row("spline of one curve",
        "0,SPLINE;8,0;70,8;71,3;72,8;73,4;74,0;40,0;40,0;40,0;40,0;40,1;40,1;40,1;40,1;10,0;20,0;10,10;20,0;10,20;20,"
        "0;10,30;20,0;",
        "MarkToolPath", "0 0 30 0", 30);
    row("spline of lines",
        "0,SPLINE;8,0;70,8;71,1;72,5;73,3;74,0;40,0;40,0;40,1;40,2;40,2;10,0;20,0;10,30;20,40;10,30;20,0;",
        "MarkToolLine", "0 0 30 40", 90);
    // a quarter of a circle as a rational curve of the second degree
    row("weighted spline",
        "0,SPLINE;8,0;70,12;71,2;72,6;73,3;74,0;40,0;40,0;40,0;40,1;40,1;40,1;41,1;41,0.7071067811865476;41,1;10,10;20,"
        "0;10,10;20,10;10,0;20,10;",
        "MarkToolPath", "0 0 10 10", 5 * M_PI);
    row("fit points", "0,SPLINE;8,0;70,8;71,3;72,0;73,0;74,3;11,0;21,0;11,10;21,0;11,20;21,0;", "MarkToolPath",
        "0 0 20 0", 20);
}

void DxfTest::entities_become_objects() {
    QFETCH(QByteArray, entities);
    QFETCH(double, length);
    const ImportResult result = dxf::read(dxf::file(entities));
    QVERIFY2(result.ok(), qPrintable(result.error));
    QTEST(classes(result).join(' '), "kinds");
    QTEST(boxText(boundsOf(result)), "box");
    const double sum = lengthOfAll(result);
    QVERIFY2(std::abs(sum - length) < 0.003, qPrintable(QString::number(sum, 'g', 10)));
    QVERIFY2(result.skipped.isEmpty(), qPrintable(result.skipped.isEmpty() ? QString() : result.skipped[0].kind));
}

void DxfTest::arc_seen_from_below_is_mirrored() {
    const ImportResult result = dxf::read(
        dxf::file("0,ARC;8,0;10,-20;20,5;40,10;50,0;51,90;230,-1;0,LWPOLYLINE;8,0;90,2;70,0;10,0;20,0;42,1;10,10;20,0;"
                  "210,0;220,0;230,-1;0,ELLIPSE;8,0;10,0;20,0;11,20;21,0;40,0.5;41,0;42,1.5707963267948966;230,-1;"));
    QCOMPARE(boxText(result.objects[0]->bounds()), QString("10 5 20 15"));
    QCOMPARE(boxText(result.objects[1]->bounds()), QString("-10 -5 0 0"));
    QCOMPARE(boxText(result.objects[2]->bounds()), QString("0 -10 20 0"));
    const QPolygonF arc = result.objects[0]->flattened()[0].points;
    QVERIFY(near(arc.first(), {10, 5}) && near(arc.last(), {20, 15}));
    QVERIFY(result.converted.isEmpty());
    const ImportResult tilted = dxf::read(dxf::file("0,CIRCLE;8,0;10,0;20,0;40,10;210,1;220,0;230,1;"));
    QCOMPARE(count(tilted.converted, "CIRCLE", Note::Tilted), 1);
    QVERIFY(std::abs(tilted.objects[0]->bounds().width() - 20 / std::sqrt(2.0)) < 1e-6);
    QVERIFY(std::abs(tilted.objects[0]->bounds().height() - 20) < 1e-6);
}

void DxfTest::units_are_honoured_data() {
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<double>("mm");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<bool>("told");
    QTest::newRow("mm") << QByteArray("9,$INSUNITS;70,4;") << 10.0 << "mm" << false;
    QTest::newRow("inches") << QByteArray("9,$INSUNITS;70,1;") << 254.0 << "in" << false;
    QTest::newRow("feet") << QByteArray("9,$INSUNITS;70,2;") << 3048.0 << "ft" << false;
    QTest::newRow("cm") << QByteArray("9,$INSUNITS;70,5;") << 100.0 << "cm" << false;
    QTest::newRow("m") << QByteArray("9,$INSUNITS;70,6;") << 10000.0 << "m" << false;
    QTest::newRow("mil") << QByteArray("9,$INSUNITS;70,9;") << 0.254 << "mil" << false;
    QTest::newRow("um") << QByteArray("9,$INSUNITS;70,13;") << 0.01 << "µm" << false;
    QTest::newRow("unit before measurement")
        << QByteArray("9,$MEASUREMENT;70,0;9,$INSUNITS;70,4;") << 10.0 << "mm" << false;
    QTest::newRow("metric") << QByteArray("9,$INSUNITS;70,0;9,$MEASUREMENT;70,1;") << 10.0 << "mm" << false;
    QTest::newRow("imperial") << QByteArray("9,$MEASUREMENT;70,0;") << 254.0 << "in ($MEASUREMENT)" << false;
    QTest::newRow("none") << QByteArray("9,$ACADVER;1,AC1009;") << 10.0 << "mm" << true;
    QTest::newRow("unknown") << QByteArray("9,$INSUNITS;70,99;") << 10.0 << "mm" << true;
}

void DxfTest::units_are_honoured() {
    QFETCH(QByteArray, header);
    QFETCH(double, mm);
    QFETCH(bool, told);
    const ImportResult result = dxf::read(dxf::file(dxf::kUnitLine, {}, {}, header));
    QVERIFY2(result.ok(), qPrintable(result.error));
    QVERIFY(std::abs(lengthOfAll(result) - mm) < 1e-9 * mm);
    QTEST(result.unit, "unit");
    QCOMPARE(count(result.converted, "$INSUNITS", Note::NoUnit), told ? 1 : 0);
}

void DxfTest::lines_that_meet_are_joined() {
    const ImportResult result =
        dxf::read(dxf::file("0,LINE;8,0;10,0;20,0;11,10;21,0;0,LINE;8,0;10,10;20,0;11,10;21,10;0,LINE;8,0;10,10;20,10;"
                            "11,0;21,0;0,LINE;8,0;10,50;20,0;11,60;21,0;0,LINE;8,B;10,60;20,0;11,60;21,9;"));
    QCOMPARE(classes(result), (QStringList{"MarkToolLine", "MarkToolLine", "MarkToolLine"}));
    QVERIFY(std::get<PolylineShape>(result.objects[0]->shape()).closed);
    QCOMPARE(result.objects[0]->pointCount(), qint64(3));
    QCOMPARE(count(result.converted, "LINE", Note::Joined), 2);
}

void DxfTest::layers_and_colours_choose_pens() {
    const ImportResult result = dxf::read(
        dxf::file("0,CIRCLE;8,CUT;10,0;20,0;40,1;0,CIRCLE;8,MARK;10,0;20,0;40,2;0,CIRCLE;8,CUT;62,3;10,0;20,0;40,3;"
                  "0,CIRCLE;8,MARK;62,3;10,0;20,0;40,4;0,CIRCLE;8,CUT;10,0;20,0;40,5;0,CIRCLE;8,CUT;420,255;10,0;20,0;"
                  "40,6;0,CIRCLE;8,NEW;10,0;20,0;40,7;",
                  {}, "0,LAYER;2,CUT;70,0;62,1;6,CONTINUOUS;0,LAYER;2,MARK;70,0;62,1;6,CONTINUOUS;"));
    QList<int> pens;
    for (const ObjectPtr& object : result.objects)
        pens << object->pen();
    QCOMPARE(pens, (QList<int>{0, 1, 2, 2, 0, 3, 4}));
    QCOMPARE(result.penNames, (QVector<QString>{"CUT", "MARK", "", "", "NEW"}));
    QCOMPARE(result.penColors.mid(0, 4),
             (QVector<QColor>{QColor("#ff0000"), QColor("#ff0000"), QColor("#00ff00"), QColor("#0000ff")}));
    QByteArray many;
    for (int i = 0; i < 25; ++i)
        many += "0,CIRCLE;8,L" + QByteArray::number(i) + ";10,0;20,0;40,1;";
    const ImportResult shared = dxf::read(dxf::file(many));
    QCOMPARE(shared.objects[24]->pen(), 19);
    QCOMPARE(count(shared.converted, "colour", Note::SharedPen), 5);
}

void DxfTest::blocks_are_inserted_data() {
    QTest::addColumn<QByteArray>("insert");
    QTest::addColumn<QString>("box");
    QTest::addColumn<int>("objects");
    // the block is a line from 1,1 to 11,1 about the base 1,1
    const auto row = [](const char* name, const char* text, const char* box, int objects) {
        QTest::newRow(name) << QByteArray(text) << QString(box) << objects;
    };
    row("plain", "0,INSERT;8,0;2,B;10,5;20,6;", "5 6 15 6", 1);
    row("scaled", "0,INSERT;8,0;2,B;10,5;20,6;41,2;42,3;", "5 6 25 6", 1);
    row("turned", "0,INSERT;8,0;2,B;10,5;20,6;50,90;", "5 6 5 16", 1);
    row("mirrored", "0,INSERT;8,0;2,B;10,5;20,6;41,-1;", "-5 6 5 6", 1);
    row("from below", "0,INSERT;8,0;2,B;10,5;20,6;230,-1;", "-15 6 -5 6", 1);
    row("array", "0,INSERT;8,0;2,B;10,0;20,0;70,3;71,2;44,20;45,30;", "0 0 50 30", 6);
    row("turned array", "0,INSERT;8,0;2,B;10,0;20,0;50,90;70,3;71,2;44,20;45,30;", "-30 0 0 50", 6);
    row("nested", "0,INSERT;8,0;2,NEST;10,100;20,0;", "100 0 110 20", 2);
}

void DxfTest::blocks_are_inserted() {
    QFETCH(QByteArray, insert);
    QFETCH(int, objects);
    const QByteArray blocks = "0,BLOCK;8,0;2,B;70,0;10,1;20,1;0,LINE;8,0;10,1;20,1;11,11;21,1;0,ENDBLK;8,0;"
                              "0,BLOCK;8,0;2,NEST;70,0;10,0;20,0;0,INSERT;8,0;2,B;10,0;20,0;0,INSERT;8,0;2,B;10,0;20,"
                              "0;41,2;50,90;0,ENDBLK;8,0;";
    const ImportResult result = dxf::read(dxf::file(insert, blocks));
    QVERIFY2(result.ok(), qPrintable(result.error));
    QTEST(boxText(boundsOf(result)), "box");
    QCOMPARE(int(result.objects.size()), objects);
    QVERIFY(result.skipped.isEmpty());
}

void DxfTest::blocks_hand_on_layer_and_colour() {
    const QByteArray blocks = "0,BLOCK;8,0;2,B;70,0;10,0;20,0;0,CIRCLE;8,0;10,0;20,0;40,1;0,CIRCLE;8,OWN;10,0;20,0;40,"
                              "2;0,CIRCLE;8,OWN;62,0;10,0;20,0;40,3;0,ENDBLK;8,0;";
    const ImportResult result =
        dxf::read(dxf::file("0,INSERT;8,CUT;62,5;2,B;10,0;20,0;0,CIRCLE;8,CUT;10,0;20,0;40,4;0,CIRCLE;8,X;62,5;10,0;20,"
                            "0;40,5;",
                            blocks));
    QList<int> pens;
    for (const ObjectPtr& object : result.objects)
        pens << object->pen();
    // the insert's colour is met first
    QCOMPARE(pens, (QList<int>{1, 2, 0, 1, 0}));
    QCOMPARE(result.penNames, (QVector<QString>{"", "CUT", "OWN"}));
}

void DxfTest::names_are_the_same_in_capital_and_small_letters() {
    const QByteArray blocks = "0,BLOCK;8,0;2,Part;10,0;20,0;0,CIRCLE;8,cut;10,0;20,0;40,1;0,ENDBLK;8,0;";
    const ImportResult result = dxf::read(dxf::file("0,INSERT;8,CUT;2,PART;10,0;20,0;0,CIRCLE;8,CUT;10,0;20,0;40,2;",
                                                    blocks, "0,LAYER;2,Cut;70,0;62,1;6,CONTINUOUS;"));
    QVERIFY(result.skipped.isEmpty());
    QCOMPARE(result.objects.size(), size_t(2));
    QCOMPARE(result.penNames, (QVector<QString>{"Cut"}));
    // the second bytes of these two characters are a capital letter and the small one
    const QByteArray header = "9,$ACADVER;1,AC1015;9,$DWGCODEPAGE;3,ANSI_936;9,$INSUNITS;70,4;";
    const ImportResult chinese =
        dxf::read(dxf::file("0,CIRCLE;8,\x81\x41;10,0;20,0;40,2;0,CIRCLE;8,\x81\x61;10,0;20,0;40,2;", {}, {}, header));
    QCOMPARE(chinese.penNames.size(), 2);
}

void DxfTest::block_that_is_defined_again_keeps_its_first_definition() {
    const QByteArray blocks =
        "0,BLOCK;8,0;2,B;10,0;20,0;0,CIRCLE;8,0;10,0;20,0;40,1;0,ENDBLK;8,0;"
        "0,BLOCK;8,0;2,b;10,9;20,9;0,CIRCLE;8,0;10,0;20,0;40,5;0,POINT;8,0;10,0;20,0;0,ENDBLK;8,0;";
    const ImportResult result = dxf::read(dxf::file("0,INSERT;8,0;2,B;10,0;20,0;" + dxf::kUnitLine, blocks));
    QCOMPARE(result.objects.size(), size_t(2));
    QCOMPARE(boxText(result.objects[0]->bounds()), QString("-1 -1 1 1"));
    QCOMPARE(count(result.skipped, "BLOCK", Note::BlockAgain), 1);
}

void DxfTest::hatch_comes_as_its_outline_data() {
    QTest::addColumn<QByteArray>("loops");
    QTest::addColumn<QString>("box");
    QTest::addColumn<double>("length");
    QTest::newRow("polyline") << QByteArray("91,1;92,2;72,0;73,1;93,3;10,0;20,0;10,30;20,40;10,30;20,0;97,0;")
                              << "0 0 30 40" << 120.0;
    QTest::newRow("lines") << QByteArray("91,1;92,1;93,3;72,1;10,0;20,0;11,30;21,40;72,1;10,30;20,40;11,30;21,0;72,1;"
                                         "10,30;20,0;11,0;21,0;97,0;")
                           << "0 0 30 40" << 120.0;
    QTest::newRow("arc") << QByteArray("91,1;92,1;93,2;72,1;10,10;20,0;11,-10;21,0;72,2;10,0;20,0;40,10;50,180;51,360;"
                                       "73,1;97,0;")
                         << "-10 -10 10 0" << 20 + 10 * M_PI;
    QTest::newRow("bulges") << QByteArray("91,1;92,2;72,1;73,1;93,2;10,0;20,0;42,1;10,10;20,0;42,1;97,0;")
                            << "0 -5 10 5" << 10 * M_PI;
    QTest::newRow("half an ellipse and a line")
        << QByteArray("91,1;92,1;93,2;72,3;10,0;20,0;11,20;21,0;40,0.5;50,0;51,180;73,1;72,1;10,-20;20,0;11,20;21,0;"
                      "97,0;")
        << "-20 0 20 10" << 40 + 96.8845 / 2;
    QTest::newRow("spline and a line")
        << QByteArray("91,1;92,1;93,2;72,4;94,3;73,0;74,0;95,8;96,4;40,0;40,0;40,0;40,0;40,1;40,1;40,1;40,1;10,0;20,0;"
                      "10,10;20,0;10,20;20,0;10,30;20,0;97,0;72,1;10,30;20,0;11,0;21,0;97,0;")
        << "0 0 30 0" << 60.0;
    QTest::newRow("two loops and a number of bytes before them")
        << QByteArray("92,2;91,2;92,2;72,0;73,1;93,3;10,0;20,0;10,30;20,40;10,30;20,0;97,0;92,16;93,3;72,1;10,20;20,9;"
                      "11,25;21,9;72,1;10,25;20,9;11,25;21,12;72,1;10,25;20,12;11,20;21,9;97,0;")
        << "0 0 30 40" << 120 + 8 + std::hypot(5, 3);
    QTest::newRow("arc clockwise") << QByteArray("91,1;92,1;93,2;72,1;10,10;20,0;11,-10;21,0;72,2;10,0;20,0;40,10;50,"
                                                 "180;51,360;73,0;97,0;")
                                   << "-10 0 10 10" << 20 + 10 * M_PI;
}

void DxfTest::hatch_comes_as_its_outline() {
    QFETCH(QByteArray, loops);
    QFETCH(double, length);
    const ImportResult result =
        dxf::read(dxf::file("0,HATCH;8,0;10,0;20,0;30,0;230,1;2,SOLID;70,1;71,0;" + loops +
                            "75,0;76,1;78,1;53,45;43,0;44,0;45,1;46,1;79,0;98,1;10,5;20,5;" + dxf::kUnitLine));
    QCOMPARE(result.objects.size(), size_t(2));
    QTEST(boxText(result.objects[0]->bounds()), "box");
    QVERIFY2(std::abs(lengthOf(*result.objects[0]) - length) < 0.003,
             qPrintable(QString::number(lengthOf(*result.objects[0]))));
    QCOMPARE(count(result.converted, "HATCH", Note::HatchOutline), 1);
    QVERIFY(result.skipped.isEmpty());
}

void DxfTest::what_is_left_out_is_told_data() {
    QTest::addColumn<QByteArray>("entity");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("note");
    QTest::addColumn<bool>("dropped");
    const auto row = [](const char* text, const char* kind, Note note, bool dropped) {
        QTest::newRow(text) << QByteArray(text) << QString(kind) << int(note) << dropped;
    };
    row("0,XLINE;8,0;10,0;20,0;11,1;21,0;", "XLINE", Note::Infinite, true);
    row("0,RAY;8,0;10,0;20,0;11,1;21,0;", "RAY", Note::Infinite, true);
    row("0,3DSOLID;8,0;1,abc;", "3DSOLID", Note::Solid3d, true);
    row("0,DIMENSION;8,0;2,*D1;70,0;10,0;20,0;13,0;23,0;14,9;24,0;", "DIMENSION", Note::Dimension, true);
    row("0,LEADER;8,0;71,1;76,2;10,0;20,0;10,5;20,5;", "LEADER", Note::Dimension, true);
    row("0,IMAGE;8,0;10,0;20,0;", "IMAGE", Note::Pictures, true);
    row("0,ATTDEF;8,0;10,0;20,0;40,1;1,x;2,y;", "ATTDEF", Note::Attribute, true);
    row("0,SPARKLE;8,0;10,0;20,0;", "SPARKLE", Note::Proxy, true);
    row("0,INSERT;8,0;2,NONE;10,0;20,0;", "INSERT", Note::MissingBlock, true);
    row("0,CIRCLE;8,0;67,1;10,0;20,0;40,1;", "CIRCLE", Note::PaperSpace, true);
    row("0,CIRCLE;8,0;60,1;10,0;20,0;40,1;", "CIRCLE", Note::Hidden, true);
    row("0,CIRCLE;8,0;10,0;20,0;40,0;", "CIRCLE", Note::BadNumber, true);
    row("0,CIRCLE;8,0;10,nan;20,0;40,1;", "CIRCLE", Note::BadNumber, true);
    row("0,CIRCLE;8,0;10,1e300;20,0;40,1;", "CIRCLE", Note::BadNumber, true);
    row("0,CIRCLE;8,0;10,1e9;20,0;40,1;", "CIRCLE", Note::OutOfRange, true);
    row("0,SPLINE;8,0;70,8;71,3;72,2;73,2;74,0;40,0;40,1;10,0;20,0;10,1;20,1;", "SPLINE", Note::BadNumber, true);
    row("0,POLYLINE;8,0;66,1;70,16;71,2;72,2;0,VERTEX;8,0;10,0;20,0;0,VERTEX;8,0;10,9;20,0;0,SEQEND;", "POLYLINE",
        Note::MeshOutline, true);
    row("0,LINE;8,0;10,0;20,0;30,0;11,5;21,5;31,7;", "LINE", Note::Flattened, false);
    row("0,LINE;8,0;10,0;20,0;30,7;11,5;21,5;31,7;", "LINE", Note::Flattened, false);
    row("0,POINT;8,0;10,0;20,0;30,7;", "POINT", Note::Flattened, false);
    row("0,CIRCLE;8,0;39,5;10,0;20,0;40,1;", "CIRCLE", Note::Flattened, false);
    row("0,LWPOLYLINE;8,0;38,5;90,2;70,0;10,0;20,0;10,9;20,9;", "LWPOLYLINE", Note::Flattened, false);
    row("0,POLYLINE;8,0;66,1;70,8;0,VERTEX;8,0;10,0;20,0;30,0;0,VERTEX;8,0;10,9;20,0;30,5;0,SEQEND;", "POLYLINE",
        Note::Flattened, false);
    row("0,ELLIPSE;8,0;10,0;20,0;30,3;11,20;21,0;40,0.5;41,0;42,6.28;", "ELLIPSE", Note::Flattened, false);
    row("0,3DFACE;8,0;10,0;20,0;11,10;21,0;12,10;22,10;32,4;13,0;23,10;", "3DFACE", Note::Flattened, false);
    row("0,TEXT;8,0;10,0;20,0;30,9;40,10;1,H;", "TEXT", Note::Flattened, false);
    row("0,SPLINE;8,0;71,3;72,8;73,4;40,0;40,0;40,0;40,0;40,1;40,1;40,1;40,1;10,0;20,0;30,1;10,1;20,0;10,2;20,0;10,3;"
        "20,0;",
        "SPLINE", Note::Flattened, false);
    row("0,HATCH;8,0;10,0;20,0;30,5;91,1;92,2;72,0;73,1;93,3;10,0;20,0;10,3;20,4;10,3;20,0;97,0;75,0;", "HATCH",
        Note::Flattened, false);
    row("0,LWPOLYLINE;8,0;90,2;70,0;43,2;10,0;20,0;10,9;20,9;", "LWPOLYLINE", Note::LineWidth, false);
    row("0,LWPOLYLINE;8,0;90,2;70,1;10,0;20,0;40,1;41,0;42,1;10,9;20,9;40,1;41,1;42,1;", "LWPOLYLINE", Note::LineWidth,
        false);
    row("0,POLYLINE;8,0;66,1;40,3;41,3;0,VERTEX;8,0;10,0;20,0;0,VERTEX;8,0;10,9;20,0;0,SEQEND;", "POLYLINE",
        Note::LineWidth, false);
    row("0,POLYLINE;8,0;66,1;0,VERTEX;8,0;10,0;20,0;40,1;0,VERTEX;8,0;10,9;20,0;41,1;0,SEQEND;", "POLYLINE",
        Note::LineWidth, false);
    row("0,TEXT;8,0;10,0;20,0;40,10;1,%%uH%%u;", "TEXT", Note::TextFormat, false);
    row("0,MTEXT;8,0;10,0;20,0;40,10;71,1;1,\\LH\\l;", "MTEXT", Note::TextFormat, false);
    row("0,HATCH;8,0;91,1;92,1;93,2;72,1;10,0;20,0;11,9;21,0;72,3;10,0;20,0;11,1e200;21,0;40,1;50,0;51,90;73,1;75,0;",
        "HATCH", Note::BadNumber, true);
    row("0,POLYLINE;8,0;66,1;70,0;0,SEQEND;", "POLYLINE", Note::Nothing, true);
    row("0,POLYLINE;8,0;66,1;70,4;0,VERTEX;8,0;10,5;20,50;70,16;0,SEQEND;", "POLYLINE", Note::Nothing, true);
    row("0,LWPOLYLINE;8,0;90,0;70,0;", "LWPOLYLINE", Note::Nothing, true);
    row("0,HATCH;8,0;91,0;75,0;", "HATCH", Note::Nothing, true);
    row("0,LINE;8,0;6,DASHED;10,50;20,0;11,5;21,5;", "LINE", Note::Dashed, false);
    row("0,SOLID;8,0;10,0;20,0;11,10;21,0;12,0;22,10;13,10;23,10;", "SOLID", Note::AreaAsOutline, false);
    row("0,SPLINE;8,0;70,8;71,3;72,0;73,0;74,2;11,0;21,0;11,10;21,0;", "SPLINE", Note::FitPoints, false);
}

void DxfTest::what_is_left_out_is_told() {
    QFETCH(QByteArray, entity);
    QFETCH(QString, kind);
    QFETCH(int, note);
    QFETCH(bool, dropped);
    const ImportResult result = dxf::read(dxf::file(dxf::kUnitLine + entity));
    QVERIFY2(result.ok(), qPrintable(result.error));
    // a number or an edge that is left out leaves the rest
    const bool partly = entity.contains("nan") || (entity.contains("0,HATCH") && Note(note) == Note::BadNumber);
    QCOMPARE(int(result.objects.size()), dropped && !partly ? 1 : 2);
    QCOMPARE(count(dropped ? result.skipped : result.converted, kind, Note(note)), 1);
}

void DxfTest::hidden_layers_are_left_out() {
    const ImportResult result = dxf::read(dxf::file(
        "0,LINE;8,OFF;10,0;20,0;11,1;21,0;0,LINE;8,ICE;10,0;20,0;11,1;21,0;0,LINE;8,ON;10,0;20,0;11,1;21,0;", {},
        "0,LAYER;2,OFF;70,0;62,-1;6,CONTINUOUS;0,LAYER;2,ICE;70,1;62,1;6,CONTINUOUS;0,LAYER;2,ON;70,0;62,"
        "1;6,DASHED;"));
    QCOMPARE(result.objects.size(), size_t(1));
    QCOMPARE(count(result.skipped, "LINE", Note::Hidden), 2);
    QCOMPARE(count(result.converted, "LINE", Note::Dashed), 1);
}

void DxfTest::files_that_cannot_be_used_are_refused_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("note");
    const QByteArray good = dxf::file(dxf::kUnitLine);
    QTest::newRow("empty") << QByteArray() << int(Note::NotDxf);
    QTest::newRow("no drawing") << QByteArray("hello\nworld\n") << int(Note::NotDxf);
    QTest::newRow("svg") << QByteArray("<svg></svg>\n\n") << int(Note::NotDxf);
    QTest::newRow("binary") << QByteArray("AutoCAD Binary DXF\r\n\x1a\0\0\0", 23) << int(Note::BinaryDxf);
    QTest::newRow("cut off") << good.left(good.size() - 20) << int(Note::CutOff);
    QTest::newRow("cut within a pair") << good.left(good.indexOf("LINE") - 2) << int(Note::CutOff);
    QTest::newRow("shifted lines") << QByteArray(good).replace("LINE\r\n", "LINE\r\nmore\r\n") << int(Note::XmlFault);
    QTest::newRow("more vertices than bytes")
        << dxf::file("0,LWPOLYLINE;8,0;90,1000000000;10,0;20,0;") << int(Note::BadNumber);
    QTest::newRow("negative vertices") << dxf::file("0,LWPOLYLINE;8,0;90,-5;10,0;20,0;") << int(Note::BadNumber);
    QTest::newRow("vertices beyond all numbers")
        << dxf::file("0,LWPOLYLINE;8,0;90,5;0,LWPOLYLINE;8,0;90,9223372036854775807;") << int(Note::BadNumber);
    QTest::newRow("many knots") << dxf::file("0,SPLINE;8,0;72,99999999999999999999;") << int(Note::BadNumber);
}

void DxfTest::files_that_cannot_be_used_are_refused() {
    QFETCH(QByteArray, bytes);
    QFETCH(int, note);
    const ImportResult result = dxf::read(bytes);
    QCOMPARE(result.error, noteText(Note(note)));
    QVERIFY(result.objects.empty());
}

void DxfTest::blocks_in_a_circle_are_refused() {
    const QByteArray blocks = "0,BLOCK;8,0;2,A;10,0;20,0;0,INSERT;8,0;2,B;10,0;20,0;0,ENDBLK;8,0;"
                              "0,BLOCK;8,0;2,B;10,0;20,0;0,INSERT;8,0;2,A;10,0;20,0;0,ENDBLK;8,0;";
    QCOMPARE(dxf::read(dxf::file("0,INSERT;8,0;2,A;10,0;20,0;", blocks)).error, noteText(Note::RefersToItself));
    QByteArray deep = "0,BLOCK;8,0;2,N0;10,0;20,0;" + dxf::kUnitLine + "0,ENDBLK;8,0;";
    for (int i = 1; i < 200; ++i)
        deep += "0,BLOCK;8,0;2,N" + QByteArray::number(i) + ";10,0;20,0;0,INSERT;8,0;2,N" + QByteArray::number(i - 1) +
                ";10,0;20,0;0,ENDBLK;8,0;";
    QCOMPARE(dxf::read(dxf::file("0,INSERT;8,0;2,N199;10,0;20,0;", deep)).error, noteText(Note::TooDeep));
    QVERIFY(dxf::read(dxf::file("0,INSERT;8,0;2,N60;10,0;20,0;", deep)).ok());
}

void DxfTest::line_ends_of_every_kind_are_read() {
    for (const char* end : {"\n", "\r\n", "\r"}) {
        QByteArray bytes = dxf::file(dxf::kUnitLine).replace("\r\n", end);
        QCOMPARE(dxf::read(bytes).objects.size(), size_t(1));
        bytes.prepend("\xef\xbb\xbf");
        QCOMPARE(dxf::read(bytes).objects.size(), size_t(1));
    }
}

QTEST_MAIN(DxfTest)
#include "tst_dxf.moc"

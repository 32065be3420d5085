// SPDX-License-Identifier: MIT
#include "dxftext.h"
#include "importfixture.h"

#include <QTest>

using namespace sim;
using namespace imports;

/// Texts of DXF drawings: places, formatting and encodings.
class DxfTextsTest : public QObject {
    Q_OBJECT

private slots:
    void text_of_a_block_comes_at_every_insert();
    void texts_lie_in_their_place_data();
    void texts_lie_in_their_place();
    void paragraphs_lose_their_formatting();
    void codes_without_their_end_take_no_text_data();
    void codes_without_their_end_take_no_text();
    void texts_beyond_the_longest_are_left_out();
    void characters_of_no_encoding_are_told();
    void chinese_texts_come_in_an_outline_font_data();
    void chinese_texts_come_in_an_outline_font();
};

void DxfTextsTest::text_of_a_block_comes_at_every_insert() {
    const QByteArray blocks = "0,BLOCK;8,0;2,B;10,0;20,0;0,TEXT;8,0;10,0;20,0;40,10;1,HI;0,ENDBLK;8,0;";
    const ImportResult result =
        dxf::read(dxf::file("0,INSERT;8,0;2,B;10,0;20,0;0,INSERT;8,0;2,B;10,100;20,0;41,2;42,2;", blocks));
    QCOMPARE(result.objects.size(), size_t(2));
    const Box a = result.objects[0]->bounds();
    const Box b = result.objects[1]->bounds();
    QVERIFY(std::abs(b.width() - 2 * a.width()) < 1e-9 && std::abs(b.minX - 100 - 2 * a.minX) < 1e-9);
    QCOMPARE(count(result.converted, "TEXT", Note::FontReplaced), 2);
}

void DxfTextsTest::texts_lie_in_their_place_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QRectF>("box"); // x, y, 0 for any width, height
    const auto row = [](const char* name, const char* text, const QRectF& box) {
        QTest::newRow(name) << QByteArray(text) << box;
    };
    row("left", "0,TEXT;8,0;10,100;20,50;40,10;1,HIH;", {100, 50, 0, 10});
    row("turned", "0,TEXT;8,0;10,100;20,50;40,10;1,HIH;50,90;", {90, 50, 10, 0});
    row("upside down", "0,TEXT;8,0;10,100;20,50;40,10;1,HIH;71,4;", {100, 40, 0, 10});
    row("top", "0,TEXT;8,0;10,0;20,0;11,100;21,50;40,10;1,HIH;72,0;73,3;", {100, 40, 0, 10});
    row("middle", "0,TEXT;8,0;10,0;20,0;11,100;21,50;40,10;1,HIH;72,0;73,2;", {100, 45, 0, 10});
    row("fit", "0,TEXT;8,0;10,100;20,50;11,200;21,50;40,10;1,HIH;72,5;", {100, 50, 100, 10});
    row("attribute", "0,ATTRIB;8,0;10,100;20,50;40,10;1,HIH;2,TAG;", {100, 50, 0, 10});
    row("two lines", "0,MTEXT;8,0;10,100;20,50;40,6;71,1;1,HIH\\PHIH;", {100, 34, 0, 16});
    row("lower left", "0,MTEXT;8,0;10,100;20,50;40,6;71,7;1,HIH;", {100, 52, 0, 6});
    row("wrapped", "0,MTEXT;8,0;10,100;20,50;40,6;41,20;71,1;1,HIH HIH;", {100, 34, 0, 16});
}

void DxfTextsTest::texts_lie_in_their_place() {
    QFETCH(QByteArray, text);
    QFETCH(QRectF, box);
    const ImportResult result = dxf::read(dxf::file(text));
    QCOMPARE(result.objects.size(), size_t(1));
    const Box bounds = result.objects[0]->bounds();
    const QByteArray shown = boxText(bounds).toLatin1();
    // the bearings of the letters are a part of their height
    const double bearing = text.contains("72,5") ? 8.0 : 2.0;
    QVERIFY2(bounds.minX >= box.x() - 0.1 && bounds.minX < box.x() + bearing, shown);
    QVERIFY2(bounds.minY >= box.y() - 0.1 && bounds.minY < box.y() + bearing, shown);
    if (box.width() > 0.0)
        QVERIFY2(bounds.maxX <= box.right() + 0.1 && bounds.maxX > box.right() - 10 * bearing, shown);
    if (box.height() > 0.0)
        QVERIFY2(std::abs(bounds.height() - box.height()) < 0.3, shown);
    QVERIFY(result.skipped.isEmpty());
    QCOMPARE(count(result.converted, text.mid(2, text.indexOf(';') - 2), Note::FontReplaced), 1);
}

void DxfTextsTest::paragraphs_lose_their_formatting() {
    const QByteArray plain = "0,TEXT;8,0;10,0;20,0;40,10;1,A{B}C+-1/2 D;";
    const QByteArray rich = "0,MTEXT;8,0;10,0;20,10;40,10;71,1;3,{\\fArial|b0|i0;A}\\{B\\}\\H2x;\\C1;C+-\\S1^2;\\~;1,"
                            "\\LD\\l;";
    // a semicolon parts the pairs here, so the codes' own are put in afterwards
    const auto read = [](QByteArray text) { return dxf::read(text.replace('\x01', ';')); };
    QByteArray richFile = dxf::file(QByteArray(rich)
                                        .replace("b0|i0;", "b0|i0\x01")
                                        .replace("H2x;", "H2x\x01")
                                        .replace("C1;", "C1\x01")
                                        .replace("1^2;", "1^2\x01"));
    const ImportResult a = read(dxf::file(plain));
    const ImportResult b = read(richFile);
    QCOMPARE(b.objects.size(), size_t(1));
    QCOMPARE(b.objects[0]->pointCount(), a.objects[0]->pointCount());
    QVERIFY(std::abs(lengthOf(*a.objects[0]) - lengthOf(*b.objects[0])) < 1e-6);
}

void DxfTextsTest::codes_without_their_end_take_no_text_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("plain");
    QTest::newRow("new column") << QByteArray("AB\\NCD") << QByteArray("AB\\PCD");
    QTest::newRow("height") << QByteArray("AB\\HCD") << QByteArray("ABCD");
    QTest::newRow("fraction") << QByteArray("AB\\SCD") << QByteArray("ABCD");
    QTest::newRow("encoding") << QByteArray("\\M+5C4E3") << QByteArray("\\U+4F60");
}

void DxfTextsTest::codes_without_their_end_take_no_text() {
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, plain);
    const QByteArray entity = "0,MTEXT;8,0;10,0;20,0;40,10;71,1;1,";
    const ImportResult a = dxf::read(dxf::file(entity + text + ";"));
    const ImportResult b = dxf::read(dxf::file(entity + plain + ";"));
    QCOMPARE(a.objects.size(), size_t(1));
    QCOMPARE(a.points, b.points);
    QCOMPARE(boxText(boundsOf(a)), boxText(boundsOf(b)));
}

void DxfTextsTest::texts_beyond_the_longest_are_left_out() {
    const QByteArray entity = "0,MTEXT;8,0;10,0;20,0;40,10;71,1;";
    const QByteArray part = "3," + QByteArray(250, 'I') + ";";
    QCOMPARE(dxf::read(dxf::file(entity + part.repeated(39) + "1,I;")).skipped.size(), 0);
    for (int parts : {41, 500}) {
        const ImportResult result = dxf::read(dxf::file(dxf::kUnitLine + entity + part.repeated(parts) + "1,I;"));
        QCOMPARE(result.objects.size(), size_t(1));
        QCOMPARE(count(result.skipped, "MTEXT", Note::TextTooLong), 1);
    }
}

void DxfTextsTest::characters_of_no_encoding_are_told() {
    const ImportResult result = dxf::read(dxf::file("0,TEXT;8,0;10,0;20,0;40,10;1,A\\M+5FFFF;"));
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(result.objects.size(), size_t(1));
    QCOMPARE(count(result.converted, "TEXT", Note::Encoding), 1);
    const QByteArray header = "9,$ACADVER;1,AC1015;9,$DWGCODEPAGE;3,ANSI_936;9,$INSUNITS;70,4;";
    const ImportResult bytes = dxf::read(dxf::file("0,TEXT;8,0;10,0;20,0;40,10;1,A\xd6\xff;", {}, {}, header));
    QCOMPARE(count(bytes.converted, "TEXT", Note::Encoding), 1);
}

void DxfTextsTest::chinese_texts_come_in_an_outline_font_data() {
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("text");
    const QString text = QStringLiteral("中H");
    QTest::newRow("utf-8") << QByteArray("9,$ACADVER;1,AC1027;9,$INSUNITS;70,4;") << text.toUtf8();
    QTest::newRow("gbk") << QByteArray("9,$ACADVER;1,AC1015;9,$DWGCODEPAGE;3,ANSI_936;") << QByteArray("\xd6\xd0H");
    QTest::newRow("utf-8 in an old file") << QByteArray("9,$ACADVER;1,AC1015;") << text.toUtf8();
    QTest::newRow("escape") << QByteArray("9,$ACADVER;1,AC1015;") << QByteArray("\\U+4E2DH");
    QTest::newRow("escape in an encoding") << QByteArray("9,$ACADVER;1,AC1012;") << QByteArray("\\M+5D6D0H");
}

void DxfTextsTest::chinese_texts_come_in_an_outline_font() {
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, text);
    const ImportResult result = dxf::read(dxf::file("0,TEXT;8,0;10,0;20,0;40,10;1," + text + ";", {}, {}, header));
    QCOMPARE(result.objects.size(), size_t(1));
    QCOMPARE(count(result.converted, "TEXT", Note::FontReplacedOutline), 1);
    QVERIFY(result.skipped.isEmpty());
    QVERIFY(std::get<PathShape>(result.objects[0]->shape()).contourCount() >= 4);
}

QTEST_MAIN(DxfTextsTest)
#include "tst_dxftexts.moc"

// SPDX-License-Identifier: MIT
#include "simengine/document/textmaker.h"
#include "simengine/importers/importnotes.h"
#include "svgfixture.h"

#include <QLineF>
#include <QTest>

using namespace sim;
using namespace svg;

/// Texts of SVG drawings, which come as outlines.
class SvgTextTest : public QObject {
    Q_OBJECT

private slots:
    void texts_become_outlines_in_their_place_data();
    void texts_become_outlines_in_their_place();
    void texts_lie_between_the_shapes_in_painting_order();
    void what_is_not_applied_to_a_text_is_told_data();
    void what_is_not_applied_to_a_text_is_told();
    void deep_spans_are_refused();
};

void SvgTextTest::texts_become_outlines_in_their_place_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QVector<QPointF>>("places"); // of the base lines' beginnings
    QTest::addColumn<double>("size");             // of the font
    const auto row = [](const char* name, const QByteArray& body, const QVector<QPointF>& places, double size = 20) {
        QTest::newRow(name) << body << places << size;
    };
    row("attributes", "<text x='10' y='50' font-size='20'>H</text>", {{10, 50}});
    row("style", "<text x='10' y='50' style='fill:red;font-size:20px'>H</text>", {{10, 50}});
    row("around", "<g font-size='20' transform='translate(5 7)'><text x='10' y='50'>H</text></g>", {{15, 57}});
    row("units", "<text x='10mm' y='1in' font-size='15pt'>H</text>", {{37.795275590551, 96}});
    row("units in the style", "<text x='10' y='50' style='font-size: 15pt'>H</text>", {{10, 50}});
    row("shifted", "<text x='10' y='50' dx='3' dy='-2' font-size='20'>H</text>", {{13, 48}});
    row("lines of a drawing program",
        "<text x='10' y='50' font-size='20'>\n <tspan x='10' y='50'>H</tspan>\n <tspan x='12' y='80'>H</tspan></text>",
        {{10, 50}, {12, 80}});
    row("lines by shifts", "<text font-size='20' y='30'><tspan x='10'>H</tspan><tspan x='10' dy='25'>H</tspan></text>",
        {{10, 30}, {10, 55}});
    row("nested spans",
        "<text x='10' y='50' font-size='9'><tspan x='20' y='60' font-size='20'><tspan "
        "fill='red'>H</tspan></tspan></text>",
        {{20, 60}});
    row("scaled", "<text transform='scale(2)' x='10' y='50' font-size='10'>H</text>", {{20, 100}});
    row("link", "<a xlink:href='#x'><text x='10' y='50' font-size='20'><a>H</a></text></a>", {{10, 50}});
}

void SvgTextTest::texts_become_outlines_in_their_place() {
    QFETCH(QByteArray, body);
    QFETCH(QVector<QPointF>, places);
    QFETCH(double, size);
    const ImportResult result = importBody("<g font-family='WenQuanYi Micro Hei'>" + body + "</g>");
    QVERIFY2(result.ok(), qPrintable(result.error));
    QVERIFY(result.skipped.isEmpty());
    QCOMPARE(int(result.objects.size()), places.size());
    // the letter as the font has it, a text object of the same font serves for the measure
    TextSpec spec;
    spec.text = "H";
    spec.family = "WenQuanYi Micro Hei";
    spec.singleLine = false;
    spec.height = 1.0;
    const Box letter = shapeBounds(makeText(spec).shape, QTransform());
    for (int i = 0; i < places.size(); ++i) {
        const Box box = result.objects[size_t(i)]->bounds();
        const double scale = box.height();
        const QPointF expected(places[i].x() + letter.minX * scale, -places[i].y());
        QVERIFY2(QLineF(expected, QPointF(box.minX, box.minY)).length() < 0.02,
                 qPrintable(
                     QString("%1 %2, expected %3 %4").arg(box.minX).arg(box.minY).arg(expected.x()).arg(expected.y())));
        QVERIFY(box.height() > 0.6 * size && box.height() < 0.85 * size);
        QVERIFY(result.objects[size_t(i)]->kind() == ObjectKind::Polyline ||
                result.objects[size_t(i)]->kind() == ObjectKind::Path);
    }
}

void SvgTextTest::texts_lie_between_the_shapes_in_painting_order() {
    const ImportResult result = importBody("<g font-family='WenQuanYi Micro Hei' font-size='20'><rect width='5' "
                                           "height='5' fill='red'/><text x='10' y='50' fill='red'>O</text>"
                                           "<circle r='3' stroke='red'/><text x='10' y='80' fill='red'>OO</text></g>");
    QCOMPARE(result.objects.size(), size_t(4));
    QCOMPARE(result.objects[0]->className(), QString("MarkToolRect"));
    QCOMPARE(result.objects[1]->className(), QString("MarkToolPath"));
    QCOMPARE(std::get<PathShape>(result.objects[1]->shape()).contourCount(), 2);
    QCOMPARE(result.objects[2]->className(), QString("MarkToolCircle"));
    QCOMPARE(result.objects[3]->className(), QString("MarkToolPath"));
    for (const ObjectPtr& object : result.objects)
        QCOMPARE(object->pen(), 0);
}

void SvgTextTest::what_is_not_applied_to_a_text_is_told_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("reason");
    QTest::newRow("letters") << QByteArray("<text x='1 2 3' y='9'>ABC</text>") << noteText(Note::LetterPlaces);
    QTest::newRow("turned") << QByteArray("<text x='1' y='9' rotate='45'>ABC</text>") << noteText(Note::TurnedLetters);
    QTest::newRow("length") << QByteArray("<text x='1' y='9' textLength='45'>ABC</text>")
                            << noteText(Note::TurnedLetters);
    QTest::newRow("shift") << QByteArray("<text x='1' y='9'>A<tspan dy='-3'>2</tspan></text>")
                           << noteText(Note::LineShift);
    QTest::newRow("ems") << QByteArray("<text x='1' y='9' dy='1.2em'>A</text>") << noteText(Note::EmShift);
    QTest::newRow("relative size") << QByteArray("<text x='1' y='9' font-size='120%'>A</text>")
                                   << noteText(Note::RelativeFontSize);
    QTest::newRow("relative size around")
        << QByteArray("<g font-size='1.2em'><text x='1' y='9'>A</text></g>") << noteText(Note::RelativeFontSize);
    QTest::newRow("after a line") << QByteArray("<text x='1' y='9'><tspan x='1'>A</tspan>B</text>")
                                  << noteText(Note::AfterPlacedLine);
}

void SvgTextTest::what_is_not_applied_to_a_text_is_told() {
    QFETCH(QByteArray, body);
    QFETCH(QString, reason);
    const ImportResult result = importBody(body);
    QVERIFY(result.ok());
    QVERIFY(!result.objects.empty());
    QStringList reasons;
    for (const ImportSkip& skip : result.skipped)
        reasons << skip.reason;
    QVERIFY2(reasons.contains(reason), qPrintable(reasons.join("; ")));
}

void SvgTextTest::deep_spans_are_refused() {
    QByteArray body = "<text x='1' y='1'>";
    for (int i = 0; i < 100000; ++i)
        body += "<tspan>";
    body += "A";
    for (int i = 0; i < 100000; ++i)
        body += "</tspan>";
    QVERIFY(!importBody(body + "</text>").ok());
}

QTEST_MAIN(SvgTextTest)
#include "tst_svgtext.moc"

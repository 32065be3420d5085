// SPDX-License-Identifier: MIT
#include "simengine/importers/svglength.h"
#include "svgfixture.h"

#include <QPainterPath>
#include <QTest>
#include <cmath>

using namespace sim;
using namespace svg;

/// Shapes, places, sizes and colours of SVG drawings.
class SvgImportTest : public QObject {
    Q_OBJECT

private slots:
    void lengths_of_texts_data();
    void lengths_of_texts();
    void page_size_data();
    void page_size();
    void shapes_become_objects_data();
    void shapes_become_objects();
    void path_commands_keep_their_length_data();
    void path_commands_keep_their_length();
    void y_axis_points_up();
    void nested_transforms_are_resolved();
    void references_and_inner_drawings_are_resolved();
    void units_inside_the_drawing();
    void percentages_refer_to_the_viewport();
    void colours_become_pens_in_order_of_appearance();
    void more_colours_than_pens_share_the_last();
    void style_sheets_give_colours();
    void area_and_line_of_one_shape_are_one_object();
    void equal_shapes_stay_apart();
    void filled_shape_comes_as_its_outline();
    void shapes_without_colour_are_told();
    void skipped_elements_are_told();
    void placement();
    void aspect_ratio_data();
    void aspect_ratio();
    void outlines_without_area_are_not_told_as_left_out();
};

void SvgImportTest::lengths_of_texts_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("pixels");
    QTest::newRow("number") << "12.5" << 12.5;
    QTest::newRow("px") << " 3px " << 3.0;
    QTest::newRow("mm") << "25.4mm" << 96.0;
    QTest::newRow("cm") << "2.54cm" << 96.0;
    QTest::newRow("in") << "1in" << 96.0;
    QTest::newRow("pt") << "72pt" << 96.0;
    QTest::newRow("pc") << "6pc" << 96.0;
    QTest::newRow("q") << "101.6Q" << 96.0;
    QTest::newRow("em") << "2em" << 32.0;
    QTest::newRow("exponent") << "1e2" << 100.0;
    QTest::newRow("negative") << "-.5px" << -0.5;
    QTest::newRow("percent of 200") << "50%" << 100.0;
}

void SvgImportTest::lengths_of_texts() {
    QFETCH(QString, text);
    const auto length = parseSvgLength(text);
    QVERIFY(length);
    QTEST(length->pixels(200.0), "pixels");
    for (const char* wrong : {"", "mm", "1 2", "1furlong", "nan", "1e999", "--1"})
        QVERIFY2(!parseSvgLength(wrong), wrong);
}

void SvgImportTest::page_size_data() {
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QSizeF>("page");
    QTest::addColumn<double>("unit"); // mm of one user unit
    const double px = 25.4 / 96;
    QTest::newRow("mm with viewBox") << QByteArray("width='100mm' height='50mm' viewBox='0 0 200 100'")
                                     << QSizeF(100, 50) << 0.5;
    QTest::newRow("inches without viewBox") << QByteArray("width='2in' height='1in'") << QSizeF(50.8, 25.4) << px;
    QTest::newRow("pixels") << QByteArray("width='96' height='192'") << QSizeF(25.4, 50.8) << px;
    QTest::newRow("viewBox alone") << QByteArray("viewBox='0 0 96 96'") << QSizeF(25.4, 25.4) << px;
    QTest::newRow("width and viewBox") << QByteArray("width='10mm' viewBox='0 0 100 200'") << QSizeF(10, 20) << 0.1;
    QTest::newRow("height and viewBox") << QByteArray("height='10mm' viewBox='0,0,100,200'") << QSizeF(5, 10) << 0.05;
    QTest::newRow("percent of the viewBox")
        << QByteArray("width='100%' height='100%' viewBox='0 0 96 48'") << QSizeF(25.4, 12.7) << px;
    QTest::newRow("nothing") << QByteArray() << QSizeF(300 * px, 150 * px) << px;
}

void SvgImportTest::page_size() {
    QFETCH(QByteArray, attributes);
    QFETCH(QSizeF, page);
    QFETCH(double, unit);
    const ImportResult result = importSvgData("<svg xmlns='http://www.w3.org/2000/svg' " + attributes +
                                              "><path d='M0 0H10' stroke='red'/></svg>");
    QVERIFY2(result.ok(), qPrintable(result.error));
    QVERIFY(std::abs(result.pageSize.width() - page.width()) < 1e-9 &&
            std::abs(result.pageSize.height() - page.height()) < 1e-9);
    QVERIFY(std::abs(lengthOf(result) - 10 * unit) < 1e-9);
}

void SvgImportTest::shapes_become_objects_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("length");
    QTest::addColumn<QVector<double>>("bounds"); // page, y down
    const double ellipse = [] {                  // 6 x 4 half axes
        double sum = 0;
        for (int i = 0; i < 100000; ++i) {
            const double t = 2 * M_PI * (i + 0.5) / 100000;
            sum += std::hypot(6 * std::sin(t), 4 * std::cos(t)) * 2 * M_PI / 100000;
        }
        return sum;
    }();
    const auto row = [](const char* name, const char* body, const char* kind, double length,
                        const QVector<double>& box) {
        QTest::newRow(name) << QByteArray(body) << QString(kind) << length << box;
    };
    row("line", "<line x1='10' y1='20' x2='40' y2='60' stroke='red'/>", "MarkToolLine", 50, {10, 20, 40, 60});
    row("rectangle", "<rect x='10' y='20' width='30' height='5' stroke='red'/>", "MarkToolRect", 70, {10, 20, 40, 25});
    row("rounded rectangle", "<rect x='10' y='20' width='30' height='20' rx='5' stroke='red'/>", "MarkToolPath",
        2 * 20 + 2 * 10 + 2 * M_PI * 5, {10, 20, 40, 40});
    row("rounded rectangle whose radius is no whole percent",
        "<rect x='2' y='2' width='76' height='56' rx='3' ry='3' stroke='red'/>", "MarkToolPath",
        2 * 70 + 2 * 50 + 2 * M_PI * 3, {2, 2, 78, 58});
    row("radius beyond the half", "<rect width='20' height='20' ry='90' stroke='red'/>", "MarkToolPath", 2 * M_PI * 10,
        {0, 0, 20, 20});
    row("wrong second radius", "<rect width='40' height='30' rx='5' ry='-1' stroke='red'/>", "MarkToolPath",
        2 * 30 + 2 * 20 + 2 * M_PI * 5, {0, 0, 40, 30});
    row("circle", "<circle cx='20' cy='30' r='10' stroke='red'/>", "MarkToolCircle", 20 * M_PI, {10, 20, 30, 40});
    row("ellipse", "<ellipse cx='20' cy='30' rx='6' ry='4' stroke='red'/>", "MarkToolCircle", ellipse,
        {14, 26, 26, 34});
    row("polyline", "<polyline points='0,0 30,40 30,0' stroke='red' fill='none'/>", "MarkToolLine", 90, {0, 0, 30, 40});
    row("filled polyline with a line", "<polyline points='0,0 30,40 30,0' stroke='red'/>", "MarkToolLine", 90,
        {0, 0, 30, 40});
    row("filled polyline without line", "<polyline points='0,0 30,40 30,0'/>", "MarkToolLine", 120, {0, 0, 30, 40});
    row("polygon", "<polygon points='0,0 30,40 30,0' stroke='red'/>", "MarkToolLine", 120, {0, 0, 30, 40});
    row("straight path", "<path d='M0 0 L30 40 V0 Z' stroke='red'/>", "MarkToolLine", 120, {0, 0, 30, 40});
    row("path of two contours", "<path d='M0 0h10v10h-10z m20 0h10' stroke='red'/>", "MarkToolPath", 50,
        {0, 0, 30, 10});
}

void SvgImportTest::shapes_become_objects() {
    QFETCH(QByteArray, body);
    QFETCH(double, length);
    QFETCH(QVector<double>, bounds);
    const ImportResult result = importBody(body);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(result.objects.size(), size_t(1));
    QTEST(result.objects[0]->className(), "name");
    QVERIFY2(std::abs(lengthOf(result) - length) <= 0.001 * length, qPrintable(QString::number(lengthOf(result))));
    const Box box = result.objects[0]->bounds();
    QVERIFY(near({box.minX, box.maxY}, {bounds[0], -bounds[1]}, 1e-3));
    QVERIFY(near({box.maxX, box.minY}, {bounds[2], -bounds[3]}, 1e-3));
    QCOMPARE(result.imported.value(result.objects[0]->className()), 1);
    QVERIFY(result.skipped.isEmpty());
}

void SvgImportTest::path_commands_keep_their_length_data() {
    QTest::addColumn<QByteArray>("d");
    QTest::addColumn<double>("length");
    QPainterPath cubic;
    cubic.moveTo(10, 10);
    cubic.cubicTo(20, 40, 60, 40, 70, 10);
    cubic.cubicTo(80, -20, 90, 10, 90, 60);
    QPainterPath quad;
    quad.moveTo(10, 10);
    quad.quadTo(30, 60, 50, 10);
    quad.quadTo(70, -40, 90, 10);
    QTest::newRow("relative lines") << QByteArray("m10 10 l3 4 h5 v-6 z") << 5 + 5 + 6 + std::hypot(8, 2);
    QTest::newRow("cubic and smooth cubic") << QByteArray("M10 10C20 40 60 40 70 10S90 10 90 60") << cubic.length();
    QTest::newRow("quadratic and smooth") << QByteArray("M10 10Q30 60 50 10T90 10") << quad.length();
    QTest::newRow("relative cubic") << QByteArray("m10 10c10 30 50 30 60 0s20 0 20 50") << cubic.length();
    QTest::newRow("half circle arc") << QByteArray("M10 40A20 20 0 0 1 50 40") << 20 * M_PI;
    QTest::newRow("large arc") << QByteArray("M40 20a20 20 0 1 1 -20 20") << 30 * M_PI;
    QTest::newRow("run together numbers") << QByteArray("M1.5.5-1.5-.5") << std::hypot(3, 1);
    QTest::newRow("line after close") << QByteArray("M0 0H10V10Zl0 5") << 20 + std::hypot(10, 10) + 5;
}

void SvgImportTest::path_commands_keep_their_length() {
    QFETCH(QByteArray, d);
    QFETCH(double, length);
    const ImportResult result = importBody("<path fill='none' stroke='red' d='" + d + "'/>");
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(result.objects.size(), size_t(1));
    QVERIFY2(std::abs(lengthOf(result) - length) <= 0.001 * length,
             qPrintable(QString("%1 instead of %2").arg(lengthOf(result)).arg(length)));
}

void SvgImportTest::y_axis_points_up() {
    const ImportResult result = importBody("<polyline points='10,10 20,10 20,30' stroke='red' fill='none'/>");
    const QPolygonF points = result.objects[0]->flattened()[0].points;
    QVERIFY(near(points[0], {10, -10}) && near(points[1], {20, -10}) && near(points[2], {20, -30}));
}

void SvgImportTest::nested_transforms_are_resolved() {
    const ImportResult result = importBody("<g transform='translate(50,40)'><g transform='rotate(90)'>"
                                           "<g transform='scale(2,3)'><line x1='0' y1='0' x2='5' y2='1' stroke='red' "
                                           "transform='skewX(45)'/></g></g></g>");
    const QPolygonF points = result.objects[0]->flattened()[0].points;
    // skew: (6, 1), scale: (12, 3), rotate: (-3, 12)
    QVERIFY(near(points[0], {50, -40}) && near(points[1], {47, -52}));

    const ImportResult circle = importBody("<circle r='10' stroke='red' transform='matrix(1 0.5 -0.5 1 30 40)'/>");
    QVERIFY(std::abs(lengthOf(circle) - 20 * M_PI * std::sqrt(1.25)) <= 0.001 * lengthOf(circle));
}

void SvgImportTest::references_and_inner_drawings_are_resolved() {
    const ImportResult used =
        importBody("<defs><rect id='r' width='4' height='2' stroke='red'/></defs>"
                   "<use xlink:href='#r' x='10' y='5'/><use href='#r' transform='translate(20,5) scale(2)'/>"
                   "<symbol id='s'><circle r='3' stroke='red'/></symbol><use href='#s' x='70' y='70'/>");
    QCOMPARE(classes(used), (QStringList{"MarkToolRect", "MarkToolRect", "MarkToolCircle"}));
    QVERIFY(near({used.objects[0]->bounds().minX, used.objects[0]->bounds().maxY}, {10, -5}));
    QVERIFY(near({used.objects[1]->bounds().maxX, used.objects[1]->bounds().minY}, {28, -9}));
    QVERIFY(near(used.objects[2]->bounds().center(), {70, -70}));

    const ImportResult inner =
        importBody("<svg x='10' y='20' width='40' height='20' viewBox='0 0 400 100'>"
                   "<rect width='400' height='50%' stroke='red'/></svg><a><path d='M0 0H9' stroke='red'/></a>");
    QCOMPARE(classes(inner), (QStringList{"MarkToolRect", "MarkToolLine"}));
    QVERIFY(near({inner.objects[0]->bounds().minX, inner.objects[0]->bounds().maxY}, {10, -25}));
    QVERIFY(near({inner.objects[0]->bounds().maxX, inner.objects[0]->bounds().minY}, {50, -30}));
}

void SvgImportTest::units_inside_the_drawing() {
    // 96 units to the inch inside, though the page is in mm
    const ImportResult result = importSvgData("<svg width='101.6mm' height='101.6mm'><g stroke='red'>"
                                              "<rect x='1in' y='25.4mm' width='2.54cm' height='72pt'/>"
                                              "<circle cx='2in' cy='2in' r='0.5in'/><line x2='6pc' y2='0'/></g></svg>");
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(result.objects.size(), size_t(3));
    QVERIFY(std::abs(result.objects[0]->bounds().width() - 25.4) < 1e-9);
    QVERIFY(std::abs(result.objects[0]->bounds().height() - 25.4) < 1e-9);
    QVERIFY(std::abs(result.objects[1]->bounds().width() - 25.4) < 1e-9);
    QVERIFY(std::abs(lengthOf(*result.objects[2]) - 25.4) < 1e-9);
    QVERIFY(near(result.objects[1]->bounds().center() - result.objects[0]->bounds().center(), {12.7, -12.7}));
}

void SvgImportTest::percentages_refer_to_the_viewport() {
    const ImportResult result = importBody("<g stroke='red'><rect x='10%' y='10%' width='50%' height='50%'/>"
                                           "<circle cx='50%' cy='50%' r='10%'/></g>");
    const Box box = result.objects[0]->bounds();
    QVERIFY(near({box.minX, box.maxY}, {10, -8}) && near({box.maxX, box.minY}, {60, -48}));
    const double radius = 0.1 * std::sqrt((100.0 * 100 + 80 * 80) / 2);
    QVERIFY(std::abs(result.objects[1]->bounds().width() - 2 * radius) < 1e-6);
}

void SvgImportTest::colours_become_pens_in_order_of_appearance() {
    const ImportResult result = importBody("<path d='M0 0H1' stroke='#ff0000'/><path d='M0 0H2' stroke='blue'/>"
                                           "<path d='M0 0H3' stroke='red'/><path d='M0 0H4' stroke='rgb(0,255,0)'/>"
                                           "<rect width='5' height='5' fill='#0000ff'/>");
    QList<int> pens;
    for (const ObjectPtr& object : result.objects)
        pens.append(object->pen());
    QCOMPARE(pens, (QList<int>{0, 1, 0, 2, 1}));
    QCOMPARE(result.penColors, (QVector<QColor>{QColor("#ff0000"), QColor("#0000ff"), QColor("#00ff00")}));
}

void SvgImportTest::more_colours_than_pens_share_the_last() {
    QByteArray body;
    for (int i = 0; i < 25; ++i)
        body += "<path d='M0 0H1' stroke='#" + QByteArray::number(0x100000 + i * 7, 16) + "'/>";
    const ImportResult result = importBody(body);
    for (int i = 0; i < 25; ++i)
        QCOMPARE(result.objects[size_t(i)]->pen(), std::min(i, 19));
    QCOMPARE(result.penColors.size(), 20);
    QCOMPARE(result.converted.size(), 1);
    QCOMPARE(result.converted[0].count, 5);
}

void SvgImportTest::style_sheets_give_colours() {
    const ImportResult result = importBody("<style>.a{stroke:#123456;fill:none}</style><path class='a' d='M0 0H1'/>"
                                           "<path style='stroke:#654321;fill:none' d='M0 0H1'/>");
    QCOMPARE(result.penColors, (QVector<QColor>{QColor("#123456"), QColor("#654321")}));
}

void SvgImportTest::area_and_line_of_one_shape_are_one_object() {
    const ImportResult result = importBody("<g fill='yellow' stroke='red'><rect width='5' height='5'/><circle r='5'/>"
                                           "<path d='M0 0C1 1 2 2 9 0'/><polygon points='0,0 1,0 1,1'/></g>");
    QCOMPARE(result.objects.size(), size_t(4));
    QCOMPARE(result.penColors, QVector<QColor>{QColor("red")});
}

void SvgImportTest::equal_shapes_stay_apart() {
    const ImportResult result = importBody("<rect width='5' height='5'/><rect width='5' height='5'/>"
                                           "<rect width='5' height='5' fill='none' stroke='red'/>"
                                           "<rect width='5' height='5' fill='none' stroke='red'/>");
    QCOMPARE(result.objects.size(), size_t(4));
}

void SvgImportTest::filled_shape_comes_as_its_outline() {
    const ImportResult result = importBody("<path d='M0 0H10V10H0' fill='green'/>");
    QCOMPARE(classes(result), QStringList{"MarkToolLine"});
    QCOMPARE(result.penColors, QVector<QColor>{QColor("green")});
}

void SvgImportTest::shapes_without_colour_are_told() {
    const ImportResult result =
        importBody("<rect width='5' height='5' fill='none'/><path d='M0 0H1' opacity='0' stroke='red'/>"
                   "<circle r='3' stroke='red' stroke-opacity='0' fill-opacity='0'/>"
                   "<rect width='7' height='7'/>");
    QCOMPARE(result.objects.size(), size_t(1));
    QCOMPARE(skippedCount(result, "path"), 3);
}

void SvgImportTest::skipped_elements_are_told() {
    const ImportResult result = importBody("<text x='1' y='2'><textPath xlink:href='#c'>B</textPath></text>"
                                           "<image width='5' height='5' xlink:href='a.png'/>"
                                           "<rect width='5' height='5' mask='url(#m)'/><mask id='m'/>"
                                           "<sparkle/><metadata><rect width='9' height='9'/></metadata>");
    QVERIFY(result.ok());
    QCOMPARE(result.objects.size(), size_t(1));
    QCOMPARE(skippedCount(result, "textPath"), 1);
    QCOMPARE(skippedCount(result, "image"), 1);
    QCOMPARE(skippedCount(result, "mask"), 1);
    QCOMPARE(skippedCount(result, "sparkle"), 1);
    for (const ImportSkip& skip : result.skipped)
        QVERIFY(!skip.reason.isEmpty());
}

void SvgImportTest::placement() {
    const QByteArray body = "<rect x='70' y='10' width='10' height='20' stroke='red'/><circle cx='20' cy='60' r='5'/>";
    const Box drawing = boundsOf(importBody(body, ImportPlacement::CenterDrawing));
    QVERIFY(near(drawing.center(), {50, -40}));
    QVERIFY(std::abs(drawing.width() - 65) < 1e-6 && std::abs(drawing.height() - 55) < 1e-6);
    const Box page = boundsOf(importBody(body, ImportPlacement::CenterPage));
    QVERIFY(near({page.minX, page.maxY}, {15, -10}));
    // without options the drawing's middle is the field's
    const ImportResult plain =
        importSvgData("<svg width='90mm' height='90mm'><rect width='10mm' height='10mm'/></svg>");
    QVERIFY(near(boundsOf(plain).center(), {0, 0}));
}

void SvgImportTest::aspect_ratio_data() {
    QTest::addColumn<QByteArray>("preserve");
    QTest::addColumn<QVector<double>>("box"); // page mm of a rectangle that fills the viewBox
    QTest::newRow("default") << QByteArray() << QVector<double>{25, 0, 75, 50};
    QTest::newRow("none") << QByteArray("preserveAspectRatio='none'") << QVector<double>{0, 0, 100, 50};
    QTest::newRow("left") << QByteArray("preserveAspectRatio='xMinYMid meet'") << QVector<double>{0, 0, 50, 50};
    QTest::newRow("right") << QByteArray("preserveAspectRatio='xMaxYMax'") << QVector<double>{50, 0, 100, 50};
    QTest::newRow("slice") << QByteArray("preserveAspectRatio='xMidYMid slice'") << QVector<double>{0, -25, 100, 75};
}

void SvgImportTest::aspect_ratio() {
    QFETCH(QByteArray, preserve);
    QFETCH(QVector<double>, box);
    ImportOptions options;
    options.placement = ImportPlacement::CenterPage;
    options.center = {50, -25};
    const ImportResult result = importSvgData("<svg width='100mm' height='50mm' viewBox='10 20 30 30' " + preserve +
                                                  "><rect x='10' y='20' width='30' height='30'/></svg>",
                                              options);
    const Box bounds = boundsOf(result);
    QVERIFY(near({bounds.minX, bounds.maxY}, {box[0], -box[1]}) && near({bounds.maxX, bounds.minY}, {box[2], -box[3]}));
}

void SvgImportTest::outlines_without_area_are_not_told_as_left_out() {
    const ImportResult result =
        importBody("<g fill='none' stroke='red'><path d='M0 0H10V10'/><rect width='5' height='4'/>"
                   "<polyline points='0 0 3 1 4 7'/><circle r='2'/></g>");
    QCOMPARE(result.objects.size(), size_t(4));
    QVERIFY(result.skipped.isEmpty());
}

QTEST_MAIN(SvgImportTest)
#include "tst_svgimport.moc"

// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "importfixture.h"
#include "simengine/importers/svgimport.h"

#include <QTest>

using namespace sim;
using namespace imports;

namespace {

/// A page of 100 x 80 mm whose user units are millimetres; places on it are (x, -y).
ImportResult read(const QByteArray& body) {
    ImportOptions options;
    options.placement = ImportPlacement::CenterPage;
    options.center = {50, -40};
    return importSvgData("<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                         "width='100mm' height='80mm' viewBox='0 0 100 80'>" +
                             body + "</svg>",
                         options);
}

} // namespace

/// Clips, symbols, styles and paints of SVG drawings, and what is told of them.
class SvgTest : public QObject {
    Q_OBJECT

private slots:
    void clips_cut_what_they_cover_data();
    void clips_cut_what_they_cover();
    void clips_are_told();
    void symbols_are_scaled_to_their_place_data();
    void symbols_are_scaled_to_their_place();
    void inner_drawings_are_cut_at_their_edge();
    void style_rules_choose_colours_data();
    void style_rules_choose_colours();
    void paints_choose_colours_data();
    void paints_choose_colours();
    void transforms_data();
    void transforms();
    void transforms_of_styles_data();
    void transforms_of_styles();
    void arcs_keep_within_a_micrometre();
    void numbers_are_read_exactly_data();
    void numbers_are_read_exactly();
    void what_is_changed_or_left_out_is_told_data();
    void what_is_changed_or_left_out_is_told();
    void only_the_first_fitting_choice_is_drawn();
    void choice_by_language();
    void tags_of_more_attributes_than_are_read_are_refused();
    void document_types_are_passed_over();
    void references_give_inner_drawings_their_size();
    void areas_of_several_open_contours_can_be_hatched();
    void the_roots_own_style_counts();
    void symbols_own_style_counts();
    void texts_are_cut_where_they_are_moved_to();
    void edges_far_beyond_the_field_leave_what_is_within();
    void groups_in_use_hand_on_their_style();
};

void SvgTest::clips_cut_what_they_cover_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("box");
    QTest::addColumn<double>("length");
    const auto row = [](const char* name, const char* body, const char* box, double length) {
        QTest::newRow(name) << QByteArray(body) << QString(box) << length;
    };
    const char* const line = "<line x1='0' y1='10' x2='50' y2='10' stroke='red' clip-path='url(#c)'/>";
    const auto with = [&](const char* name, const QByteArray& clip, const char* box, double length) {
        QTest::newRow(name) << clip + line << QString(box) << length;
    };
    with("rectangle", "<clipPath id='c'><rect x='10' y='0' width='20' height='20'/></clipPath>", "10 -10 30 -10", 20);
    with("circle", "<clipPath id='c'><circle cx='20' cy='10' r='5'/></clipPath>", "15 -10 25 -10", 10);
    with("two shapes",
         "<clipPath id='c'><rect x='5' width='10' height='20'/><rect x='10' width='10' height='20'/></clipPath>",
         "5 -10 20 -10", 15);
    with("hole by its rule", "<clipPath id='c'><path clip-rule='evenodd' d='M0 0H50V20H0z M10 0V20H40V0z'/></clipPath>",
         "0 -10 50 -10", 20);
    with("moved", "<clipPath id='c' transform='translate(10 0)'><rect width='20' height='20'/></clipPath>",
         "10 -10 30 -10", 20);
    with("clip of a clip",
         "<clipPath id='d'><rect width='15' height='20'/></clipPath><clipPath id='c' clip-path='url(#d)'><rect x='10' "
         "width='20' height='20'/></clipPath>",
         "10 -10 15 -10", 5);
    with("by use",
         "<defs><rect id='r' width='20' height='20'/></defs><clipPath id='c'><use href='#r' x='10'/></clipPath>",
         "10 -10 30 -10", 20);
    row("of a group",
        "<clipPath id='c'><rect x='10' width='20' height='80'/></clipPath><g clip-path='url(#c)' "
        "transform='translate(5 0)'><line x1='0' y1='10' x2='50' y2='10' stroke='red'/></g>",
        "15 -10 35 -10", 20);
    row("within another",
        "<clipPath id='c'><rect x='10' width='20' height='80'/></clipPath><clipPath id='d'><rect x='20' width='20' "
        "height='80'/></clipPath><g clip-path='url(#c)'><line y1='10' x2='50' y2='10' stroke='red' "
        "clip-path='url(#d)'/></g>",
        "20 -10 30 -10", 10);
    row("of an area",
        "<clipPath id='c'><rect x='10' width='20' height='80'/></clipPath><rect y='10' width='20' height='10' "
        "fill='red' clip-path='url(#c)'/>",
        "10 -20 20 -10", 40);
    row("of a line around an area",
        "<clipPath id='c'><rect x='10' width='20' height='80'/></clipPath><rect y='10' width='20' height='10' "
        "fill='none' stroke='red' clip-path='url(#c)'/>",
        "10 -20 20 -10", 30);
    row("parts of the box",
        "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='0.5' height='1'/></clipPath><rect x='10' "
        "y='10' width='40' height='20' fill='red' clip-path='url(#c)'/>",
        "10 -30 30 -10", 80);
    row("parts of the box of what is moved",
        "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='0.5' height='1'/></clipPath><rect "
        "width='40' height='20' fill='red' clip-path='url(#c)' transform='translate(10 10)'/>",
        "10 -30 30 -10", 80);
    const auto half = [](const char* name, const QByteArray& body) {
        QTest::newRow(name) << "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='0.5' height='1'/>"
                               "</clipPath>" +
                                   body
                            << QString("10 -30 30 -10") << 80.0;
    };
    const QByteArray inner = "x='10' y='10' width='40' height='20' viewBox='0 0 20 10'><rect width='20' height='10' "
                             "fill='red'/></svg>";
    half("parts of the box of an inner drawing", "<svg clip-path='url(#c)' " + inner);
    half("parts of the box of what holds an inner drawing", "<g clip-path='url(#c)'><svg " + inner + "</g>");
    half("parts of the box of a sized inner drawing in use",
         "<defs><svg id='s' width='2' height='1' viewBox='0 0 20 10'><rect width='20' height='10' fill='red'/></svg>"
         "</defs><use href='#s' x='10' y='10' width='40' height='20' clip-path='url(#c)'/>");
    half("parts of the box of a symbol in use",
         "<symbol id='s' viewBox='0 0 20 10'><rect width='20' height='10' fill='red'/></symbol><use href='#s' x='10' "
         "y='10' width='40' height='20' clip-path='url(#c)'/>");
    half("parts of the box of a symbol's own",
         "<symbol id='s' clip-path='url(#c)' viewBox='0 0 20 10'><rect width='20' height='10' fill='red'/></symbol>"
         "<use href='#s' x='10' y='10' width='40' height='20'/>");
    half("parts of the box of a choice",
         "<switch clip-path='url(#c)'><rect requiredExtensions='x' width='90' height='70'/><rect x='10' y='10' "
         "width='40' height='20' fill='red'/></switch>");
    half("parts of a box beside a symbol that is not in use",
         "<g clip-path='url(#c)'><symbol><rect width='90' height='70'/></symbol><rect x='10' y='10' width='40' "
         "height='20' fill='red'/></g>");
}

void SvgTest::clips_cut_what_they_cover() {
    QFETCH(QByteArray, body);
    QFETCH(double, length);
    const ImportResult result = read(body);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QTEST(boxText(boundsOf(result)), "box");
    QVERIFY2(std::abs(lengthOfAll(result) - length) < 0.001, qPrintable(QString::number(lengthOfAll(result), 'g', 10)));
    QVERIFY(result.skipped.isEmpty());
}

void SvgTest::clips_are_told() {
    const ImportResult result =
        read("<clipPath id='c'><rect x='10' width='20' height='80'/></clipPath><g stroke='red' fill='none' "
             "clip-path='url(#c)'><line x2='50' y2='0'/><rect x='12' y='5' width='2' height='2'/>"
             "<circle cx='80' cy='9' r='3'/></g><path d='M0 0H5' stroke='red' clip-path='url(#none)'/>");
    QCOMPARE(count(result.converted, "line", Note::Clipped), 1);
    QCOMPARE(count(result.skipped, "circle", Note::ClippedAway), 1);
    QCOMPARE(count(result.skipped, "clip-path", Note::BadReference), 1);
    // what lies wholly inside stays what it is
    QCOMPARE(classes(result), (QStringList{"MarkToolLine", "MarkToolRect", "MarkToolLine"}));
}

void SvgTest::symbols_are_scaled_to_their_place_data() {
    QTest::addColumn<QByteArray>("use");
    QTest::addColumn<QString>("box");
    const auto row = [](const char* name, const char* use, const char* box) {
        QTest::newRow(name) << QByteArray(use) << QString(box);
    };
    row("sized", "<use href='#s' x='10' y='20' width='20' height='20'/>", "12 -38 28 -22");
    row("whole page", "<use href='#s'/>", "18 -72 82 -8");
    row("not as wide", "<use href='#s' width='40' height='20'/>", "12 -18 28 -2");
    row("turned", "<use href='#s' width='20' height='20' transform='translate(50 40) rotate(90)'/>", "32 -58 48 -42");
    row("nested", "<use href='#n' x='50' y='40' width='10' height='10'/>", "51 -49 59 -41");
}

void SvgTest::symbols_are_scaled_to_their_place() {
    QFETCH(QByteArray, use);
    const ImportResult result =
        read("<symbol id='s' viewBox='0 0 10 10'><rect x='1' y='1' width='8' height='8' stroke='red'/></symbol>"
             "<symbol id='n' viewBox='0 0 1 1'><use href='#s' width='1' height='1'/></symbol>" +
             use);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(result.objects.size(), size_t(1));
    QTEST(boxText(boundsOf(result)), "box");
}

void SvgTest::inner_drawings_are_cut_at_their_edge() {
    const QByteArray inner =
        "width='20' height='20' x='10' y='10'><line x1='-5' y1='5' x2='50' y2='5' stroke='red'/></svg>";
    QCOMPARE(boxText(boundsOf(read("<svg " + inner))), QString("10 -15 30 -15"));
    QCOMPARE(boxText(boundsOf(read("<svg overflow='visible' " + inner))), QString("5 -15 60 -15"));
}

void SvgTest::style_rules_choose_colours_data() {
    QTest::addColumn<QByteArray>("sheet");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("color");
    const QByteArray path = "<path class='a b' id='p' d='M0 0H9' stroke='#000001'/>";
    QTest::newRow("attribute") << QByteArray() << path << "#000001";
    QTest::newRow("element") << QByteArray("path{stroke:#010000}") << path << "#010000";
    QTest::newRow("class before element") << QByteArray(".a{stroke:#020000} path{stroke:#010000}") << path << "#020000";
    QTest::newRow("id before class") << QByteArray("#p{stroke:#030000} .a.b{stroke:#020000}") << path << "#030000";
    QTest::newRow("later of equal ones") << QByteArray(".a{stroke:#010000} .b{stroke:#020000}") << path << "#020000";
    QTest::newRow("list") << QByteArray("rect, .b{stroke:#010000}") << path << "#010000";
    QTest::newRow("below") << QByteArray("g path{stroke:#010000}") << "<g><g>" + path + "</g></g>"
                           << "#010000";
    QTest::newRow("not below") << QByteArray("g path{stroke:#010000}") << path << "#000001";
    QTest::newRow("child") << QByteArray("g>path{stroke:#010000}") << "<g>" + path + "</g>"
                           << "#010000";
    QTest::newRow("no child") << QByteArray(".x>path{stroke:#010000}") << "<g class='x'><g>" + path + "</g></g>"
                              << "#000001";
    QTest::newRow("comment and data section")
        << QByteArray("<![CDATA[/* path{} */ .a { stroke : #010000 ; }]]>") << path << "#010000";
    QTest::newRow("style before rules") << QByteArray("#p{stroke:#010000}")
                                        << QByteArray(path).replace("/>", " style='stroke:#040000'/>") << "#040000";
    QTest::newRow("important before style") << QByteArray(".a{stroke:#010000 !important}")
                                            << QByteArray(path).replace("/>", " style='stroke:#040000'/>") << "#010000";
    QTest::newRow("part of a class's name") << QByteArray(".bb{stroke:#010000}") << path << "#000001";
    QTest::newRow("inherited") << QByteArray("g{stroke:#010000}") << QByteArray("<g><path d='M0 0H9'/></g>")
                               << "#010000";
}

void SvgTest::style_rules_choose_colours() {
    QFETCH(QByteArray, sheet);
    QFETCH(QByteArray, body);
    QFETCH(QString, color);
    const ImportResult result = read("<style>" + sheet + "</style>" + body);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(result.objects.size(), size_t(1));
    QCOMPARE(result.penColors, QVector<QColor>{QColor(color)});
    QVERIFY(result.skipped.isEmpty());
}

void SvgTest::paints_choose_colours_data() {
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QString>("color"); // empty: not drawn
    const auto row = [](const char* attributes, const char* color) {
        QTest::newRow(attributes) << QByteArray(attributes) << QString(color);
    };
    row("fill='#abc'", "#aabbcc");
    row("fill='rgb(10, 20,30)'", "#0a141e");
    row("fill='rgb(100%,0%,50%)'", "#ff0080");
    row("fill='rgba(1,2,3,0.5)'", "#010203");
    row("fill='rgba(1,2,3,0)'", "");
    row("fill='#01020300'", "");
    row("fill='#010203ff'", "#010203");
    row("fill='transparent'", "");
    row("fill='currentColor' color='#010203'", "#010203");
    row("fill='none' stroke='currentColor' color='#010203'", "#010203");
    row("fill='url(#l)'", "#040506");
    row("fill='url(#m)'", "#040506");
    row("fill='url(#nothing) #070809'", "#070809");
    row("fill='url(#nothing)'", "");
    row("fill='none' stroke='#123456' stroke-width='0'", "");
    row("visibility='hidden'", "");
    row("fill='#123456' stroke='#654321'", "#654321");
    row("", "#000000");
}

void SvgTest::paints_choose_colours() {
    QFETCH(QByteArray, attributes);
    QFETCH(QString, color);
    const ImportResult result =
        read("<linearGradient id='l'><stop stop-color='#040506'/><stop offset='1' stop-color='red'/></linearGradient>"
             "<radialGradient id='m' xlink:href='#l'/><rect width='9' height='9' " +
             attributes + "/>");
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(result.objects.size(), size_t(color.isEmpty() ? 0 : 1));
    if (!color.isEmpty())
        QCOMPARE(result.penColors, QVector<QColor>{QColor(color)});
    else
        QCOMPARE(count(result.skipped, "path", Note::NoLineNoArea), 1);
}

void SvgTest::transforms_data() {
    QTest::addColumn<QByteArray>("transform");
    QTest::addColumn<QString>("box");
    const auto row = [](const char* transform, const char* box) {
        QTest::newRow(transform) << QByteArray(transform) << QString(box);
    };
    // of a line from 0,0 to 10,20
    row("translate(5)", "5 -20 15 0");
    row("translate(5 6)", "5 -26 15 -6");
    row("translate(5,6)scale(2)", "5 -46 25 -6");
    row("scale(2,-1)", "0 0 20 20");
    row("rotate(90)", "-20 -10 0 0");
    row("rotate(90 10 20)", "10 -20 30 -10");
    row("rotate(90, 10, 20)", "10 -20 30 -10");
    row("skewX(45)", "0 -20 30 0");
    row("skewY(45)", "0 -30 10 0");
    row("matrix(1 0 0 1 3 4)", "3 -24 13 -4");
    row("  translate( 1e1 , -.5 ) , scale(1)", "10 -19.5 20 0.5");
    row("", "0 -20 10 0");
}

void SvgTest::transforms() {
    QFETCH(QByteArray, transform);
    const ImportResult result = read("<line x2='10' y2='20' stroke='red' transform='" + transform + "'/>");
    QTEST(boxText(boundsOf(result)), "box");
    // in a style it goes before the attribute
    const ImportResult styled =
        read("<line x2='10' y2='20' stroke='red' transform='scale(9)' style='transform:" + transform + "'/>");
    if (!transform.isEmpty())
        QTEST(boxText(boundsOf(styled)), "box");
}

void SvgTest::transforms_of_styles_data() {
    QTest::addColumn<QByteArray>("transform");
    QTest::addColumn<QString>("box");
    const auto row = [](const char* transform, const char* box) {
        QTest::newRow(transform) << QByteArray(transform) << QString(box);
    };
    // of a line from 0,0 to 10,20 that is as large as that by its attribute
    row("none", "0 -20 10 0");
    row("translate(5px, 6px)", "5 -26 15 -6");
    row("translateX(5px)", "5 -20 15 0");
    row("translateY(1in)", "0 -116 10 -96");
    row("scaleX(2) scaleY(3)", "0 -60 20 0");
    row("rotate(90deg)", "-20 -10 0 0");
    row("rotate(0.25turn)", "-20 -10 0 0");
    row("rotate(100grad)", "-20 -10 0 0");
    row("skewX(45deg)", "0 -20 30 0");
}

void SvgTest::transforms_of_styles() {
    QFETCH(QByteArray, transform);
    const ImportResult result = read("<style>.t{transform:" + transform +
                                     "}</style><line class='t' x2='10' y2='20' stroke='red' transform='scale(9)'/>");
    QVERIFY2(result.ok(), qPrintable(result.error));
    QTEST(boxText(boundsOf(result)), "box");
    QVERIFY(result.skipped.isEmpty());
}

/// The outline of an elliptic arc against its own equation.
void SvgTest::arcs_keep_within_a_micrometre() {
    const ImportResult result = read("<path d='M10 40A30 15 0 1 1 60 40' stroke='red' fill='none'/>");
    const auto& path = std::get<PathShape>(result.objects[0]->shape());
    // both ends lie on one level of an ellipse whose centre lies between them
    const double up = 15 * std::sqrt(1 - 25.0 * 25 / 900);
    double worst = 0.0;
    double top = -1e9;
    for (int i = 0; i + 3 < path.points.size(); i += 3) {
        for (double t = 0.0; t <= 1.0; t += 0.05) {
            const double s = 1.0 - t;
            const QPointF p = path.points[i] * s * s * s + path.points[i + 1] * 3 * s * s * t +
                              path.points[i + 2] * 3 * s * t * t + path.points[i + 3] * t * t * t;
            const double x = (p.x() - 35) / 30;
            const double y = (p.y() + 40 - up) / 15;
            worst = std::max(worst, std::abs(std::hypot(x, y) - 1.0) * 30);
            top = std::max(top, p.y());
        }
    }
    QVERIFY2(worst < 1e-3, qPrintable(QString::number(worst)));
    QVERIFY2(std::abs(top - (-40 + up + 15)) < 1e-3, qPrintable(QString::number(top)));
}

void SvgTest::numbers_are_read_exactly_data() {
    QTest::addColumn<QByteArray>("text");
    for (const char* text :
         {"0.1", "12.345678", "-.5", "1e1", "1.5E-3", "+7", "99.999999999999", "0.000001234567890123", "00012.50",
          "1234567890.125e-8", "3.14159265358979323846264338327950288"})
        QTest::newRow(text) << QByteArray(text);
}

void SvgTest::numbers_are_read_exactly() {
    QFETCH(QByteArray, text);
    const ImportResult result = read("<path d='M0 0L" + text + ",5' stroke='red'/>");
    QCOMPARE(result.objects.size(), size_t(1));
    const QPolygonF points = std::get<PolylineShape>(result.objects[0]->shape()).points;
    const double value = text.toDouble();
    QVERIFY(std::abs(points[1].x() - value) <= 1e-12 * std::max(1.0, std::abs(value)));
}

void SvgTest::what_is_changed_or_left_out_is_told_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("note");
    QTest::addColumn<bool>("dropped");
    const auto row = [](const char* body, const char* kind, Note note, bool dropped) {
        QTest::newRow(body) << QByteArray(body) << QString(kind) << int(note) << dropped;
    };
    row("<image width='1' height='1'/>", "image", Note::Pictures, true);
    row("<foreignObject/>", "foreignObject", Note::ForeignContent, true);
    row("<sparkle/>", "sparkle", Note::UnknownElement, true);
    row("<rect width='9' height='9' mask='url(#m)'/>", "mask", Note::Masks, true);
    row("<rect width='9' height='9' filter='url(#f)'/>", "filter", Note::Effects, true);
    row("<rect width='9' height='9' display='none'/>", "rect", Note::Hidden, true);
    row("<use href='#nothing'/>", "use", Note::BadReference, true);
    row("<rect width='9' height='9' transform='rotate(1,2)'/>", "rect", Note::BadTransform, true);
    row("<rect width='9' height='9' transform='matrix(nan 0 0 1 0 0)'/>", "rect", Note::BadTransform, true);
    row("<path d='M0 0L5 5 Lx' stroke='red'/>", "path", Note::BadPath, true);
    row("<polygon points='0,0 1,1 2'/>", "polygon", Note::BadPath, true);
    row("<rect width='1e9' height='9'/>", "rect", Note::OutOfRange, true);
    row("<style>@media print{path{fill:none}}</style>", "style", Note::StyleRule, true);
    row("<style>path:hover{fill:none}</style>", "style", Note::StyleRule, true);
    row("<svg width='0' height='5'/>", "svg", Note::NoSize, true);
    row("<path d='M0 0H5' stroke='red' stroke-dasharray='1 2'/>", "path", Note::Dashed, false);
    row("<path d='M0 0H5' stroke='red' marker-end='url(#m)'/>", "marker", Note::LineEnds, false);
    row("<rect width='9' height='9'/>", "fill", Note::AreaAsOutline, false);
    row("<pattern id='p'/><rect width='9' height='9' fill='url(#p)'/>", "pattern", Note::Patterns, false);
    row("<rect width='9' height='9' style='transform:turn(3)'/>", "rect", Note::BadTransform, true);
    row("<g style='transform-origin:5px 5px'/>", "transform-origin", Note::StyleRule, false);
    row("<style>path{letter-spacing:2px}</style>", "letter-spacing", Note::StyleRule, false);
    row("<g fill='hsl(120,50%,50%)'/>", "color", Note::StyleRule, false);
    row("<g style='stroke:var(--line)'/>", "color", Note::StyleRule, false);
    row("<style>g{fill:context-fill}</style>", "color", Note::StyleRule, false);
    row("<circle r='9' style='r:5'/>", "r", Note::StyleRule, false);
    row("<text x='1' y='9' letter-spacing='3'>A</text>", "letter-spacing", Note::StyleRule, false);
    row("<text x='1' y='9'><tspan style='word-spacing:3px'>A</tspan></text>", "word-spacing", Note::StyleRule, true);
    row("<rect width='9' height='9' style='clip-path:circle(2px)'/>", "clip-path", Note::StyleRule, false);
    row("<rect width='9' height='9' style='filter:blur(2px)'/>", "filter", Note::Effects, true);
    row("<style media='print'>a{fill:red}</style>", "style", Note::StyleRule, true);
    row("<rect width='9' height='9' requiredExtensions='x'/>", "rect", Note::OtherReader, true);
    row("<clipPath id='c' transform='turn(1)'><rect width='1' height='1'/></clipPath><rect width='9' height='9' "
        "clip-path='url(#c)'/>",
        "clipPath", Note::BadTransform, true);
    row("<symbol id='s'><rect width='9' height='9'/></symbol><clipPath id='c'><use href='#s'/></clipPath><rect "
        "width='9' height='9' clip-path='url(#c)'/>",
        "symbol", Note::NotInClip, true);
    row("<clipPath id='c'><text x='1' y='9'>A</text></clipPath><rect width='9' height='9' clip-path='url(#c)'/>",
        "text", Note::NotInClip, true);
    row("<clipPath id='c'><use href='#none'/></clipPath><rect width='9' height='9' clip-path='url(#c)'/>", "use",
        Note::BadReference, true);
    row("<clipPath id='c'><rect transform='turn(1)' width='9' height='9'/></clipPath><rect width='9' height='9' "
        "clip-path='url(#c)'/>",
        "rect", Note::BadTransform, true);
    row("<clipPath id='c'><rect width='9' height='9' clip-path='url(#d)'/></clipPath><rect width='9' height='9' "
        "clip-path='url(#c)'/>",
        "clip-path", Note::NotInClip, true);
    row("<linearGradient id='l'><stop stop-color='red'/></linearGradient><rect width='9' height='9' fill='url(#l)'/>",
        "linearGradient", Note::Gradient, false);
}

void SvgTest::what_is_changed_or_left_out_is_told() {
    QFETCH(QByteArray, body);
    QFETCH(QString, kind);
    QFETCH(int, note);
    QFETCH(bool, dropped);
    const ImportResult result = read(body);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(count(dropped ? result.skipped : result.converted, kind, Note(note)), 1);
}

void SvgTest::only_the_first_fitting_choice_is_drawn() {
    const ImportResult result =
        read("<switch><foreignObject requiredExtensions='x'><b/></foreignObject><rect requiredExtensions='y' width='1' "
             "height='1'/><circle r='4'/><ellipse rx='1' ry='2'/></switch>");
    QCOMPARE(classes(result), QStringList{"MarkToolCircle"});
    QCOMPARE(boundsOf(result).width(), 8.0);
    QVERIFY(result.skipped.isEmpty());
}

void SvgTest::tags_of_more_attributes_than_are_read_are_refused() {
    const auto with = [](int attributes) {
        QByteArray body = "<!-- it's --><![CDATA[ <a ' ]]><?a ' ?><g";
        for (int i = 0; i < attributes; ++i)
            body += " a" + QByteArray::number(i) + "='=>'";
        return "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>" + body + "/></svg>";
    };
    QVERIFY2(importSvgData(with(1000)).ok(), qPrintable(importSvgData(with(1000)).error));
    QCOMPARE(importSvgData(with(1001)).error, noteText(Note::ManyAttributes));
    const auto wide = [](const QByteArray& text) {
        const QString letters = QChar(0xfeff) + QString::fromLatin1(text);
        return QByteArray(reinterpret_cast<const char*>(letters.utf16()), 2 * letters.size());
    };
    QVERIFY2(importSvgData(wide(with(1000))).ok(), qPrintable(importSvgData(wide(with(1000))).error));
    QCOMPARE(importSvgData(wide(with(1001))).error, noteText(Note::ManyAttributes));
}

void SvgTest::document_types_are_passed_over() {
    const auto with = [](const QByteArray& type, const QByteArray& rest) {
        return importSvgData("<!DOCTYPE svg [" + type + "]><svg width='9' height='9'><!--" + rest +
                             "--><rect width='9' height='&nine;'/></svg>");
    };
    const QByteArray entity = "<!ENTITY nine '9'>";
    QVERIFY(with("<!-- don't > -->" + entity, QByteArray(200000, 'x')).ok());
    QVERIFY(with(entity + "<!ATTLIST g a CDATA '1'><!--" + QByteArray(200000, 'x') + "-->", "").ok());
    QCOMPARE(with(entity + "<!ENTITY a '" + QByteArray(200000, 'x') + "'>", "").error, noteText(Note::ManyAttributes));
}

void SvgTest::choice_by_language() {
    const QByteArray choices = "<switch><rect systemLanguage='fr, x-none' width='1' height='1'/><rect "
                               "systemLanguage='de, " +
                               LanguageManager::GetCurrentLan().left(2).toLatin1() +
                               "-XY' width='2' height='2'/><rect width='3' height='3'/></switch>";
    const ImportResult result = read(choices);
    QCOMPARE(boundsOf(result).width(), 2.0);
    QVERIFY(result.skipped.isEmpty());
}

void SvgTest::references_give_inner_drawings_their_size() {
    const QByteArray inner = "<defs><svg id='s' width='10' height='10' viewBox='0 0 10 10'><rect x='1' y='1' width='8' "
                             "height='8' stroke='red'/><svg width='5' height='5'/></svg></defs>";
    QCOMPARE(boxText(boundsOf(read(inner + "<use href='#s'/>"))), QString("1 -9 9 -1"));
    QCOMPARE(boxText(boundsOf(read(inner + "<use href='#s' width='20' height='20'/>"))), QString("2 -18 18 -2"));
    QCOMPARE(boxText(boundsOf(read(inner + "<use href='#s' width='50%' height='100'/>"))), QString("5 -70 45 -30"));
}

void SvgTest::areas_of_several_open_contours_can_be_hatched() {
    const ImportResult result = read("<path d='M0 0H5V5M10 10H15V15M20 20H25' fill='red'/>");
    QCOMPARE(result.objects.size(), size_t(1));
    const auto& path = std::get<PathShape>(result.objects[0]->shape());
    using V = PathVerb;
    QCOMPARE(path.verbs, (QVector<PathVerb>{V::Move, V::Line, V::Line, V::Close, V::Move, V::Line, V::Line, V::Close,
                                            V::Move, V::Line}));
    // a line is drawn as it is
    const ImportResult line = read("<path d='M0 0H5V5M10 10H15V15' fill='red' stroke='blue'/>");
    QVERIFY(!std::get<PathShape>(line.objects[0]->shape()).verbs.contains(V::Close));
}

void SvgTest::the_roots_own_style_counts() {
    const auto with = [](const QByteArray& attributes, const QByteArray& size) {
        return importSvgData("<svg xmlns='http://www.w3.org/2000/svg' " + size + " " + attributes +
                             "><clipPath id='c'><rect width='5' height='50'/></clipPath><path d='M0 0H20' "
                             "stroke='red'/></svg>");
    };
    const QByteArray pixels = "width='96' height='96'";
    QCOMPARE(count(with("mask='url(#m)'", pixels).skipped, "mask", Note::Masks), 1);
    QCOMPARE(count(with("filter='url(#m)'", pixels).skipped, "filter", Note::Effects), 1);
    QCOMPARE(count(with("opacity='0'", pixels).skipped, "path", Note::NoLineNoArea), 1);
    QCOMPARE(count(with("display='none'", pixels).skipped, "svg", Note::Hidden), 1);
    QCOMPARE(count(with("transform='scale(2)'", pixels).converted, "transform", Note::StyleRule), 1);
    const ImportResult cut = with("clip-path='url(#c)'", pixels);
    QCOMPARE(count(cut.converted, "path", Note::Clipped), 1);
    QVERIFY(std::abs(lengthOfAll(cut) - 5 * 25.4 / 96) < 1e-3);
    const ImportResult half = importSvgData(
        "<svg xmlns='http://www.w3.org/2000/svg' x='7' width='96' height='96' clip-path='url(#h)'><clipPath id='h' "
        "clipPathUnits='objectBoundingBox'><rect width='0.5' height='1'/></clipPath><rect width='20' height='10' "
        "fill='red'/></svg>");
    QCOMPARE(half.objects.size(), size_t(1));
    QVERIFY(std::abs(boundsOf(half).width() - 10 * 25.4 / 96) < 1e-6);
    const ImportResult scaled = with("clip-path='url(#c)'", "width='100mm' height='100mm' viewBox='0 0 10 10'");
    QCOMPARE(count(scaled.converted, "clip-path", Note::StyleRule), 1);
}

void SvgTest::symbols_own_style_counts() {
    const auto with = [](const QByteArray& attributes) {
        return read("<clipPath id='c'><rect width='5' height='50'/></clipPath><symbol id='s' " + attributes +
                    "><path d='M0 1H20' stroke='red'/></symbol><use href='#s'/>");
    };
    QVERIFY(std::abs(lengthOfAll(with("clip-path='url(#c)'")) - 5.0) < 1e-3);
    QCOMPARE(count(with("mask='url(#m)'").skipped, "mask", Note::Masks), 1);
    QCOMPARE(count(with("opacity='0'").skipped, "path", Note::NoLineNoArea), 1);
    QCOMPARE(count(with("display='none'").skipped, "symbol", Note::Hidden), 1);
    QCOMPARE(count(with("transform='turn(9)'").skipped, "symbol", Note::BadTransform), 1);
}

/// The clip lies in the units of the text, which its transform moves.
void SvgTest::texts_are_cut_where_they_are_moved_to() {
    const QByteArray clip = "<clipPath id='c'><rect width='40' height='40'/></clipPath>";
    const ImportResult moved = read(clip + "<text y='9' font-size='9' transform='translate(50 40)' "
                                           "clip-path='url(#c)'>H</text>");
    QCOMPARE(moved.objects.size(), size_t(1));
    QVERIFY(boundsOf(moved).minX > 49.0 && boundsOf(moved).maxY < -39.0);
    QVERIFY(moved.skipped.isEmpty());
    const Box plain = boundsOf(read("<text y='9' font-size='9'>H</text>"));
    const Box styled = boundsOf(read("<text y='9' font-size='9' style='transform:translate(50px,40px)'>H</text>"));
    QVERIFY(std::abs(styled.minX - plain.minX - 50.0) < 1e-6 && std::abs(styled.minY - plain.minY + 40.0) < 1e-6);
}

void SvgTest::edges_far_beyond_the_field_leave_what_is_within() {
    const ImportResult result =
        read("<svg width='3e12' height='9'><path d='M-5 5H50' stroke='red'/><path d='M1 8V20' stroke='red'/></svg>");
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(boxText(boundsOf(result)), QString("0 -9 50 -5"));
    const ImportResult lost = read("<g transform='scale(1e12)'><g transform='scale(1e12)'><g transform='scale(1e12)'>"
                                   "<g transform='scale(1e12)'><g transform='scale(1e12)'><g transform='scale(1e12)'>"
                                   "<g transform='scale(1e12)'><g transform='scale(1e12)'><g transform='scale(1e12)'>"
                                   "<svg width='9' height='9'><path d='M0 5H50' stroke='red'/></svg>"
                                   "</g></g></g></g></g></g></g></g></g>");
    QVERIFY2(lost.ok(), qPrintable(lost.error));
    QCOMPARE(count(lost.skipped, "svg", Note::OutOfRange), 1);
}

void SvgTest::groups_in_use_hand_on_their_style() {
    const ImportResult result = read("<defs><g id='g'><rect width='5' height='5'/></g></defs>"
                                     "<use href='#g' fill='#010203'/><use href='#g' fill='#040506'/>");
    QCOMPARE(result.penColors, (QVector<QColor>{QColor("#010203"), QColor("#040506")}));
}

QTEST_MAIN(SvgTest)
#include "tst_svg.moc"

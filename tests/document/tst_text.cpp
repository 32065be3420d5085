// SPDX-License-Identifier: MIT
#include "simengine/document/glyphunion.h"
#include "simengine/document/strokefonts.h"
#include "textfixture.h"

#include <QFontDatabase>
#include <QTest>
#include <QtMath>
#include <cmath>

using namespace sim;
using namespace texts;

namespace {

Box boundsOf(const MadeText& made) {
    return shapeBounds(made.shape, QTransform());
}

std::shared_ptr<const PathShape> boxes(const QVector<QRectF>& rects) {
    auto path = std::make_shared<PathShape>();
    for (const QRectF& r : rects) {
        path->moveTo(r.topLeft());
        path->lineTo(r.topRight());
        path->lineTo(r.bottomRight());
        path->lineTo(r.bottomLeft());
        path->close();
    }
    return path;
}

} // namespace

/// How a text becomes an outline: fonts, sizes, lines, faults, letters over each other.
class TextTest : public QObject {
    Q_OBJECT

private slots:
    void every_single_line_font_is_installed_and_draws() {
        QVERIFY(strokeFonts().size() > 20);
        for (const StrokeFontInfo& font : strokeFonts()) {
            QVERIFY2(isStrokeFontInstalled(QLatin1String(font.name)), font.name);
            QVERIFY2(strokeGlyph(QLatin1String(font.name), 'A').known ||
                         strokeGlyph(QLatin1String(font.name), '1').known ||
                         strokeGlyph(QLatin1String(font.name), 'a').known,
                     font.name);
        }
        QCOMPARE(strokeFont(QStringLiteral("rowmans")), &strokeFonts().front());
        QVERIFY(!strokeFont(QStringLiteral("Rowmans")));
    }

    void a_capital_letter_is_as_high_as_entered_data() {
        QTest::addColumn<bool>("single");
        QTest::addColumn<double>("height");
        for (const double height : {0.01, 0.5, 5.0, 120.0}) {
            QTest::addRow("strokes %g", height) << true << height;
            QTest::addRow("outline %g", height) << false << height;
        }
    }
    void a_capital_letter_is_as_high_as_entered() {
        QFETCH(bool, single);
        QFETCH(double, height);
        const MadeText made = makeText(single ? strokes("H", height) : outlines("H", height));
        QVERIFY(made.ok());
        const Box box = boundsOf(made);
        QVERIFY2(std::abs(box.height() - height) < 1e-6 * height, qPrintable(QString::number(box.height(), 'g', 12)));
        QVERIFY(std::abs(box.minY) < 1e-6 * height);
    }

    void strokes_are_the_fonts_lines() {
        // the H of the plain font: two posts and the bar between them, on a body of 22 units
        const MadeText made = makeText(strokes("H", 21.0));
        QVERIFY(made.ok());
        QCOMPARE(made.shape.characterContours, QVector<int>{3});
        QVector<QPointF> points = {{4, 21}, {4, 0}, {18, 21}, {18, 0}, {4, 11}, {18, 11}};
        QCOMPARE(made.shape.outline.points.size(), points.size());
        for (int i = 0; i < points.size(); ++i)
            QVERIFY(QLineF(made.shape.outline.points[i], points[i]).length() < 1e-9);
        QVERIFY(!made.shape.outline.verbs.contains(PathVerb::Close));
    }

    void lines_letters_and_alignment() {
        TextSpec spec = strokes(QStringLiteral("HH\nH"), 21.0);
        spec.letterSpacing = 3.0;
        spec.lineSpacing = 2.0;
        const auto start = [&](TextAlign align, int letter) {
            spec.align = align;
            const MadeText made = makeText(spec);
            return letterPaths(made.shape).at(size_t(letter)).points.first();
        };
        const auto near = [](const QPointF& a, const QPointF& b) { return QLineF(a, b).length() < 1e-9; };
        QVERIFY(near(start(TextAlign::Left, 0), {4, 21}));
        QVERIFY(near(start(TextAlign::Left, 1), {4 + 22 + 3, 21}));
        QVERIFY(near(start(TextAlign::Left, 2), {4, 21 - 42}));
        // lines of 22 + 3 + 22 and of 22
        QVERIFY(near(start(TextAlign::Center, 0), {4 - 23.5, 21}));
        QVERIFY(near(start(TextAlign::Center, 2), {4 - 11, -21}));
        QVERIFY(near(start(TextAlign::Right, 0), {4 - 47, 21}));
        QVERIFY(near(start(TextAlign::Right, 2), {4 - 22, -21}));
    }

    void outline_alignment_and_letter_spacing() {
        TextSpec spec = outlines(QStringLiteral("HHH"));
        const Box plain = boundsOf(makeText(spec));
        spec.letterSpacing = 2.0;
        const Box wide = boundsOf(makeText(spec));
        QVERIFY2(std::abs(wide.width() - plain.width() - 4.0) < 0.01, qPrintable(QString::number(wide.width())));
        spec.align = TextAlign::Center;
        const Box centered = boundsOf(makeText(spec));
        spec.align = TextAlign::Right;
        const Box right = boundsOf(makeText(spec));
        QVERIFY(std::abs(centered.center().x()) < 0.05);
        QVERIFY(right.maxX < 0.0 && right.maxX > -0.1 * wide.width());
        QVERIFY(std::abs((right.minX - centered.minX) - (centered.minX - wide.minX)) < 1e-9);
    }

    void italic_strokes_lean() {
        TextSpec spec = strokes("I", 10.0);
        const Box upright = boundsOf(makeText(spec));
        spec.italic = true;
        const Box leaning = boundsOf(makeText(spec));
        QVERIFY(std::abs(leaning.width() - upright.width() - 10.0 * std::tan(12.0 * M_PI / 180.0)) < 1e-9);
    }

    void faults_are_told_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("single");
        QTest::addColumn<int>("fault");
        QTest::addColumn<QString>("characters");
        const auto row = [](const char* name, const QString& text, bool single, TextFault fault,
                            const QString& characters = QString()) {
            QTest::newRow(name) << text << single << int(fault) << characters;
        };
        row("empty", "", true, TextFault::Empty);
        row("blank", "   \n ", true, TextFault::NothingDrawn);
        row("blank outline", " ", false, TextFault::NothingDrawn);
        row("tab", "a\tb", true, TextFault::ControlCharacter, "U+0009");
        row("carriage return", "a\r\nb", false, TextFault::ControlCharacter, "U+000D");
        row("line separator", QString(QChar(0x2028)), true, TextFault::ControlCharacter, "U+2028");
        row("half a pair", QString("a") + QChar(0xd83d), false, TextFault::ControlCharacter, "U+D83D");
        row("10,000", QString(10000, 'l'), true, TextFault::None);
        row("10,001", QString(10001, 'l'), true, TextFault::TooLong);
        row("strokes lack", QStringLiteral("A中ä中"), true, TextFault::MissingCharacters, QStringLiteral("中ä"));
        row("degree", QStringLiteral("90°"), true, TextFault::None);
        row("no font has it", QString("A") + QString::fromUcs4(U"\U0010FFFD"), false, TextFault::MissingCharacters,
            QString::fromUcs4(U"\U0010FFFD"));
    }
    void faults_are_told() {
        QFETCH(QString, text);
        QFETCH(bool, single);
        QFETCH(int, fault);
        QFETCH(QString, characters);
        const MadeText made = makeText(single ? strokes(text) : outlines(text));
        QCOMPARE(int(made.fault), fault);
        QCOMPARE(made.characters, characters);
    }

    void numbers_out_of_range_are_refused_data() {
        QTest::addColumn<double>("height");
        QTest::addColumn<double>("letters");
        QTest::addColumn<double>("lines");
        QTest::newRow("height 0") << 0.0 << 0.0 << 1.0;
        QTest::newRow("height negative") << -5.0 << 0.0 << 1.0;
        QTest::newRow("height not a number") << qQNaN() << 0.0 << 1.0;
        QTest::newRow("height huge") << 10001.0 << 0.0 << 1.0;
        QTest::newRow("letters infinite") << 5.0 << qInf() << 1.0;
        QTest::newRow("lines 0") << 5.0 << 0.0 << 0.0;
    }
    void numbers_out_of_range_are_refused() {
        QFETCH(double, height);
        QFETCH(double, letters);
        QFETCH(double, lines);
        TextSpec spec = strokes("A", height);
        spec.letterSpacing = letters;
        spec.lineSpacing = lines;
        QCOMPARE(int(makeText(spec).fault), int(TextFault::BadSize));
    }

    void an_unknown_single_line_font_is_refused_by_name() {
        TextSpec spec = strokes("A");
        spec.family = "nosuchfont";
        const MadeText made = makeText(spec);
        QCOMPARE(int(made.fault), int(TextFault::NoStrokeFont));
        QCOMPARE(made.characters, QString("nosuchfont"));
    }

    void an_unknown_family_falls_back_and_says_so() {
        TextSpec spec = outlines("A");
        QVERIFY(makeText(spec).usedFamily.isEmpty());
        spec.family = "No Such Family";
        const MadeText made = makeText(spec);
        QVERIFY(made.ok());
        QVERIFY(!made.usedFamily.isEmpty());
        QVERIFY(made.usedFamily != spec.family);
    }

    void characters_of_other_fonts_are_named() {
        // a Hebrew letter is in none of the Chinese fonts
        const MadeText made = makeText(outlines(QStringLiteral("A中א")));
        QVERIFY(made.ok());
        QCOMPARE(made.borrowed, QStringLiteral("א"));
    }

    void letters_of_several_fonts_come_along_the_line() {
        QVERIFY(QFontDatabase().hasFamily("DejaVu Sans"));
        TextSpec spec = outlines(QStringLiteral("A中B国C\n中A"));
        spec.family = "DejaVu Sans";
        const MadeText made = makeText(spec);
        QVERIFY(made.ok());
        const std::vector<PathShape> letters = letterPaths(made.shape);
        QCOMPARE(letters.size(), size_t(7));
        const auto left = [&](size_t i) { return shapeBounds(Shape(letters[i]), QTransform()).minX; };
        for (size_t i = 1; i < 5; ++i)
            QVERIFY(left(i) > left(i - 1));
        QVERIFY(left(6) > left(5));
        QVERIFY(shapeBounds(Shape(letters[5]), QTransform()).maxY < 0.0);
    }

    void outlines_are_closed_and_counted_by_letter() {
        const MadeText made = makeText(outlines(QStringLiteral("O i中")));
        QVERIFY(made.ok());
        QCOMPARE(made.shape.characterContours.size(), 3);
        QCOMPARE(made.shape.characterContours[0], 2);
        QCOMPARE(made.shape.characterContours[1], 2);
        const auto closes =
            std::count(made.shape.outline.verbs.begin(), made.shape.outline.verbs.end(), PathVerb::Close);
        QCOMPARE(int(closes), made.shape.outline.contourCount());
        QVERIFY(made.shape.outline.verbs.contains(PathVerb::Cubic));
        QVERIFY(samples::object(made.shape));
    }

    void overlapping_contours_of_a_letter_leave_no_hole() {
        // an upright and a bar that cross, as variable fonts draw them
        const auto cross = boxes({QRectF(4, 0, 2, 10), QRectF(0, 4, 10, 2)});
        const auto united = unitedGlyphs({{cross, {100, 50}}}, 0.001);
        QCOMPARE(united.size(), size_t(1));
        QVERIFY(std::abs(hatchedArea(united[0]) - 36.0) < 0.01);
        QCOMPARE(united[0].contourCount(), 1);
        const Box box = shapeBounds(Shape(united[0]), QTransform());
        QVERIFY(std::abs(box.minX - 100.0) < 1e-4 && std::abs(box.maxY - 60.0) < 1e-4);
    }

    void a_hole_of_a_letter_stays() {
        auto ring = std::make_shared<PathShape>(*boxes({QRectF(0, 0, 10, 10)}));
        // the inner contour runs the other way
        ring->moveTo({2, 2});
        ring->lineTo({2, 8});
        ring->lineTo({8, 8});
        ring->lineTo({8, 2});
        ring->close();
        const auto united = unitedGlyphs({{ring, {0, 0}}}, 0.001);
        QCOMPARE(united.size(), size_t(1));
        QCOMPARE(united[0].points, ring->points);
        QVERIFY(std::abs(hatchedArea(united[0]) - 64.0) < 0.01);
    }

    void letters_that_lie_over_each_other_become_one() {
        const auto box = boxes({QRectF(0, 0, 10, 10)});
        const auto united = unitedGlyphs({{box, {0, 0}}, {box, {30, 0}}, {box, {5, 0}}, {box, {40.0, 0}}}, 0.001);
        // the two on the right only touch
        QCOMPARE(united.size(), size_t(3));
        QVERIFY(std::abs(hatchedArea(united[0]) - 150.0) < 0.01);
        QVERIFY(std::abs(hatchedArea(united[1]) - 100.0) < 0.01);
    }

    void pressed_together_letters_are_hatched_without_holes() {
        TextSpec spec = outlines(QStringLiteral("HHHH"), 10.0);
        const double one = hatchedArea(makeText(outlines(QStringLiteral("H"), 10.0)).shape.outline);
        QVERIFY(std::abs(hatchedArea(makeText(spec).shape.outline) - 4.0 * one) < 0.01 * one);
        spec.letterSpacing = -2.0;
        const MadeText pressed = makeText(spec);
        const MadeText pair = makeText([&] {
            TextSpec two = spec;
            two.text = "HH";
            return two;
        }());
        QVERIFY(pressed.ok());
        const double area = hatchedArea(pressed.shape.outline);
        QVERIFY(area <= 4.0 * one + 1e-6);
        // the second, third and fourth letter each add the same
        const double added = hatchedArea(pair.shape.outline) - one;
        QVERIFY2(std::abs(area - one - 3.0 * added) < 0.02 * one,
                 qPrintable(QString("%1 %2 %3").arg(area).arg(one).arg(added)));
    }

    void the_outline_does_not_depend_on_the_screen() {
        const MadeText small = makeText(outlines(QStringLiteral("Rg中"), 1.0));
        const MadeText large = makeText(outlines(QStringLiteral("Rg中"), 1000.0));
        QVERIFY(small.shape.outline.verbs == large.shape.outline.verbs);
        for (int i = 0; i < small.shape.outline.points.size(); ++i) {
            const QPointF off = small.shape.outline.points[i] * 1000.0 - large.shape.outline.points[i];
            QVERIFY(std::hypot(off.x(), off.y()) < 1e-6);
        }
    }

    void a_text_of_10000_letters_is_made() {
        QString text;
        for (int i = 0; i < 100; ++i)
            text += QString(99, QChar('A' + i % 26)) + (i < 99 ? "\n" : "B");
        QCOMPARE(text.size(), 10000);
        const MadeText made = makeText(outlines(text));
        QVERIFY(made.ok());
        QCOMPARE(made.shape.characterContours.size(), 9901);
        QVERIFY(samples::object(made.shape));
    }
};

QTEST_MAIN(TextTest)
#include "tst_text.moc"

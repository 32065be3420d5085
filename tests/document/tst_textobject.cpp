// SPDX-License-Identifier: MIT
#include "simengine/document/curveedits.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/document/textedits.h"
#include "textfixture.h"

#include <QTest>
#include <cmath>

using namespace sim;
using namespace texts;

/// A text as an object of a document: moved, turned into curves, entered anew, hatched, marked.
class TextObjectTest : public QObject {
    Q_OBJECT

private slots:
    void class_and_points() {
        const ObjectPtr object = samples::text("H");
        QCOMPARE(object->className(), QString("MarkToolText"));
        QCOMPARE(int(object->kind()), 8);
        QCOMPARE(object->pointCount(), qint64(6));
        QVERIFY(!object->isOpenCurve());
        QVERIFY(object->memoryCost() > 6 * qint64(sizeof(QPointF)));
    }

    void text_is_moved_scaled_turned_and_mirrored_as_a_path() {
        const ObjectPtr text = samples::text("F5", 10.0);
        const ObjectPtr path = samples::object(std::get<TextShape>(text->shape()).outline);
        DocumentState texts = samples::state({text}, {0});
        DocumentState paths = samples::state({path}, {0});
        const std::vector<std::function<EditResult(const DocumentState&)>> all = {
            [](const DocumentState& s) { return edits::move(s, 3, -4); },
            [](const DocumentState& s) { return edits::scale(s, 2, 0.5, 1, 1); },
            [](const DocumentState& s) { return edits::setAngle(s, 33); },
            [](const DocumentState& s) { return edits::mirror(s, MirrorLeftRight); },
            [](const DocumentState& s) { return edits::array(s, 3, 2, 40, 20); },
            [](const DocumentState& s) { return edits::setPen(s, 5); },
        };
        for (const auto& edit : all) {
            const EditResult a = edit(texts);
            const EditResult b = edit(paths);
            QVERIFY(a && b);
            texts = *a;
            paths = *b;
        }
        QCOMPARE(texts.count(), 6);
        const Job marked = buildJob(texts, {});
        const Job expected = buildJob(paths, {});
        QCOMPARE(marked.strokes.size(), expected.strokes.size());
        for (size_t i = 0; i < marked.strokes.size(); ++i) {
            QCOMPARE(marked.strokes[i].pen, 5);
            QCOMPARE(marked.strokes[i].points.size(), expected.strokes[i].points.size());
            for (size_t p = 0; p < marked.strokes[i].points.size(); ++p) {
                QCOMPARE(marked.strokes[i].points[p].x, expected.strokes[i].points[p].x);
                QCOMPARE(marked.strokes[i].points[p].y, expected.strokes[i].points[p].y);
            }
        }
        for (int i = 0; i < 6; ++i)
            QCOMPARE(texts.at(i)->className(), QString("MarkToolText"));
    }

    void a_text_becomes_curves_letter_by_letter() {
        const ObjectPtr text = samples::text("H i", 10.0);
        const DocumentState before = samples::state({samples::point(0, 0), text}, {1});
        QVERIFY(edits::canSplitCurves(before));
        const EditResult after = edits::splitCurves(before);
        QVERIFY(after);
        QCOMPARE(after->count(), 3);
        QCOMPARE(after->selection.ordered(), QList<int>({1, 2}));
        QCOMPARE(after->at(1)->className(), QString("MarkToolPath"));
        QCOMPARE(after->at(1)->bounds().height(), 10.0);
        QCOMPARE(std::get<PathShape>(after->at(1)->shape()).contourCount(), 3);
        Box box = after->at(1)->bounds();
        box.add(after->at(2)->bounds());
        QVERIFY(std::abs(box.maxX - text->bounds().maxX) < 1e-9);
    }

    void a_text_of_one_letter_becomes_a_curve() {
        const EditResult after = edits::splitCurves(samples::state({samples::text("O")}, {0}));
        QVERIFY(after);
        QCOMPARE(after->count(), 1);
        QVERIFY(after->at(0)->kind() != ObjectKind::Text);
    }

    void texts_are_combined_and_roughened() {
        const DocumentState two = samples::state({samples::text("A"), samples::text("B")}, {0, 1});
        QVERIFY(edits::canCombineCurves(two));
        const EditResult whole = edits::combineCurves(two, false);
        QVERIFY(whole);
        QCOMPARE(whole->at(0)->className(), QString("MarkToolPath"));
        DissimilationParam pattern;
        pattern.Type = 0;
        pattern.Amplitude = 0.1;
        pattern.Pitch = 0.5;
        const EditResult rough = edits::roughen(two, pattern);
        QVERIFY(rough);
        QVERIFY(rough->at(0)->pointCount() > two.at(0)->pointCount());
    }

    void another_text_keeps_place_pen_hatch_and_name() {
        ObjectData data = samples::text("old", 5.0)->data();
        data.transform = QTransform(0, 2, -2, 0, 7, 8);
        data.pen = 4;
        data.angle = 90.0;
        data.name = "label";
        data.hatch.markFillFirst = true;
        const ObjectPtr object = MarkObject::make(data);
        const MadeText made = makeText(strokes("new"));
        const EditResult after = edits::setText(samples::state({object}, {0}), 0, made.shape);
        QVERIFY(after);
        const ObjectData& now = after->at(0)->data();
        QCOMPARE(std::get<TextShape>(now.shape).spec.text, QString("new"));
        QCOMPARE(now.transform, data.transform);
        QCOMPARE(now.pen, 4);
        QCOMPARE(now.angle, 90.0);
        QCOMPARE(now.name, QString("label"));
        QVERIFY(now.hatch.markFillFirst);
        QVERIFY(!edits::setText(*after, 0, made.shape));
        QVERIFY(!edits::setText(*after, 1, made.shape));
        QVERIFY(!edits::setText(samples::state({samples::point(0, 0)}, {0}), 0, made.shape));
    }

    void a_scaled_text_is_entered_in_the_size_that_is_marked() {
        ObjectData data;
        TextSpec spec = strokes("A", 3.3);
        spec.letterSpacing = 0.7;
        data.shape = makeText(spec).shape;
        data.transform = QTransform(0, 2, -4, 0, 7, 8); // turned, twice as wide, four times as high
        const ObjectPtr object = MarkObject::make(data);
        TextSpec shown = markedSpec(*object);
        QCOMPARE(shown.height, 3.3 * 4);
        QCOMPARE(shown.letterSpacing, 0.7 * 2);
        QVERIFY(ownSpec(*object, shown) == spec);
        shown.height = 20.0;
        QCOMPARE(ownSpec(*object, shown).height, 5.0);
        QCOMPARE(ownSpec(*object, shown).letterSpacing, 0.7);
    }

    void a_hatch_fills_the_letters_and_not_their_holes_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("spacing");
        QTest::newRow("rings") << "OO8" << 0.0;
        QTest::newRow("Chinese") << QStringLiteral("国回") << 0.0;
        QTest::newRow("pressed together") << "OOO" << -3.0;
    }
    void a_hatch_fills_the_letters_and_not_their_holes() {
        QFETCH(QString, text);
        QFETCH(double, spacing);
        TextSpec spec = outlines(text, 10.0);
        spec.letterSpacing = spacing;
        ObjectData data;
        data.shape = makeText(spec).shape;
        constexpr double kPitch = 0.02;
        data.hatch.fills[0].Enable = true;
        data.hatch.fills[0].FillDist = kPitch;
        const ObjectPtr object = MarkObject::make(data);
        QVERIFY(object);
        double covered = 0.0;
        const auto hatch = object->hatch();
        for (const HatchPart& part : *hatch) {
            for (size_t line = 0; line < part.lines.count(); ++line) {
                const QPointF* end = part.lines.end(line);
                for (const QPointF* p = part.lines.begin(line) + 1; p < end; ++p)
                    covered += QLineF(p[-1], p[0]).length() * kPitch;
            }
        }
        const double area = hatchedArea(std::get<TextShape>(data.shape).outline);
        QVERIFY(area > 10.0);
        QVERIFY2(std::abs(covered - area) < 0.01 * area, qPrintable(QString("%1 of %2").arg(covered).arg(area)));
    }

    void strokes_are_not_hatched() {
        ObjectData data = samples::text("OB8")->data();
        data.hatch.fills[0].Enable = true;
        const ObjectPtr object = MarkObject::make(data);
        QVERIFY(object);
        QCOMPARE(object->hatchSegmentCount(), qint64(0));
    }

    void a_document_marks_the_same_without_the_font() {
        // the outline is the document's; a font name that nobody has changes nothing
        TextShape shape = makeText(outlines(QStringLiteral("AB"))).shape;
        const ObjectPtr object = samples::object(shape);
        shape.spec.family = "No Such Family";
        const ObjectPtr foreign = samples::object(shape);
        QVERIFY(object->flattened().size() == foreign->flattened().size());
        for (size_t i = 0; i < object->flattened().size(); ++i)
            QCOMPARE(object->flattened()[i].points, foreign->flattened()[i].points);
    }
};

QTEST_MAIN(TextObjectTest)
#include "tst_textobject.moc"

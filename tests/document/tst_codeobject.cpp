// SPDX-License-Identifier: MIT
#include "codefixture.h"

#include "simengine/document/codeedits.h"
#include "simengine/document/curveedits.h"
#include "simengine/document/edits.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/document/mkfcodec.h"

#include <QTest>
#include <QtEndian>
#include <cmath>

using namespace sim;
using codes::spec;

namespace {

const QString kText = QStringLiteral("SN-000123");

QByteArray encoded(const ObjectPtr& object) {
    DocumentContent content;
    content.objects = std::make_shared<const ObjectList>(ObjectList{object});
    return *encodeMkf(content);
}

/// The version of the object section.
quint32 objectsVersionOf(const QByteArray& bytes) {
    return qFromLittleEndian<quint32>(bytes.constData() + 76);
}

} // namespace

/// A code as an object of a document: kept, moved, split, entered anew, hatched, marked.
class CodeObjectTest : public QObject {
    Q_OBJECT

private slots:
    void class_and_points() {
        const ObjectPtr object = codes::object(spec(Symbology::DataMatrix, kText));
        QCOMPARE(object->className(), QString("MarkToolCode"));
        QCOMPARE(int(object->kind()), 9);
        QVERIFY(!object->isOpenCurve());
        const ObjectPtr dots = codes::object(spec(Symbology::DataMatrix, kText, CodeMarking::Dots));
        QCOMPARE(dots->pointCount(), qint64(std::get<CodeShape>(dots->shape()).dots.size()));
    }

    void round_trip_keeps_every_field_data() {
        QTest::addColumn<int>("marking");
        QTest::newRow("outline") << 0;
        QTest::newRow("lines") << 1;
        QTest::newRow("dots") << 2;
    }
    void round_trip_keeps_every_field() {
        QFETCH(int, marking);
        CodeSpec asked = spec(Symbology::Qr, QStringLiteral("零件 {serial:A}"), CodeMarking(marking));
        asked.variables = true;
        asked.errorLevel = 3;
        asked.size = 9;
        asked.quietZone = 5;
        asked.fitted = true;
        asked.module = 0.3;
        asked.width = 33.5;
        asked.barHeight = 7.25;
        asked.invert = true;
        asked.linesPerModule = 7;
        const ObjectPtr object = samples::object(makeCode(asked, QStringLiteral("零件 0001")).shape);
        QVERIFY(object);
        const QByteArray bytes = encoded(object);
        QString error;
        const auto decoded = decodeMkf(bytes, &error);
        QVERIFY2(decoded, qPrintable(error));
        QCOMPARE(encodeMkf(*decoded), bytes);
        const auto& before = std::get<CodeShape>(object->shape());
        const auto& after = std::get<CodeShape>(decoded->objects->front()->shape());
        QVERIFY(after.spec == asked);
        QCOMPARE(after.shown, QStringLiteral("零件 0001"));
        QVERIFY(after.outline.verbs == before.outline.verbs);
        QCOMPARE(after.outline.points, before.outline.points);
        QCOMPARE(after.dots, before.dots);
    }

    void the_section_has_the_version_that_its_objects_need() {
        QCOMPARE(objectsVersionOf(encoded(samples::rect(0, 0, 1, 1))), quint32(1));
        QCOMPARE(objectsVersionOf(encoded(samples::text("A"))), quint32(2));
        QCOMPARE(objectsVersionOf(encoded(codes::object(spec(Symbology::Qr, kText)))), quint32(3));
        QCOMPARE(objectsVersionOf(encoded(samples::group({codes::object(spec(Symbology::Qr, kText))}))), quint32(3));
    }

    void unsound_codes_are_refused_data() {
        QTest::addColumn<int>("index");
        int index = 0;
        for (const char* name : {"text", "shown without variables", "variables without shown", "no outline",
                                 "dots and an outline", "dots of an outline", "a dot that is no number"})
            QTest::newRow(name) << index++;
    }
    void unsound_codes_are_refused() {
        QFETCH(int, index);
        const bool dotted = index == 4 || index == 6;
        CodeShape shape =
            makeCode(spec(Symbology::DataMatrix, kText, dotted ? CodeMarking::Dots : CodeMarking::Outline)).shape;
        ObjectData data;
        data.shape = shape;
        QVERIFY(MarkObject::make(data));
        const std::function<void()> spoil[] = {
            [&] { shape.spec.text.clear(); },
            [&] { shape.shown = kText; },
            [&] { shape.spec.variables = true; },
            [&] { shape.outline = PathShape(); },
            [&] { shape.outline = makeCode(spec(Symbology::DataMatrix, kText)).shape.outline; },
            [&] { shape.dots = {QPointF(0, 0)}; },
            [&] { shape.dots[0].setX(std::nan("")); },
        };
        spoil[index]();
        data.shape = shape;
        QString fault;
        QVERIFY(!MarkObject::make(data, &fault));
        QVERIFY(!fault.isEmpty());
    }

    void a_code_is_moved_scaled_turned_and_mirrored_as_a_path() {
        const ObjectPtr code = codes::object(spec(Symbology::DataMatrix, kText));
        DocumentState codes = samples::state({code}, {0});
        DocumentState paths = samples::state({samples::object(std::get<CodeShape>(code->shape()).outline)}, {0});
        const std::vector<std::function<EditResult(const DocumentState&)>> all = {
            [](const DocumentState& s) { return edits::move(s, 3, -4); },
            [](const DocumentState& s) { return edits::scale(s, 2, 0.5, 1, 1); },
            [](const DocumentState& s) { return edits::setAngle(s, 33); },
            [](const DocumentState& s) { return edits::mirror(s, MirrorLeftRight); },
            [](const DocumentState& s) { return edits::array(s, 2, 1, 40, 20); },
        };
        for (const auto& edit : all) {
            const EditResult a = edit(codes);
            const EditResult b = edit(paths);
            QVERIFY(a && b);
            codes = *a;
            paths = *b;
        }
        QCOMPARE(codes.count(), 2);
        const Job marked = buildJob(codes, {});
        const Job expected = buildJob(paths, {});
        QCOMPARE(marked.strokes.size(), expected.strokes.size());
        for (size_t i = 0; i < marked.strokes.size(); ++i) {
            QCOMPARE(marked.strokes[i].points.size(), expected.strokes[i].points.size());
            for (size_t p = 0; p < marked.strokes[i].points.size(); ++p)
                QCOMPARE(marked.strokes[i].points[p].x, expected.strokes[i].points[p].x);
        }
    }

    void dots_are_marked_as_points_of_the_pen() {
        const ObjectPtr code = codes::object(spec(Symbology::DataMatrix, kText, CodeMarking::Dots));
        const EditResult moved = edits::move(samples::state({code}, {0}), 10, 20);
        const Job job = buildJob(*moved, {});
        const QVector<QPointF>& dots = std::get<CodeShape>(code->shape()).dots;
        QCOMPARE(job.strokes.size(), size_t(dots.size()));
        for (size_t i = 0; i < job.strokes.size(); ++i) {
            QCOMPARE(job.strokes[i].points.size(), size_t(1));
            QVERIFY(job.strokes[i].dwellUs < 0.0);
            QCOMPARE(job.strokes[i].points[0].x, dots.at(int(i)).x() + 10);
            QCOMPARE(job.strokes[i].points[0].y, dots.at(int(i)).y() + 20);
        }
    }

    void the_usual_hatch_fills_the_modules() {
        const CodeSpec asked = spec(Symbology::DataMatrix, kText);
        const MadeCode made = makeCode(asked);
        ObjectData data;
        data.shape = made.shape;
        data.hatch = usualCodeHatch(asked, made.module);
        const ObjectPtr object = MarkObject::make(data);
        QVERIFY(object && object->isFilled());
        double area = 0.0; // of the hatch: its length times its distance
        const auto hatch = object->hatch();
        QVERIFY(hatch);
        for (const HatchPart& part : *hatch) {
            for (std::size_t i = 0; i < part.lines.count(); ++i) {
                QPolygonF line;
                std::copy(part.lines.begin(i), part.lines.end(i), std::back_inserter(line));
                area += polylineLength(line) * data.hatch.fills[0].FillDist;
            }
        }
        const int dark = makeCode(spec(Symbology::DataMatrix, kText, CodeMarking::Dots)).shape.dots.size();
        const double expected = dark * made.module * made.module;
        QVERIFY2(std::abs(area - expected) < 0.02 * expected, qPrintable(QString::number(area / expected)));
        QVERIFY(!usualCodeHatch(spec(Symbology::Qr, kText, CodeMarking::Lines), 0.5).anyEnabled());
    }

    void a_code_becomes_one_curve_or_its_points() {
        const ObjectPtr code = codes::object(spec(Symbology::DataMatrix, kText));
        QVERIFY(edits::canSplitCurves(samples::state({code}, {0})));
        const EditResult split = edits::splitCurves(samples::state({code}, {0}));
        QVERIFY(split);
        QCOMPARE(split->count(), 1);
        QCOMPARE(split->at(0)->className(), QString("MarkToolPath"));
        QCOMPARE(split->at(0)->pointCount(), code->pointCount());
        const ObjectPtr dots = codes::object(spec(Symbology::DataMatrix, kText, CodeMarking::Dots));
        const EditResult points = edits::splitCurves(samples::state({dots}, {0}));
        QVERIFY(points);
        QCOMPARE(points->count(), int(dots->pointCount()));
        QCOMPARE(points->at(0)->className(), QString("MarkToolPoint"));
    }

    void a_changed_code_keeps_its_place_and_is_one_step() {
        Document document;
        const CodeSpec first = spec(Symbology::DataMatrix, kText);
        const ObjectPtr placed = codes::object(first)->transformed(QTransform::fromTranslate(7, 8));
        document.edit([&](const DocumentState& s) { return edits::add(s, {placed}); });
        const CodeSpec second = spec(Symbology::DataMatrix, QStringLiteral("other"), CodeMarking::Lines);
        const auto change = [&](const CodeSpec& to) {
            const MadeCode made = makeCode(to);
            return document.edit([&](const DocumentState& s) {
                return edits::setCode(s, 0, made.shape, usualCodeHatch(to, made.module));
            });
        };
        QVERIFY(!change(first));
        QVERIFY(change(second));
        QCOMPARE(std::get<CodeShape>(document.state()->at(0)->shape()).spec.text, QStringLiteral("other"));
        QCOMPARE(document.state()->at(0)->transform(), placed->transform());
        QVERIFY(document.undo());
        QCOMPARE(document.state()->at(0), placed);
        QVERIFY(document.redo());
        QCOMPARE(std::get<CodeShape>(document.state()->at(0)->shape()).spec.text, QStringLiteral("other"));
    }

    void sizes_are_entered_as_they_are_marked() {
        CodeSpec asked = spec(Symbology::Code128, kText);
        const ObjectPtr scaled = codes::object(asked)->transformed(QTransform::fromScale(2.0, 0.5));
        const CodeSpec marked = markedCode(*scaled);
        QCOMPARE(marked.module, 1.0);
        QCOMPARE(marked.barHeight, 5.0);
        CodeSpec wanted = marked;
        QVERIFY(ownCode(*scaled, wanted) == asked);
        wanted.module = 0.8;
        QCOMPARE(ownCode(*scaled, wanted).module, 0.4);
        QCOMPARE(ownCode(*scaled, wanted).barHeight, 10.0);
    }
};

QTEST_GUILESS_MAIN(CodeObjectTest)
#include "tst_codeobject.moc"

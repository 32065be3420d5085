// SPDX-License-Identifier: MIT
#include "samples.h"
#include "simengine/document/curveedits.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/document/limits.h"
#include "simengine/document/mkfcodec.h"
#include "simengine/document/moduleguard.h"
#include "simengine/document/shapeedits.h"

#include <QTest>
#include <functional>
#include <limits>
#include <stdexcept>

using namespace sim;

Q_DECLARE_METATYPE(sim::GeneratedShape)
Q_DECLARE_METATYPE(std::function<void()>)

namespace {

GeneratedShape shapeOf(const ObjectPtr& object) {
    return std::get<GeneratedShape>(object->shape());
}

QString faultOf(const GeneratedShape& shape) {
    ObjectData data;
    data.shape = shape;
    QString fault;
    MarkObject::make(data, &fault);
    return fault;
}

/// Points of all strokes of a job.
QVector<QPointF> marked(const DocumentState& state) {
    QVector<QPointF> points;
    for (const auto& stroke : buildJob(state, {}).strokes) {
        for (const auto& p : stroke.points)
            points.append({p.x, p.y});
    }
    return points;
}

} // namespace

/// What a tool module made, as an object of a document, where no module is.
class GeneratedTest : public QObject {
    Q_OBJECT

private slots:
    void it_has_the_class_of_its_tool() {
        const ObjectPtr object = samples::generated();
        QCOMPARE(object->className(), QString("SampleTriangle"));
        QCOMPARE(int(object->kind()), 10);
        QCOMPARE(object->pointCount(), qint64(5));
        QVERIFY(!object->isOpenCurve());
        QVERIFY(samples::generated(QByteArray(50000, 'x'))->memoryCost() > object->memoryCost() + 49000);
    }

    void an_open_outline_is_an_open_curve() {
        GeneratedShape shape = shapeOf(samples::generated());
        shape.outline.verbs.removeLast();
        const ObjectPtr open = samples::object(shape);
        QVERIFY(open->isOpenCurve());
        const ObjectPtr line = samples::line({{0, 8}, {0, 20}});
        const EditResult joined = edits::combineCurves(samples::state({open, line}, {0, 1}), true);
        QVERIFY(joined);
        QCOMPARE(joined->count(), 1);
        QCOMPARE(std::get<PathShape>(joined->at(0)->shape()).contourCount(), 1);
    }

    void it_is_moved_scaled_turned_hatched_and_marked_as_a_path() {
        const ObjectPtr generated = samples::generated();
        DocumentState tools = samples::state({generated}, {0});
        DocumentState paths = samples::state({samples::object(shapeOf(generated).outline)}, {0});
        HatchSettings hatch;
        hatch.fills[0].Enable = true;
        hatch.fills[0].FillDist = 0.5;
        const std::vector<std::function<EditResult(const DocumentState&)>> all = {
            [](const DocumentState& s) { return edits::move(s, 3, -4); },
            [](const DocumentState& s) { return edits::scale(s, 2, 0.5, 1, 1); },
            [](const DocumentState& s) { return edits::setAngle(s, 33); },
            [](const DocumentState& s) { return edits::mirror(s, MirrorLeftRight); },
            [=](const DocumentState& s) { return edits::setHatch(s, hatch); },
            [](const DocumentState& s) { return edits::array(s, 2, 2, 40, 20); },
        };
        for (const auto& edit : all) {
            const EditResult a = edit(tools);
            const EditResult b = edit(paths);
            QVERIFY(a && b);
            tools = *a;
            paths = *b;
        }
        QCOMPARE(tools.count(), 4);
        QVERIFY(marked(tools).size() > 100);
        QCOMPARE(marked(tools), marked(paths));
        for (int i = 0; i < 4; ++i)
            QCOMPARE(shapeOf(tools.at(i)).parameters, QByteArray("r=5"));
    }

    void it_is_split_into_its_sides() {
        const DocumentState before = samples::state({samples::generated()}, {0});
        QVERIFY(edits::canSplitCurves(before));
        const EditResult after = edits::splitCurves(before);
        QVERIFY(after);
        QCOMPARE(after->count(), 3);
    }

    void other_parameters_keep_place_pen_hatch_and_name() {
        ObjectData data = samples::generated()->data();
        data.transform = QTransform(0, 2, -2, 0, 7, 8);
        data.pen = 4;
        data.angle = 90.0;
        data.name = "label";
        data.hatch.markFillFirst = true;
        GeneratedShape next = std::get<GeneratedShape>(data.shape);
        next.parameters = "r=6";
        next.outline.points[1] = {12, 0};
        const DocumentState before = samples::state({samples::point(0, 0), MarkObject::make(data)}, {1});
        const EditResult after = edits::setGenerated(before, 1, next);
        QVERIFY(after);
        const ObjectData& now = after->at(1)->data();
        QCOMPARE(shapeOf(after->at(1)).parameters, QByteArray("r=6"));
        QCOMPARE(shapeOf(after->at(1)).outline.points[1], QPointF(12, 0));
        QCOMPARE(now.transform, data.transform);
        QCOMPARE(now.pen, 4);
        QCOMPARE(now.angle, 90.0);
        QCOMPARE(now.name, QString("label"));
        QVERIFY(now.hatch.markFillFirst);
        QVERIFY(!edits::setGenerated(*after, 1, next)); // nothing new
        QVERIFY(!edits::setGenerated(before, 0, next)); // a point
        QVERIFY(!edits::setGenerated(before, 2, next)); // no object
        next.toolClass = "OtherTool";
        QVERIFY(!edits::setGenerated(before, 1, next));
    }

    void unsound_ones_are_refused_data() {
        QTest::addColumn<GeneratedShape>("shape");
        QTest::addColumn<QString>("fault");
        const GeneratedShape good = shapeOf(samples::generated());
        const auto row = [&](const char* name, auto change, const char* fault) {
            GeneratedShape shape = good;
            change(shape);
            QTest::newRow(name) << shape << QString(fault);
        };
        const char* noName = "the tool of an object has no usable name";
        row(
            "no class", [](GeneratedShape& s) { s.toolClass.clear(); }, noName);
        row(
            "long class", [](GeneratedShape& s) { s.toolClass = QString(201, 'x'); }, noName);
        row(
            "a class of ours", [](GeneratedShape& s) { s.toolClass = "MarkToolCombine"; }, noName);
        row(
            "the kind's own class", [](GeneratedShape& s) { s.toolClass = "MarkToolGenerated"; }, noName);
        row(
            "long parameters", [](GeneratedShape& s) { s.parameters = QByteArray(65537, 'x'); },
            "the parameters of an object are too long");
        row(
            "no outline", [](GeneratedShape& s) { s.outline = PathShape(); }, "a path is empty");
        row(
            "not a number",
            [](GeneratedShape& s) { s.outline.points[3].setX(std::numeric_limits<double>::quiet_NaN()); },
            "a coordinate is out of range");
        row(
            "infinite", [](GeneratedShape& s) { s.outline.points[3].setY(std::numeric_limits<double>::infinity()); },
            "a coordinate is out of range");
        row(
            "too many points",
            [](GeneratedShape& s) {
                for (int i = 0; i < kMaxGeneratedPoints; ++i)
                    s.outline.lineTo({double(i), 0});
            },
            "the outline of an object has too many points");
        row(
            "too many verbs",
            [](GeneratedShape& s) { s.outline.verbs.fill(PathVerb::Close, 2 * kMaxGeneratedPoints + 1); },
            "the outline of an object has too many points");
    }

    void unsound_ones_are_refused() {
        QFETCH(GeneratedShape, shape);
        QFETCH(QString, fault);
        QCOMPARE(faultOf(shape), fault);
    }

    void the_limits_themselves_are_taken() {
        GeneratedShape shape = shapeOf(samples::generated());
        shape.toolClass = QString(200, 'x');
        shape.parameters = QByteArray(65536, '\0');
        shape.outline = PathShape();
        shape.outline.moveTo({0, 0});
        for (int i = 1; i < kMaxGeneratedPoints; ++i)
            shape.outline.lineTo({i % 100 / 10.0, i / 1000.0});
        QCOMPARE(faultOf(shape), QString());
        DocumentContent content;
        content.objects = std::make_shared<const ObjectList>(ObjectList{samples::object(shape)});
        const QByteArray bytes = *encodeMkf(content);
        const auto read = decodeMkf(bytes, nullptr);
        QVERIFY(read);
        QCOMPARE(*encodeMkf(*read), bytes);
    }

    void whatever_a_module_throws_counts_data() {
        QTest::addColumn<std::function<void()>>("call");
        QTest::addColumn<QString>("told");
        const auto row = [](const char* name, std::function<void()> call, const char* told) {
            QTest::newRow(name) << call << QString(told);
        };
        row(
            "nothing", [] {}, "");
        row(
            "an exception", [] { throw std::runtime_error("outline"); }, "outline");
        row(
            "an exception without words", [] { throw std::runtime_error(""); }, "threw something unknown");
        row(
            "a number", [] { throw 42; }, "threw something unknown");
    }

    void whatever_a_module_throws_counts() {
        QFETCH(std::function<void()>, call);
        QTEST(thrownBy(call), "told");
    }

    void an_outline_becomes_a_path_on_request() {
        ObjectData data = samples::generated()->data();
        data.transform = QTransform(2, 0, 0, 2, 5, 5);
        data.angle = 30.0;
        data.pen = 3;
        const ObjectPtr object = MarkObject::make(data);
        const EditResult after = edits::toPath(samples::state({object}, {0}), 0);
        QVERIFY(after);
        QCOMPARE(int(after->at(0)->kind()), int(ObjectKind::Path));
        QCOMPARE(after->at(0)->bounds().maxX, object->bounds().maxX);
        QCOMPARE(after->at(0)->bounds().minY, object->bounds().minY);
        QCOMPARE(after->at(0)->pen(), 3);
        QCOMPARE(after->at(0)->angle(), 30.0);
        QCOMPARE(after->selection.ordered(), QList<int>({0}));
    }

    void every_outline_becomes_a_path_but_paths_points_and_groups() {
        const ObjectList objects = samples::everyKind();
        const DocumentState state = samples::state(objects, {});
        for (int i = 0; i < state.count(); ++i) {
            const ObjectKind kind = objects[size_t(i)]->kind();
            const bool stays = kind == ObjectKind::Point || kind == ObjectKind::Group || kind == ObjectKind::Path ||
                               kind == ObjectKind::Polyline;
            const EditResult after = edits::toPath(state, i);
            QCOMPARE(after.has_value(), !stays);
            if (!after)
                continue;
            const Box a = after->at(i)->bounds();
            const Box b = objects[size_t(i)]->bounds();
            for (const double away : {a.minX - b.minX, a.minY - b.minY, a.maxX - b.maxX, a.maxY - b.maxY})
                QVERIFY(qAbs(away) < 1e-4);
        }
        QVERIFY(!edits::toPath(state, -1));
        QVERIFY(!edits::toPath(state, state.count()));
    }
};

QTEST_APPLESS_MAIN(GeneratedTest)
#include "tst_generated.moc"

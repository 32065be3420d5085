// SPDX-License-Identifier: MIT
// Objects of tool modules in the view: placed, edited, without their module.
#include "../view/viewfixture.h"
#include "engine/externmodules.h"
#include "engine/marktool.h"
#include "simengine/document/mkfcodec.h"
#include "simengine/view/generateddialog.h"
#include "simengine/view/generatedplacetool.h"
#include "support/logtexts.h"
#include "support/waitfor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>

using namespace sim;
using tests::ViewFixture;

namespace {

/// A view whose operator places what a tool makes, as the tool bar of the window arranges it.
class Placing : public ViewFixture {
public:
    explicit Placing(const char* className, const char* badModule = nullptr) {
        if (badModule) {
            QDir(root.path()).mkpath("MarkToolModules");
            QFile::copy(QStringLiteral(BAD_MODULES "/%1.so").arg(badModule), root.path("MarkToolModules/bad.so"));
        }
        LoadExternToolModules();
        choose(className);
    }
    ~Placing() {
        view.SetOperatorOnView(OperatorSelect);
        FreeExternModules();
    }
    void choose(const char* className) {
        view.SetOperatorOnView(OperatorAddPluginTool);
        for (IMarkToolModule* module : GetExternModules()) {
            IMarkToolBase* tool = nullptr;
            for (const MarkToolBaseInfo* info : module->GetToolInfos()) {
                if (info->GetToolClassName() == className)
                    tool = module->CreateTool(className);
            }
            if (tool)
                view.SetCurAddMarkTool(new MarkTool(tool));
        }
    }
    GeneratedShape shape(int index) { return std::get<GeneratedShape>(state()->at(index)->shape()); }
    QVector<double> values(int index) {
        return *GeneratedTool::ofClass(shape(index).toolClass)->read(shape(index).parameters);
    }
    GeneratedDialog* dialog() {
        for (auto* found : canvas().findChildren<GeneratedDialog*>()) {
            if (found->isVisible())
                return found;
        }
        return nullptr;
    }
    template<class Field>
    Field* field(int index) {
        auto* found = dialog()->findChild<Field*>(QStringLiteral("parameter%1").arg(index));
        if (!found)
            qFatal("no field %d", index);
        return found;
    }
    void press(const char* button) { QTest::mouseClick(dialog()->findChild<QPushButton*>(button), Qt::LeftButton); }
    using ViewFixture::press;
    void doubleClick(double x, double y) { QTest::mouseDClick(&canvas(), Qt::LeftButton, {}, pixel(x, y)); }
};

} // namespace

class PlacingTest : public QObject {
    Q_OBJECT

private:
    QTouchDevice* m_screen = nullptr;

private slots:
    void initTestCase() { m_screen = QTest::createTouchDevice(); }

    void a_drag_places_an_object_of_its_size() {
        Placing f("ToolPolygon");
        f.view.SetCurrentLayerWithOutChangeLayer(3);
        f.dragFromTo({-20, 10}, {-20, 22});
        QCOMPARE(f.state()->count(), 1);
        QCOMPARE(f.state()->at(0)->className(), QString("ToolPolygon"));
        QCOMPARE(f.state()->at(0)->pen(), 3);
        QVERIFY(qAbs(f.values(0)[1] - 12.0) < 0.11);
        QVERIFY(qAbs(f.bounds(0).center().x() + 20.0) < 0.11);
        QVERIFY(qAbs(f.bounds(0).maxY - 22.0) < 0.11);
        QCOMPARE(f.selected(), QList<int>({0}));
        // the operator stays, for the next one
        QCOMPARE(f.view.GetOperatorOnView(), OperatorAddPluginTool);
        f.dragFromTo({20, 0}, {25, 0});
        QCOMPARE(f.state()->count(), 2);
        QCOMPARE(f.undoSteps(), 2);
    }

    void a_finger_places_too() {
        Placing f("ToolStar");
        QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(0, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(10, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(20, 0), &f.canvas());
        QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(20, 0), &f.canvas());
        QCOMPARE(f.state()->count(), 1);
        QVERIFY(qAbs(f.values(0)[1] - 20.0) < 0.11);
    }

    void a_press_asks_and_places_what_was_entered() {
        Placing f("ToolSpiral");
        f.click(5, -5);
        QVERIFY(f.dialog());
        QCOMPARE(f.state()->count(), 0);
        f.field<QDoubleSpinBox>(0)->setValue(2.0);
        f.field<QDoubleSpinBox>(1)->setValue(0.5);
        f.field<QDoubleSpinBox>(2)->setValue(4.0);
        f.field<QCheckBox>(4)->setChecked(true);
        f.field<QComboBox>(5)->setCurrentIndex(2);
        f.press("pushButtonOK");
        QCOMPARE(f.state()->count(), 1);
        QCOMPARE(f.values(0), QVector<double>({2.0, 0.5, 4.0, 0.0, 1.0, 2.0}));
        QVERIFY(qAbs(f.bounds(0).center().x() - 5.0) < 0.5);
        // the next drag has the same numbers but for its size
        f.dragFromTo({-20, 0}, {-10, 0});
        QCOMPARE(f.values(1)[1], 0.5);
        QCOMPARE(f.values(1)[5], 2.0);
    }

    void a_press_that_is_not_confirmed_places_nothing() {
        Placing f("ToolPolygon");
        f.click(0, 0);
        QVERIFY(f.dialog());
        f.press("pushButtonCancel");
        QCOMPARE(f.state()->count(), 0);
    }

    void escape_and_the_right_button_end_a_drag() {
        Placing f("ToolPolygon");
        f.press(0, 0);
        f.drag(10, 0);
        QTest::keyClick(&f.view, Qt::Key_Escape);
        f.drag(20, 0);
        f.release(20, 0);
        QCOMPARE(f.state()->count(), 0);
        QVERIFY(!f.dialog());
        f.click(0, 0, {}, Qt::RightButton);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorSelect);
    }

    void nothing_is_placed_in_a_read_only_document() {
        Placing f("ToolPolygon");
        f.view.SetReadOnly(true);
        f.dragFromTo({0, 0}, {10, 0});
        f.click(0, 0);
        QVERIFY(!f.dialog());
        QCOMPARE(f.state()->count(), 0);
    }

    void another_tool_takes_the_place_of_the_first() {
        Placing f("ToolPolygon");
        f.choose("ToolStar");
        f.dragFromTo({0, 0}, {10, 0});
        QCOMPARE(f.state()->at(0)->className(), QString("ToolStar"));
    }

    void a_double_click_edits_the_parameters() {
        Placing f("ToolPolygon");
        f.dragFromTo({0, 0}, {10, 0});
        f.view.SetOperatorOnView(OperatorSelect);
        const auto before = f.state()->objects;
        f.doubleClick(10, 0);
        QVERIFY(f.dialog());
        f.field<QDoubleSpinBox>(0)->setValue(3);
        f.press("pushButtonOK");
        QCOMPARE(f.values(0)[0], 3.0);
        QCOMPARE(f.shape(0).outline.points.size(), 3);
        f.view.Undo();
        QCOMPARE(f.state()->objects, before);
        f.view.Redo();
        QCOMPARE(f.values(0)[0], 3.0);
    }

    void parameters_that_would_leave_the_field_are_told() {
        Placing f("ToolPolygon");
        f.dragFromTo({0, 0}, {10, 0});
        f.view.SetOperatorOnView(OperatorSelect);
        f.session().document().select({0});
        QVERIFY(f.session().document().edit([](const DocumentState& s) { return edits::move(s, 999'980.0, 0.0); }));
        const auto before = f.state()->objects;
        const auto told = [] { return tests::logTexts("operator").filter(QStringLiteral("不能修改对象")); };
        editGenerated(f.canvas(), f.state()->at(0));
        QVERIFY(f.dialog());
        f.field<QDoubleSpinBox>(1)->setValue(50.0);
        f.press("pushButtonOK");
        QCOMPARE(f.state()->objects, before);
        QCOMPARE(told().size(), 1);
    }

    void confirming_without_a_change_is_no_step() {
        Placing f("ToolPolygon");
        f.dragFromTo({0, 0}, {10.123, 7.77});
        f.view.SetOperatorOnView(OperatorSelect);
        const auto before = f.state()->objects;
        f.doubleClick(f.bounds(0).center().x() - 0.0, f.bounds(0).minY);
        if (!f.dialog())
            f.doubleClick(10.123, 7.77);
        QVERIFY(f.dialog());
        f.press("pushButtonOK");
        QCOMPARE(f.state()->objects, before);
    }

    void lengths_are_shown_as_they_are_marked() {
        Placing f("ToolPolygon");
        f.dragFromTo({0, 0}, {10, 0});
        f.view.SetOperatorOnView(OperatorSelect);
        f.session().document().select({0});
        QVERIFY(
            f.session().document().edit([](const DocumentState& s) { return edits::scale(s, 2.0, 2.0, 0.0, 0.0); }));
        const double own = f.values(0)[1];
        f.doubleClick(f.bounds(0).maxX, 0);
        QVERIFY(f.dialog());
        QVERIFY(qAbs(f.field<QDoubleSpinBox>(1)->value() - 2.0 * own) < 1e-3);
        f.field<QDoubleSpinBox>(1)->setValue(30.0);
        f.press("pushButtonOK");
        QVERIFY(qAbs(f.values(0)[1] - 15.0) < 1e-9);
        QVERIFY(qAbs(f.bounds(0).maxX - 30.0) < 0.01);
        QCOMPARE(generatedScale(QTransform(0, 3, -3, 0, 1, 1)), 3.0);
        QCOMPARE(generatedScale(QTransform(2, 0, 0, 3, 0, 0)), 1.0);
        QCOMPARE(generatedScale(QTransform(0, 0, 0, 0, 0, 0)), 1.0);
    }

    void hatch_copies_and_files_keep_the_parameters() {
        Placing f("ToolStar");
        f.dragFromTo({0, 0}, {10, 0});
        f.view.SetOperatorOnView(OperatorSelect);
        QVector<FillParam> fills(3);
        fills[0].Enable = true;
        fills[0].FillDist = 0.5;
        f.view.FillSelectedObj(fills, true, false, false);
        QVERIFY(f.state()->at(0)->hatch());
        f.session().copySelected();
        QVERIFY(f.session().paste());
        QCOMPARE(f.state()->count(), 2);
        QCOMPARE(f.values(1), f.values(0));
        QVERIFY(f.view.SaveDoc());
        QRulerView other(nullptr);
        other.SetFileName(f.view.GetFileName());
        QVERIFY(other.ReadDoc());
        const StatePtr read = QRulerViewAccess::session(other).state();
        QCOMPARE(read->count(), 2);
        QCOMPARE(std::get<GeneratedShape>(read->at(1)->shape()).parameters, f.shape(1).parameters);
        QVERIFY(std::get<GeneratedShape>(read->at(1)->shape()).outline.points == f.shape(1).outline.points);
    }

    void without_its_module_an_object_stays_and_is_not_edited() {
        Placing f("ToolPolygon");
        f.dragFromTo({0, 0}, {10, 0});
        f.view.SetOperatorOnView(OperatorSelect);
        f.session().document().select({0});
        FreeExternModules();
        const QByteArray bytes = *encodeMkf(f.session().document().content());
        f.doubleClick(10, 0);
        QVERIFY(!f.dialog());
        QVERIFY(tests::logTexts("operator").contains("没有该对象的工具模块,不能修改参数"));
        QCOMPARE(*encodeMkf(f.session().document().content()), bytes);
        QCOMPARE(f.state()->at(0)->className(), QString("ToolPolygon"));
        f.view.MoveSelectObjRelative(1.0, 0.0);
        QCOMPARE(f.shape(0).parameters,
                 std::get<GeneratedShape>((*decodeMkf(bytes, nullptr)->objects)[0]->shape()).parameters);
    }

    void parameters_of_an_unknown_version_are_not_edited() {
        Placing f("ToolPolygon");
        f.dragFromTo({0, 0}, {10, 0});
        f.view.SetOperatorOnView(OperatorSelect);
        GeneratedShape foreign = f.shape(0);
        foreign.parameters = "ToolPolygon of another maker";
        QVERIFY(f.session().addShape(foreign));
        QVERIFY(f.session().document().edit([](const DocumentState& s) {
            DocumentState only = s;
            only.selection = Selection({0}, s.count());
            return edits::removeSelected(only);
        }));
        f.doubleClick(10, 0);
        QVERIFY(!f.dialog());
        QCOMPARE(f.shape(0).parameters, foreign.parameters);
    }

    void presses_and_drags_draw_a_path() {
        Placing f("MarkToolPath");
        f.view.SetCurrentLayerWithOutChangeLayer(2);
        f.click(-40, 0);
        f.dragFromTo({0, 0}, {10, 10}); // pulls the handles
        f.click(40, 0);
        f.click(40, -40);
        QTest::keyClick(&f.view, Qt::Key_Return);
        QCOMPARE(f.state()->count(), 1);
        const auto path = std::get<PathShape>(f.state()->at(0)->shape());
        QCOMPARE(f.state()->at(0)->pen(), 2);
        const QVector<PathVerb> verbs = {PathVerb::Move, PathVerb::Cubic, PathVerb::Cubic, PathVerb::Line};
        QVERIFY(path.verbs == verbs);
        const QVector<QPointF> points = {{-40, 0}, {-40, 0}, {-10, -10}, {0, 0}, {10, 10}, {40, 0}, {40, 0}, {40, -40}};
        QCOMPARE(path.points.size(), points.size());
        for (int i = 0; i < points.size(); ++i)
            QVERIFY(QLineF(path.points[i], points[i]).length() < 0.15);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorAddPluginTool);
        QCOMPARE(f.undoSteps(), 1);
    }

    void a_press_on_the_first_node_closes_the_path() {
        Placing f("MarkToolPath");
        f.click(-20, 0);
        f.click(20, 0);
        f.click(0, 30);
        f.click(-20, 0);
        QCOMPARE(f.state()->count(), 1);
        const auto sharp = std::get<PathShape>(f.state()->at(0)->shape());
        QVERIFY(sharp.verbs == QVector<PathVerb>({PathVerb::Move, PathVerb::Line, PathVerb::Line, PathVerb::Close}));
        f.dragFromTo({-20, -30}, {-20, -20});
        f.click(20, -30);
        f.dragFromTo({-20, -30}, {-20, -25}); // the handle that comes back
        const auto round = std::get<PathShape>(f.state()->at(1)->shape());
        QVERIFY(round.verbs == QVector<PathVerb>({PathVerb::Move, PathVerb::Cubic, PathVerb::Cubic, PathVerb::Close}));
        QVERIFY(QLineF(round.points[5], QPointF(-20, -35)).length() < 0.15);
        QVERIFY(!shapeFault(Shape(round)));
    }

    void a_path_can_be_given_up_and_taken_back() {
        Placing f("MarkToolPath");
        f.click(-20, 0);
        f.click(20, 0);
        f.click(0, 30);
        QTest::keyClick(&f.view, Qt::Key_Backspace);
        f.click(20, 30);
        f.click(20, 30, {}, Qt::RightButton);
        QCOMPARE(std::get<PathShape>(f.state()->at(0)->shape()).points.size(), 3);
        f.click(0, 0);
        f.click(10, 0);
        QTest::keyClick(&f.view, Qt::Key_Escape);
        f.click(0, 0, {}, Qt::RightButton);
        QCOMPARE(f.state()->count(), 1);
        QCOMPARE(f.view.GetOperatorOnView(), OperatorSelect);
    }

    void one_node_is_no_path_and_read_only_documents_take_none() {
        Placing f("MarkToolPath");
        f.click(-20, 0);
        QTest::keyClick(&f.view, Qt::Key_Return);
        QCOMPARE(f.state()->count(), 0);
        f.view.SetReadOnly(true);
        f.click(-20, 0);
        f.click(20, 0);
        QTest::keyClick(&f.view, Qt::Key_Return);
        QCOMPARE(f.state()->count(), 0);
    }

    void fingers_draw_a_path() {
        Placing f("MarkToolPath");
        const auto touch = [&](const QPointF& from, const QPointF& to) {
            QTest::touchEvent(&f.canvas(), m_screen).press(0, f.pixel(from.x(), from.y()), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).move(0, f.pixel(to.x(), to.y()), &f.canvas());
            QTest::touchEvent(&f.canvas(), m_screen).release(0, f.pixel(to.x(), to.y()), &f.canvas());
        };
        touch({-30, 0}, {-20, 10});
        touch({20, 0}, {20, 0});
        touch({-30, 0}, {-30, 0}); // closes
        QCOMPARE(f.state()->count(), 1);
        QVERIFY(std::get<PathShape>(f.state()->at(0)->shape()).verbs.contains(PathVerb::Cubic));
    }

    void broken_tools_never_place_anything_data() {
        QTest::addColumn<bool>("places");
        for (const char* name : {"ThrowsTable", "NanTable", "ThrowsOutline", "NanOutline", "ManyPoints", "ManyStrokes",
                                 "NoOutline", "ThrowsWrite", "LongWrite", "OtherClass", "ThrowsClass", "NullCreate",
                                 "ThrowsCreate", "NoGeometry", "MarkToolCombine"})
            QTest::newRow(name) << false;
        for (const char* name : {"GoodSquare", "ThrowsRead", "ThrowsPlace", "NanPlace"})
            QTest::newRow(name) << true;
    }

    void broken_tools_never_place_anything() {
        QFETCH(bool, places);
        Placing f(QTest::currentDataTag(), "modules_badtools");
        f.dragFromTo({0, 0}, {20, 10});
        QCOMPARE(f.state()->count(), places ? 1 : 0);
        f.click(-30, 0);
        if (f.dialog()) {
            QCOMPARE(f.dialog()->findChild<QPushButton*>("pushButtonOK")->isEnabled(), places);
            if (!places)
                QVERIFY(f.dialog()->findChild<QLabel*>("labelMessage")->text().startsWith("参数不能组成图形"));
            f.press("pushButtonCancel");
        }
    }
};

QTEST_MAIN(PlacingTest)
#include "tst_placing.moc"

// SPDX-License-Identifier: MIT
// The document view as the shell sees it.
#include "engine/markshapecontainer.h"
#include "engine/systemparam.h"
#include "engine/vzlistviewex.h"
#include "viewfixture.h"

using namespace sim;
using tests::ViewFixture;

class tst_RulerView : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QRulerView::Init(); }

    void bare_names_are_completed_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        QTest::newRow("bare") << "plate"
                              << "/MarkFile/plate.mkf";
        QTest::newRow("with ending") << "plate.mkf"
                                     << "/MarkFile/plate.mkf";
        QTest::newRow("dotted") << "plate.v2"
                                << "/MarkFile/plate.v2.mkf";
    }
    void bare_names_are_completed() {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        ViewFixture f;
        f.view.SetFileName(name);
        QCOMPARE(f.view.GetFileName(), name);
        QVERIFY(f.view.SaveDoc());
        QVERIFY(f.root.exists(expected));
    }

    void paths_are_taken_as_they_are() {
        ViewFixture f;
        const QString path = f.root.path("/else/where.mkf");
        f.view.SetFileName(path);
        QCOMPARE(f.view.GetFileName(), path);
        QVERIFY(f.view.SaveDoc());
        QVERIFY(f.root.exists("/else/where.mkf"));
    }

    void pushed_documents_are_read_and_renamed() {
        ViewFixture f;
        f.addRect(1, 2, 3, 4);
        f.view.SetFileName(f.root.path("/MarkFile/pushed.mkf"));
        QVERIFY(f.view.SaveDoc());
        QRulerView other(nullptr);
        QVERIFY(other.ReadDoc(f.root.path("/MarkFile/pushed.mkf"), "kept"));
        QCOMPARE(other.GetFileName(), QString("kept"));
        QCOMPARE(QRulerViewAccess::session(other).state()->count(), 1);
        QVERIFY(other.SaveDoc());
        QVERIFY(f.root.exists("/MarkFile/kept.mkf"));
        QVERIFY(!other.ReadDoc(f.root.path("/MarkFile/missing.mkf"), "lost"));
        QCOMPARE(other.GetFileName(), QString("kept"));
        QCOMPARE(QRulerViewAccess::session(other).state()->count(), 1);
    }

    void saved_documents_come_back() {
        ViewFixture f;
        f.addRect(1, 2, 3, 4, 5);
        QVERIFY(f.view.SaveDoc());
        QVERIFY(f.root.exists("/MarkFile/drawing.mkf"));
        QRulerView other(nullptr);
        other.SetFileName("drawing");
        QVERIFY(other.ReadDoc());
        QCOMPARE(QRulerViewAccess::session(other).state()->count(), 1);
        QCOMPARE(other.GetToolLayer(0), 5);
        bool redo = true, undo = true;
        other.RedoUndoStatus(redo, undo);
        QVERIFY(!redo && !undo);
    }

    void missing_and_damaged_files_leave_the_document() {
        ViewFixture f;
        f.addRect(1, 2, 3, 4);
        f.view.SetFileName("nothing");
        QVERIFY(!f.view.ReadDoc());
        QVERIFY(f.root.write("/MarkFile/damaged.mkf", "not a document"));
        f.view.SetFileName("damaged");
        QVERIFY(!f.view.ReadDoc());
        QCOMPARE(f.state()->count(), 1);
    }

    void closing_is_told_with_the_path() {
        tests::TemporaryRoot root;
        auto view = std::make_unique<QRulerView>(nullptr);
        view->SetFileName("plate");
        QSignalSpy spy(view.get(), &QRulerView::SubWndClosed);
        view.reset();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.first().first().toString(), QString("plate"));
    }

    void at_exit_closing_is_not_told() {
        tests::TemporaryRoot root;
        auto view = std::make_unique<QRulerView>(nullptr);
        QSignalSpy spy(view.get(), &QRulerView::SubWndClosed);
        view->m_bExitClear = false;
        view.reset();
        QCOMPARE(spy.count(), 0);
    }

    void the_object_list_goes_with_the_view_wherever_it_is() {
        tests::TemporaryRoot root;
        QWidget panel;
        QPointer<QWidget> list;
        {
            QRulerView view(nullptr);
            list = view.GetShowObjList();
            list->setParent(&panel);
            QVERIFY(list != view.GetObjListView());
            QVERIFY(list->isHidden());
            QVERIFY(list->isAncestorOf(view.GetObjListView()));
        }
        QVERIFY(list.isNull());
        // And the other way round: the panel may go first.
        auto holder = std::make_unique<QWidget>();
        QRulerView view(nullptr);
        view.GetObjListView()->setParent(holder.get());
        holder.reset();
        QVERIFY(!view.GetObjListView());
        QVERIFY(QRulerViewAccess::session(view).addShape(PointShape{{1, 1}, -1.0}));
    }

    void selection_is_told_with_its_place() {
        ViewFixture f;
        f.addRect(0, 0, 10, 20);
        f.view.SetBasePoint(BasePointBottomLeft);
        QSignalSpy spy(&f.view, &QRulerView::SelectChanged);
        f.session().document().select({0});
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.first(), QVariantList({0.0, 0.0, 10.0, 20.0, 0.0, 1, 1}));
        spy.clear();
        f.session().document().select({});
        QCOMPARE(spy.count(), 1);
        QVERIFY(spy.first().at(4).toDouble() > 180.0);
        QCOMPARE(spy.first().at(5).toInt(), 0);
        QCOMPARE(spy.first().at(6).toInt(), -1);
    }

    void base_point_is_where_the_position_is_measured_data() {
        QTest::addColumn<int>("base");
        QTest::addColumn<QPointF>("place");
        const QPointF places[] = {{0, 20}, {5, 20}, {10, 20}, {0, 10}, {5, 10}, {10, 10}, {0, 0}, {5, 0}, {10, 0}};
        for (int i = 0; i < 9; ++i)
            QTest::newRow(qPrintable(QString::number(i))) << i << places[i];
    }
    void base_point_is_where_the_position_is_measured() {
        QFETCH(int, base);
        QFETCH(QPointF, place);
        ViewFixture f;
        f.addRect(0, 0, 10, 20);
        f.session().document().select({0});
        f.view.SetBasePoint(static_cast<BasePoint>(base));
        double x = 0, y = 0, width = 0, height = 0, angle = 0;
        QVERIFY(f.view.GetSelectObjPos(x, y, width, height, angle));
        QCOMPARE(QPointF(x, y), place);
        QCOMPARE(width, 10.0);
        QCOMPARE(height, 20.0);
    }

    void an_empty_selection_has_an_angle_above_180() {
        ViewFixture f;
        double x = 9, y = 9, width = 9, height = 9, angle = 9;
        QVERIFY(f.view.GetSelectObjPos(x, y, width, height, angle));
        QVERIFY(angle > 180.0);
        QCOMPARE(x + y + width + height, 0.0);
        QCOMPARE(f.view.GetFirstSelectedToolIndex(), -1);
        QCOMPARE(f.view.GetSelectObjWorkType(), -1);
        QCOMPARE(f.view.GetToolLayer(0), -1);
    }

    void different_angles_are_below_minus_180() {
        ViewFixture f;
        f.addRect(0, 0, 10, 20);
        f.addRect(30, 0, 10, 20);
        f.session().document().select({0});
        f.view.ChangeSelectedObjAngle(30.0);
        f.session().document().selectAll();
        double x = 0, y = 0, width = 0, height = 0, angle = 0;
        QVERIFY(f.view.GetSelectObjPos(x, y, width, height, angle));
        QVERIFY(angle < -180.0);
    }

    void steps_are_told_when_they_change() {
        ViewFixture f;
        QSignalSpy spy(&f.view, &QRulerView::RedoUnDo);
        f.addRect(0, 0, 10, 20);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.takeFirst(), QVariantList({false, true}));
        f.addRect(0, 0, 10, 20);
        QCOMPARE(spy.count(), 0);
        f.view.Undo();
        QCOMPARE(spy.takeFirst(), QVariantList({true, true}));
        f.view.Undo();
        QCOMPARE(spy.takeFirst(), QVariantList({true, false}));
        f.view.Redo();
        QCOMPARE(spy.takeFirst(), QVariantList({true, true}));
    }

    void edits_of_the_panel_are_one_step_each() {
        ViewFixture f;
        f.addRect(10, 10, 20, 10);
        f.session().document().select({0});
        f.view.MoveSelectObjRelative(5, -5);
        QCOMPARE(f.bounds(0).minX, 15.0);
        f.view.ScaleSelectedObj(2.0, 1.0, 15.0, 5.0);
        QCOMPARE(f.bounds(0).maxX, 55.0);
        f.view.MoveSelected2Center();
        QCOMPARE(f.bounds(0).center(), f.canvas().fieldMm().center());
        f.view.ChangeSelectedObjAngle(90.0);
        QVERIFY(qAbs(f.bounds(0).height() - 40.0) < 1e-9);
        f.view.MirrorSelectObj(MirrorTopBottom);
        f.view.SetSelectObjWorkType(0);
        QCOMPARE(f.view.GetSelectObjWorkType(), 0);
        f.view.SetCurrentLayer(9);
        QCOMPARE(f.view.GetToolLayer(0), 9);
        QCOMPARE(f.undoSteps(), 8);
    }

    void pen_of_new_objects_alone() {
        ViewFixture f;
        f.addRect(0, 0, 5, 5, 2);
        f.session().document().select({0});
        f.view.SetCurrentLayerWithOutChangeLayer(6);
        QCOMPARE(f.view.GetToolLayer(0), 2);
        QCOMPARE(f.view.GetCurrentLayer(), 6);
        f.view.SetCurrentLayer(20);
        QCOMPARE(f.view.GetCurrentLayer(), 6);
    }

    void groups_curves_and_alignment() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.addRect(30, 5, 20, 10);
        f.session().document().selectAll();
        QVERIFY(!f.view.CanUnCombine());
        f.view.AlignBottom();
        QCOMPARE(f.bounds(0).minY, f.bounds(1).minY);
        f.view.SameSelectedWidth();
        QCOMPARE(f.bounds(0).width(), f.bounds(1).width());
        f.view.Combine();
        QCOMPARE(f.state()->count(), 1);
        QVERIFY(f.view.CanUnCombine());
        f.view.UnCombine();
        QCOMPARE(f.state()->count(), 2);
        QVERIFY(f.view.CanCombineCurve());
        f.view.CombineCurve();
        QCOMPARE(f.state()->count(), 1);
        QVERIFY(f.view.CanSplit());
        f.view.UnCombineLine();
        QCOMPARE(f.state()->count(), 2);
    }

    void fills_reach_the_objects() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.session().document().select({0});
        QVector<FillParam> fills(kFillCount);
        fills[1].Enable = true;
        fills[1].FillDist = 0.25;
        f.view.FillSelectedObj(fills, false, true, true);
        const HatchSettings hatch = f.state()->at(0)->data().hatch;
        QVERIFY(hatch.fills[1].Enable);
        QCOMPARE(hatch.fills[1].FillDist, 0.25);
        QVERIFY(!hatch.enableEdge && hatch.markFillFirst && hatch.showSimple);
    }

    void buttons_zoom_about_the_middle() {
        ViewFixture f;
        const QPointF center = f.canvas().viewTransform().center();
        const double scale = f.canvas().viewTransform().scale();
        f.view.Enlarge(true);
        QVERIFY(f.canvas().viewTransform().scale() > scale);
        QVERIFY(QLineF(f.canvas().viewTransform().center(), center).length() < 1e-9);
        f.view.Enlarge(false);
        QVERIFY(qAbs(f.canvas().viewTransform().scale() - scale) < 1e-9);
    }

    void zoom_to_the_selection() {
        ViewFixture f;
        f.addRect(30, 20, 4, 2);
        f.view.ScaleSelectObjRegion();
        QCOMPARE(f.canvas().viewTransform().scale(), 5.0);
        f.session().document().select({0});
        f.view.ScaleSelectObjRegion();
        QVERIFY(f.canvas().viewTransform().scale() > 50.0);
        QCOMPARE(f.canvas().viewTransform().center(), QPointF(32, 21));
        f.view.ResetView();
        QVERIFY(f.canvas().viewTransform().visibleMm().contains(f.canvas().fieldMm()));
    }

    void the_field_stays_fitted_until_the_view_is_moved() {
        tests::TemporaryRoot root;
        QRulerView view(nullptr);
        view.show();
        auto& canvas = QRulerViewAccess::canvas(view);
        view.resize(1024, 600);
        QVERIFY(canvas.viewTransform().visibleMm().contains(canvas.fieldMm()));
        view.resize(400, 300);
        QVERIFY(canvas.viewTransform().visibleMm().contains(canvas.fieldMm()));
        canvas.zoomAbout({10, 10}, 2.0);
        const double scale = canvas.viewTransform().scale();
        view.resize(1024, 600);
        QCOMPARE(canvas.viewTransform().scale(), scale);
    }

    void drawings_are_imported_centred_as_one_step() {
        ViewFixture f;
        QVERIFY(f.root.write("/two.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='40mm' height='20mm'"
                                         " viewBox='0 0 40 20'><rect x='1' y='1' width='38' height='18' fill='none'"
                                         " stroke='#000'/><circle cx='20' cy='10' r='5' fill='none'"
                                         " stroke='#f00'/></svg>"));
        QString report = "left over";
        QVERIFY(f.view.ImportVectorFile(f.root.path("/two.svg"), report));
        QVERIFY(report.startsWith(QStringLiteral("导入对象: 2\n")));
        QCOMPARE(f.state()->count(), 2);
        QCOMPARE(f.view.GetSelectedToolCnt(), 2);
        const QPointF middle = f.canvas().fieldMm().center();
        QVERIFY(QLineF(selectionBounds(*f.state()).center(), middle).length() < 1e-6);
        QVERIFY(qAbs(f.bounds(0).width() - 38.0) < 1e-6);
        QCOMPARE(f.view.GetToolLayer(1), 1);
        int objects = 0, vertices = 0;
        f.view.GetDocStatistics(objects, vertices);
        QCOMPARE(objects, 2);
        QVERIFY(vertices > 5 + 8);
        QCOMPARE(f.undoSteps(), 1);
    }

    void refused_imports_tell_why_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("no drawing") << QByteArray("no drawing at all");
        QTest::newRow("empty drawing") << QByteArray(
            "<svg xmlns='http://www.w3.org/2000/svg' width='4mm' height='4mm' viewBox='0 0 4 4'></svg>");
    }
    void refused_imports_tell_why() {
        QFETCH(QByteArray, content);
        ViewFixture f;
        QVERIFY(f.root.write("/refused.svg", content));
        QString error;
        QVERIFY(!f.view.ImportVectorFile(f.root.path("/refused.svg"), error));
        QVERIFY(!error.isEmpty());
        QVERIFY(!f.view.ImportVectorFile(f.root.path("/missing.svg"), error));
        QVERIFY(!error.isEmpty());
        QCOMPARE(f.state()->count(), 0);
    }

    void changes_on_another_thread_are_told_on_the_main_one() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.session().document().select({0});
        QSignalSpy spy(&f.view, &QRulerView::SelectChanged);
        QThread* told = nullptr;
        connect(&f.view, &QRulerView::SelectChanged, this, [&] { told = QThread::currentThread(); });
        std::unique_ptr<QThread> worker(QThread::create(
            [&] { f.session().document().edit([](const DocumentState& state) { return edits::move(state, 1, 1); }); }));
        worker->start();
        QVERIFY(worker->wait(5000));
        QTRY_COMPARE(spy.count(), 1);
        QCOMPARE(told, QThread::currentThread());
    }
};

QTEST_MAIN(tst_RulerView)
#include "tst_rulerview.moc"

// SPDX-License-Identifier: MIT
// The list of objects beside the drawing.
#include "engine/vzlistviewex.h"
#include "viewfixture.h"

using namespace sim;
using tests::ViewFixture;

class tst_ObjectList : public QObject {
    Q_OBJECT

private:
    static QList<int> rows(VZListViewEx* list) {
        QList<int> found;
        for (const QModelIndex& index : list->selectionModel()->selectedIndexes())
            found << index.row();
        std::sort(found.begin(), found.end());
        return found;
    }
    static QList<double> places(ViewFixture& f) {
        QList<double> found;
        for (const ObjectPtr& object : *f.state()->objects)
            found << object->bounds().minX;
        return found;
    }
    static void fill(ViewFixture& f, int count) {
        for (int i = 0; i < count; ++i)
            f.addRect(i * 10.0, 0, 5, 5, i);
    }

private slots:
    void rows_name_number_and_kind() {
        ViewFixture f;
        f.addRect(0, 0, 5, 5);
        f.addCircle(10, 10, 4);
        f.addLine(QPolygonF(QVector<QPointF>{{0, 0}, {5, 5}}));
        f.add(PointShape{{1, 1}, -1.0});
        QAbstractItemModel* model = f.view.GetObjListView()->model();
        QCOMPARE(model->rowCount(), 4);
        QStringList texts;
        for (int i = 0; i < 4; ++i)
            texts << model->index(i, 0).data().toString();
        QCOMPARE(texts, QStringList({"1  矩形", "2  圆形", "3  线", "4  点"}));
    }

    void signs_have_the_pen_colour() {
        ViewFixture f;
        LayerData pen;
        f.view.GetLayerParams()->GetLayerData(3, pen);
        pen.ColorR = 200;
        pen.ColorG = 10;
        pen.ColorB = 30;
        f.view.GetLayerParams()->SetLayerData(3, pen);
        f.addRect(0, 0, 5, 5, 3);
        const QIcon icon = f.view.GetObjListView()->model()->index(0, 0).data(Qt::DecorationRole).value<QIcon>();
        const QImage image = icon.pixmap(24, 24).toImage();
        const QColor drawn = image.pixelColor(12 * image.width() / 24, 6 * image.height() / 24 + 1);
        QVERIFY2(qAbs(drawn.red() - 200) + qAbs(drawn.green() - 10) + qAbs(drawn.blue() - 30) <= 6,
                 qPrintable(drawn.name()));
    }

    void rows_are_tall_enough_for_a_finger() {
        ViewFixture f;
        fill(f, 3);
        auto* list = f.view.GetObjListView();
        list->setParent(nullptr);
        list->resize(200, 400);
        list->show();
        QVERIFY(list->visualRect(list->model()->index(1, 0)).height() >= 40);
        list->hide();
    }

    void selection_of_the_document_shows_in_the_list() {
        ViewFixture f;
        fill(f, 6);
        auto* list = f.view.GetObjListView();
        f.session().document().select({4, 1, 2});
        QCOMPARE(rows(list), QList<int>({1, 2, 4}));
        f.session().document().select({});
        QCOMPARE(rows(list), QList<int>());
    }

    void selection_of_the_list_reaches_the_document_once() {
        ViewFixture f;
        fill(f, 6);
        auto* list = f.view.GetObjListView();
        QSignalSpy spy(&f.view, &QRulerView::SelectChanged);
        list->selectionModel()->select(list->model()->index(3, 0), QItemSelectionModel::ClearAndSelect);
        QCOMPARE(f.selected(), QList<int>({3}));
        QCOMPARE(spy.count(), 1);
        list->selectionModel()->select(list->model()->index(1, 0), QItemSelectionModel::Select);
        QCOMPARE(f.selected(), QList<int>({3, 1}));
        list->selectionModel()->select(list->model()->index(3, 0), QItemSelectionModel::Deselect);
        QCOMPARE(f.selected(), QList<int>({1}));
        QCOMPARE(spy.count(), 3);
    }

    void rows_follow_edits_and_undo() {
        ViewFixture f;
        fill(f, 5);
        auto* list = f.view.GetObjListView();
        f.session().document().select({1, 3});
        f.session().removeSelected();
        QCOMPARE(list->model()->rowCount(), 3);
        f.view.Undo();
        QCOMPARE(list->model()->rowCount(), 5);
        QCOMPARE(rows(list), f.state()->selection.ascending());
        QCOMPARE(list->selectionModel()->selectedIndexes().size(), f.view.GetSelectedToolCnt());
    }

    void order_moves_are_steps_of_undo_data() {
        QTest::addColumn<QString>("move");
        QTest::addColumn<QList<double>>("order");
        QTest::newRow("up") << "up" << QList<double>({0, 20, 10, 30});
        QTest::newRow("down") << "down" << QList<double>({0, 10, 30, 20});
        QTest::newRow("first") << "first" << QList<double>({20, 0, 10, 30});
        QTest::newRow("last") << "last" << QList<double>({0, 10, 30, 20});
    }
    void order_moves_are_steps_of_undo() {
        QFETCH(QString, move);
        QFETCH(QList<double>, order);
        ViewFixture f;
        fill(f, 4);
        f.session().document().select({2});
        auto* list = f.view.GetObjListView();
        const QMap<QString, void (VZListViewEx::*)()> moves{{"up", &VZListViewEx::MoveObjUp},
                                                            {"down", &VZListViewEx::MoveObjDown},
                                                            {"first", &VZListViewEx::MoveObj2First},
                                                            {"last", &VZListViewEx::MoveObj2Last}};
        QVERIFY(moves.contains(move));
        (list->*moves.value(move))();
        QCOMPARE(places(f), order);
        QCOMPARE(rows(list), QList<int>({order.indexOf(20)}));
        f.view.Undo();
        QCOMPARE(places(f), QList<double>({0, 10, 20, 30}));
    }

    void order_moves_leave_a_read_only_document_alone() {
        ViewFixture f;
        fill(f, 2);
        f.session().document().select({1});
        f.view.SetReadOnly(true);
        f.view.GetObjListView()->MoveObjUp();
        QCOMPARE(places(f), QList<double>({0, 10}));
    }

    void switches_are_drawn_anew_when_the_document_is_locked() {
        ViewFixture f;
        fill(f, 2);
        QAbstractItemModel* rows = f.view.GetObjListView()->model();
        QSignalSpy drawn(rows, &QAbstractItemModel::dataChanged);
        for (bool locked : {true, false}) {
            f.view.SetReadOnly(locked);
            QCOMPARE(drawn.count(), 1);
            const QList<QVariant> range = drawn.takeFirst();
            QCOMPARE(range.at(0).toModelIndex().row(), 0);
            QCOMPARE(range.at(1).toModelIndex().row(), 1);
            QCOMPARE(bool(rows->flags(rows->index(0, 0)) & Qt::ItemIsUserCheckable), !locked);
            f.view.SetReadOnly(locked);
            QCOMPARE(drawn.count(), 0);
        }
    }

    void a_tap_on_the_switch_turns_the_work_type() {
        ViewFixture f;
        fill(f, 3);
        f.session().document().select({0});
        auto* list = f.view.GetObjListView();
        list->setParent(nullptr);
        list->resize(200, 400);
        list->show();
        const QRect row = list->visualRect(list->model()->index(2, 0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(row.right() - 24, row.center().y()));
        QVERIFY(!f.state()->at(2)->works());
        QVERIFY(f.state()->at(0)->works());
        f.view.Undo();
        QVERIFY(f.state()->at(2)->works());
        // A tap on the name selects and switches nothing.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(row.left() + 60, row.center().y()));
        QVERIFY(f.state()->at(2)->works());
        QCOMPARE(f.selected(), QList<int>({2}));
        list->hide();
    }

    void switching_an_object_keeps_the_selection() {
        ViewFixture f;
        fill(f, 3);
        f.session().document().select({2, 0});
        QAbstractItemModel* model = f.view.GetObjListView()->model();
        QVERIFY(model->setData(model->index(1, 0), Qt::Unchecked, Qt::CheckStateRole));
        QVERIFY(!f.state()->at(1)->works());
        QCOMPARE(f.selected(), QList<int>({2, 0}));
        f.view.SetReadOnly(true);
        QVERIFY(!model->setData(model->index(1, 0), Qt::Checked, Qt::CheckStateRole));
        QVERIFY(!(model->flags(model->index(1, 0)) & Qt::ItemIsUserCheckable));
    }
};

QTEST_MAIN(tst_ObjectList)
#include "tst_objectlist.moc"

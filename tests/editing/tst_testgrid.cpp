// SPDX-License-Identifier: MIT
#include "editing/testgrid.h"
#include "engine/marktool.h"
#include "tests/editing/penpanel.h"

#include <QLabel>
#include <QSpinBox>

using namespace tests;
using namespace tessera;

namespace {

const QRectF kField(-55.0, -55.0, 110.0, 110.0);

} // namespace

/// The matrix of squares with which a material is tried out.
class TestGridTest : public QObject {
    Q_OBJECT

private slots:
    void values_run_from_end_to_end_data();
    void values_run_from_end_to_end();
    void free_pens_are_those_without_objects();
    void a_grid_that_does_not_fit_is_told_data();
    void a_grid_that_does_not_fit_is_told();
    void every_square_has_its_own_pen_and_values();
    void squares_and_labels_keep_apart_and_inside();
    void the_button_draws_it_in_one_step();
    void pens_in_use_are_left_alone();
    void the_dialog_tells_too_few_pens_and_draws_nothing();
    void a_read_only_document_keeps_its_pens();
    void used_pens_are_found_in_groups_and_hatches();
};

void TestGridTest::values_run_from_end_to_end_data() {
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<int>("count");
    QTest::addColumn<QVector<double>>("values");
    QTest::newRow("one") << 5.0 << 9.0 << 1 << QVector<double>{5.0};
    QTest::newRow("two") << 5.0 << 9.0 << 2 << QVector<double>{5.0, 9.0};
    QTest::newRow("up") << 20.0 << 80.0 << 4 << QVector<double>{20.0, 40.0, 60.0, 80.0};
    QTest::newRow("down") << 30.0 << 10.0 << 3 << QVector<double>{30.0, 20.0, 10.0};
}

void TestGridTest::values_run_from_end_to_end() {
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(int, count);
    QTEST(GridValues({GridQuantity::Power, from, to, count}), "values");
}

void TestGridTest::free_pens_are_those_without_objects() {
    QCOMPARE(FreePens({}, 0).size(), 19);
    QVERIFY(!FreePens({}, 0).contains(0));
    const QList<int> free = FreePens({1, 2, 19}, 5);
    QCOMPARE(free.size(), 16);
    for (int pen : {1, 2, 5, 19})
        QVERIFY(!free.contains(pen));
}

void TestGridTest::a_grid_that_does_not_fit_is_told_data() {
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("rows");
    QTest::addColumn<double>("size");
    QTest::addColumn<int>("rowQuantity");
    QTest::addColumn<int>("freePens");
    QTest::addColumn<int>("fault");
    const int speed = int(GridQuantity::MarkSpeed);
    QTest::newRow("fits") << 4 << 4 << 8.0 << speed << 19 << int(GridFault::None);
    QTest::newRow("all pens") << 19 << 1 << 2.0 << speed << 19 << int(GridFault::None);
    QTest::newRow("a pen too few") << 4 << 5 << 8.0 << speed << 19 << int(GridFault::TooFewPens);
    QTest::newRow("pens in use") << 4 << 4 << 8.0 << speed << 15 << int(GridFault::TooFewPens);
    QTest::newRow("too large") << 4 << 4 << 30.0 << speed << 19 << int(GridFault::TooLarge);
    QTest::newRow("power twice") << 4 << 4 << 8.0 << int(GridQuantity::Power) << 19 << int(GridFault::SameQuantity);
}

void TestGridTest::a_grid_that_does_not_fit_is_told() {
    QFETCH(int, columns);
    QFETCH(int, rows);
    QFETCH(double, size);
    QFETCH(int, rowQuantity);
    QFETCH(int, freePens);
    TestGrid grid;
    grid.columns.count = columns;
    grid.rows.count = rows;
    grid.rows.quantity = static_cast<GridQuantity>(rowQuantity);
    grid.size = size;
    QTEST(int(CheckGrid(grid, freePens, kField)), "fault");
}

void TestGridTest::every_square_has_its_own_pen_and_values() {
    TestGrid grid;
    grid.rows = {GridQuantity::Frequency, 10.0, 30.0, 3};
    LayerData model;
    model.JumpSpeed = 4321.0;
    model.UseDefault = true;
    const QList<int> free = FreePens({3}, 0);
    const GridDrawing drawing = DrawGrid(grid, model, free, 0, kField);
    QCOMPARE(drawing.squares.size(), 12);
    QCOMPARE(drawing.labels.size(), 7);
    QVector<double> powers{20.0, 40.0, 60.0, 80.0};
    for (int i = 0; i < 12; ++i) {
        QCOMPARE(drawing.squares[i].layer, free[i]);
        QCOMPARE(drawing.layers[i], free[i]);
        QCOMPARE(drawing.squares[i].fills.value(0).FillLayer, free[i]);
        QVERIFY(drawing.squares[i].fills.value(0).Enable);
        QCOMPARE(drawing.pens[i].Power, powers[i % 4]);
        QCOMPARE(drawing.pens[i].Fre, 10.0 * (1 + i / 4));
        QCOMPARE(drawing.pens[i].JumpSpeed, 4321.0);
        QVERIFY2(!drawing.pens[i].UseDefault, "or its own values would not be marked");
    }
    QStringList labels;
    for (DrawnText const& label : drawing.labels) {
        labels.append(label.text);
        QCOMPARE(label.layer, 0);
    }
    QCOMPARE(labels, QStringList({"20", "40", "60", "80", "10", "20", "30"}));
}

void TestGridTest::squares_and_labels_keep_apart_and_inside() {
    const GridDrawing drawing = DrawGrid(TestGrid(), LayerData(), FreePens({}, 0), 0, kField);
    for (int i = 0; i < drawing.squares.size(); ++i) {
        const QRectF square = drawing.squares[i].rect;
        QVERIFY(kField.contains(square));
        for (int k = 0; k < i; ++k)
            QVERIFY(!square.intersects(drawing.squares[k].rect));
        for (DrawnText const& label : drawing.labels) {
            QVERIFY(kField.contains(label.place));
            QVERIFY(!square.contains(label.place));
        }
    }
    // Columns to the right, rows downwards.
    QVERIFY(drawing.squares[1].rect.left() > drawing.squares[0].rect.right());
    QVERIFY(drawing.squares[4].rect.bottom() < drawing.squares[0].rect.top());
}

void TestGridTest::the_button_draws_it_in_one_step() {
    PenPanel panel;
    panel.show(2);
    const LayerData labelPen = panel.document.pen(2);
    DialogAnswerer answerer;
    answerer.press(QStringLiteral("pushButtonDraw"));
    panel.press("pushButtonTestGrid");
    QCOMPARE(answerer.titles(), QStringList(QStringLiteral("测试网格")));
    QVector<MarkTool*> tools = panel.document.view.GetMarkTools()->GetMarkTools();
    QCOMPARE(tools.size(), 24);
    QSet<int> layers;
    for (int i = 0; i < 16; ++i) {
        const int layer = panel.document.view.GetToolLayer(i);
        layers.insert(layer);
        QCOMPARE(tools[i]->GetTool()->GetToolClassName(), QStringLiteral("MarkToolRect"));
        QCOMPARE(panel.document.pen(layer).Power, 20.0 + 20.0 * (i % 4));
        QCOMPARE(panel.document.pen(layer).MarkSpeed, 200.0 + 200.0 * (i / 4));
    }
    QCOMPARE(layers.size(), 16);
    QVERIFY(!layers.contains(2));
    for (int i = 16; i < 24; ++i)
        QCOMPARE(panel.document.view.GetToolLayer(i), 2);
    QCOMPARE(panel.document.pen(2).Power, labelPen.Power);
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0, angle = 0.0;
    QCOMPARE(panel.document.view.GetSelectedToolCnt(), 24);
    QVERIFY(panel.document.view.GetSelectObjPos(x, y, width, height, angle));
    const QRectF field = SystemParam::Instance()->GetCanvasRect();
    QVERIFY(width < field.width() && height < field.height());
    panel.document.view.Undo();
    QCOMPARE(panel.document.view.GetMarkTools()->GetMarkTools().size(), 0);
    bool redo = false, undo = true;
    panel.document.view.RedoUndoStatus(redo, undo);
    QVERIFY(redo && !undo);
}

void TestGridTest::pens_in_use_are_left_alone() {
    PenPanel panel;
    panel.document.addRects({{10, 10, 5, 5}});
    panel.document.view.SetCurrentLayer(1);
    panel.show(0);
    const LayerData before = panel.document.pen(1);
    DialogAnswerer answerer;
    answerer.press(QStringLiteral("pushButtonDraw"));
    panel.press("pushButtonTestGrid");
    QVERIFY(answerer.allAnswered());
    QCOMPARE(panel.document.pen(1).Power, before.Power);
    QCOMPARE(panel.document.pen(1).MarkSpeed, before.MarkSpeed);
    int onPen = 0;
    for (int i = 0; i < panel.document.view.GetMarkTools()->GetMarkTools().size(); ++i)
        onPen += panel.document.view.GetToolLayer(i) == 1 ? 1 : 0;
    QCOMPARE(onPen, 1);
}

void TestGridTest::the_dialog_tells_too_few_pens_and_draws_nothing() {
    PenPanel panel;
    panel.show(0);
    QString told;
    bool enabled = true;
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [&](QWidget& dialog) {
            part<QSpinBox>(dialog, "spinBoxCountRows")->setValue(5);
            told = part<QLabel>(dialog, "labelState")->text();
            enabled = part<QPushButton>(dialog, "pushButtonDraw")->isEnabled();
        },
        QStringLiteral("pushButtonCancel"));
    panel.press("pushButtonTestGrid");
    QVERIFY(answerer.allAnswered());
    QCOMPARE(told, QStringLiteral("笔不够,需要/空闲: 20 / 19"));
    QVERIFY(!enabled);
    QCOMPARE(panel.document.view.GetMarkTools()->GetMarkTools().size(), 0);
}

void TestGridTest::a_read_only_document_keeps_its_pens() {
    PenPanel panel;
    panel.document.view.SetReadOnly(true);
    panel.show(0);
    const LayerData before = panel.document.pen(1);
    DialogAnswerer answerer;
    answerer.press(QStringLiteral("pushButtonDraw"));
    panel.press("pushButtonTestGrid");
    QVERIFY(answerer.allAnswered());
    QCOMPARE(panel.document.view.GetMarkTools()->GetMarkTools().size(), 0);
    QCOMPARE(panel.document.pen(1).Power, before.Power);
    QCOMPARE(logTexts("operator").size(), 1);
}

void TestGridTest::used_pens_are_found_in_groups_and_hatches() {
    DocumentFixture document;
    QCOMPARE(document.view.GetUsedLayers(), QList<int>());
    FillParam fill;
    fill.Enable = true;
    fill.FillLayer = 14;
    FillParam off;
    off.FillLayer = 9;
    QVERIFY(document.view.AddDrawing({{QRectF(0, 0, 5, 5), 3, {fill, off}}, {QRectF(9, 0, 5, 5), 7, {}}},
                                     {{QPointF(0, 20), QStringLiteral("A1"), 2.0, 11}}));
    QCOMPARE(document.view.GetUsedLayers(), QList<int>({3, 7, 11, 14}));
    document.view.Combine();
    QCOMPARE(document.view.GetUsedLayers(), QList<int>({3, 7, 11, 14}));
    QVERIFY2(!document.view.AddDrawing({{QRectF(0, 0, 5, 5), 20, {}}, {QRectF(0, 0, 5, 5), 1, {}}}, {}),
             "there is no such pen");
    QVERIFY(!document.view.AddDrawing({{QRectF(0, 0, 5, 5), 1, {}}}, {{QPointF(), QString(), 2.0, 0}}));
    QCOMPARE(document.view.GetUsedLayers(), QList<int>({3, 7, 11, 14}));
}

QTEST_MAIN(TestGridTest)
#include "tst_testgrid.moc"

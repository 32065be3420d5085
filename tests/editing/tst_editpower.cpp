// SPDX-License-Identifier: MIT
#include "editing/editpower.h"
#include "editing/listpfedit.h"
#include "engine/layerdata.h"
#include "tests/editing/editingfixture.h"

#include <QCheckBox>
#include <QLabel>
#include <QSignalSpy>
#include <QTouchDevice>
#include <QWheelEvent>
#include <array>
#include <cmath>

using namespace tests;

namespace {

using Curve = std::array<QPointF, kWavePointCount>;

/// A ramp that ends at 90 percent, and one that falls from 80.
Curve ramps() {
    Curve curve{};
    for (int i = 0; i < 10; ++i) {
        curve[std::size_t(i)] = QPointF(i + 1.0, 9.0 * (i + 1));
        curve[std::size_t(i + 10)] = QPointF(i + 0.5, 80.0 - 8.0 * i);
    }
    return curve;
}

QVector<QPointF> pointsOf(Curve const& curve) {
    return {curve.begin(), curve.end()};
}

void turnWheel(QWidget& widget, int delta) {
    const QPointF place(widget.rect().center());
    QWheelEvent event(place, widget.mapToGlobal(place.toPoint()), QPoint(), QPoint(0, delta), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

void move(QWidget& widget, QPointF const& place, Qt::MouseButtons buttons) {
    QMouseEvent event(QEvent::MouseMove, place, Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void press(QWidget& widget, QPointF const& place, Qt::MouseButton button) {
    QMouseEvent event(QEvent::MouseButtonPress, place, button, button, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

QString boxName(char axis, int row) {
    return QStringLiteral("doubleSpinBox%1%2").arg(QLatin1Char(axis)).arg(row);
}

} // namespace

/// The power curves: table and drawing.
class EditPowerTest : public QObject {
    Q_OBJECT

private slots:
    void the_table_has_20_rows_with_their_limits();
    void the_table_has_its_texts_data();
    void the_table_has_its_texts();
    void the_distance_box_is_for_lines_alone();
    void the_check_boxes_keep_the_flags();
    void every_box_changes_its_point_data();
    void every_box_changes_its_point();
    void a_change_in_a_row_updates_the_drawing_at_once();
    void a_drawing_pans_without_changing_the_table();
    void other_buttons_do_not_pan();
    void other_than_20_points_are_ignored();
    void a_point_curve_comes_back_as_it_is();
    void a_line_curve_starts_at_0_and_goes_on_where_the_ramp_ended();
    void an_all_zero_ramp_in_gives_a_ramp_out_from_0();
    void row_0_of_a_line_can_show_what_is_replaced_by_0();
    void the_start_of_the_ramp_out_skips_rows_without_a_time();
    void points_lie_on_their_coordinates();
    void zoom_limits_do_not_bind();
    void zoom_in_and_out_are_not_inverse();
    void the_curve_under_the_pointer_is_highlighted();
    void one_finger_pans_two_zoom();
    void axes_and_the_panned_origin_are_drawn();
    void a_curve_far_out_of_scale_is_drawn_without_harm();

private:
    TemporaryRoot root;
};

void EditPowerTest::the_table_has_20_rows_with_their_limits() {
    const Curve curve = ramps();
    ListPFEdit table(true, true, false, curve.data());
    for (int row = 0; row < 20; ++row) {
        const auto* x = part<QDoubleSpinBox>(table, qPrintable(boxName('X', row)));
        const auto* y = part<QDoubleSpinBox>(table, qPrintable(boxName('Y', row)));
        QCOMPARE(x->minimum(), 0.0);
        QCOMPARE(x->maximum(), 100000.0);
        QCOMPARE(y->minimum(), 0.0);
        QCOMPARE(y->maximum(), 100.0);
        QCOMPARE(x->value(), curve[std::size_t(row)].x());
        QCOMPARE(y->value(), curve[std::size_t(row)].y());
    }
    QCOMPARE(table.findChildren<QDoubleSpinBox*>().size(), 40);
}

void EditPowerTest::the_table_has_its_texts_data() {
    QTest::addColumn<bool>("isLine");
    QTest::addColumn<bool>("xIsDistance");
    QTest::addColumn<QStringList>("texts");
    QStringList rows;
    for (int i = 1; i <= 20; ++i)
        rows.append(QString::asprintf("%02d", i));
    QTest::newRow("point") << false << false << rows + QStringList({"编号", "时间 ms", "功率 (%)"});
    rows[0] = rows[10] = QStringLiteral("起始");
    QTest::newRow("line") << true << false << rows + QStringList({"编号", "时间 ms", "功率 (%)", "渐进", "渐出"});
    QTest::newRow("line over the distance")
        << true << true << rows + QStringList({"编号", "距离 mm", "功率 (%)", "渐进", "渐出"});
}

void EditPowerTest::the_table_has_its_texts() {
    QFETCH(bool, isLine);
    QFETCH(bool, xIsDistance);
    QFETCH(QStringList, texts);
    const Curve curve{};
    ListPFEdit table(isLine, false, xIsDistance, curve.data());
    QSet<QString> shown;
    for (QLabel const* label : table.findChildren<QLabel*>()) {
        if (!label->text().isEmpty())
            shown.insert(label->text());
    }
    QCOMPARE(shown, QSet<QString>(texts.begin(), texts.end()));
    QCOMPARE(part<QCheckBox>(table, "checkBoxEnable")->text(),
             isLine ? QStringLiteral("使能直线波形") : QStringLiteral("使能单点波形"));
    QCOMPARE(part<QCheckBox>(table, "checkBoxXIsDistance")->text(), QStringLiteral("X轴是否是距离"));
}

void EditPowerTest::the_distance_box_is_for_lines_alone() {
    const Curve curve{};
    ListPFEdit point(false, false, false, curve.data());
    ListPFEdit line(true, false, false, curve.data());
    point.show();
    line.show();
    QVERIFY(!part<QCheckBox>(point, "checkBoxXIsDistance")->isVisible());
    QVERIFY(part<QCheckBox>(line, "checkBoxXIsDistance")->isVisible());
}

void EditPowerTest::the_check_boxes_keep_the_flags() {
    const Curve curve{};
    for (bool enable : {false, true}) {
        for (bool distance : {false, true}) {
            ListPFEdit table(true, enable, distance, curve.data());
            bool now[2] = {};
            table.GetPowerStatus(now[0], now[1]);
            QCOMPARE(now[0], enable);
            QCOMPARE(now[1], distance);
            part<QCheckBox>(table, "checkBoxEnable")->toggle();
            table.GetPowerStatus(now[0], now[1]);
            QCOMPARE(now[0], !enable);
            QCOMPARE(now[1], distance);
            part<QCheckBox>(table, "checkBoxXIsDistance")->toggle();
            table.GetPowerStatus(now[0], now[1]);
            QCOMPARE(now[0], !enable);
            QCOMPARE(now[1], !distance);
        }
    }
}

void EditPowerTest::every_box_changes_its_point_data() {
    QTest::addColumn<bool>("isLine");
    QTest::newRow("point") << false;
    QTest::newRow("line") << true;
}

void EditPowerTest::every_box_changes_its_point() {
    QFETCH(bool, isLine);
    const Curve curve = ramps();
    ListPFEdit table(isLine, true, false, curve.data());
    QVector<QPointF> told;
    connect(&table, &ListPFEdit::PowerChanged, this, [&](QVector<QPointF>& points) { told = points; });
    QVector<QPointF> expected = pointsOf(curve);
    for (int row = 0; row < 20; ++row) {
        expected[row].setX(100.0 + row);
        part<QDoubleSpinBox>(table, qPrintable(boxName('X', row)))->setValue(100.0 + row);
        QCOMPARE(told, expected);
        expected[row].setY(99.0 - row);
        part<QDoubleSpinBox>(table, qPrintable(boxName('Y', row)))->setValue(99.0 - row);
        QCOMPARE(told, expected);
    }
}

void EditPowerTest::a_change_in_a_row_updates_the_drawing_at_once() {
    const Curve curve = ramps();
    ListPFEdit table(false, true, false, curve.data());
    EditPower drawing(false, curve.data());
    drawing.resize(400, 300);
    drawing.SetPFEdit(&table);
    const QImage before = drawing.grab().toImage();
    part<QDoubleSpinBox>(table, "doubleSpinBoxY3")->setValue(2.0);
    QCOMPARE(drawing.GetPower()[3], QPointF(4.0, 2.0));
    QVERIFY(drawing.grab().toImage() != before);
}

void EditPowerTest::a_drawing_pans_without_changing_the_table() {
    const Curve curve = ramps();
    ListPFEdit table(true, true, false, curve.data());
    EditPower drawing(true, curve.data());
    drawing.resize(400, 300);
    drawing.SetPFEdit(&table);
    const QVector<QPointF> before = drawing.GetPower();
    const QPointF place = drawing.GetPowerPoint(1.0, 2.0, 3.0, 4.0);
    QSignalSpy x(part<QDoubleSpinBox>(table, "doubleSpinBoxX1"), QOverload<double>::of(&QDoubleSpinBox::valueChanged));
    press(drawing, {100.4, 100.4}, Qt::MiddleButton);
    move(drawing, {110.4, 95.4}, Qt::MiddleButton);
    move(drawing, {130.6, 90.6}, Qt::MiddleButton);
    QCOMPARE(drawing.PanOffset(), QPoint(31, -9));
    QCOMPARE(drawing.GetPowerPoint(1.0, 2.0, 3.0, 4.0), place + QPointF(31, -9));
    QCOMPARE(drawing.GetPower(), before);
    QCOMPARE(x.count(), 0);
}

void EditPowerTest::other_buttons_do_not_pan() {
    const Curve curve = ramps();
    EditPower drawing(true, curve.data());
    press(drawing, {100, 100}, Qt::LeftButton);
    move(drawing, {120, 100}, Qt::LeftButton);
    move(drawing, {140, 100}, Qt::NoButton);
    QCOMPARE(drawing.PanOffset(), QPoint());
    // Each move keeps its place: the pan that follows counts from there.
    move(drawing, {145, 102}, Qt::MiddleButton);
    QCOMPARE(drawing.PanOffset(), QPoint(5, 2));
}

void EditPowerTest::other_than_20_points_are_ignored() {
    const Curve curve = ramps();
    EditPower drawing(false, curve.data());
    for (int count : {0, 10, 19, 21}) {
        QVector<QPointF> points(count);
        drawing.PowerChanged(points);
        QCOMPARE(drawing.GetPower(), pointsOf(curve));
    }
    QVector<QPointF> points(20, QPointF(1.0, 2.0));
    drawing.PowerChanged(points);
    QCOMPARE(drawing.GetPower(), points);
}

void EditPowerTest::a_point_curve_comes_back_as_it_is() {
    const Curve curve = ramps();
    EditPower drawing(false, curve.data());
    QCOMPARE(drawing.GetPower(), pointsOf(curve));
    QCOMPARE(drawing.GetLastPowerStart(), curve[19].y());
}

void EditPowerTest::a_line_curve_starts_at_0_and_goes_on_where_the_ramp_ended() {
    const Curve curve = ramps();
    EditPower drawing(true, curve.data());
    QVector<QPointF> expected = pointsOf(curve);
    expected[0] = QPointF(0.0, 0.0);
    expected[10] = QPointF(0.0, 90.0);
    QCOMPARE(drawing.GetPower(), expected);
    QCOMPARE(drawing.GetLastPowerStart(), 90.0);
}

void EditPowerTest::an_all_zero_ramp_in_gives_a_ramp_out_from_0() {
    Curve curve = ramps();
    for (std::size_t i = 0; i < 10; ++i)
        curve[i] = QPointF(0.0, i == 4 ? 70.0 : 0.0);
    EditPower drawing(true, curve.data());
    QCOMPARE(drawing.GetLastPowerStart(), 0.0);
    QCOMPARE(drawing.GetPower()[10], QPointF(0.0, 0.0));
}

void EditPowerTest::row_0_of_a_line_can_show_what_is_replaced_by_0() {
    const Curve curve = ramps();
    ListPFEdit table(true, true, false, curve.data());
    EditPower drawing(true, curve.data());
    drawing.SetPFEdit(&table);
    auto* x = part<QDoubleSpinBox>(table, "doubleSpinBoxX0");
    x->setValue(55.0);
    QCOMPARE(x->value(), 55.0);
    QCOMPARE(drawing.GetPower()[0], QPointF(0.0, 0.0));
}

void EditPowerTest::the_start_of_the_ramp_out_skips_rows_without_a_time() {
    Curve curve = ramps();
    for (std::size_t i = 7; i < 10; ++i)
        curve[i] = QPointF(0.0, 99.0);
    EditPower drawing(true, curve.data());
    QCOMPARE(drawing.GetLastPowerStart(), curve[6].y());
}

void EditPowerTest::points_lie_on_their_coordinates() {
    const Curve curve = ramps();
    EditPower drawing(false, curve.data());
    drawing.resize(480, 320);
    QCOMPARE(drawing.GetPowerPoint(0.0, 0.0, 7.0, 7.0), QPointF(40.0, 280.0));
    QCOMPARE(drawing.GetPowerPoint(10.0, 5.0, 2.0, 3.0), QPointF(60.0, 265.0));
    // At the first scale the longest time and full power reach 0.8 of the room between the margins.
    const double longest = 10.0;
    const QVector<QPointF> line = drawing.DrawnLines().value(0);
    QCOMPARE(line.size(), 20);
    for (int i = 0; i < line.size(); ++i) {
        const QPointF point = curve[std::size_t(i)];
        QVERIFY(qAbs(line[i].x() - (40.0 + 0.8 * 400.0 * point.x() / longest)) < 1e-9);
        QVERIFY(qAbs(line[i].y() - (280.0 - 0.8 * 240.0 * point.y() / 100.0)) < 1e-9);
    }
}

void EditPowerTest::zoom_limits_do_not_bind() {
    EditPower drawing(false, ramps().data());
    QCOMPARE(drawing.ScaleFactor(), 0.8);
    QCOMPARE(drawing.Zoom(), 0);
    for (int i = 0; i < 60; ++i)
        turnWheel(drawing, 120);
    QVERIFY(qAbs(drawing.ScaleFactor() / (0.8 * std::pow(10.0 / 9.0, 60)) - 1.0) < 1e-9);
    QCOMPARE(drawing.Zoom(), 0);
    EditPower small(false, ramps().data());
    for (int i = 0; i < 60; ++i)
        turnWheel(small, -120);
    QVERIFY(qAbs(small.ScaleFactor() / (0.8 * std::pow(0.9, 60)) - 1.0) < 1e-9);
    QCOMPARE(small.Zoom(), 0);
}

void EditPowerTest::zoom_in_and_out_are_not_inverse() {
    EditPower drawing(false, ramps().data());
    turnWheel(drawing, 1);
    QCOMPARE(drawing.ScaleFactor(), 0.8 * (10.0 / 9.0));
    turnWheel(drawing, 0);
    QVERIFY(qAbs(drawing.ScaleFactor() - 0.8) < 1e-12);
    turnWheel(drawing, 0);
    QVERIFY(qAbs(drawing.ScaleFactor() - 0.72) < 1e-12);
}

void EditPowerTest::the_curve_under_the_pointer_is_highlighted() {
    EditPower drawing(true, ramps().data());
    drawing.resize(480, 320);
    const QVector<QVector<QPointF>> lines = drawing.DrawnLines();
    QCOMPARE(lines.size(), 2);
    const QImage plain = drawing.grab().toImage();
    for (int half : {0, 1}) {
        move(drawing, (lines[half].last() + lines[half][lines[half].size() - 2]) / 2.0, Qt::NoButton);
        QCOMPARE(drawing.HighlightedHalf(), half);
        QVERIFY(drawing.grab().toImage() != plain);
    }
    move(drawing, {475, 315}, Qt::NoButton);
    QCOMPARE(drawing.HighlightedHalf(), -1);
    QCOMPARE(drawing.grab().toImage(), plain);
    press(drawing, lines[0][3], Qt::LeftButton);
    QCOMPARE(drawing.HighlightedHalf(), 0);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&drawing, &leave);
    QCOMPARE(drawing.HighlightedHalf(), -1);
}

void EditPowerTest::one_finger_pans_two_zoom() {
    QTouchDevice* device = QTest::createTouchDevice();
    EditPower drawing(true, ramps().data());
    drawing.resize(480, 320);
    drawing.show();
    QVERIFY(QTest::qWaitForWindowExposed(&drawing));
    QTest::touchEvent(&drawing, device).press(1, QPoint(200, 200), &drawing);
    QTest::touchEvent(&drawing, device).move(1, QPoint(230, 190), &drawing);
    QTRY_COMPARE(drawing.PanOffset(), QPoint(30, -10));
    const QPoint held(230, 190);
    QTest::touchEvent(&drawing, device).move(1, held, &drawing).press(2, QPoint(330, 190), &drawing);
    const double before = drawing.ScaleFactor();
    QTest::touchEvent(&drawing, device).move(1, held, &drawing).move(2, QPoint(430, 190), &drawing);
    QTRY_VERIFY(qAbs(drawing.ScaleFactor() - 2.0 * before) < 1e-9);
    QTest::touchEvent(&drawing, device).move(1, held, &drawing).release(2, QPoint(430, 190), &drawing);
    QTest::touchEvent(&drawing, device).release(1, held, &drawing);
    QCOMPARE(drawing.PanOffset(), QPoint(30, -10));
}

void EditPowerTest::axes_and_the_panned_origin_are_drawn() {
    EditPower drawing(false, Curve{}.data());
    drawing.resize(400, 300);
    const auto blackIn = [&](QRect const& area) {
        const QImage image = drawing.grab(area).toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += qGray(image.pixel(x, y)) < 128 ? 1 : 0;
        }
        return count;
    };
    QVERIFY2(blackIn(QRect(39, 20, 3, 240)) >= 200, "the axis at the left margin");
    QVERIFY2(blackIn(QRect(20, 259, 360, 3)) >= 300, "the axis at the lower margin");
    const QRect column(69, 0, 3, 18);
    QCOMPARE(blackIn(column), 0);
    press(drawing, {100, 100}, Qt::MiddleButton);
    move(drawing, {130, 100}, Qt::MiddleButton);
    QVERIFY2(blackIn(column) > 4, "the dashed line at the panned origin");
}

void EditPowerTest::a_curve_far_out_of_scale_is_drawn_without_harm() {
    EditPower drawing(true, ramps().data());
    drawing.resize(400, 300);
    for (int i = 0; i < 8000; ++i)
        turnWheel(drawing, 120);
    QVERIFY(std::isinf(drawing.ScaleFactor()));
    QVERIFY(!drawing.grab().isNull());
    EditPower small(true, ramps().data());
    small.resize(400, 300);
    for (int i = 0; i < 8000; ++i)
        turnWheel(small, -120);
    QVERIFY(!small.grab().isNull());
}

QTEST_MAIN(EditPowerTest)
#include "tst_editpower.moc"

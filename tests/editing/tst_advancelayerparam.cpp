// SPDX-License-Identifier: MIT
#include "editing/advancelayerparam.h"
#include "editing/editpower.h"
#include "editing/powercurve.h"
#include "tests/editing/penpanel.h"

#include <QLabel>
#include <QScreen>
#include <QSpinBox>
#include <QTabWidget>

using namespace tests;

/// The dialog of delays, wobble and power curves.
class AdvanceLayerParamTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void tabs_follow_the_work_mode_data();
    void tabs_follow_the_work_mode();
    void it_has_its_title_and_height();
    void widgets_have_their_texts();
    void boxes_have_their_limits_data();
    void boxes_have_their_limits();
    void confirm_stores_every_field();
    void cancel_stores_nothing();
    void a_point_time_of_0_or_less_becomes_a_millisecond_data();
    void a_point_time_of_0_or_less_becomes_a_millisecond();
    void point_time_is_truncated_to_microseconds();
    void wobble_is_clamped_on_opening();
    void wobble_boxes_follow_their_switch();
    void curves_come_back_from_the_drawing();
    void a_curve_of_other_than_20_points_is_dropped_and_the_old_one_stays_data();
    void a_curve_of_other_than_20_points_is_dropped_and_the_old_one_stays();
    void curve_switches_are_stored_data();
    void curve_switches_are_stored();
    void without_curve_tabs_the_curves_stay();
    void the_buttons_stand_at_the_bottom();
    void the_panel_stores_a_confirmed_pen();
    void the_panel_drops_a_cancelled_pen();

private:
    void confirm(AdvanceLayerParam& dialog) { part<QPushButton>(dialog, "pushButtonConfirm")->click(); }
    static void changeMarkDelay(PenPanel& panel, QString const& button);

    TemporaryRoot root;
};

void AdvanceLayerParamTest::init() {
    SystemParam::Instance()->SetWorkMode(0);
    SystemParam::Instance()->SetEnableWaveForm(false);
}

void AdvanceLayerParamTest::cleanup() {
    SystemParam::Instance()->SetWorkMode(0);
}

void AdvanceLayerParamTest::tabs_follow_the_work_mode_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("curves");
    QTest::newRow("marking") << 0 << false << true;
    QTest::newRow("welding") << 1 << true << false;
    QTest::newRow("user-defined") << 2 << true << true;
    QTest::newRow("user-defined, off") << 2 << false << false;
    QTest::newRow("controlled") << 3 << true << true;
    QTest::newRow("controlled, off") << 3 << false << false;
}

void AdvanceLayerParamTest::tabs_follow_the_work_mode() {
    QFETCH(int, mode);
    QFETCH(bool, enabled);
    QFETCH(bool, curves);
    SystemParam::Instance()->SetWorkMode(mode);
    SystemParam::Instance()->SetEnableWaveForm(enabled);
    AdvanceLayerParam dialog(LayerData(), nullptr, nullptr);
    const auto* tabs = part<QTabWidget>(dialog, "tabWidget");
    QStringList texts;
    for (int i = 0; i < tabs->count(); ++i)
        texts.append(tabs->tabText(i));
    QStringList expected(QStringLiteral("基本参数"));
    if (curves)
        expected << QStringLiteral("单点波形") << QStringLiteral("直线波形");
    QCOMPARE(texts, expected);
}

void AdvanceLayerParamTest::it_has_its_title_and_height() {
    AdvanceLayerParam dialog(LayerData(), nullptr, nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("高级层参数设置"));
    const int height = qMin(620, QApplication::primaryScreen()->geometry().height());
    QCOMPARE(dialog.minimumHeight(), height);
    QCOMPARE(dialog.maximumHeight(), height);
}

void AdvanceLayerParamTest::widgets_have_their_texts() {
    AdvanceLayerParam dialog(LayerData(), nullptr, nullptr);
    QSet<QString> labels;
    for (QLabel const* label : dialog.findChildren<QLabel*>())
        labels.insert(label->text());
    for (char const* key :
         {"最大跳转延时", "最小跳转延时", "打标延时", "最大跳转延时距离", "单点时间", "抖动直径", "抖动间距"})
        QVERIFY2(labels.contains(QString::fromUtf8(key)), key);
    QCOMPARE(part<QCheckBox>(dialog, "checkBoxWobbleEnable")->text(), QStringLiteral("抖动"));
    QCOMPARE(part<QPushButton>(dialog, "pushButtonConfirm")->text(), QStringLiteral("确认"));
    QCOMPARE(part<QPushButton>(dialog, "pushButtonCancel")->text(), QStringLiteral("取消"));
}

void AdvanceLayerParamTest::boxes_have_their_limits_data() {
    QTest::addColumn<int>("decimals");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::newRow("spinBoxMaxJumpDelay") << 0 << 0.0 << 1.0e9;
    QTest::newRow("spinBoxMinJumpDelay") << 0 << 0.0 << 1.0e9;
    QTest::newRow("spinBoxMarkDelay") << 0 << 0.0 << 1.0e9;
    QTest::newRow("doubleSpinBoxMaxJumpDelayDist") << 3 << 0.0 << 1.0e9;
    QTest::newRow("doubleSpinBoxPointTime") << 3 << 1.0 << 1.0e9;
    QTest::newRow("doubleSpinBoxWobbleDiameter") << 2 << 0.01 << 100.0;
    QTest::newRow("doubleSpinBoxWobbleSpacing") << 2 << 0.01 << 100.0;
}

void AdvanceLayerParamTest::boxes_have_their_limits() {
    QFETCH(int, decimals);
    AdvanceLayerParam dialog(LayerData(), nullptr, nullptr);
    const auto* box = part<QWidget>(dialog, QTest::currentDataTag());
    QTEST(box->property("minimum").toDouble(), "minimum");
    QTEST(box->property("maximum").toDouble(), "maximum");
    if (decimals > 0)
        QCOMPARE(box->property("decimals").toInt(), decimals);
}

void AdvanceLayerParamTest::confirm_stores_every_field() {
    const LayerData before;
    AdvanceLayerParam dialog(before, nullptr, nullptr);
    part<QSpinBox>(dialog, "spinBoxMaxJumpDelay")->setValue(901);
    part<QSpinBox>(dialog, "spinBoxMinJumpDelay")->setValue(302);
    part<QSpinBox>(dialog, "spinBoxMarkDelay")->setValue(203);
    part<QDoubleSpinBox>(dialog, "doubleSpinBoxMaxJumpDelayDist")->setValue(4.125);
    part<QDoubleSpinBox>(dialog, "doubleSpinBoxPointTime")->setValue(2.5);
    part<QCheckBox>(dialog, "checkBoxWobbleEnable")->setChecked(true);
    part<QDoubleSpinBox>(dialog, "doubleSpinBoxWobbleDiameter")->setValue(0.75);
    part<QDoubleSpinBox>(dialog, "doubleSpinBoxWobbleSpacing")->setValue(0.35);
    QCOMPARE(dialog.Data().MaxJumpDelay, before.MaxJumpDelay);
    confirm(dialog);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    LayerData const& now = dialog.Data();
    QCOMPARE(now.MaxJumpDelay, 901);
    QCOMPARE(now.MinJumpDelay, 302);
    QCOMPARE(now.MarkDelay, 203);
    QCOMPARE(now.MaxJumpDelayDist, 4.125);
    QCOMPARE(now.PointTime, 2500);
    QVERIFY(now.WobbleEnable);
    QCOMPARE(now.WobbleDiameter, 0.75);
    QCOMPARE(now.WobbleSpacing, 0.35);
    QCOMPARE(now.MarkSpeed, before.MarkSpeed);
    QCOMPARE(now.UseDefault, before.UseDefault);
}

void AdvanceLayerParamTest::cancel_stores_nothing() {
    AdvanceLayerParam dialog(LayerData(), nullptr, nullptr);
    part<QSpinBox>(dialog, "spinBoxMaxJumpDelay")->setValue(901);
    part<QPushButton>(dialog, "pushButtonCancel")->click();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.Data().MaxJumpDelay, LayerData().MaxJumpDelay);
}

void AdvanceLayerParamTest::a_point_time_of_0_or_less_becomes_a_millisecond_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<double>("shown");
    QTest::addColumn<int>("field");
    QTest::newRow("0") << 0 << 1.0 << 1000;
    QTest::newRow("below 0") << -5 << 1.0 << 1000;
    QTest::newRow("2 ms") << 2000 << 2.0 << 2000;
    QTest::newRow("half a millisecond shows the least") << 500 << 1.0 << 500;
}

void AdvanceLayerParamTest::a_point_time_of_0_or_less_becomes_a_millisecond() {
    QFETCH(int, stored);
    LayerData pen;
    pen.PointTime = stored;
    AdvanceLayerParam dialog(pen, nullptr, nullptr);
    QTEST(part<QDoubleSpinBox>(dialog, "doubleSpinBoxPointTime")->value(), "shown");
    QTEST(dialog.Data().PointTime, "field");
}

/// 1.001 ms are a little less than 1001 us in binary; the fraction is cut off and not rounded.
void AdvanceLayerParamTest::point_time_is_truncated_to_microseconds() {
    AdvanceLayerParam dialog(LayerData(), nullptr, nullptr);
    part<QDoubleSpinBox>(dialog, "doubleSpinBoxPointTime")->setValue(1.001);
    confirm(dialog);
    QCOMPARE(dialog.Data().PointTime, 1000);
}

void AdvanceLayerParamTest::wobble_is_clamped_on_opening() {
    LayerData pen;
    pen.WobbleDiameter = 0.0;
    pen.WobbleSpacing = 500.0;
    AdvanceLayerParam dialog(pen, nullptr, nullptr);
    QCOMPARE(dialog.Data().WobbleDiameter, 0.01);
    QCOMPARE(dialog.Data().WobbleSpacing, 100.0);
}

void AdvanceLayerParamTest::wobble_boxes_follow_their_switch() {
    for (bool on : {false, true}) {
        LayerData pen;
        pen.WobbleEnable = on;
        AdvanceLayerParam dialog(pen, nullptr, nullptr);
        for (bool expected : {on, !on}) {
            QCOMPARE(part<QDoubleSpinBox>(dialog, "doubleSpinBoxWobbleDiameter")->isEnabled(), expected);
            QCOMPARE(part<QDoubleSpinBox>(dialog, "doubleSpinBoxWobbleSpacing")->isEnabled(), expected);
            part<QCheckBox>(dialog, "checkBoxWobbleEnable")->toggle();
        }
    }
}

void AdvanceLayerParamTest::curves_come_back_from_the_drawing() {
    LayerData pen;
    for (std::size_t i = 0; i < kWavePointCount; ++i) {
        pen.PointWave[i] = QPointF(double(i), 2.0 * double(i));
        pen.LineWave[i] = QPointF(double(i) + 1.0, 50.0);
    }
    AdvanceLayerParam dialog(pen, nullptr, nullptr);
    auto* point = part<QWidget>(dialog, "listPoint");
    auto* line = part<QWidget>(dialog, "listLine");
    part<QDoubleSpinBox>(*point, "doubleSpinBoxY0")->setValue(33.0);
    part<QDoubleSpinBox>(*line, "doubleSpinBoxY9")->setValue(77.0);
    confirm(dialog);
    LayerData expected = pen;
    expected.PointWave[0].setY(33.0);
    expected.LineWave[9].setY(77.0);
    expected.LineWave[0] = QPointF(0.0, 0.0);
    expected.LineWave[10] = QPointF(0.0, 77.0);
    QVERIFY(dialog.Data().PointWave == expected.PointWave);
    QVERIFY(dialog.Data().LineWave == expected.LineWave);
}

void AdvanceLayerParamTest::a_curve_of_other_than_20_points_is_dropped_and_the_old_one_stays_data() {
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("taken");
    QTest::newRow("none") << 0 << false;
    QTest::newRow("19") << 19 << false;
    QTest::newRow("20") << 20 << true;
    QTest::newRow("21") << 21 << false;
}

void AdvanceLayerParamTest::a_curve_of_other_than_20_points_is_dropped_and_the_old_one_stays() {
    QFETCH(int, count);
    QFETCH(bool, taken);
    QVector<QPointF> came(count, QPointF(5.0, 60.0));
    LayerData pen;
    pen.PointWave.fill(QPointF(1.0, 2.0));
    LayerData now = pen;
    QCOMPARE(tessera::takeCurve(came, now.PointWave), taken);
    QVERIFY((now.PointWave == pen.PointWave) != taken);
    // The drawing lets no other count through either.
    AdvanceLayerParam dialog(pen, nullptr, nullptr);
    part<EditPower>(dialog, "powerPoint")->PowerChanged(came);
    confirm(dialog);
    QVERIFY(dialog.Data().PointWave == now.PointWave);
}

void AdvanceLayerParamTest::curve_switches_are_stored_data() {
    QTest::addColumn<bool>("isLine");
    QTest::addColumn<QString>("box");
    QTest::addColumn<QVector<int>>("flags");
    QTest::newRow("point") << false << "checkBoxEnable" << QVector<int>{1, 0, 0};
    QTest::newRow("line") << true << "checkBoxEnable" << QVector<int>{0, 1, 0};
    QTest::newRow("distance") << true << "checkBoxXIsDistance" << QVector<int>{0, 0, 1};
}

void AdvanceLayerParamTest::curve_switches_are_stored() {
    QFETCH(bool, isLine);
    QFETCH(QString, box);
    AdvanceLayerParam dialog(LayerData(), nullptr, nullptr);
    auto* table = part<QWidget>(dialog, isLine ? "listLine" : "listPoint");
    part<QCheckBox>(*table, qPrintable(box))->setChecked(true);
    confirm(dialog);
    LayerData const& now = dialog.Data();
    QTEST(QVector<int>({now.PointWaveEnable, now.LineWaveEnable, now.LineWaveFlag}), "flags");
}

void AdvanceLayerParamTest::without_curve_tabs_the_curves_stay() {
    SystemParam::Instance()->SetWorkMode(1);
    LayerData pen;
    pen.LineWave[0] = QPointF(3.0, 4.0);
    pen.LineWaveEnable = 1;
    AdvanceLayerParam dialog(pen, nullptr, nullptr);
    confirm(dialog);
    QVERIFY(dialog.Data().LineWave == pen.LineWave);
    QCOMPARE(dialog.Data().LineWaveEnable, 1);
}

void AdvanceLayerParamTest::the_buttons_stand_at_the_bottom() {
    AdvanceLayerParam dialog(LayerData(), nullptr, nullptr);
    dialog.show();
    auto* tabs = part<QTabWidget>(dialog, "tabWidget");
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        for (char const* name : {"pushButtonConfirm", "pushButtonCancel"}) {
            const QRect place = part<QPushButton>(dialog, name)->geometry();
            QVERIFY(dialog.rect().contains(place));
            QVERIFY(place.top() > tabs->geometry().bottom());
        }
    }
}

/// Pen 6 is changed in the dialog of its panel.
void AdvanceLayerParamTest::changeMarkDelay(PenPanel& panel, QString const& button) {
    panel.show(6);
    DialogAnswerer answerer;
    answerer.fillAndPress([](QWidget& dialog) { part<QSpinBox>(dialog, "spinBoxMarkDelay")->setValue(789); }, button);
    panel.press("pushButtonAdvance");
    QVERIFY(answerer.allAnswered());
}

void AdvanceLayerParamTest::the_panel_stores_a_confirmed_pen() {
    PenPanel panel;
    changeMarkDelay(panel, QStringLiteral("pushButtonConfirm"));
    QCOMPARE(panel.document.pen(6).MarkDelay, 789);
    QCOMPARE(panel.document.pen(5).MarkDelay, LayerData().MarkDelay);
}

void AdvanceLayerParamTest::the_panel_drops_a_cancelled_pen() {
    PenPanel panel;
    changeMarkDelay(panel, QStringLiteral("pushButtonCancel"));
    QCOMPARE(panel.document.pen(6).MarkDelay, LayerData().MarkDelay);
}

QTEST_MAIN(AdvanceLayerParamTest)
#include "tst_advancelayerparam.moc"

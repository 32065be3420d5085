// SPDX-License-Identifier: MIT
#include "engine/imodbuslaser.h"
#include "engine/languagemanager.h"
#include "engine/showdebuginfo.h"
#include "tests/editing/penboxes.h"
#include "tests/editing/penpanel.h"

#include <QColorDialog>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableWidget>

using namespace tests;

namespace {

/// A serial laser that says whether it derives the pulses.
class SerialLaser : public IModbusLaser {
public:
    explicit SerialLaser(bool derives)
        : m_derives(derives) {
        m_hInstance = this;
    }
    double QCWWPulse() override { return 0.0; }
    bool IsConnected() override { return true; }
    bool IsAutoCalcPWM() override { return m_derives; }
    void AutoCalcPWM(double&, double&) override {}
    void SetQCWParam(int, double, double) override {}
    void SetQCWParam(int, int, double, double, double, double, double, double, double) override {}

private:
    bool m_derives;
};

} // namespace

/// The pen panel beside the drawing.
class MarkLayerParamFormTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { panel.reset(); }

    void boxes_have_their_texts_units_and_limits_data();
    void boxes_have_their_texts_units_and_limits();
    void other_widgets_have_their_texts_data();
    void other_widgets_have_their_texts();
    void the_pen_table_has_20_coloured_rows();
    void a_document_recolours_the_table();
    void a_channel_above_255_gives_an_invalid_colour();
    void table_and_combo_select_the_same_pen();
    void a_pen_beyond_the_table_selects_the_first();
    void every_field_is_shown_data() { boxRows(); }
    void every_field_is_shown();
    void every_field_is_stored_with_apply_and_only_then_data() { boxRows(); }
    void every_field_is_stored_with_apply_and_only_then();
    void apply_is_logged();
    void apply_stores_the_colour_of_the_swatch();
    void a_colour_is_stored_at_once();
    void a_cancelled_colour_changes_nothing();
    void loading_a_pen_applies_nothing();
    void rows_follow_the_laser_type_data();
    void rows_follow_the_laser_type();
    void a_pulse_width_above_100_is_set_to_0_when_the_row_goes();
    void a_serial_laser_that_derives_pulses_locks_their_boxes();
    void without_a_document_nothing_happens();
    void a_closed_document_is_let_go();
    void update_layer_data_shows_the_pen_again_and_tells_the_debug_log();
    void the_wheel_turns_no_parameter_that_is_not_in_use();
    void at_its_own_height_nothing_is_scrolled();

private:
    void boxRows() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(kPenBoxes)); ++i)
            QTest::newRow(kPenBoxes[i].name) << i;
    }
    QComboBox* combo() { return part<QComboBox>(panel->form, "comboBoxLayerIndex"); }
    QTableWidget* table() { return part<QTableWidget>(panel->form, "tableWidgetLayer"); }
    QColor cell(int row) { return table()->item(row, 1)->background().color(); }

    std::unique_ptr<PenPanel> panel;
};

void MarkLayerParamFormTest::init() {
    resetPenPanel();
    panel = std::make_unique<PenPanel>();
    panel->show(0);
}

void MarkLayerParamFormTest::boxes_have_their_texts_units_and_limits_data() {
    boxRows();
}

void MarkLayerParamFormTest::boxes_have_their_texts_units_and_limits() {
    QFETCH(int, index);
    BoxRow const& row = kPenBoxes[index];
    const auto* tested = panel->box(row.name);
    QCOMPARE(tested->decimals(), row.decimals);
    QCOMPARE(tested->minimum(), row.minimum);
    QCOMPARE(tested->maximum(), row.maximum);
    QCOMPARE(part<QLabel>(panel->form, row.label)->text(), LanguageManager::GetLanText(row.text));
    const QByteArray unit = QByteArray(row.label).replace("label", "unit");
    QCOMPARE(part<QLabel>(panel->form, unit.constData())->text(), QString::fromUtf8(row.unit));
}

void MarkLayerParamFormTest::other_widgets_have_their_texts_data() {
    QTest::addColumn<QString>("text");
    for (auto const& [name, text] :
         std::initializer_list<std::pair<char const*, char const*>>{{"labelLayerIndex", "层号"},
                                                                    {"labelColor", "颜色"},
                                                                    {"pushButtonSetLayerColor", "编辑"},
                                                                    {"pushButtonApply", "应用"},
                                                                    {"pushButtonSetDefault", "设为默认参数"},
                                                                    {"pushButtonAdvance", "高级"},
                                                                    {"checkBoxUseDefault", "使用默认参数"}})
        QTest::newRow(name) << QString::fromUtf8(text);
}

void MarkLayerParamFormTest::other_widgets_have_their_texts() {
    QFETCH(QString, text);
    QCOMPARE(part<QWidget>(panel->form, QTest::currentDataTag())->property("text").toString(), text);
}

void MarkLayerParamFormTest::the_pen_table_has_20_coloured_rows() {
    MarkLayerParamForm fresh;
    auto* pens = part<QTableWidget>(fresh, "tableWidgetLayer");
    QCOMPARE(pens->rowCount(), 20);
    QCOMPARE(pens->columnCount(), 2);
    QCOMPARE(pens->horizontalHeaderItem(0)->text(), QStringLiteral("笔号"));
    QCOMPARE(pens->horizontalHeaderItem(1)->text(), QStringLiteral("颜色"));
    QCOMPARE(pens->selectionMode(), QAbstractItemView::SingleSelection);
    for (int row = 0; row < 20; ++row) {
        QCOMPARE(pens->rowHeight(row), 18);
        QCOMPARE(pens->item(row, 0)->text(), QString::asprintf("%02d", row + 1));
        QCOMPARE(pens->item(row, 0)->textAlignment(), int(Qt::AlignCenter));
        QCOMPARE(pens->item(row, 1)->background().color(), LayerParamEx::GetDefultColor(row));
    }
    const auto* index = part<QComboBox>(fresh, "comboBoxLayerIndex");
    QCOMPARE(index->count(), 20);
    QCOMPARE(index->itemText(0), QStringLiteral("1"));
    QCOMPARE(index->itemText(19), QStringLiteral("20"));
}

void MarkLayerParamFormTest::a_document_recolours_the_table() {
    panel->setPen(4, [](LayerData& pen) {
        pen.ColorR = 1;
        pen.ColorG = 2;
        pen.ColorB = 3;
    });
    panel->form.DocChange(&panel->document.view);
    QCOMPARE(cell(4), QColor(1, 2, 3));
    QCOMPARE(cell(5), LayerParamEx::GetDefultColor(5));
    panel->form.DocChange(nullptr);
    QCOMPARE(cell(4), LayerParamEx::GetDefultColor(4));
}

void MarkLayerParamFormTest::a_channel_above_255_gives_an_invalid_colour() {
    for (int LayerData::*channel : {&LayerData::ColorR, &LayerData::ColorG, &LayerData::ColorB}) {
        panel->setPen(2, [&](LayerData& pen) { pen.*channel = 256; });
        panel->form.DocChange(&panel->document.view);
        QVERIFY(!cell(2).isValid());
        panel->setPen(2, [&](LayerData& pen) { pen.*channel = 255; });
        panel->form.DocChange(&panel->document.view);
        QVERIFY(cell(2).isValid());
    }
}

void MarkLayerParamFormTest::table_and_combo_select_the_same_pen() {
    panel->setPen(6, [](LayerData& pen) { pen.MarkSpeed = 321.0; });
    panel->form.resize(245, 600);
    panel->form.show();
    for (int column : {0, 1}) {
        panel->form.SetLayerIndex(0);
        const QRect place = table()->visualItemRect(table()->item(6, column));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, place.center());
        QCOMPARE(combo()->currentIndex(), 6);
        QCOMPARE(panel->box("doubleSpinBoxMarkSpeed")->value(), 321.0);
    }
    combo()->setCurrentIndex(9);
    QCOMPARE(table()->selectedItems().value(0)->row(), 9);
    panel->form.SetLayerIndex(13);
    QCOMPARE(combo()->currentIndex(), 13);
    QCOMPARE(table()->selectedItems().value(0)->row(), 13);
}

void MarkLayerParamFormTest::a_pen_beyond_the_table_selects_the_first() {
    panel->form.SetLayerIndex(19);
    QCOMPARE(combo()->currentIndex(), 19);
    panel->form.SetLayerIndex(20);
    QCOMPARE(combo()->currentIndex(), 0);
}

void MarkLayerParamFormTest::every_field_is_shown() {
    QFETCH(int, index);
    BoxRow const& row = kPenBoxes[index];
    panel->setPen(3, [&](LayerData& pen) { setValue(pen, row, otherValue(row)); });
    panel->form.SetLayerIndex(3);
    QCOMPARE(panel->box(row.name)->value(), otherValue(row));
    panel->form.SetLayerIndex(2);
    QCOMPARE(panel->box(row.name)->value(), valueOf(panel->document.pen(2), row));
}

void MarkLayerParamFormTest::every_field_is_stored_with_apply_and_only_then() {
    QFETCH(int, index);
    BoxRow const& row = kPenBoxes[index];
    panel->form.SetLayerIndex(5);
    const LayerData before = panel->document.pen(5);
    panel->box(row.name)->setValue(otherValue(row));
    QCOMPARE(valueOf(panel->document.pen(5), row), valueOf(before, row));
    panel->press("pushButtonApply");
    for (BoxRow const& each : kPenBoxes)
        QCOMPARE(valueOf(panel->document.pen(5), each), &each == &row ? otherValue(row) : valueOf(before, each));
    QCOMPARE(valueOf(panel->document.pen(4), row), valueOf(before, row));
}

void MarkLayerParamFormTest::apply_is_logged() {
    panel->press("pushButtonApply");
    QCOMPARE(logTexts("operator"), QStringList(QStringLiteral("层参数应用")));
}

void MarkLayerParamFormTest::apply_stores_the_colour_of_the_swatch() {
    panel->setPen(0, [](LayerData& pen) { pen.ColorR = pen.ColorG = pen.ColorB = 77; });
    panel->form.DocChange(&panel->document.view);
    panel->form.ResetLayerData();
    panel->setPen(0, [](LayerData& pen) { pen.ColorR = 9; });
    panel->press("pushButtonApply");
    QCOMPARE(panel->document.pen(0).ColorR, 77);
}

void MarkLayerParamFormTest::a_colour_is_stored_at_once() {
    panel->form.SetLayerIndex(8);
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [](QWidget& dialog) { qobject_cast<QColorDialog*>(&dialog)->setCurrentColor(QColor(10, 200, 30)); },
        QStringLiteral("OK"));
    panel->press("pushButtonSetLayerColor");
    QVERIFY(answerer.allAnswered());
    QCOMPARE(panel->document.pen(8).ColorR, 10);
    QCOMPARE(panel->document.pen(8).ColorG, 200);
    QCOMPARE(panel->document.pen(8).ColorB, 30);
    QCOMPARE(cell(8), QColor(10, 200, 30));
    QVERIFY(part<QLabel>(panel->form, "labelLayerColor")->styleSheet().contains(QStringLiteral("#0ac81e")));
}

void MarkLayerParamFormTest::a_cancelled_colour_changes_nothing() {
    const QColor before = cell(0);
    DialogAnswerer answerer;
    answerer.fillAndPress([](QWidget& dialog) { qobject_cast<QColorDialog*>(&dialog)->setCurrentColor(Qt::red); },
                          QStringLiteral("Cancel"));
    panel->press("pushButtonSetLayerColor");
    QVERIFY(answerer.allAnswered());
    QCOMPARE(cell(0), before);
    QCOMPARE(panel->document.pen(0).ColorR, before.red());
}

void MarkLayerParamFormTest::loading_a_pen_applies_nothing() {
    for (int i = 0; i < 20; ++i)
        panel->setPen(i, [&](LayerData& pen) {
            pen.UseDefault = i % 2 == 0;
            pen.MarkSpeed = 100.0 + i;
            pen.PWM = 120.0 + i;
        });
    for (int i : {3, 2, 7, 0, 19, 4})
        panel->form.SetLayerIndex(i);
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(panel->document.pen(i).UseDefault, i % 2 == 0);
        QCOMPARE(panel->document.pen(i).MarkSpeed, 100.0 + i);
        QCOMPARE(panel->document.pen(i).PWM, 120.0 + i);
    }
}

void MarkLayerParamFormTest::rows_follow_the_laser_type_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("fibre");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<bool>("power");
    QTest::addColumn<bool>("duty");
    QTest::addColumn<bool>("wave");
    QTest::addColumn<QString>("waveText");
    QTest::addColumn<double>("mostWave");
    const QString wave = QStringLiteral("波形号");
    QTest::newRow("FILBER") << 0 << 0 << "KHz" << true << false << false << wave << 100.0;
    QTest::newRow("FILBER MOPA") << 0 << 1 << "KHz" << true << false << true << QStringLiteral("脉宽") << 100000.0;
    QTest::newRow("YLR") << 1 << 0 << "Hz" << true << true << true << wave << 100.0;
    QTest::newRow("YAG") << 2 << 0 << "Hz" << false << true << true << wave << 100.0;
    QTest::newRow("SPI") << 3 << 0 << "KHz" << true << true << true << wave << 100.0;
    QTest::newRow("EP") << 4 << 0 << "KHz" << true << true << true << wave << 100.0;
    QTest::newRow("YLM") << 5 << 0 << "Hz" << true << true << true << wave << 100.0;
}

void MarkLayerParamFormTest::rows_follow_the_laser_type() {
    QFETCH(int, type);
    QFETCH(int, fibre);
    MarkingMParam_VZ::Instance()->SetMarkCardType(static_cast<MarkCardType>(type));
    MarkingMParam_VZ::Instance()->SetIPG100WType(static_cast<FilberLaserType>(fibre));
    panel->setPen(0, [](LayerData& pen) { pen.PWM = 30.0; });
    panel->form.ResetUI();
    panel->form.ResetLayerData();
    QTEST(part<QLabel>(panel->form, "unitFre")->text(), "unit");
    QTEST(panel->box("doubleSpinBoxPower")->isEnabled(), "power");
    QTEST(part<QLabel>(panel->form, "labelPower")->isEnabled(), "power");
    QTEST(panel->box("doubleSpinBoxPWM")->isEnabled(), "duty");
    QTEST(part<QLabel>(panel->form, "labelPWM")->isEnabled(), "duty");
    QCOMPARE(panel->box("doubleSpinBoxPWM")->value(), type == 0 ? 50.0 : 30.0);
    QVERIFY(panel->box("doubleSpinBoxFre")->isEnabled());
    QTEST(panel->box("doubleSpinBoxWaveNumber")->isEnabled(), "wave");
    QTEST(part<QLabel>(panel->form, "labelWaveNumber")->text(), "waveText");
    QTEST(panel->box("doubleSpinBoxWaveNumber")->maximum(), "mostWave");
}

void MarkLayerParamFormTest::a_pulse_width_above_100_is_set_to_0_when_the_row_goes() {
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardFilber);
    MarkingMParam_VZ::Instance()->SetIPG100WType(FilberMOPA);
    panel->form.ResetUI();
    auto* wave = panel->box("doubleSpinBoxWaveNumber");
    for (auto const& [before, after] : {std::pair{200.0, 0.0}, std::pair{100.0, 100.0}, std::pair{7.0, 7.0}}) {
        MarkingMParam_VZ::Instance()->SetIPG100WType(FilberMOPA);
        panel->form.ResetUI();
        wave->setValue(before);
        QCOMPARE(wave->value(), before);
        MarkingMParam_VZ::Instance()->SetIPG100WType(FilberIPG20W);
        panel->form.ResetUI();
        QCOMPARE(wave->value(), after);
    }
}

void MarkLayerParamFormTest::a_serial_laser_that_derives_pulses_locks_their_boxes() {
    constexpr char const* kNames[] = {"doubleSpinBoxPower", "doubleSpinBoxFre", "doubleSpinBoxPWM"};
    const auto enabled = [&] {
        int count = 0;
        for (char const* name : kNames)
            count += panel->box(name)->isEnabled() ? 1 : 0;
        return count;
    };
    {
        SerialLaser laser(true);
        panel->form.ResetLayerData();
        QCOMPARE(enabled(), 3);
        SystemParam::Instance()->SetEnableLayLaser(true);
        panel->form.ResetLayerData();
        QCOMPARE(enabled(), 0);
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYAG);
        panel->form.ResetLayerData();
        QCOMPARE(enabled(), 0);
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYLR);
    }
    SerialLaser plain(false);
    panel->form.ResetLayerData();
    QCOMPARE(enabled(), 3);
}

void MarkLayerParamFormTest::without_a_document_nothing_happens() {
    panel->form.DocChange(nullptr);
    panel->box("doubleSpinBoxMarkSpeed")->setValue(3.0);
    panel->press("pushButtonApply");
    panel->press("pushButtonSetDefault");
    panel->press("pushButtonAdvance");
    panel->press("pushButtonSetLayerColor");
    panel->useDefault()->click();
    panel->form.SelectObjChanged();
    panel->form.SetLayerIndex(4);
    panel->form.ResetLayerData();
    panel->form.UpdateLayerData();
    QVERIFY(panel->document.pen(0).MarkSpeed != 3.0);
    QVERIFY(LayerData::GetDefaultLayerData().MarkSpeed != 3.0);
    QVERIFY(logTexts("operator").isEmpty());
}

void MarkLayerParamFormTest::a_closed_document_is_let_go() {
    auto other = std::make_unique<QRulerView>(nullptr);
    panel->form.DocChange(other.get());
    other.reset();
    panel->press("pushButtonApply");
    panel->form.ResetLayerData();
    panel->form.SelectObjChanged();
    QVERIFY(logTexts("operator").isEmpty());
}

void MarkLayerParamFormTest::update_layer_data_shows_the_pen_again_and_tells_the_debug_log() {
    ShowDebugInfo::Instance();
    const auto windows = QApplication::topLevelWidgets();
    const auto debug = std::find_if(windows.begin(), windows.end(), [](QWidget const* window) {
        return window->objectName() == QLatin1String("ShowDebugInfo");
    });
    QVERIFY(debug != windows.end());
    // Lines come through the event loop; those of the tests before are let in first.
    QCoreApplication::processEvents();
    auto* lines = part<QPlainTextEdit>(**debug, "plainTextEditDebug");
    lines->clear();
    panel->setPen(0, [](LayerData& pen) { pen.MarkSpeed = 88.0; });
    QVERIFY(panel->box("doubleSpinBoxMarkSpeed")->value() != 88.0);
    panel->form.UpdateLayerData();
    QCOMPARE(panel->box("doubleSpinBoxMarkSpeed")->value(), 88.0);
    QTRY_COMPARE(lines->toPlainText(), QStringLiteral("Trigger"));
}

void MarkLayerParamFormTest::the_wheel_turns_no_parameter_that_is_not_in_use() {
    auto* speed = panel->box("doubleSpinBoxMarkSpeed");
    const double before = speed->value();
    QWheelEvent event(QPointF(5, 5), speed->mapToGlobal(QPoint(5, 5)), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(speed, &event);
    QCOMPARE(speed->value(), before);
}

void MarkLayerParamFormTest::at_its_own_height_nothing_is_scrolled() {
    panel->form.resize(245, panel->form.GetWindowsHeight());
    panel->form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel->form));
    auto* area = part<QScrollArea>(panel->form, "scrollArea");
    QTRY_COMPARE(area->verticalScrollBar()->maximum(), 0);
    panel->form.resize(245, panel->form.GetWindowsHeight() - 200);
    QTRY_VERIFY(area->verticalScrollBar()->maximum() > 50);
}

QTEST_MAIN(MarkLayerParamFormTest)
#include "tst_marklayerparamform.moc"

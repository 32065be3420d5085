// SPDX-License-Identifier: MIT
#include "editing/marklayerparamform.h"
#include "engine/imodbuslaser.h"
#include "engine/languagemanager.h"
#include "engine/markingmparam_vz.h"
#include "engine/showdebuginfo.h"
#include "engine/systemparam.h"
#include "tests/editing/editingfixture.h"
#include "tests/editing/penboxes.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
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
    void cleanup();

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
    void a_pen_on_defaults_shows_them_and_keeps_its_own_values();
    void switching_defaults_off_shows_and_applies_the_pens_own_values();
    void switching_defaults_on_applies_what_is_shown();
    void defaults_and_own_values_are_shown_by_the_rules_of_the_duty();
    void loading_a_pen_applies_nothing();
    void set_default_stores_the_pen_as_the_default();
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
    QDoubleSpinBox* box(char const* name) { return part<QDoubleSpinBox>(*form, name); }
    QComboBox* combo() { return part<QComboBox>(*form, "comboBoxLayerIndex"); }
    QTableWidget* table() { return part<QTableWidget>(*form, "tableWidgetLayer"); }
    QCheckBox* useDefault() { return part<QCheckBox>(*form, "checkBoxUseDefault"); }
    QWidget* group() { return part<QWidget>(*form, "widget"); }
    void press(char const* name) { part<QPushButton>(*form, name)->click(); }
    QColor cell(int row) { return table()->item(row, 1)->background().color(); }
    /// Changes a pen behind the panel's back.
    void setPen(int index, std::function<void(LayerData&)> const& change) {
        LayerData* pen = nullptr;
        document->view.GetLayerParams()->GetLayerData(index, pen);
        change(*pen);
    }

    std::unique_ptr<DocumentFixture> document;
    std::unique_ptr<MarkLayerParamForm> form;
};

void MarkLayerParamFormTest::init() {
    document = std::make_unique<DocumentFixture>();
    LayerData::SetDefaultLatyerData(LayerData());
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYLR);
    MarkingMParam_VZ::Instance()->SetIPG100WType(FilberIPG20W);
    SystemParam::Instance()->SetEnableLayLaser(false);
    form = std::make_unique<MarkLayerParamForm>();
    form->DocChange(&document->view);
    form->SetLayerIndex(0);
    form->ResetLayerData();
}

void MarkLayerParamFormTest::cleanup() {
    form.reset();
    document.reset();
}

void MarkLayerParamFormTest::boxes_have_their_texts_units_and_limits_data() {
    boxRows();
}

void MarkLayerParamFormTest::boxes_have_their_texts_units_and_limits() {
    QFETCH(int, index);
    BoxRow const& row = kPenBoxes[index];
    const auto* tested = box(row.name);
    QCOMPARE(tested->decimals(), row.decimals);
    QCOMPARE(tested->minimum(), row.minimum);
    QCOMPARE(tested->maximum(), row.maximum);
    QCOMPARE(part<QLabel>(*form, row.label)->text(), LanguageManager::GetLanText(row.text));
    const QByteArray unit = QByteArray(row.label).replace("label", "unit");
    QCOMPARE(part<QLabel>(*form, unit.constData())->text(), QString::fromUtf8(row.unit));
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
    QCOMPARE(part<QWidget>(*form, QTest::currentDataTag())->property("text").toString(), text);
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
    setPen(4, [](LayerData& pen) {
        pen.ColorR = 1;
        pen.ColorG = 2;
        pen.ColorB = 3;
    });
    form->DocChange(&document->view);
    QCOMPARE(cell(4), QColor(1, 2, 3));
    QCOMPARE(cell(5), LayerParamEx::GetDefultColor(5));
    form->DocChange(nullptr);
    QCOMPARE(cell(4), LayerParamEx::GetDefultColor(4));
}

void MarkLayerParamFormTest::a_channel_above_255_gives_an_invalid_colour() {
    for (int LayerData::*channel : {&LayerData::ColorR, &LayerData::ColorG, &LayerData::ColorB}) {
        setPen(2, [&](LayerData& pen) { pen.*channel = 256; });
        form->DocChange(&document->view);
        QVERIFY(!cell(2).isValid());
        setPen(2, [&](LayerData& pen) { pen.*channel = 255; });
        form->DocChange(&document->view);
        QVERIFY(cell(2).isValid());
    }
}

void MarkLayerParamFormTest::table_and_combo_select_the_same_pen() {
    setPen(6, [](LayerData& pen) { pen.MarkSpeed = 321.0; });
    form->resize(245, 600);
    form->show();
    for (int column : {0, 1}) {
        form->SetLayerIndex(0);
        const QRect place = table()->visualItemRect(table()->item(6, column));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, place.center());
        QCOMPARE(combo()->currentIndex(), 6);
        QCOMPARE(box("doubleSpinBoxMarkSpeed")->value(), 321.0);
    }
    combo()->setCurrentIndex(9);
    QCOMPARE(table()->selectedItems().value(0)->row(), 9);
    form->SetLayerIndex(13);
    QCOMPARE(combo()->currentIndex(), 13);
    QCOMPARE(table()->selectedItems().value(0)->row(), 13);
}

void MarkLayerParamFormTest::a_pen_beyond_the_table_selects_the_first() {
    form->SetLayerIndex(19);
    QCOMPARE(combo()->currentIndex(), 19);
    form->SetLayerIndex(20);
    QCOMPARE(combo()->currentIndex(), 0);
}

void MarkLayerParamFormTest::every_field_is_shown() {
    QFETCH(int, index);
    BoxRow const& row = kPenBoxes[index];
    setPen(3, [&](LayerData& pen) { setValue(pen, row, otherValue(row)); });
    form->SetLayerIndex(3);
    QCOMPARE(box(row.name)->value(), otherValue(row));
    form->SetLayerIndex(2);
    QCOMPARE(box(row.name)->value(), valueOf(document->pen(2), row));
}

void MarkLayerParamFormTest::every_field_is_stored_with_apply_and_only_then() {
    QFETCH(int, index);
    BoxRow const& row = kPenBoxes[index];
    form->SetLayerIndex(5);
    const LayerData before = document->pen(5);
    box(row.name)->setValue(otherValue(row));
    QCOMPARE(valueOf(document->pen(5), row), valueOf(before, row));
    press("pushButtonApply");
    for (BoxRow const& each : kPenBoxes)
        QCOMPARE(valueOf(document->pen(5), each), &each == &row ? otherValue(row) : valueOf(before, each));
    QCOMPARE(valueOf(document->pen(4), row), valueOf(before, row));
}

void MarkLayerParamFormTest::apply_is_logged() {
    press("pushButtonApply");
    QCOMPARE(logTexts("operator"), QStringList(QStringLiteral("层参数应用")));
}

void MarkLayerParamFormTest::apply_stores_the_colour_of_the_swatch() {
    setPen(0, [](LayerData& pen) { pen.ColorR = pen.ColorG = pen.ColorB = 77; });
    form->DocChange(&document->view);
    form->ResetLayerData();
    setPen(0, [](LayerData& pen) { pen.ColorR = 9; });
    press("pushButtonApply");
    QCOMPARE(document->pen(0).ColorR, 77);
}

void MarkLayerParamFormTest::a_colour_is_stored_at_once() {
    form->SetLayerIndex(8);
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [](QWidget& dialog) { qobject_cast<QColorDialog*>(&dialog)->setCurrentColor(QColor(10, 200, 30)); },
        QStringLiteral("OK"));
    press("pushButtonSetLayerColor");
    QVERIFY(answerer.allAnswered());
    QCOMPARE(document->pen(8).ColorR, 10);
    QCOMPARE(document->pen(8).ColorG, 200);
    QCOMPARE(document->pen(8).ColorB, 30);
    QCOMPARE(cell(8), QColor(10, 200, 30));
    QVERIFY(part<QLabel>(*form, "labelLayerColor")->styleSheet().contains(QStringLiteral("#0ac81e")));
}

void MarkLayerParamFormTest::a_cancelled_colour_changes_nothing() {
    const QColor before = cell(0);
    DialogAnswerer answerer;
    answerer.fillAndPress([](QWidget& dialog) { qobject_cast<QColorDialog*>(&dialog)->setCurrentColor(Qt::red); },
                          QStringLiteral("Cancel"));
    press("pushButtonSetLayerColor");
    QVERIFY(answerer.allAnswered());
    QCOMPARE(cell(0), before);
    QCOMPARE(document->pen(0).ColorR, before.red());
}

void MarkLayerParamFormTest::a_pen_on_defaults_shows_them_and_keeps_its_own_values() {
    LayerData defaults;
    defaults.MarkSpeed = 1234.0;
    LayerData::SetDefaultLatyerData(defaults);
    setPen(1, [](LayerData& pen) {
        pen.MarkSpeed = 55.0;
        pen.UseDefault = true;
    });
    form->SetLayerIndex(1);
    QVERIFY(useDefault()->isChecked());
    QVERIFY(!group()->isEnabled());
    QCOMPARE(box("doubleSpinBoxMarkSpeed")->value(), 1234.0);
    QCOMPARE(document->pen(1).MarkSpeed, 55.0);
    form->SetLayerIndex(2);
    QVERIFY(!useDefault()->isChecked());
    QVERIFY(group()->isEnabled());
    QCOMPARE(document->pen(1).MarkSpeed, 55.0);
}

void MarkLayerParamFormTest::switching_defaults_off_shows_and_applies_the_pens_own_values() {
    LayerData defaults;
    defaults.MarkSpeed = 1234.0;
    LayerData::SetDefaultLatyerData(defaults);
    setPen(1, [](LayerData& pen) {
        pen.MarkSpeed = 55.0;
        pen.UseDefault = true;
    });
    form->SetLayerIndex(1);
    useDefault()->click();
    QCOMPARE(box("doubleSpinBoxMarkSpeed")->value(), 55.0);
    QVERIFY(!document->pen(1).UseDefault);
    QCOMPARE(document->pen(1).MarkSpeed, 55.0);
    QVERIFY(group()->isEnabled());
}

void MarkLayerParamFormTest::switching_defaults_on_applies_what_is_shown() {
    LayerData defaults;
    defaults.MarkSpeed = 1234.0;
    LayerData::SetDefaultLatyerData(defaults);
    useDefault()->click();
    QCOMPARE(box("doubleSpinBoxMarkSpeed")->value(), 1234.0);
    QVERIFY(document->pen(0).UseDefault);
    QCOMPARE(document->pen(0).MarkSpeed, 1234.0);
    QVERIFY(!group()->isEnabled());
}

/// Fibre lasers show half whoever the value comes from; percent of the others end at 100.
void MarkLayerParamFormTest::defaults_and_own_values_are_shown_by_the_rules_of_the_duty() {
    LayerData defaults;
    defaults.PWM = 250.0;
    LayerData::SetDefaultLatyerData(defaults);
    for (auto const& [type, own, shared] : {std::tuple{MarkCardFilber, 50.0, 50.0}, {MarkCardYAG, 30.0, 100.0}}) {
        MarkingMParam_VZ::Instance()->SetMarkCardType(type);
        setPen(0, [](LayerData& pen) {
            pen.PWM = 30.0;
            pen.UseDefault = false;
        });
        form->ResetUI();
        form->ResetLayerData();
        QCOMPARE(box("doubleSpinBoxPWM")->value(), own);
        useDefault()->click();
        QCOMPARE(box("doubleSpinBoxPWM")->value(), shared);
        QCOMPARE(document->pen(0).PWM, shared);
        useDefault()->click();
    }
}

void MarkLayerParamFormTest::loading_a_pen_applies_nothing() {
    for (int i = 0; i < 20; ++i)
        setPen(i, [&](LayerData& pen) {
            pen.UseDefault = i % 2 == 0;
            pen.MarkSpeed = 100.0 + i;
            pen.PWM = 120.0 + i;
        });
    for (int i : {3, 2, 7, 0, 19, 4})
        form->SetLayerIndex(i);
    for (int i = 0; i < 20; ++i) {
        QCOMPARE(document->pen(i).UseDefault, i % 2 == 0);
        QCOMPARE(document->pen(i).MarkSpeed, 100.0 + i);
        QCOMPARE(document->pen(i).PWM, 120.0 + i);
    }
}

void MarkLayerParamFormTest::set_default_stores_the_pen_as_the_default() {
    form->SetLayerIndex(3);
    setPen(3, [](LayerData& pen) { pen.MarkDelay = 4321; });
    box("doubleSpinBoxJunpSpeed")->setValue(777.0);
    press("pushButtonSetDefault");
    QCOMPARE(document->pen(3).JumpSpeed, 777.0);
    QCOMPARE(LayerData::GetDefaultLayerData().JumpSpeed, 777.0);
    QCOMPARE(LayerData::GetDefaultLayerData().MarkDelay, 4321);
    QVERIFY(logTexts("operator").isEmpty());
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
    setPen(0, [](LayerData& pen) { pen.PWM = 30.0; });
    form->ResetUI();
    form->ResetLayerData();
    QTEST(part<QLabel>(*form, "unitFre")->text(), "unit");
    QTEST(box("doubleSpinBoxPower")->isEnabled(), "power");
    QTEST(part<QLabel>(*form, "labelPower")->isEnabled(), "power");
    QTEST(box("doubleSpinBoxPWM")->isEnabled(), "duty");
    QTEST(part<QLabel>(*form, "labelPWM")->isEnabled(), "duty");
    QCOMPARE(box("doubleSpinBoxPWM")->value(), type == 0 ? 50.0 : 30.0);
    QVERIFY(box("doubleSpinBoxFre")->isEnabled());
    QTEST(box("doubleSpinBoxWaveNumber")->isEnabled(), "wave");
    QTEST(part<QLabel>(*form, "labelWaveNumber")->text(), "waveText");
    QTEST(box("doubleSpinBoxWaveNumber")->maximum(), "mostWave");
}

void MarkLayerParamFormTest::a_pulse_width_above_100_is_set_to_0_when_the_row_goes() {
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardFilber);
    MarkingMParam_VZ::Instance()->SetIPG100WType(FilberMOPA);
    form->ResetUI();
    auto* wave = box("doubleSpinBoxWaveNumber");
    for (auto const& [before, after] : {std::pair{200.0, 0.0}, std::pair{100.0, 100.0}, std::pair{7.0, 7.0}}) {
        MarkingMParam_VZ::Instance()->SetIPG100WType(FilberMOPA);
        form->ResetUI();
        wave->setValue(before);
        QCOMPARE(wave->value(), before);
        MarkingMParam_VZ::Instance()->SetIPG100WType(FilberIPG20W);
        form->ResetUI();
        QCOMPARE(wave->value(), after);
    }
}

void MarkLayerParamFormTest::a_serial_laser_that_derives_pulses_locks_their_boxes() {
    constexpr char const* kNames[] = {"doubleSpinBoxPower", "doubleSpinBoxFre", "doubleSpinBoxPWM"};
    const auto enabled = [&] {
        int count = 0;
        for (char const* name : kNames)
            count += box(name)->isEnabled() ? 1 : 0;
        return count;
    };
    {
        SerialLaser laser(true);
        form->ResetLayerData();
        QCOMPARE(enabled(), 3);
        SystemParam::Instance()->SetEnableLayLaser(true);
        form->ResetLayerData();
        QCOMPARE(enabled(), 0);
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYAG);
        form->ResetLayerData();
        QCOMPARE(enabled(), 0);
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYLR);
    }
    SerialLaser plain(false);
    form->ResetLayerData();
    QCOMPARE(enabled(), 3);
}

void MarkLayerParamFormTest::without_a_document_nothing_happens() {
    form->DocChange(nullptr);
    box("doubleSpinBoxMarkSpeed")->setValue(3.0);
    press("pushButtonApply");
    press("pushButtonSetDefault");
    press("pushButtonAdvance");
    press("pushButtonSetLayerColor");
    useDefault()->click();
    form->SelectObjChanged();
    form->SetLayerIndex(4);
    form->ResetLayerData();
    form->UpdateLayerData();
    QVERIFY(document->pen(0).MarkSpeed != 3.0);
    QVERIFY(LayerData::GetDefaultLayerData().MarkSpeed != 3.0);
    QVERIFY(logTexts("operator").isEmpty());
}

void MarkLayerParamFormTest::a_closed_document_is_let_go() {
    auto other = std::make_unique<QRulerView>(nullptr);
    form->DocChange(other.get());
    other.reset();
    press("pushButtonApply");
    form->ResetLayerData();
    form->SelectObjChanged();
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
    setPen(0, [](LayerData& pen) { pen.MarkSpeed = 88.0; });
    QVERIFY(box("doubleSpinBoxMarkSpeed")->value() != 88.0);
    form->UpdateLayerData();
    QCOMPARE(box("doubleSpinBoxMarkSpeed")->value(), 88.0);
    QTRY_COMPARE(lines->toPlainText(), QStringLiteral("Trigger"));
}

void MarkLayerParamFormTest::the_wheel_turns_no_parameter_that_is_not_in_use() {
    auto* speed = box("doubleSpinBoxMarkSpeed");
    const double before = speed->value();
    QWheelEvent event(QPointF(5, 5), speed->mapToGlobal(QPoint(5, 5)), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(speed, &event);
    QCOMPARE(speed->value(), before);
}

void MarkLayerParamFormTest::at_its_own_height_nothing_is_scrolled() {
    form->resize(245, form->GetWindowsHeight());
    form->show();
    QVERIFY(QTest::qWaitForWindowExposed(form.get()));
    auto* area = part<QScrollArea>(*form, "scrollArea");
    QTRY_COMPARE(area->verticalScrollBar()->maximum(), 0);
    form->resize(245, form->GetWindowsHeight() - 200);
    QTRY_VERIFY(area->verticalScrollBar()->maximum() > 50);
}

QTEST_MAIN(MarkLayerParamFormTest)
#include "tst_marklayerparamform.moc"

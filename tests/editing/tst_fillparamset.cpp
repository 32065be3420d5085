// SPDX-License-Identifier: MIT
#include "editing/fillparamset.h"
#include "editing/marktoolproperty.h"
#include "engine/languagemanager.h"
#include "engine/marktool.h"
#include "tests/editing/editingfixture.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <limits>

using namespace tests;

namespace {

FillParam fillOf(double dist, int layer = 0) {
    FillParam fill;
    fill.Enable = true;
    fill.FillDist = dist;
    fill.FillLayer = layer;
    return fill;
}

bool same(FillParam const& a, FillParam const& b) {
    return a.Enable == b.Enable && a.FillDist == b.FillDist && a.FillAngle == b.FillAngle &&
           a.FillLayer == b.FillLayer && a.FillOffset == b.FillOffset && a.EdgeCnt == b.EdgeCnt &&
           a.FillType == b.FillType;
}

} // namespace

/// The hatch dialog, alone and behind the button of the tool panel.
class FillParamSetTest : public QObject {
    Q_OBJECT

private slots:
    void widgets_have_their_texts_data();
    void widgets_have_their_texts();
    void widgets_have_their_limits_data();
    void widgets_have_their_limits();
    void a_fill_shows_its_defaults_data();
    void a_fill_shows_its_defaults();
    void combo_boxes_have_their_entries_data();
    void combo_boxes_have_their_entries();
    void five_fills_come_back_as_three();
    void no_fills_come_back_as_three_disabled_ones_with_a_pitch_of_a_tenth();
    void every_widget_writes_its_field_of_the_current_fill_data();
    void every_widget_writes_its_field_of_the_current_fill();
    void switching_fills_never_writes_one_into_another();
    void the_enable_box_opens_the_group();
    void the_edge_and_order_flags_are_stored_at_once_the_drawing_flag_with_ok();
    void ok_hatches_the_selection();
    void cancel_leaves_the_object_as_it_was();
    void the_base_object_of_the_selection_is_shown();
    void a_hatch_of_too_many_segments_is_refused_with_their_number();

private:
    FillParam fillOfObject(QRulerView& view, int index, bool* edge = nullptr) {
        bool flags[3] = {};
        const QVector<FillParam> fills = (*view.GetMarkTools())[index]->GetFillParam(flags[0], flags[1], flags[2]);
        if (edge)
            *edge = flags[0];
        return fills.at(0);
    }
    TemporaryRoot root;
};

void FillParamSetTest::widgets_have_their_texts_data() {
    QTest::addColumn<QString>("text");
    for (auto const& [name, text] :
         std::initializer_list<std::pair<char const*, char const*>>{{"radioButtonFill1", "填充1"},
                                                                    {"radioButtonFill2", "填充2"},
                                                                    {"radioButtonFill3", "填充3"},
                                                                    {"checkBoxEnableFill", "使能填充"},
                                                                    {"labelFillDist", "填充间距"},
                                                                    {"labelFillAngle", "填充角度"},
                                                                    {"labelFillLayer", "填充层号"},
                                                                    {"labelFillOffset", "填充缩进"},
                                                                    {"labelEdgeCnt", "绕边次数"},
                                                                    {"labelFillType", "填充类型"},
                                                                    {"checkBoxEnableEdge", "使能轮廓"},
                                                                    {"checkBoxMarkFillFirst", "先打填充"},
                                                                    {"checkBoxShowSimple", "ShowSimple"},
                                                                    {"pushButtonOK", "确认"},
                                                                    {"pushButtonOKCancel", "取消"}})
        QTest::newRow(name) << LanguageManager::GetLanText(text);
}

void FillParamSetTest::widgets_have_their_texts() {
    QFETCH(QString, text);
    FillParamSet dialog({}, false, false, false);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("填充设置"));
    QCOMPARE(part<QWidget>(dialog, QTest::currentDataTag())->property("text").toString(), text);
}

void FillParamSetTest::widgets_have_their_limits_data() {
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("limit");
    QTest::newRow("doubleSpinBoxFillDist") << QByteArray("decimals") << QVariant(3);
    QTest::newRow("doubleSpinBoxFillAngle") << QByteArray("minimum") << QVariant(-360.0);
    QTest::newRow("doubleSpinBoxFillAngle") << QByteArray("maximum") << QVariant(360.0);
    QTest::newRow("doubleSpinBoxFillOffset") << QByteArray("decimals") << QVariant(3);
    QTest::newRow("doubleSpinBoxFillOffset") << QByteArray("maximum") << QVariant(360.0);
    QTest::newRow("unitFillDist") << QByteArray("text") << QVariant(QStringLiteral("mm"));
    QTest::newRow("unitFillAngle") << QByteArray("text") << QVariant(QStringLiteral("°"));
    QTest::newRow("unitFillOffset") << QByteArray("text") << QVariant(QStringLiteral("mm"));
}

void FillParamSetTest::widgets_have_their_limits() {
    QFETCH(QByteArray, property);
    FillParamSet dialog({}, false, false, false);
    QTEST(part<QWidget>(dialog, QTest::currentDataTag())->property(property.constData()), "limit");
}

void FillParamSetTest::a_fill_shows_its_defaults_data() {
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("delivered");
    QTest::newRow("checkBoxEnableFill") << QByteArray("checked") << QVariant(false);
    QTest::newRow("doubleSpinBoxFillDist") << QByteArray("value") << QVariant(0.1);
    QTest::newRow("doubleSpinBoxFillAngle") << QByteArray("value") << QVariant(0.0);
    QTest::newRow("comboBoxFillLayer") << QByteArray("currentIndex") << QVariant(0);
    QTest::newRow("doubleSpinBoxFillOffset") << QByteArray("value") << QVariant(0.0);
    QTest::newRow("spinBoxEdgeCnt") << QByteArray("value") << QVariant(0);
    QTest::newRow("comboBoxFillType") << QByteArray("currentIndex") << QVariant(0);
}

void FillParamSetTest::a_fill_shows_its_defaults() {
    QFETCH(QByteArray, property);
    FillParam other = fillOf(0.2, 7);
    other.FillAngle = 30.0;
    other.FillOffset = 0.5;
    other.EdgeCnt = 2;
    other.FillType = 3;
    FillParamSet dialog({other}, false, false, false);
    const auto* widget = part<QWidget>(dialog, QTest::currentDataTag());
    for (int i : {2, 3}) {
        part<QRadioButton>(dialog, "radioButtonFill1")->setChecked(true);
        QFETCH(QVariant, delivered);
        QVERIFY(widget->property(property.constData()) != delivered);
        part<QRadioButton>(dialog, qPrintable(QStringLiteral("radioButtonFill%1").arg(i)))->setChecked(true);
        QCOMPARE(widget->property(property.constData()), delivered);
    }
}

void FillParamSetTest::combo_boxes_have_their_entries_data() {
    QTest::addColumn<QStringList>("entries");
    QStringList pens;
    for (int i = 1; i <= 20; ++i)
        pens.append(QString::number(i));
    QTest::newRow("comboBoxFillLayer") << pens;
    QTest::newRow("comboBoxFillType") << QStringList{"单向填充", "来回填充", "整体弓形", "分段弓形", "回形填充"};
}

void FillParamSetTest::combo_boxes_have_their_entries() {
    FillParamSet dialog({}, false, false, false);
    const auto* box = part<QComboBox>(dialog, QTest::currentDataTag());
    QStringList shown;
    for (int i = 0; i < box->count(); ++i)
        shown.append(box->itemText(i));
    QTEST(shown, "entries");
}

void FillParamSetTest::five_fills_come_back_as_three() {
    FillParamSet dialog({fillOf(1), fillOf(2), fillOf(3), fillOf(4), fillOf(5)}, true, true, true);
    QCOMPARE(dialog.Fills.size(), 3);
    for (int i = 0; i < 3; ++i)
        QVERIFY(same(dialog.Fills[i], fillOf(i + 1)));
    QVERIFY(dialog.EnableEdge && dialog.MarkFillFirst && dialog.ShowSimple);
}

void FillParamSetTest::no_fills_come_back_as_three_disabled_ones_with_a_pitch_of_a_tenth() {
    FillParamSet dialog({}, false, false, false);
    QCOMPARE(dialog.Fills.size(), 3);
    for (FillParam const& fill : dialog.Fills) {
        QVERIFY(!fill.Enable);
        QCOMPARE(fill.FillDist, 0.1);
    }
    QVERIFY(!part<QGroupBox>(dialog, "groupBox")->isEnabled());
    QCOMPARE(part<QDoubleSpinBox>(dialog, "doubleSpinBoxFillDist")->value(), 0.1);
}

void FillParamSetTest::every_widget_writes_its_field_of_the_current_fill_data() {
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("checkBoxEnableFill") << QByteArray("checked") << QVariant(true);
    QTest::newRow("doubleSpinBoxFillDist") << QByteArray("value") << QVariant(0.025);
    QTest::newRow("doubleSpinBoxFillAngle") << QByteArray("value") << QVariant(-45.5);
    QTest::newRow("comboBoxFillLayer") << QByteArray("currentIndex") << QVariant(19);
    QTest::newRow("doubleSpinBoxFillOffset") << QByteArray("value") << QVariant(1.125);
    QTest::newRow("spinBoxEdgeCnt") << QByteArray("value") << QVariant(4);
    QTest::newRow("comboBoxFillType") << QByteArray("currentIndex") << QVariant(4);
}

void FillParamSetTest::every_widget_writes_its_field_of_the_current_fill() {
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    const QByteArray name(QTest::currentDataTag());
    FillParamSet dialog({}, false, false, false);
    part<QRadioButton>(dialog, "radioButtonFill2")->setChecked(true);
    QVERIFY(part<QWidget>(dialog, name.constData())->setProperty(property.constData(), value));
    const FillParam& now = dialog.Fills[1];
    const QMap<QByteArray, QVariant> fields{
        {"checkBoxEnableFill", now.Enable},          {"doubleSpinBoxFillDist", now.FillDist},
        {"doubleSpinBoxFillAngle", now.FillAngle},   {"comboBoxFillLayer", now.FillLayer},
        {"doubleSpinBoxFillOffset", now.FillOffset}, {"spinBoxEdgeCnt", now.EdgeCnt},
        {"comboBoxFillType", now.FillType}};
    QCOMPARE(fields.value(name), value);
    QVERIFY(same(dialog.Fills[0], FillParam()));
    QVERIFY(same(dialog.Fills[2], FillParam()));
}

void FillParamSetTest::switching_fills_never_writes_one_into_another() {
    FillParam second = fillOf(0.2, 7);
    second.FillAngle = 30.0;
    second.FillOffset = 0.5;
    second.EdgeCnt = 2;
    second.FillType = 3;
    const QVector<FillParam> fills{fillOf(1.0, 1), second, FillParam()};
    FillParamSet dialog(fills, true, false, false);
    for (int i : {2, 3, 1, 3, 2, 1}) {
        part<QRadioButton>(dialog, qPrintable(QStringLiteral("radioButtonFill%1").arg(i)))->setChecked(true);
        const FillParam& shown = fills[i - 1];
        QCOMPARE(part<QCheckBox>(dialog, "checkBoxEnableFill")->isChecked(), shown.Enable);
        QCOMPARE(part<QDoubleSpinBox>(dialog, "doubleSpinBoxFillDist")->value(), shown.FillDist);
        QCOMPARE(part<QDoubleSpinBox>(dialog, "doubleSpinBoxFillAngle")->value(), shown.FillAngle);
        QCOMPARE(part<QComboBox>(dialog, "comboBoxFillLayer")->currentIndex(), shown.FillLayer);
        QCOMPARE(part<QDoubleSpinBox>(dialog, "doubleSpinBoxFillOffset")->value(), shown.FillOffset);
        QCOMPARE(part<QSpinBox>(dialog, "spinBoxEdgeCnt")->value(), shown.EdgeCnt);
        QCOMPARE(part<QComboBox>(dialog, "comboBoxFillType")->currentIndex(), shown.FillType);
        QCOMPARE(part<QGroupBox>(dialog, "groupBox")->isEnabled(), shown.Enable);
    }
    for (int i = 0; i < 3; ++i)
        QVERIFY(same(dialog.Fills[i], fills[i]));
}

void FillParamSetTest::the_enable_box_opens_the_group() {
    FillParamSet dialog({}, false, false, false);
    auto* enable = part<QCheckBox>(dialog, "checkBoxEnableFill");
    enable->setChecked(true);
    QVERIFY(part<QGroupBox>(dialog, "groupBox")->isEnabled());
    enable->setChecked(false);
    QVERIFY(!part<QGroupBox>(dialog, "groupBox")->isEnabled());
}

void FillParamSetTest::the_edge_and_order_flags_are_stored_at_once_the_drawing_flag_with_ok() {
    FillParamSet dialog({}, false, false, false);
    for (char const* name : {"checkBoxEnableEdge", "checkBoxMarkFillFirst", "checkBoxShowSimple"})
        part<QCheckBox>(dialog, name)->setChecked(true);
    QVERIFY(dialog.EnableEdge && dialog.MarkFillFirst);
    QVERIFY(!dialog.ShowSimple);
    part<QPushButton>(dialog, "pushButtonOK")->click();
    QVERIFY(dialog.ShowSimple);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void FillParamSetTest::ok_hatches_the_selection() {
    DocumentFixture document;
    document.addRects({{10, 10, 20, 10}});
    MarkToolProperty panel;
    panel.SetRulerView(&document.view);
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [](QWidget& dialog) {
            part<QCheckBox>(dialog, "checkBoxEnableFill")->setChecked(true);
            part<QDoubleSpinBox>(dialog, "doubleSpinBoxFillDist")->setValue(0.5);
            part<QCheckBox>(dialog, "checkBoxEnableEdge")->setChecked(false);
        },
        QStringLiteral("pushButtonOK"));
    part<QPushButton>(panel, "pushButtonFill")->click();
    QCOMPARE(answerer.titles(), QStringList(QStringLiteral("填充设置")));
    bool edge = true;
    const FillParam fill = fillOfObject(document.view, 0, &edge);
    QVERIFY(fill.Enable);
    QCOMPARE(fill.FillDist, 0.5);
    QVERIFY(!edge);
}

void FillParamSetTest::cancel_leaves_the_object_as_it_was() {
    DocumentFixture document;
    document.addRects({{10, 10, 20, 10}});
    MarkToolProperty panel;
    panel.SetRulerView(&document.view);
    const FillParam before = fillOfObject(document.view, 0);
    DialogAnswerer answerer;
    answerer.fillAndPress([](QWidget& dialog) { part<QCheckBox>(dialog, "checkBoxEnableFill")->setChecked(true); },
                          QStringLiteral("pushButtonOKCancel"));
    part<QPushButton>(panel, "pushButtonFill")->click();
    QVERIFY(answerer.allAnswered());
    QVERIFY(same(fillOfObject(document.view, 0), before));
}

void FillParamSetTest::the_base_object_of_the_selection_is_shown() {
    DocumentFixture document;
    document.addRects({{10, 10, 20, 10}, {60, 60, 10, 10}});
    for (int i : {0, 1}) {
        document.select({i});
        document.view.FillSelectedObj({fillOf(0.25 + i)}, true, false, false);
    }
    MarkToolProperty panel;
    panel.SetRulerView(&document.view);
    for (QVector<int> const& rows : {QVector<int>{0}, QVector<int>{1}, QVector<int>{0, 1}, QVector<int>{1, 0}}) {
        document.select(rows);
        const int base = document.view.GetMarkTools()->GetBaseSelectedIndex();
        const int expected = rows.size() == 1 || base < 0 ? document.view.GetFirstSelectedToolIndex() : base;
        double shown = 0.0;
        DialogAnswerer answerer;
        answerer.fillAndPress(
            [&](QWidget& dialog) { shown = part<QDoubleSpinBox>(dialog, "doubleSpinBoxFillDist")->value(); },
            QStringLiteral("pushButtonOKCancel"));
        panel.on_pushButtonFill_clicked();
        QCOMPARE(shown, 0.25 + expected);
    }
}

void FillParamSetTest::a_hatch_of_too_many_segments_is_refused_with_their_number() {
    DocumentFixture document;
    document.addRects({{0, 0, 100, 100}});
    document.view.FillSelectedObj({fillOf(1.0)}, true, false, false);
    DialogAnswerer answerer;
    answerer.press(QStringLiteral("pushButtonOK"));
    document.view.FillSelectedObj({fillOf(0.000001)}, false, true, true);
    QCOMPARE(answerer.titles(), QStringList(QStringLiteral("填充设置")));
    const QRegularExpression shape(QStringLiteral("^填充线段过多,未作更改: (\\d+) > 20000000$"));
    const auto found = shape.match(answerer.texts().value(0));
    QVERIFY2(found.hasMatch(), qPrintable(answerer.texts().value(0)));
    const double segments = found.captured(1).toDouble();
    QVERIFY2(qAbs(segments - 1.0e8) < 1.0e3, qPrintable(found.captured(1)));
    answerer.press(QStringLiteral("pushButtonOK"));
    document.view.FillSelectedObj({fillOf(0.0009)}, false, true, true);
    QCOMPARE(answerer.texts().value(1), QStringLiteral("填充间距过小,未作更改: < 0.001 mm"));
    bool edge = false;
    QCOMPARE(fillOfObject(document.view, 0, &edge).FillDist, 1.0);
    QVERIFY(edge);
    QVERIFY(answerer.allAnswered());
    document.view.SetReadOnly(true);
    document.view.FillSelectedObj({fillOf(0.000001)}, false, true, true);
    QCOMPARE(answerer.seen().size(), 2);
}

QTEST_MAIN(FillParamSetTest)
#include "tst_fillparamset.moc"

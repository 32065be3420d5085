// SPDX-License-Identifier: MIT
#include "tests/editing/penpanel.h"

using namespace tests;

/// Pens that take the default parameters instead of their own.
class PenDefaultsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { panel.reset(); }

    void a_pen_on_defaults_shows_them_and_keeps_its_own_values();
    void switching_defaults_off_shows_and_applies_the_pens_own_values();
    void switching_defaults_on_applies_what_is_shown();
    void defaults_and_own_values_are_shown_by_the_rules_of_the_duty();
    void set_default_stores_the_pen_as_the_default();

private:
    QWidget* group() { return part<QWidget>(panel->form, "widget"); }
    /// The default pen differs from all pens by its speed.
    static void setDefaultSpeed() {
        LayerData defaults;
        defaults.MarkSpeed = 1234.0;
        LayerData::SetDefaultLatyerData(defaults);
    }
    /// Pen 1 has a speed of 55 mm/s of its own, and takes the default.
    void showPenOnDefaults() {
        setDefaultSpeed();
        panel->setPen(1, [](LayerData& pen) {
            pen.MarkSpeed = 55.0;
            pen.UseDefault = true;
        });
        panel->form.SetLayerIndex(1);
    }

    std::unique_ptr<PenPanel> panel;
};

void PenDefaultsTest::init() {
    resetPenPanel();
    panel = std::make_unique<PenPanel>();
    panel->show(0);
}

void PenDefaultsTest::a_pen_on_defaults_shows_them_and_keeps_its_own_values() {
    showPenOnDefaults();
    QVERIFY(panel->useDefault()->isChecked());
    QVERIFY(!group()->isEnabled());
    QCOMPARE(panel->box("doubleSpinBoxMarkSpeed")->value(), 1234.0);
    QCOMPARE(panel->document.pen(1).MarkSpeed, 55.0);
    panel->form.SetLayerIndex(2);
    QVERIFY(!panel->useDefault()->isChecked());
    QVERIFY(group()->isEnabled());
    QCOMPARE(panel->document.pen(1).MarkSpeed, 55.0);
}

void PenDefaultsTest::switching_defaults_off_shows_and_applies_the_pens_own_values() {
    showPenOnDefaults();
    panel->useDefault()->click();
    QCOMPARE(panel->box("doubleSpinBoxMarkSpeed")->value(), 55.0);
    QVERIFY(!panel->document.pen(1).UseDefault);
    QCOMPARE(panel->document.pen(1).MarkSpeed, 55.0);
    QVERIFY(group()->isEnabled());
}

void PenDefaultsTest::switching_defaults_on_applies_what_is_shown() {
    setDefaultSpeed();
    panel->useDefault()->click();
    QCOMPARE(panel->box("doubleSpinBoxMarkSpeed")->value(), 1234.0);
    QVERIFY(panel->document.pen(0).UseDefault);
    QCOMPARE(panel->document.pen(0).MarkSpeed, 1234.0);
    QVERIFY(!group()->isEnabled());
}

/// Fibre lasers show half whoever the value comes from; percent of the others end at 100.
void PenDefaultsTest::defaults_and_own_values_are_shown_by_the_rules_of_the_duty() {
    LayerData defaults;
    defaults.PWM = 250.0;
    LayerData::SetDefaultLatyerData(defaults);
    for (auto const& [type, own, shared] : {std::tuple{MarkCardFilber, 50.0, 50.0}, {MarkCardYAG, 30.0, 100.0}}) {
        MarkingMParam_VZ::Instance()->SetMarkCardType(type);
        panel->setPen(0, [](LayerData& pen) {
            pen.PWM = 30.0;
            pen.UseDefault = false;
        });
        panel->form.ResetUI();
        panel->form.ResetLayerData();
        QCOMPARE(panel->box("doubleSpinBoxPWM")->value(), own);
        panel->useDefault()->click();
        QCOMPARE(panel->box("doubleSpinBoxPWM")->value(), shared);
        QCOMPARE(panel->document.pen(0).PWM, shared);
        panel->useDefault()->click();
    }
}

void PenDefaultsTest::set_default_stores_the_pen_as_the_default() {
    panel->form.SetLayerIndex(3);
    panel->setPen(3, [](LayerData& pen) { pen.MarkDelay = 4321; });
    panel->box("doubleSpinBoxJunpSpeed")->setValue(777.0);
    panel->press("pushButtonSetDefault");
    QCOMPARE(panel->document.pen(3).JumpSpeed, 777.0);
    QCOMPARE(LayerData::GetDefaultLayerData().JumpSpeed, 777.0);
    QCOMPARE(LayerData::GetDefaultLayerData().MarkDelay, 4321);
    QVERIFY(logTexts("operator").isEmpty());
}

QTEST_MAIN(PenDefaultsTest)
#include "tst_pendefaults.moc"

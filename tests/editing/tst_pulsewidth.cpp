// SPDX-License-Identifier: MIT
#include "editing/marklayerparamform.h"
#include "engine/glassparam.h"
#include "engine/markingmparam_vz.h"
#include "tests/editing/editingfixture.h"

#include <QLabel>
#include <QPushButton>

using namespace tests;

/// The pen panel on a machine whose file sets the pulse-width mode, which is read once in a program.
class PulseWidthTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void the_duty_row_takes_microseconds();
    void a_pulse_is_not_longer_than_the_period_data();
    void a_pulse_is_not_longer_than_the_period();
    void the_frequency_that_limits_the_pulse_is_the_one_shown_and_stored();
    void a_frequency_of_0_stores_a_thousandth_as_the_pulse();
    void long_pulses_are_shown_as_they_are();

private:
    std::unique_ptr<DocumentFixture> document;
    std::unique_ptr<MarkLayerParamForm> form;
};

void PulseWidthTest::initTestCase() {
    document = std::make_unique<DocumentFixture>();
    QVERIFY(document->root.write(QStringLiteral("/ini/GlassParam.ini"), "[Laser]\nPulseWidthType=1\n"));
    QCOMPARE(GlassParam::Instance()->QPulseWidthType(), 1);
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardSPI);
    form = std::make_unique<MarkLayerParamForm>();
    form->DocChange(&document->view);
    form->SetLayerIndex(0);
    form->ResetLayerData();
}

void PulseWidthTest::the_duty_row_takes_microseconds() {
    QCOMPARE(part<QLabel>(*form, "labelPWM")->text(), QStringLiteral("脉宽(us)"));
    QCOMPARE(part<QDoubleSpinBox>(*form, "doubleSpinBoxPWM")->maximum(), 100000.0);
}

void PulseWidthTest::a_pulse_is_not_longer_than_the_period_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("shown");
    QTest::addColumn<double>("stored");
    QTest::newRow("10 kHz, 200 us") << 3 << 10.0 << 200.0 << 100.0;
    QTest::newRow("10 kHz, 60 us") << 4 << 10.0 << 60.0 << 60.0;
    QTest::newRow("10 Hz, 200 us") << 1 << 10.0 << 200.0 << 200.0;
    QTest::newRow("frequency 0") << 3 << 0.0 << 200.0 << 0.001;
    QTest::newRow("fibre") << 0 << 10.0 << 50.0 << 50.0;
}

void PulseWidthTest::a_pulse_is_not_longer_than_the_period() {
    QFETCH(int, type);
    QFETCH(double, frequency);
    QFETCH(double, shown);
    MarkingMParam_VZ::Instance()->SetMarkCardType(static_cast<MarkCardType>(type));
    form->ResetUI();
    form->ResetLayerData();
    part<QDoubleSpinBox>(*form, "doubleSpinBoxFre")->setValue(frequency);
    part<QDoubleSpinBox>(*form, "doubleSpinBoxPWM")->setValue(shown);
    part<QPushButton>(*form, "pushButtonApply")->click();
    QTEST(document->pen(0).PWM, "stored");
    QCOMPARE(document->pen(0).Fre, frequency);
    QCOMPARE(part<QDoubleSpinBox>(*form, "doubleSpinBoxFre")->value(), frequency);
}

/// The pen's own frequency has room for the pulse; the one typed has not.
void PulseWidthTest::the_frequency_that_limits_the_pulse_is_the_one_shown_and_stored() {
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardSPI);
    LayerData* pen = nullptr;
    document->view.GetLayerParams()->GetLayerData(0, pen);
    pen->Fre = 1.0;
    form->ResetUI();
    form->ResetLayerData();
    part<QDoubleSpinBox>(*form, "doubleSpinBoxFre")->setValue(12.5);
    part<QDoubleSpinBox>(*form, "doubleSpinBoxPWM")->setValue(200.0);
    part<QPushButton>(*form, "pushButtonApply")->click();
    QCOMPARE(document->pen(0).Fre, 12.5);
    QCOMPARE(document->pen(0).PWM, 80.0);
}

void PulseWidthTest::a_frequency_of_0_stores_a_thousandth_as_the_pulse() {
    for (MarkCardType type : {MarkCardSPI, MarkCardYLR}) {
        MarkingMParam_VZ::Instance()->SetMarkCardType(type);
        form->ResetUI();
        part<QDoubleSpinBox>(*form, "doubleSpinBoxFre")->setValue(0.0);
        part<QDoubleSpinBox>(*form, "doubleSpinBoxPWM")->setValue(200.0);
        part<QPushButton>(*form, "pushButtonApply")->click();
        QCOMPARE(document->pen(0).Fre, 0.0);
        QCOMPARE(document->pen(0).PWM, 0.001);
    }
}

void PulseWidthTest::long_pulses_are_shown_as_they_are() {
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYLR);
    LayerData* pen = nullptr;
    document->view.GetLayerParams()->GetLayerData(0, pen);
    pen->PWM = 2500.0;
    form->ResetLayerData();
    QCOMPARE(part<QDoubleSpinBox>(*form, "doubleSpinBoxPWM")->value(), 2500.0);
}

QTEST_MAIN(PulseWidthTest)
#include "tst_pulsewidth.moc"

// SPDX-License-Identifier: MIT
// The head's window of the simulated machine's panel.
#include "simengine/panel/headwindow.h"

#include "engine/languagemanager.h"
#include "headfixture.h"
#include "simengine/card/headmap.h"
#include "simengine/panel/panelwindow.h"

#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>

using namespace sim;

class TestHeadWindow : public QObject, private tests::HeadFixture {
    Q_OBJECT

private:
    static HeadWindow* window() {
        std::string error;
        machine().showPanel(true, error);
        PanelWindow::instance()->findChild<QPushButton*>("showHead")->click();
        return PanelWindow::instance()->findChild<HeadWindow*>("headWindow");
    }

private slots:
    void initTestCase() {
        QVERIFY(makeMachine());
        card().OpenCard();
    }
    void cleanupTestCase() {
        std::string error;
        machine().showPanel(false, error);
        MarkCardInstance::SetMarkCardInstance(nullptr);
    }
    void init() { QVERIFY(set({}) == SimOutcome::Done); }
    void cleanup() { LanguageManager::SetCurrentLan("zh_CN"); }

    void every_value_has_a_field_with_its_limits() {
        HeadWindow* const shown = window();
        QVERIFY(shown && shown->isVisible());
        QCOMPARE(shown->findChildren<QDoubleSpinBox*>().size(), kHeadValueCount);
        for (int i = 0; i < kHeadValueCount; ++i) {
            auto* field = shown->findChild<QDoubleSpinBox*>(kHeadValueRows[i].name);
            QVERIFY2(field, kHeadValueRows[i].name);
            QVERIFY(field->height() >= 40);
            for (double const limit : {kHeadValueRows[i].low, kHeadValueRows[i].high}) {
                field->setValue(limit < 0 ? -1e12 : 1e12);
                QVERIFY2(limit == 0.0 || qFuzzyCompare(shown->values().*kHeadValueRows[i].value,
                                                       limit < 0 ? kHeadValueRows[i].low : kHeadValueRows[i].high),
                         kHeadValueRows[i].name);
            }
        }
    }

    void values_are_applied_by_the_button_alone_and_kept() {
        HeadWindow* const shown = window();
        shown->findChild<QDoubleSpinBox*>("barrel")->setValue(3.0);
        shown->findChild<QDoubleSpinBox*>("rotation")->setValue(0.5);
        shown->findChild<QDoubleSpinBox*>("noise")->setValue(5.0);
        QCOMPARE(head().barrel, 0.0);
        shown->findChild<QPushButton*>("applyHead")->click();
        QCOMPARE(head().barrel, 0.03);
        QCOMPARE(head().rotation, 0.5);
        QCOMPARE(head().noise, 0.005);
        QVERIFY(!shown->findChild<QLabel*>("message")->text().isEmpty());
        shown->findChild<QPushButton*>("idealHead")->click();
        QVERIFY(isNeutral(head()));
        QCOMPARE(shown->findChild<QDoubleSpinBox*>("barrel")->value(), 0.0);
    }

    void opening_it_again_shows_the_machines_values() {
        HeadWindow* const shown = window();
        shown->findChild<QDoubleSpinBox*>("offsetX")->setValue(7.0);
        SimHeadDistortion wanted;
        wanted.offsetX = -2.5;
        QVERIFY(set(wanted) == SimOutcome::Done);
        QCOMPARE(window(), shown);
        QCOMPARE(shown->findChild<QDoubleSpinBox*>("offsetX")->value(), -2.5);
    }

    void a_value_between_the_limits_that_no_head_has_is_told() {
        HeadWindow* const shown = window();
        shown->findChild<QDoubleSpinBox*>("scaleX")->setValue(0.05);
        shown->findChild<QPushButton*>("applyHead")->click();
        QCOMPARE(head().scaleX, 1.0);
        auto* message = shown->findChild<QLabel*>("message");
        QVERIFY(message->property("bad").toBool());
        QCOMPARE(message->text(), QString("X比例: 数值超出范围"));
    }

    void what_is_finer_than_the_fields_show_stays_when_another_value_is_applied() {
        SimHeadDistortion fine;
        fine.scaleX = 1.00000123;
        fine.barrel = 0.0100000456;
        QVERIFY(set(fine) == SimOutcome::Done);
        HeadWindow* const shown = window();
        shown->findChild<QDoubleSpinBox*>("rotation")->setValue(0.5);
        shown->findChild<QPushButton*>("applyHead")->click();
        QCOMPARE(head().rotation, 0.5);
        QCOMPARE(head().scaleX, 1.00000123);
        QCOMPARE(head().barrel, 0.0100000456);
        shown->findChild<QDoubleSpinBox*>("barrel")->setValue(2.0);
        shown->findChild<QPushButton*>("applyHead")->click();
        QCOMPARE(head().barrel, 0.02);
        QCOMPARE(head().scaleX, 1.00000123);
    }

    void a_measurement_is_written_or_its_failure_told() {
        HeadWindow* const shown = window();
        auto* message = shown->findChild<QLabel*>("message");
        LayerParamEx layers;
        card().DownLayerPara(&layers, 20);
        card().BeginList(1);
        DOT3 across[] = {{-2, 0, 0}, {2, 0, 0}};
        card().AddList(across, 2, 0);
        card().EndList();
        shown->measureInto(m_root->path("m.txt"));
        QVERIFY(message->property("bad").toBool());
        QCOMPARE(message->text(), QString("没有可测量的十字或标记点"));
        QVERIFY(!m_root->exists("m.txt"));
        markCrosses({{0, 0}});
        shown->measureInto(m_root->path("m.txt"));
        QVERIFY(!message->property("bad").toBool());
        QCOMPARE(m_root->read("m.txt"), QByteArray("0,0\n"));
    }

    void it_speaks_both_languages_and_fits_the_small_screen() {
        HeadWindow* shown = window();
        QCOMPARE(shown->windowTitle(), QString("振镜模型"));
        QVERIFY(LanguageManager::SetCurrentLan("en"));
        shown = window();
        QCOMPARE(shown->windowTitle(), QString("Scan head"));
        QCOMPARE(shown->findChild<QPushButton*>("applyHead")->text(), QString("Apply"));
        QVERIFY(shown->height() <= 600 && shown->width() <= 1024);
        shown->findChild<QPushButton*>("closeHead")->click();
        QVERIFY(!shown->isVisible());
    }
};

QTEST_MAIN(TestHeadWindow)
#include "tst_headwindow.moc"

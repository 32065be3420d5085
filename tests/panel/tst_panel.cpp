// SPDX-License-Identifier: MIT
// The simulated machine's own window.
#include "engine/cardfunctions.h"
#include "engine/class_cardpara.h"
#include "engine/iocheckedsys.h"
#include "engine/iooutputset.h"
#include "engine/languagemanager.h"
#include "engine/layerparamex.h"
#include "engine/markcardinstance.h"
#include "engine/vzmarkcard.h"
#include "simengine/panel/devicepage.h"
#include "simengine/panel/faultpanel.h"
#include "simengine/panel/inputswitch.h"
#include "simengine/panel/lamps.h"
#include "simengine/panel/paneltexts.h"
#include "simengine/panel/panelwindow.h"
#include "simengine/panel/traceview.h"
#include "simengine/simcontrol.h"
#include "support/approot.h"
#include "support/dialoganswerer.h"
#include "support/temporaryroot.h"

#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QtTest>
#include <future>
#include <memory>

using namespace sim;

class tst_Panel : public QObject {
    Q_OBJECT

private:
    SimControl& machine() { return *tessera_sim_control(); }
    IMarkCardBase* card() { return MarkCardInstance::Instance(); }
    static PanelWindow& panel() { return *PanelWindow::instance(); }
    template<typename Widget>
    static Widget* find(const QString& name) {
        return panel().findChild<Widget*>(name);
    }
    void show() {
        std::string error;
        QVERIFY2(machine().showPanel(true, error), error.c_str());
        QVERIFY(QTest::qWaitForWindowExposed(&panel()));
    }
    /// Marks a square of 20 mm on pen 2.
    void mark() {
        DOT3 points[] = {{-10, -10, 0}, {10, -10, 0}, {10, 10, 0}, {-10, 10, 0}, {-10, -10, 0}};
        card()->BeginList(1);
        card()->AddList(points, 5, 2);
        card()->EndList();
    }

    std::unique_ptr<tests::TemporaryRoot> m_root;

private slots:
    void devices_are_shown_and_set();
    void flash_is_exported();
    void initTestCase() { m_root = std::make_unique<tests::TemporaryRoot>(); }
    void init() {
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard());
        machine().setInputs(0);
        machine().clearFaults();
        machine().setSpeed(0.0);
        card()->OpenCard();
    }
    void cleanup() {
        std::string error;
        machine().showPanel(false, error);
        card()->CloseCard();
        machine().setInputs(0);
        machine().clearFaults();
        machine().setSpeed(1.0);
        LanguageManager::SetCurrentLan("zh_CN");
        MarkCardInstance::SetMarkCardInstance(nullptr);
    }

    void switches_reach_the_inputs_of_the_card() {
        show();
        for (const int bit : {0, 7, 31}) {
            auto* input = find<InputSwitch>(QString("input%1").arg(bit));
            QVERIFY(input);
            QTest::mouseClick(input, Qt::LeftButton);
            QCOMPARE(card()->GetInput(), 1u << bit);
            QTest::mouseClick(input, Qt::LeftButton);
            QCOMPARE(card()->GetInput(), 0u);
        }
    }

    void inputs_set_elsewhere_show_on_the_switches() {
        show();
        machine().setInput(5, true);
        QTRY_VERIFY(find<InputSwitch>("input5")->isChecked());
        machine().setInput(5, false);
        QTRY_VERIFY(!find<InputSwitch>("input5")->isChecked());
    }

    void every_switch_is_tall_enough_and_inside() {
        show();
        panel().resize(1024, 600);
        QCoreApplication::processEvents();
        QCOMPARE(panel().size(), QSize(1024, 600));
        QCOMPARE(panel().findChildren<InputSwitch*>().size(), 32);
        for (InputSwitch* input : panel().findChildren<InputSwitch*>()) {
            QVERIFY(input->height() >= 40);
            QVERIFY(panel().rect().contains(QRect(input->mapTo(&panel(), QPoint()), input->size())));
        }
    }

    void the_border_is_chosen_and_kept_by_the_card() {
        show();
        auto* rectangle = find<QPushButton>("borderRectangle");
        auto* hull = find<QPushButton>("borderHull");
        auto* speed = find<QDoubleSpinBox>("borderSpeed");
        QVERIFY(rectangle && hull && speed);
        for (QWidget* part :
             {static_cast<QWidget*>(rectangle), static_cast<QWidget*>(hull), static_cast<QWidget*>(speed)})
            QVERIFY(part->height() >= 40);
        QVERIFY(rectangle->isChecked() && !hull->isChecked());
        QCOMPARE(speed->text(), QString("红光速度"));
        hull->click();
        QVERIFY(hull->isChecked() && !rectangle->isChecked());
        hull->click();
        QVERIFY(hull->isChecked());
        speed->setValue(250.5);
        QVERIFY(m_root->read("/ini/VZMarkPara.cfg").contains("BorderOutline=1"));
        QVERIFY(m_root->read("/ini/VZMarkPara.cfg").contains("BorderSpeed=250.5"));
        card()->SetMarkType(MarkTypeBorderPreview);
        card()->SetMarkStaus(MarkStatusRun);
        DOT3 points[] = {{0, 0, 0}, {30, 0, 0}, {15, 20, 0}};
        card()->BeginList(1);
        card()->AddList(points, 3, 0);
        card()->EndList();
        const SimJobTime time = machine().lastJobTime();
        QVERIFY(qAbs(time.markedMm - 80.0) < 1e-9 && qAbs(time.markedMm / time.markMs * 1000.0 - 250.5) < 1e-6);
        std::string error;
        QVERIFY(machine().setBorder({}, error));
        QTRY_VERIFY(rectangle->isChecked() && !hull->isChecked());
        speed->clearFocus();
        QTRY_COMPARE(speed->value(), 0.0);
        QVERIFY(!machine().setBorder({SimBorderOutline::Hull, -1.0}, error));
        QVERIFY(!error.empty());
        card()->SetMarkType(MarkTypeLaser);
    }

    void lamps_follow_the_outputs() {
        show();
        card()->SetOutputBit(11, 1);
        auto* lamps = find<OutputLamps>("outputLamps");
        QTRY_COMPARE(lamps->word(), card()->GetOutput());
        QVERIFY(lamps->word() >> 11 & 1u);
        const QImage lit = lamps->grab().toImage();
        QVERIFY(lit.pixelColor(lamps->lampAt(11).toPoint()).red() > 200);
        QVERIFY(lit.pixelColor(lamps->lampAt(12).toPoint()).red() < 100);
        card()->SetOutputBit(11, 0);
        QTRY_COMPARE(lamps->word(), card()->GetOutput());
    }

    void stack_light_follows_its_outputs_data() {
        QTest::addColumn<bool>("inverted");
        QTest::newRow("lit by 1") << false;
        QTest::newRow("lit by 0") << true;
    }
    void stack_light_follows_its_outputs() {
        QFETCH(bool, inverted);
        IOOutputSet* outputs = IOOutputSet::Instance();
        outputs->SetLight(20, 21, 22, -1);
        outputs->SetOutputInv(inverted);
        show();
        auto* light = find<StackLight>("stackLight");
        outputs->SetGreen(card());
        QTRY_VERIFY(light->green() && !light->red() && !light->yellow());
        outputs->SetRed(card());
        QTRY_VERIFY(!light->green() && light->red() && !light->yellow());
        outputs->SetLight(-1, -1, -1, -1);
        QTRY_VERIFY(!light->green() && !light->red() && !light->yellow());
        outputs->SetOutputInv(false);
    }

    void faults_are_switched_and_shown() {
        show();
        auto* button = find<QPushButton>("fault_card_alarm");
        QVERIFY(button && !button->isChecked());
        button->click();
        unsigned int word = 0;
        QVERIFY(card()->SystemIsAlarm(word));
        QCOMPARE(word & 1u, 1u);
        button->click();
        QVERIFY(!card()->SystemIsAlarm(word));
        machine().setFault("card_alarm", true);
        QTRY_VERIFY(button->isChecked());
    }

    void every_fault_of_the_machine_has_a_button_and_a_name() {
        show();
        for (const std::string& name : machine().faultNames()) {
            if (faultMotor(name) > 0)
                continue;
            auto* button = find<QPushButton>(QString("fault_") + QString::fromStdString(name));
            QVERIFY2(button, name.c_str());
            QVERIFY2(button->height() >= 40, name.c_str());
            QCOMPARE(button->text(), faultText(name));
        }
        QCOMPARE(faultText("unheard_of"), QString("unheard_of"));
    }

    void fault_buttons_are_whole_in_every_language_and_width() {
        for (const char* language : {"zh_CN", "en"}) {
            LanguageManager::SetCurrentLan(QLatin1String(language));
            show();
            auto* page = panel().findChild<FaultPanel*>();
            page->setTexts();
            for (const int width : {1016, 1280, 1016}) {
                panel().resize(width, 572);
                QTRY_VERIFY(page->widget()->width() <= page->viewport()->width());
                for (const QPushButton* button : page->findChildren<QPushButton*>())
                    QTRY_VERIFY2(button->width() >= button->sizeHint().width(), qPrintable(button->text()));
            }
        }
        LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
        panel().findChild<FaultPanel*>()->setTexts();
    }

    /// Faults belong to motors: which ones an axis drives is told by its number.
    void faults_of_the_motors_in_use_have_buttons() {
        Class_CardPara* axes = Class_CardPara::Instance();
        Class_CardPara const before = *axes;
        axes->EnableMotion = true;
        axes->AxisCount = 2;
        axes->Axis[0].MotorNo = 5;
        axes->Axis[1].MotorNo = 2;
        axes->Axis[2].MotorNo = 7;
        show();
        panel().refresh();
        int buttons = 0;
        for (const std::string& name : machine().faultNames()) {
            const bool wanted = faultMotor(name) == 2 || faultMotor(name) == 5;
            auto* button = find<QPushButton>(QString("fault_") + QString::fromStdString(name));
            QCOMPARE(button != nullptr, wanted || faultMotor(name) == 0);
            buttons += wanted ? 1 : 0;
            if (wanted)
                QVERIFY(faultText(name) != QString::fromStdString(name));
        }
        QCOMPARE(buttons, 12);
        QCOMPARE(faultText("axis5_home_dead"), QString("电机5 原点开关失效"));
        find<QPushButton>("fault_axis5_driver")->click();
        QVERIFY(machine().faultIsOn("axis5_driver"));
        axes->EnableMotion = false;
        std::string error;
        machine().showPanel(false, error);
        show();
        QVERIFY(!find<QPushButton>("fault_axis5_driver"));
        *axes = before;
        QCOMPARE(faultMotor("axis12_driver"), 0);
        QCOMPARE(faultMotor("axis"), 0);
        QCOMPARE(faultMotor("axis0_x"), 0);
    }

    void pages_are_found_by_names_of_their_own() {
        show();
        QStringList names;
        for (QWidget const* each : panel().findChildren<QWidget*>())
            if (each->property("page").toBool())
                names << each->objectName();
        names.sort();
        QCOMPARE(names, QStringList({"devicesInside", "faultsInside"}));
    }

    void speed_buttons_set_the_factor() {
        show();
        find<QPushButton>("speed100")->click();
        QCOMPARE(machine().state().speed, 100.0);
        QVERIFY(find<QPushButton>("speed100")->isChecked());
        QVERIFY(!find<QPushButton>("speed1")->isChecked());
        find<QPushButton>("speed100")->click();
        QVERIFY(find<QPushButton>("speed100")->isChecked());
        machine().setSpeed(3.0);
        QTRY_VERIFY(find<QLabel>("run")->text().contains("3×"));
        QVERIFY(!find<QPushButton>("speed100")->isChecked());
    }

    void state_and_position_are_shown() {
        show();
        auto* activity = find<QLabel>("activity");
        QTRY_COMPARE(activity->text(), QString("空闲"));
        card()->MoveMirrorPos(12.5, -3.25, 1000.0, 0);
        QTRY_VERIFY(find<QLabel>("position")->text().contains("12.500"));
        QVERIFY(find<QLabel>("position")->text().contains("-3.250"));
        card()->CloseCard();
        QTRY_COMPARE(activity->text(), QString("卡未打开"));
    }

    void a_running_job_is_shown() {
        machine().setSpeed(0.1);
        show();
        auto job = std::async(std::launch::async, [this] { mark(); });
        QTRY_COMPARE(find<QLabel>("activity")->text(), QString("运行中"));
        machine().setFault("wait_input", true);
        QTRY_COMPARE(find<QLabel>("activity")->text(), QString("等待输入"));
        machine().setFault("wait_input", false);
        machine().setSpeed(0.0);
        job.wait();
        QTRY_COMPARE(find<QLabel>("activity")->text(), QString("空闲"));
    }

    void the_trace_is_drawn_as_it_is_marked() {
        show();
        auto* trace = find<TraceView>("traceView");
        mark();
        QTRY_VERIFY(trace->rowCount() >= 5);
        const QImage image = trace->grab().toImage();
        const QPoint edge = trace->viewTransform().toPixel({0, -10}).toPoint();
        int brightest = 0;
        for (int dy = -2; dy <= 2; ++dy)
            brightest = qMax(brightest, image.pixelColor(edge + QPoint(0, dy)).value());
        QVERIFY(brightest > 100);
        const QPoint inside = trace->viewTransform().toPixel({5, 5}).toPoint();
        QVERIFY(image.pixelColor(inside).value() < 60);
    }

    void the_power_is_seen_in_the_trace() {
        LayerParamEx layers;
        LayerData data;
        data.LineWaveEnable = data.LineWaveFlag = 1;
        data.LineWave[1] = {60, 100};
        layers.SetLayerData(2, data);
        card()->DownLayerPara(&layers, kLayerCount);
        show();
        auto* trace = find<TraceView>("traceView");
        DOT3 points[] = {{-40, 0.3, 0}, {40, 0.3, 0}};
        card()->BeginList(1);
        card()->AddList(points, 2, 2);
        card()->EndList();
        QTRY_COMPARE(trace->rowCount(), std::size_t(3));
        const QImage image = trace->grab().toImage();
        const auto brightness = [&](double x) {
            const QPoint at = trace->viewTransform().toPixel({x, 0.3}).toPoint();
            int brightest = 0;
            for (int dy = -2; dy <= 2; ++dy)
                brightest = qMax(brightest, image.pixelColor(at + QPoint(0, dy)).value());
            return brightest;
        };
        // The ramp goes up to x = 20 and the line at full power to 40.
        QVERIFY2(brightness(-38) + 40 < brightness(-15), qPrintable(QString::number(brightness(-38))));
        QVERIFY(brightness(-15) + 20 < brightness(30));
        QVERIFY(brightness(30) > 200);
    }

    void a_new_job_replaces_the_trace_and_a_resize_keeps_it() {
        show();
        auto* trace = find<TraceView>("traceView");
        mark();
        QTRY_VERIFY(trace->rowCount() >= 5);
        const std::size_t rows = trace->rowCount();
        mark();
        QTRY_COMPARE(trace->rowCount(), rows);
        panel().resize(1300, 700);
        QTRY_COMPARE(trace->rowCount(), rows);
        panel().resize(1016, 572);
    }

    void clear_forgets_what_was_marked() {
        show();
        auto* trace = find<TraceView>("traceView");
        mark();
        QTRY_VERIFY(trace->rowCount() >= 5);
        find<QPushButton>("clearTrace")->click();
        QCOMPARE(trace->rowCount(), std::size_t(0));
        find<QPushButton>("showJumps")->click();
        panel().refresh();
        QCOMPARE(trace->rowCount(), std::size_t(0));
        mark();
        QTRY_VERIFY(trace->rowCount() >= 5);
        find<QPushButton>("showJumps")->click();
    }

    void the_trace_is_exported_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("begin");
        QTest::newRow("csv") << "/trace.csv" << QByteArray("time,x,y,laser,pen\n");
        QTest::newRow("svg") << "/trace.svg" << QByteArray("<?xml");
        QTest::newRow("png") << "/trace.png" << QByteArray("\x89PNG");
    }
    void the_trace_is_exported() {
        QFETCH(QString, name);
        QFETCH(QByteArray, begin);
        show();
        mark();
        auto* button = find<QPushButton>("exportTrace");
        panel().exportTrace(m_root->path(name));
        QVERIFY(!button->isEnabled());
        QTRY_VERIFY(button->isEnabled());
        QVERIFY(m_root->read(name).startsWith(begin));
        QVERIFY(m_root->write("/plain", "a file, no folder"));
        tests::DialogAnswerer answerer;
        answerer.press("确定");
        panel().exportTrace(m_root->path("/plain/trace.csv"));
        QVERIFY(answerer.waitUntilAnswered());
        QVERIFY(answerer.seen().at(0).text.contains("/plain"));
        QVERIFY(button->isEnabled());
    }

    /// A head that bends 10,000 long ways gives 5 million rows.
    void a_long_trace_is_drawn_in_many_frames() {
        SimHeadDistortion bent;
        bent.barrel = 0.01;
        std::string error;
        QVERIFY(machine().setHead(bent, error) == SimOutcome::Done);
        show();
        auto* trace = find<TraceView>("traceView");
        card()->BeginList(1);
        std::vector<DOT3> points;
        for (int i = 0; i < 10000; ++i)
            points.push_back({i % 2 ? 250.0 : -250.0, 0, 0});
        card()->AddList(points.data(), int(points.size()), 2);
        card()->EndList();
        trace->follow(machine().state());
        const std::size_t first = trace->rowCount();
        QVERIFY(first >= 1);
        QVERIFY2(first < 2'000'000, qPrintable(QString::number(first)));
        QTRY_VERIFY(trace->rowCount() > first);
        find<QPushButton>("clearTrace")->click();
        panel().refresh();
        QCOMPARE(trace->rowCount(), std::size_t(0));
        QVERIFY(machine().setHead({}, error) == SimOutcome::Done);
        mark();
        QTRY_VERIFY(trace->rowCount() >= 5);
    }

    void it_looks_at_the_machine_only_while_shown() {
        show();
        QVERIFY(panel().isFollowing());
        std::string error;
        QVERIFY(machine().showPanel(false, error));
        QVERIFY(!panel().isFollowing());
        QVERIFY(!panel().isVisible());
        QVERIFY(machine().showPanel(true, error));
        QVERIFY(panel().isFollowing());
    }

    void the_window_is_named_as_simulator_in_both_languages() {
        show();
        QCOMPARE(panel().windowTitle(), QString("模拟机台"));
        std::string error;
        machine().showPanel(false, error);
        QVERIFY(LanguageManager::SetCurrentLan("en"));
        machine().showPanel(true, error);
        QCOMPARE(panel().windowTitle(), QString("Simulated machine"));
        QTRY_COMPARE(find<QLabel>("activity")->text(), QString("Idle"));
    }

    void closing_it_does_not_end_the_program() { QVERIFY(!(show(), panel().testAttribute(Qt::WA_QuitOnClose))); }

    void watching_functions_are_named() {
        QVector<IOFuncList> functions(3);
        functions[0].Name = "运行";
        functions[0].InputEnable = true;
        functions[0].InputMask = 1u << 4 | 1u << 31;
        functions[1].Name = "终止";
        functions[1].InputEnable = true;
        functions[1].InputMask = 1u << 4;
        functions[1].OutputEnable = true;
        functions[1].OutputMask = 1u << 9;
        functions[2].Name = "暂停";
        functions[2].InputMask = 1u << 5;
        const auto inputs = inputNames(functions);
        QCOMPARE(inputs[4], QStringList({"运行", "终止"}));
        QCOMPARE(inputs[31], QStringList({"运行"}));
        QVERIFY(inputs[5].isEmpty());
        QCOMPARE(outputNames(functions)[9], QStringList({"终止"}));
    }

    void times_are_readable() {
        QCOMPARE(timeText(0.0), QString("0.0 ms"));
        QCOMPARE(timeText(999.94), QString("999.9 ms"));
        QCOMPARE(timeText(12345.6), QString("12.346 s"));
    }
};

void tst_Panel::devices_are_shown_and_set() {
    show();
    QTest::mouseClick(find<QPushButton>("showDevices"), Qt::LeftButton);
    auto* speed = find<QDoubleSpinBox>("device_belt_speed");
    QVERIFY(speed->isVisible());
    QVERIFY(!find<QPushButton>("fault_job_fails")->isVisible());
    speed->setValue(120.5);
    std::string error;
    QCOMPARE(machine().setDevice("encoder", 77, error), SimOutcome::Done);
    speed->clearFocus();
    panel().refresh();
    QCOMPARE(find<QDoubleSpinBox>("device_encoder")->value(), 77.0);
    for (SimDevice const& device : machine().devices()) {
        if (device.name == "belt_speed")
            QCOMPARE(device.value, 120.5);
    }
    speed->setValue(0);
    QTest::mouseClick(find<QPushButton>("showFaults"), Qt::LeftButton);
    QVERIFY(find<QPushButton>("fault_job_fails")->isVisible());
}

void tst_Panel::flash_is_exported() {
    show();
    auto* page = panel().findChild<DevicePage*>();
    QString error;
    QString const file = tessera::rootPath(QStringLiteral("/闪存.bin"));
    QVERIFY(!page->exportFlash(file, error));
    QCOMPARE(error, QString("Flash尚未写入数据"));
    unsigned char const byte = 5;
    QCOMPARE(VZ_FlashWriteAddr(0x800000, &byte, 1), 0);
    QVERIFY(page->exportFlash(file, error));
    QCOMPARE(QFileInfo(file).size(), 1);
    panel().refresh();
    QCOMPARE(find<QLabel>("device_flash_first")->text(), QString("0x800000"));
}

QTEST_MAIN(tst_Panel)
#include "tst_panel.moc"

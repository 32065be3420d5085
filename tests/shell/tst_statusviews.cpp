// SPDX-License-Identifier: MIT
#include "engine/markcardinstance.h"
#include "engine/showdebugino.h"
#include "engine/vzlistviewex.h"
#include "shell/alarmctrl.h"
#include "shell/leftpanel.h"
#include "shell/rightpanel.h"
#include "shell/statuseview.h"
#include "tests/shell/windowfixture.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QResizeEvent>
#include <QSignalSpy>
#include <thread>

using namespace tests;

/// Indicators, status frame, side panels and the message list.
class StatusViewsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void an_indicator_shows_its_colour_data();
    void an_indicator_shows_its_colour();
    void an_indicator_without_the_clickable_flag_never_emits_clicked();
    void a_clickable_indicator_is_clicked_on_release_on_lamp_and_text_too();
    void the_laser_indicator_follows_the_alarm_signal();
    void the_safety_indicator_is_not_clickable();
    void alarm_lines_replace_the_list();
    void lines_from_another_thread_reach_the_list();
    void lines_are_appended_and_cleared();
    void a_double_click_clears_the_list();
    void gas_switch_toggles_its_output();
    void red_light_switch_toggles_its_output();
    void SetProtectGas_with_a_negative_bit_disables_the_image_and_leaves_it_as_it_was();
    void SetRedLight_with_a_negative_bit_disables_the_image_and_leaves_it_as_it_was();
    void the_red_light_label_takes_the_press_while_disabled();
    void a_valid_bit_shows_the_state_of_the_output();
    void order_buttons_move_the_selected_object();
    void order_buttons_without_a_document_do_nothing();
    void right_panel_tells_its_size();
    void left_panel_takes_widgets_into_its_holders();

private:
    TemporaryRoot m_Root;
    static QImage imageOf(QLabel const* label) { return label->pixmap(Qt::ReturnByValue).toImage(); }
    static QImage switchImage(bool on) {
        return QPixmap(QString::fromLatin1(on ? ":/Res/btncheckon2.png" : ":/Res/btncheckoff2.png")).toImage();
    }
    QStringList lines(RunningWindow const& window) {
        const auto* list = window.statusList();
        QStringList all;
        for (int i = 0; i < list->count(); ++i)
            all.append(list->item(i)->text());
        return all;
    }
};

void StatusViewsTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void StatusViewsTest::init() {
    resetMachine();
    int none = -1;
    double delay = 20.0;
    IOOutputSet::Instance()->SetProtectGas(none, delay, QStringLiteral("保护气体"));
    IOOutputSet::Instance()->SetRedLight(none, QStringLiteral("指示红光"));
}

void StatusViewsTest::an_indicator_shows_its_colour_data() {
    QTest::addColumn<int>("color");
    QTest::addColumn<QString>("picture");
    QTest::newRow("green") << 0 << QStringLiteral("green");
    QTest::newRow("yellow") << 1 << QStringLiteral("yellow");
    QTest::newRow("red") << 2 << QStringLiteral("red");
    QTest::newRow("any other") << 77 << QStringLiteral("yellow");
}

void StatusViewsTest::an_indicator_shows_its_colour() {
    QFETCH(int, color);
    QFETCH(QString, picture);
    AlarmCtrl indicator;
    indicator.SetStatus(static_cast<AlarmColor>(color), QStringLiteral("text"));
    const QPixmap expected = QPixmap(QStringLiteral(":/Icon/Res/%1.png").arg(picture))
                                 .scaled(16, 16, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QVERIFY(!expected.isNull());
    QCOMPARE(indicator.findChild<QLabel*>(QStringLiteral("labelImg"))->pixmap(Qt::ReturnByValue).toImage(),
             expected.toImage());
    QCOMPARE(indicator.findChild<QLabel*>(QStringLiteral("labelText"))->text(), QStringLiteral("text"));
}

void StatusViewsTest::an_indicator_without_the_clickable_flag_never_emits_clicked() {
    AlarmCtrl indicator;
    indicator.SetStatus(AlarmRed, QStringLiteral("text"));
    indicator.show();
    QSignalSpy clicked(&indicator, &AlarmCtrl::clicked);
    for (QWidget* part : {static_cast<QWidget*>(&indicator), indicator.findChild<QWidget*>(QStringLiteral("labelImg")),
                          indicator.findChild<QWidget*>(QStringLiteral("labelText"))}) {
        for (Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
            QTest::mouseClick(part, button);
        QTest::mouseDClick(part, Qt::LeftButton);
    }
    QCOMPARE(clicked.count(), 0);
    indicator.SetClickable(true);
    QTest::mouseClick(&indicator, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    indicator.SetClickable(false);
    QTest::mouseClick(&indicator, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
}

void StatusViewsTest::a_clickable_indicator_is_clicked_on_release_on_lamp_and_text_too() {
    AlarmCtrl indicator;
    indicator.SetClickable(true);
    indicator.SetStatus(AlarmGreen, QStringLiteral("text"));
    indicator.show();
    QSignalSpy clicked(&indicator, &AlarmCtrl::clicked);
    int expected = 0;
    for (QWidget* part : {static_cast<QWidget*>(&indicator), indicator.findChild<QWidget*>(QStringLiteral("labelImg")),
                          indicator.findChild<QWidget*>(QStringLiteral("labelText"))}) {
        QTest::mousePress(part, Qt::LeftButton);
        QCOMPARE(clicked.count(), expected);
        QTest::mouseRelease(part, Qt::LeftButton);
        QCOMPARE(clicked.count(), ++expected);
    }
}

void StatusViewsTest::the_laser_indicator_follows_the_alarm_signal() {
    RunningWindow window;
    const auto* text = window.child<AlarmCtrl>("alarmLaser")->findChild<QLabel*>(QStringLiteral("labelText"));
    QCOMPARE(text->text(), QStringLiteral("激光器正常"));
    emit window->LaserAlarm(true, QStringLiteral("not shown"));
    QCOMPARE(text->text(), QStringLiteral("激光器报警"));
    emit window->LaserAlarm(false, QString());
    QCOMPARE(text->text(), QStringLiteral("激光器正常"));
}

void StatusViewsTest::the_safety_indicator_is_not_clickable() {
    RunningWindow window;
    auto* laser = window.child<AlarmCtrl>("alarmLaser");
    auto* safe = window.child<AlarmCtrl>("alarmSafe");
    QSignalSpy laserClicked(laser, &AlarmCtrl::clicked);
    QSignalSpy safeClicked(safe, &AlarmCtrl::clicked);
    QTest::mouseClick(laser, Qt::LeftButton);
    QTest::mouseClick(safe, Qt::LeftButton);
    QCOMPARE(laserClicked.count(), 1);
    QCOMPARE(safeClicked.count(), 0); // the main window opens the alarm history by itself
    QCOMPARE(safe->findChild<QLabel*>(QStringLiteral("labelText"))->text(), QStringLiteral("安全报警"));
}

void StatusViewsTest::alarm_lines_replace_the_list() {
    RunningWindow window;
    window->ShowTextsSub(QStringLiteral("old"), DebugInfoTrace);
    QVERIFY(window->CheckAlarmStatus());
    QCOMPARE(lines(window), QStringList{"old"});
    window->SetSafeAlarm(true, 2 | 128);
    QVERIFY(!window->CheckAlarmStatus());
    QCOMPARE(lines(window), (QStringList{QStringLiteral("安全门1报警"), QStringLiteral("急停")}));
    QVERIFY(window->IsSafeAlarm(128));
    window->SetSafeAlarm(false, 2);
    QCOMPARE(window->GetAlarmInfos(), QVector<QString>{QStringLiteral("急停")});
    QCOMPARE(lines(window), QStringList{QStringLiteral("急停")});
    window->SetSafeAlarm(false, 128);
    window->SetSafeAlarm(true, 1 | 32);
    QVERIFY(window->CheckAlarmStatus());
    QCOMPARE(window->GetSafeAlarm(), 33U);
}

void StatusViewsTest::lines_from_another_thread_reach_the_list() {
    RunningWindow window;
    window->SetSafeAlarm(true, 512);
    bool good = true;
    std::thread([&] { good = window->CheckAlarmStatus(); }).join();
    QVERIFY(!good);
    QTRY_COMPARE(lines(window), QStringList{QStringLiteral("水冷机报警")});
}

void StatusViewsTest::lines_are_appended_and_cleared() {
    RunningWindow window;
    ShowDebugIno& sink = *window;
    sink.ShowTextsSub(QStringLiteral("a"), DebugInfoAlarm);
    sink.ShowTextsSub(QStringLiteral("b"), DebugInfoTrace);
    QCOMPARE(lines(window), (QStringList{"a", "b"}));
    sink.SetTextsSub({QStringLiteral("c"), QStringLiteral("d")}, {DebugInfoAlarm, DebugInfoAlarm});
    QCOMPARE(lines(window), (QStringList{"c", "d"}));
    sink.ClearTextSub();
    QVERIFY(lines(window).isEmpty());
}

void StatusViewsTest::a_double_click_clears_the_list() {
    RunningWindow window;
    window->ShowTextsSub(QStringLiteral("a"), DebugInfoAlarm);
    auto* list = window.statusList();
    const QPoint place = list->visualItemRect(list->item(0)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(list->count(), 1);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(list->count(), 0);
}

void StatusViewsTest::gas_switch_toggles_its_output() {
    RunningWindow window;
    int bit = 9;
    double delay = 5.0;
    IOOutputSet::Instance()->SetProtectGas(bit, delay, QStringLiteral("Argon"));
    window->UpdateIOSetting();
    auto* view = window.child<StatuseView>("StatuseView");
    QCOMPARE(window.child<QLabel>("labelExternSet")->text(), QStringLiteral("Argon"));
    QVERIFY(view->GasLabel()->isEnabled());
    machine().clearJournal();
    const QImage off = view->GasLabel()->pixmap(Qt::ReturnByValue).toImage();
    QTest::mousePress(view->GasLabel(), Qt::LeftButton);
    QVERIFY(IOOutputSet::Instance()->ProtectGasEnabled(MarkCardInstance::Instance()));
    QVERIFY(view->GasLabel()->pixmap(Qt::ReturnByValue).toImage() != off);
    QTest::mouseRelease(view->GasLabel(), Qt::LeftButton);
    QTest::mousePress(view->GasLabel(), Qt::LeftButton);
    COMPARE_JOURNAL(machineJournal(), {call("SetOutputBit", 9, 1), call("SetOutputBit", 9, 0)});
    QCOMPARE(view->GasLabel()->pixmap(Qt::ReturnByValue).toImage(), off);
}

void StatusViewsTest::red_light_switch_toggles_its_output() {
    RunningWindow window;
    int bit = 4;
    IOOutputSet::Instance()->SetRedLight(bit, QStringLiteral("Pilot"));
    window->UpdateIOSetting();
    auto* view = window.child<StatuseView>("StatuseView");
    QCOMPARE(window.child<QLabel>("labelLaserRed")->text(), QStringLiteral("Pilot"));
    machine().clearJournal();
    QTest::mousePress(view->RedLabel(), Qt::LeftButton);
    QTest::mousePress(view->RedLabel(), Qt::LeftButton);
    COMPARE_JOURNAL(machineJournal(), {call("SetOutputBit", 4, 1), call("SetOutputBit", 4, 0)});
}

void StatusViewsTest::SetProtectGas_with_a_negative_bit_disables_the_image_and_leaves_it_as_it_was() {
    RunningWindow window;
    auto* view = window.child<StatuseView>("StatuseView");
    int bit = 3;
    double delay = 20.0;
    IOOutputSet::Instance()->SetProtectGas(bit, delay, QStringLiteral("gas"));
    for (bool on : {true, false}) {
        IOOutputSet::Instance()->SetProtectGas(MarkCardInstance::Instance(), on);
        view->SetProtectGas(3, QStringLiteral("gas"));
        QCOMPARE(imageOf(view->GasLabel()), switchImage(on));
        IOOutputSet::Instance()->SetProtectGas(MarkCardInstance::Instance(), !on);
        view->SetProtectGas(-1, QStringLiteral("none"));
        QVERIFY(!view->GasLabel()->isEnabled());
        QCOMPARE(imageOf(view->GasLabel()), switchImage(on));
        QCOMPARE(window.child<QLabel>("labelExternSet")->text(), QStringLiteral("none"));
        machine().clearJournal();
        QTest::mousePress(view->GasLabel(), Qt::LeftButton);
        QVERIFY(machineJournal().isEmpty());
        QCOMPARE(imageOf(view->GasLabel()), switchImage(on));
    }
    view->SetProtectGas(0, QStringLiteral("gas"));
    QVERIFY(view->GasLabel()->isEnabled());
}

void StatusViewsTest::SetRedLight_with_a_negative_bit_disables_the_image_and_leaves_it_as_it_was() {
    RunningWindow window;
    auto* view = window.child<StatuseView>("StatuseView");
    int bit = 4;
    IOOutputSet::Instance()->SetRedLight(bit, QStringLiteral("red"));
    for (bool on : {true, false}) {
        IOOutputSet::Instance()->SetRedLight(MarkCardInstance::Instance(), on);
        view->SetRedLight(4, QStringLiteral("red"));
        QCOMPARE(imageOf(view->RedLabel()), switchImage(on));
        IOOutputSet::Instance()->SetRedLight(MarkCardInstance::Instance(), !on);
        view->SetRedLight(-1, QStringLiteral("none"));
        QVERIFY(!view->RedLabel()->isEnabled());
        QCOMPARE(imageOf(view->RedLabel()), switchImage(on));
        QCOMPARE(window.child<QLabel>("labelLaserRed")->text(), QStringLiteral("none"));
    }
}

/// Only the gas asks whether it is fitted. With no red light set the press drives no output.
void StatusViewsTest::the_red_light_label_takes_the_press_while_disabled() {
    RunningWindow window;
    auto* view = window.child<StatuseView>("StatuseView");
    window->UpdateIOSetting();
    QVERIFY(!view->RedLabel()->isEnabled());
    machine().clearJournal();
    QTest::mousePress(view->RedLabel(), Qt::LeftButton);
    QCOMPARE(imageOf(view->RedLabel()), switchImage(true));
    QVERIFY(machineJournal().isEmpty());
}

void StatusViewsTest::a_valid_bit_shows_the_state_of_the_output() {
    RunningWindow window;
    auto* view = window.child<StatuseView>("StatuseView");
    int gas = 0;
    int red = 31;
    double delay = 20.0;
    IOOutputSet::Instance()->SetProtectGas(gas, delay, QStringLiteral("gas"));
    IOOutputSet::Instance()->SetRedLight(red, QStringLiteral("red"));
    for (bool on : {true, false}) {
        MarkCardInstance::Instance()->SetOutputBit(gas, on ? 1 : 0);
        MarkCardInstance::Instance()->SetOutputBit(red, on ? 0 : 1);
        window->UpdateIOSetting();
        QCOMPARE(imageOf(view->GasLabel()), switchImage(on));
        QCOMPARE(imageOf(view->RedLabel()), switchImage(!on));
    }
}

void StatusViewsTest::order_buttons_move_the_selected_object() {
    RunningWindow window;
    QRulerView* view = window.newDocument(3, QStringLiteral("order"));
    // The newest point is the selected one.
    QCOMPARE(view->GetFirstSelectedToolIndex(), 2);
    window.child<QPushButton>("pushButtonMoveUp")->click();
    QCOMPARE(view->GetFirstSelectedToolIndex(), 1);
    window.child<QPushButton>("pushButtonMoveDown")->click();
    QCOMPARE(view->GetFirstSelectedToolIndex(), 2);
    window.child<QPushButton>("pushButtonMoveTop")->click();
    QCOMPARE(view->GetFirstSelectedToolIndex(), 0);
    window.child<QPushButton>("pushButtonMoveBotton")->click();
    QCOMPARE(view->GetFirstSelectedToolIndex(), 2);
    window->CloseAllFile();
}

void StatusViewsTest::order_buttons_without_a_document_do_nothing() {
    RunningWindow window;
    window->CloseAllFile();
    for (char const* name : {"pushButtonMoveUp", "pushButtonMoveTop", "pushButtonMoveDown", "pushButtonMoveBotton"}) {
        auto* button = window.child<QPushButton>(name);
        button->click();
        QVERIFY2(!button->icon().isNull(), name);
    }
}

void StatusViewsTest::right_panel_tells_its_size() {
    RightPanel panel;
    auto* page = new QLabel(QStringLiteral("page"));
    panel.AddWnd(page);
    QCOMPARE(page->parentWidget(), &panel);
    QSize told;
    connect(&panel, &RightPanel::SizeChanged, [&told](QResizeEvent* event) { told = event->size(); });
    panel.show();
    panel.resize(245, 333);
    QTRY_COMPARE(told, QSize(245, 333));
}

void StatusViewsTest::left_panel_takes_widgets_into_its_holders() {
    LeftPanel panel;
    auto* status = new QLabel;
    auto* file = new QLabel;
    auto* list = new QLabel;
    panel.AddStatusWidged(status);
    panel.AddFileWidged(file);
    panel.AddListWidget(list);
    QCOMPARE(status->parentWidget(), panel.StatusView());
    QCOMPARE(file->parentWidget(), panel.FileList());
    QCOMPARE(list->parentWidget(), panel.ObjList());
}

QTEST_MAIN(StatusViewsTest)
#include "tst_statusviews.moc"

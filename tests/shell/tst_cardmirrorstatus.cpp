// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "engine/markcardinstance.h"
#include "shell/cardmirrorstatus.h"
#include "shell/windowgeometry.h"
#include "tests/shell/windowcase.h"

#include <QGroupBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <future>

using namespace tests;

namespace {

/// Image labels of the lamps, in the order of the window.
constexpr char const* kLamps[] = {
    "labelRuningImg",     "labelPauseImg",      "labelWaitInputImg", "labelWaitExMotionImg", "labelWaitEncodeImg",
    "labelWaitMirrorImg", "labelRunSuccessImg", "labelStopRunImg",   "labelDataCutOffImg",   "labelIOTimeOutImg"};

QImage lampImage(char const* color) {
    return QPixmap(QStringLiteral(":/Icon/Res/%1.png").arg(QLatin1String(color)))
        .scaled(16, 16, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .toImage();
}

} // namespace

/// The window of the card's and the scan head's state.
class CardMirrorStatusTest : public QObject, private WindowCase {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(hasRoot()); }
    void init() {
        beginCase();
        LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
    }
    void cleanup() {
        machine().clearFaults();
        if (m_Job.valid()) {
            MarkCardInstance::Instance()->StopMark();
            m_Job.get();
        }
        endCase();
    }

    void it_is_made_when_it_is_first_asked_for();
    void a_press_on_the_label_shows_and_hides_it();
    void it_stands_beside_the_lower_right_corner_and_keeps_its_size();
    void it_is_a_tool_window_above_the_others();
    void its_texts_data();
    void its_texts();
    void a_change_of_the_language_reaches_the_open_window();
    void lamps_follow_a_run();
    void a_lamp_for_each_wait_data();
    void a_lamp_for_each_wait();
    void underrun_and_time_out_stay_until_the_alarm_is_cleared();
    void the_scan_heads_state_is_written_out();
    void a_state_that_stays_keeps_its_place_in_the_text();
    void with_the_card_closed_the_window_keeps_its_last_lamps();
    void a_card_that_never_opened_leaves_all_lamps_off();
    void hidden_it_is_not_renewed();
    void the_alarm_time_is_read_once_and_saved_on_request();
    void it_goes_when_its_label_goes();
    void it_ends_with_the_main_window();

private:
    CardMirrorStatus* open() {
        start();
        press();
        return CardMirrorStatus::Existing();
    }
    void press() { QTest::mousePress(label("labelCardStatus"), Qt::LeftButton); }
    template<typename T>
    T* part(char const* name) {
        return CardMirrorStatus::Existing()->findChild<T*>(QString::fromLatin1(name));
    }
    /// Names of the lamps that are on, without "label" and "Img".
    QStringList lit() {
        QStringList on;
        for (char const* name : kLamps) {
            const QImage image = part<QLabel>(name)->pixmap(Qt::ReturnByValue).toImage();
            const QString shortName = QString::fromLatin1(name).mid(5).chopped(3);
            if (image == m_On)
                on.append(shortName);
            else if (image != m_Off)
                on.append(shortName + QStringLiteral("?"));
        }
        return on;
    }
    QString stateText() { return part<QPlainTextEdit>("plainTextEditMirrorStatus")->toPlainText(); }
    QString waitText() { return part<QPlainTextEdit>("plainTextEditWaitInfo")->toPlainText(); }
    /// Runs a line that takes minutes on a thread of its own.
    void startJob() {
        m_Job = std::async(std::launch::async, [] {
            IMarkCardBase* card = MarkCardInstance::Instance();
            DOT3 line[] = {{-50.0, 0.0, 0.0}, {50.0, 0.0, 0.0}};
            card->BeginList(1);
            for (int i = 0; i < 1000; ++i)
                card->AddList(line, 2, 0);
            card->EndList();
        });
    }

    const QImage m_On = lampImage("green");
    const QImage m_Off = lampImage("gray");
    std::future<void> m_Job;
};

void CardMirrorStatusTest::it_is_made_when_it_is_first_asked_for() {
    start();
    QVERIFY(!CardMirrorStatus::Existing());
    CardMirrorStatus* window = CardMirrorStatus::Instance(&this->window());
    QVERIFY(!window->isVisible());
    QCOMPARE(CardMirrorStatus::Instance(), window);
    QVERIFY(lit().isEmpty());
}

void CardMirrorStatusTest::a_press_on_the_label_shows_and_hides_it() {
    CardMirrorStatus* window = open();
    QVERIFY(window);
    QVERIFY(window->isVisible());
    QTest::mouseRelease(label("labelCardStatus"), Qt::LeftButton);
    QVERIFY(window->isVisible());
    QTest::mouseMove(label("labelCardStatus"));
    QVERIFY(window->isVisible());
    press();
    QVERIFY(!window->isVisible());
    QTest::mousePress(label("labelCardStatus"), Qt::RightButton);
    QVERIFY(window->isVisible());
    QTest::mousePress(label("labelCardVersion"), Qt::LeftButton);
    QVERIFY(window->isVisible());
}

void CardMirrorStatusTest::it_stands_beside_the_lower_right_corner_and_keeps_its_size() {
    CardMirrorStatus* status = open();
    const QRect main = window().geometry();
    const QSize size = status->size();
    QCOMPARE(status->geometry().right(), main.right() - 10);
    QCOMPARE(status->geometry().bottom(), main.bottom() - 35);
    press();
    status->resize(size + QSize(30, 20));
    status->move(3, 4);
    window().setGeometry(40, 50, 1100, 640);
    press();
    QCOMPARE(status->size(), size + QSize(30, 20));
    QCOMPARE(status->geometry(), tessera::CardStatusRect(window().geometry(), size + QSize(30, 20)));
    QCOMPARE(tessera::CardStatusRect(QRect(100, 200, 1000, 700), QSize(400, 300)), QRect(690, 565, 400, 300));
}

void CardMirrorStatusTest::it_is_a_tool_window_above_the_others() {
    CardMirrorStatus const* window = open();
    QCOMPARE(window->windowType(), Qt::Tool);
    QCOMPARE(int(window->windowFlags() & 0x40000), 0x40000);
    QCOMPARE(window->windowFlags() & Qt::WindowStaysOnTopHint, Qt::WindowStaysOnTopHint);
}

void CardMirrorStatusTest::its_texts_data() {
    QTest::addColumn<QString>("language");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN")
                             << QStringList{
                                    "卡&振镜状态", "运行状态",         "运行结果",   "运行中",           "暂停中",
                                    "等待输入",    "等待扩展运动模块", "等待编码器", "等待振镜闭环到达", "运行成功",
                                    "运动被停止",  "数据断流",         "IO超时",     "报警时间设置",     "保存",
                                    "清除报警"};
    QTest::newRow("English") << QStringLiteral("en")
                             << QStringList{"Card & scanner state",
                                            "Run state",
                                            "Run result",
                                            "Running",
                                            "Paused",
                                            "Waiting for input",
                                            "Waiting for motion module",
                                            "Waiting for encoder",
                                            "Waiting for closed-loop scanner",
                                            "Run succeeded",
                                            "Motion stopped",
                                            "Data underrun",
                                            "IO time-out",
                                            "Alarm time",
                                            "Save",
                                            "Clear alarm"};
}

void CardMirrorStatusTest::its_texts() {
    QFETCH(QString, language);
    QFETCH(QStringList, texts);
    LanguageManager::SetCurrentLan(language);
    CardMirrorStatus const* window = open();
    QStringList shown{window->windowTitle(), part<QGroupBox>("groupBoxRunState")->title(),
                      part<QGroupBox>("groupBoxRunResult")->title()};
    for (char const* name :
         {"labelRuning", "labelPause", "labelWaitInput", "labelWaitExMotion", "labelWaitEncode", "labelWaitMirror",
          "labelRunSuccess", "labelStopRun", "labelDataCutOff", "labelIOTimeOut", "labelAlarmTime"})
        shown.append(part<QLabel>(name)->text());
    shown.append(part<QPushButton>("pushButtonSave")->text());
    shown.append(part<QPushButton>("pushButtonClearAlarm")->text());
    QCOMPARE(shown, texts);
    QCOMPARE(part<QLabel>("labelWaitInfo")->text(), LanguageManager::GetLanText("WaitInfo"));
    QVERIFY(window->width() >= window->minimumSizeHint().width());
    QVERIFY(window->height() >= window->minimumSizeHint().height());
}

void CardMirrorStatusTest::a_change_of_the_language_reaches_the_open_window() {
    CardMirrorStatus const* status = open();
    LanguageManager::SetCurrentLan(QStringLiteral("en"));
    window().SetUIText();
    QTRY_COMPARE(part<QLabel>("labelRuning")->text(), QStringLiteral("Running"));
    QCOMPARE(status->windowTitle(), QStringLiteral("Card & scanner state"));
    LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
    window().SetUIText();
    QTRY_COMPARE(part<QLabel>("labelRuning")->text(), QStringLiteral("运行中"));
}

void CardMirrorStatusTest::lamps_follow_a_run() {
    open();
    MarkCardInstance::Instance()->ClearAlarm();
    QTRY_COMPARE(lit(), QStringList());
    startJob();
    QTRY_COMPARE(lit(), QStringList{"Runing"});
    MarkCardInstance::Instance()->PauseMark();
    QTRY_COMPARE(lit(), QStringList{"Pause"});
    MarkCardInstance::Instance()->RestartMark();
    QTRY_COMPARE(lit(), QStringList{"Runing"});
    MarkCardInstance::Instance()->StopMark();
    m_Job.get();
    QTRY_COMPARE(lit(), QStringList{"StopRun"});
    machine().setSpeed(0.0);
    startJob();
    m_Job.get();
    QTRY_COMPARE(lit(), QStringList{"RunSuccess"});
}

void CardMirrorStatusTest::a_lamp_for_each_wait_data() {
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("lamp");
    QTest::addColumn<QString>("text");
    QTest::newRow("input") << QStringLiteral("wait_input") << QStringLiteral("WaitInput") << QStringLiteral("等待输入");
    QTest::newRow("motion") << QStringLiteral("wait_motion") << QStringLiteral("WaitExMotion")
                            << QStringLiteral("等待扩展运动模块");
    QTest::newRow("encoder") << QStringLiteral("wait_encoder") << QStringLiteral("WaitEncode")
                             << QStringLiteral("等待编码器");
    QTest::newRow("mirror") << QStringLiteral("wait_mirror") << QStringLiteral("WaitMirror")
                            << QStringLiteral("等待振镜闭环到达");
}

void CardMirrorStatusTest::a_lamp_for_each_wait() {
    QFETCH(QString, fault);
    QFETCH(QString, lamp);
    QFETCH(QString, text);
    open();
    machine().setFault(fault.toStdString(), true);
    startJob();
    QTRY_COMPARE(lit(), (QStringList{"Runing", lamp}));
    QCOMPARE(waitText(), text);
    machine().setFault(fault.toStdString(), false);
    QTRY_COMPARE(lit(), QStringList{"Runing"});
    QCOMPARE(waitText(), QString());
}

void CardMirrorStatusTest::underrun_and_time_out_stay_until_the_alarm_is_cleared() {
    open();
    MarkCardInstance::Instance()->ClearAlarm();
    for (char const* fault : {"data_underrun", "io_timeout"}) {
        machine().setFault(fault, true);
        machine().setFault(fault, false);
    }
    QTRY_COMPARE(lit(), (QStringList{"DataCutOff", "IOTimeOut"}));
    machine().clearJournal();
    part<QPushButton>("pushButtonClearAlarm")->click();
    COMPARE_JOURNAL(machineJournal(), {call("ClearAlarm")});
    QTRY_COMPARE(lit(), QStringList());
}

void CardMirrorStatusTest::the_scan_heads_state_is_written_out() {
    open();
    QCOMPARE(stateText(), QStringLiteral("闭环正常\n闭环振镜"));
    machine().setFault("scan_loop", true);
    machine().setFault("scan_position_y", true);
    machine().setFault("scan_alarm_x", true);
    QTRY_COMPARE(stateText(), QStringLiteral("闭环异常\nY位置异常\n闭环振镜\nX振镜报警"));
    machine().clearFaults();
    machine().setFault("scan_open_loop", true);
    QTRY_COMPARE(stateText(), QStringLiteral("开环未知\n开环振镜"));
    QVERIFY(part<QPlainTextEdit>("plainTextEditMirrorStatus")->isReadOnly());
    QVERIFY(part<QPlainTextEdit>("plainTextEditWaitInfo")->isReadOnly());
}

/// The operator scrolls in it while it is read ten times a second.
void CardMirrorStatusTest::a_state_that_stays_keeps_its_place_in_the_text() {
    CardMirrorStatus* window = open();
    auto* edit = part<QPlainTextEdit>("plainTextEditMirrorStatus");
    edit->selectAll();
    QSignalSpy changed(edit, &QPlainTextEdit::textChanged);
    window->update();
    QVERIFY(edit->textCursor().hasSelection());
    QCOMPARE(changed.count(), 0);
}

void CardMirrorStatusTest::with_the_card_closed_the_window_keeps_its_last_lamps() {
    CardMirrorStatus* window = open();
    machine().setFault("data_underrun", true);
    machine().setFault("wait_encoder", true);
    startJob();
    QTRY_COMPARE(lit(), (QStringList{"Runing", "WaitEncode", "DataCutOff"}));
    const QString state = stateText();
    QVERIFY(!state.isEmpty());
    MarkCardInstance::Instance()->CloseCard();
    m_Job.get();
    QCOMPARE(MarkCardInstance::Instance()->GetMarkInfo(), 0u);
    window->update();
    QCOMPARE(lit(), (QStringList{"Runing", "WaitEncode", "DataCutOff"}));
    QCOMPARE(stateText(), state);
    QCOMPARE(waitText(), QStringLiteral("等待编码器"));
    press();
    press();
    QVERIFY(window->isVisible());
    QCOMPARE(lit(), (QStringList{"Runing", "WaitEncode", "DataCutOff"}));
    machine().clearFaults();
    MarkCardInstance::Instance()->OpenCard();
    QTRY_COMPARE(lit(), QStringList{"StopRun"});
}

void CardMirrorStatusTest::a_card_that_never_opened_leaves_all_lamps_off() {
    machine().setFault("card_open_fails", true);
    CardMirrorStatus* window = open();
    QVERIFY(window->isVisible());
    window->update();
    QVERIFY(lit().isEmpty());
    QVERIFY(stateText().isEmpty());
}

void CardMirrorStatusTest::hidden_it_is_not_renewed() {
    CardMirrorStatus* window = open();
    MarkCardInstance::Instance()->ClearAlarm();
    QTRY_COMPARE(lit(), QStringList());
    press();
    machine().setFault("data_underrun", true);
    window->update();
    QCOMPARE(lit(), QStringList());
    press();
    QCOMPARE(lit(), QStringList{"DataCutOff"});
}

void CardMirrorStatusTest::the_alarm_time_is_read_once_and_saved_on_request() {
    start();
    MarkCardInstance::Instance()->SetAlarmTime(2500);
    press();
    auto* time = part<QSpinBox>("spinBox");
    QCOMPARE(time->value(), 2500);
    press();
    MarkCardInstance::Instance()->SetAlarmTime(777);
    press();
    QCOMPARE(time->value(), 2500);
    time->setValue(1800000);
    QCOMPARE(MarkCardInstance::Instance()->GetAlarmTime(), 777);
    machine().clearJournal();
    part<QPushButton>("pushButtonSave")->click();
    COMPARE_JOURNAL(machineJournal(), {call("SetAlarmTime", 1800000)});
    QCOMPARE(MarkCardInstance::Instance()->GetAlarmTime(), 1800000);
    MarkCardInstance::Instance()->SetAlarmTime(0);
}

/// Nothing would be left to close it by on a screen without window frames.
void CardMirrorStatusTest::it_goes_when_its_label_goes() {
    CardMirrorStatus* status = open();
    window().SwitchSysMode(true);
    QVERIFY(!status->isVisible());
    window().SwitchSysMode(false);
    QVERIFY(!status->isVisible());
    press();
    QVERIFY(status->isVisible());
}

void CardMirrorStatusTest::it_ends_with_the_main_window() {
    QPointer<CardMirrorStatus> first = open();
    m_Window.reset();
    QVERIFY(!first);
    QVERIFY(!CardMirrorStatus::Existing());
    QVERIFY(open());
    QVERIFY(CardMirrorStatus::Existing()->isVisible());
}

QTEST_MAIN(CardMirrorStatusTest)
#include "tst_cardmirrorstatus.moc"

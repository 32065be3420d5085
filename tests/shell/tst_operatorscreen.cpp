// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "support/approot.h"
#include "tests/shell/windowfixture.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

using namespace tests;

/// The example of a custom window, loaded as an operator's machine loads it.
class OperatorScreenTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void runs_pauses_and_stops_data();
    void runs_pauses_and_stops();
    void without_a_document_nothing_can_be_started();
    void an_alarm_is_shown_and_keeps_the_start_back();
    void ready_input_and_door_5_leave_the_start_free_data();
    void ready_input_and_door_5_leave_the_start_free();
    void counter_and_time_are_those_of_the_run_dialog();
    void the_editor_is_one_press_away();
    void covers_the_tab_and_goes_with_it();
    void speaks_both_languages();
    void buttons_are_large_and_nothing_is_cut_off_data();
    void buttons_are_large_and_nothing_is_cut_off();

private:
    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
    MainWindow& window() { return **m_Window; }
    void start(int type, bool document = true) {
        SystemParam::Instance()->m_nCustomUIType = type;
        m_Window.reset();
        m_Window = std::make_unique<RunningWindow>();
        window().resize(1024, 600);
        if (document)
            m_Window->newDocument(1, tessera::rootPath(QStringLiteral("/MarkFile/plate.mkf")));
        if (type == 2)
            m_Window->child<QTabWidget>("tabWidgetMian")->setCurrentIndex(1);
    }
    /// With the card closed nothing polls the inputs, and the alarms stay as a test sets them.
    void startWithoutPoll(bool document = true) {
        QVERIFY(machine().setFault("card_open_fails", true));
        start(1, document);
    }
    QPushButton* button(char const* name) { return m_Window->child<QPushButton>(name); }
    void press(char const* name) { QTest::mouseClick(button(name), Qt::LeftButton); }
    QString state() { return m_Window->child<QLabel>("operatorState")->text(); }
    QString count() { return m_Window->child<QLabel>("operatorCount")->text(); }
};

void OperatorScreenTest::initTestCase() {
    QVERIFY(m_Root.isValid());
    QVERIFY(m_Root.copyIn({QStringLiteral(OPERATOR_SCREEN), QStringLiteral("/CustomWindow/operatorscreen.so")}));
}

void OperatorScreenTest::init() {
    resetMachine();
    LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
}

void OperatorScreenTest::cleanup() {
    m_Window.reset();
    SystemParam::Instance()->m_nCustomUIType = 0;
    LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
    QDir(tessera::rootPath(QStringLiteral("/MarkFile"))).removeRecursively();
}

void OperatorScreenTest::runs_pauses_and_stops_data() {
    QTest::addColumn<int>("type");
    QTest::newRow("whole window") << 1;
    QTest::newRow("further tab") << 2;
}

void OperatorScreenTest::runs_pauses_and_stops() {
    QFETCH(int, type);
    start(type);
    QTRY_COMPARE(state(), QStringLiteral("就绪"));
    QVERIFY(button("operatorStart")->isVisible());
    QVERIFY(!button("operatorPause")->isEnabled());
    QVERIFY(!button("operatorStop")->isEnabled());
    const int before = count().toInt();

    machine().setSpeed(0.0001);
    press("operatorStart");
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QTRY_COMPARE(state(), QStringLiteral("加工中"));
    QTRY_VERIFY(!window().centralWidget()->isEnabled());
    QVERIFY(button("operatorPause")->isEnabled());
    QVERIFY(!button("operatorStart")->isEnabled());

    press("operatorPause");
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Paused);
    QTRY_COMPARE(state(), QStringLiteral("已暂停"));
    QCOMPARE(button("operatorStart")->text(), QStringLiteral("继续"));
    press("operatorStart");
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QTRY_COMPARE(state(), QStringLiteral("加工中"));

    press("operatorStop");
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
    QTRY_COMPARE(state(), QStringLiteral("就绪"));
    QTRY_COMPARE(count().toInt(), before + 1);
    QTRY_VERIFY(window().centralWidget()->isEnabled());
    QCOMPARE(window().MarkWindowIsVisible(), 0);
}

void OperatorScreenTest::without_a_document_nothing_can_be_started() {
    start(1, false);
    QTRY_COMPARE(state(), QStringLiteral("没有打开的文档"));
    for (char const* name : {"operatorStart", "operatorPause", "operatorStop"})
        QVERIFY2(!button(name)->isEnabled(), name);
    m_Window->newDocument();
    QTRY_VERIFY(button("operatorStart")->isEnabled());
}

void OperatorScreenTest::an_alarm_is_shown_and_keeps_the_start_back() {
    startWithoutPoll();
    window().SetSafeAlarm(true, 128);
    QTRY_COMPARE(state(), QStringLiteral("安全报警"));
    QVERIFY(!button("operatorStart")->isEnabled());
    QVERIFY(button("operatorEditor")->isEnabled());
    window().SetSafeAlarm(false, 128);
    QTRY_COMPARE(state(), QStringLiteral("就绪"));
}

void OperatorScreenTest::ready_input_and_door_5_leave_the_start_free_data() {
    QTest::addColumn<unsigned>("bits");
    QTest::addColumn<bool>("document");
    QTest::addColumn<bool>("start");
    QTest::newRow("ready input") << 1U << true << true;
    QTest::newRow("door 5") << 32U << true << true;
    QTest::newRow("both") << 33U << true << true;
    QTest::newRow("door 5 and door 1") << 34U << true << false;
    QTest::newRow("door 5 without a document") << 32U << false << false;
}

void OperatorScreenTest::ready_input_and_door_5_leave_the_start_free() {
    QFETCH(unsigned, bits);
    QFETCH(bool, document);
    startWithoutPoll(document);
    window().SetSafeAlarm(true, bits);
    QTRY_COMPARE(state(), QStringLiteral("安全报警"));
    QTEST(button("operatorStart")->isEnabled(), "start");
    window().SetSafeAlarm(false, bits);
}

void OperatorScreenTest::counter_and_time_are_those_of_the_run_dialog() {
    start(1);
    machine().setSpeed(0.0);
    const int before = count().toInt();
    for (int run = 1; run <= 3; ++run) {
        QTRY_VERIFY(button("operatorStart")->isEnabled());
        press("operatorStart");
        QTRY_COMPARE(count().toInt(), before + run);
        QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
    }
    const double ms = Form_Marking::Instance()->findChild<QLabel*>(QStringLiteral("labelRunTime"))->text().toDouble();
    QTRY_COMPARE(m_Window->child<QLabel>("operatorTime")->text(),
                 QString::number(ms / 1000.0, 'f', 1) + QStringLiteral(" 秒"));
    QCOMPARE(m_Window->child<QLabel>("operatorDocument")->text(), QStringLiteral("plate"));
}

void OperatorScreenTest::the_editor_is_one_press_away() {
    start(1);
    QVERIFY(!window().centralWidget()->isVisible());
    press("operatorEditor");
    QVERIFY(window().centralWidget()->isVisible());
    QVERIFY(!m_Window->child<QWidget>("operatorScreen")->isVisible());
    m_Window->child<QAction>("actionChangeDebug")->trigger();
    QVERIFY(m_Window->child<QWidget>("operatorScreen")->isVisible());
    m_Window->close();
    start(2);
    QVERIFY(!button("operatorEditor")->isVisible());
}

void OperatorScreenTest::covers_the_tab_and_goes_with_it() {
    start(2);
    auto* tabs = m_Window->child<QTabWidget>("tabWidgetMian");
    auto* screen = m_Window->child<QWidget>("operatorScreen");
    auto* page = m_Window->child<QWidget>("operatorPage");
    QCOMPARE(tabs->currentWidget(), page);
    for (QSize const& size : {QSize(1024, 600), QSize(1600, 900)}) {
        window().resize(size);
        QTRY_COMPARE(screen->geometry(), QRect(page->mapTo(&window(), QPoint()), page->size()));
    }
    tabs->setCurrentIndex(0);
    QVERIFY(!screen->isVisible());
    tabs->setCurrentIndex(1);
    QVERIFY(screen->isVisible());
}

void OperatorScreenTest::speaks_both_languages() {
    start(1);
    QTRY_COMPARE(button("operatorStop")->text(), QStringLiteral("停止"));
    LanguageManager::SetCurrentLan(QStringLiteral("en"));
    QTRY_COMPARE(button("operatorStop")->text(), QStringLiteral("Stop"));
    QCOMPARE(state(), QStringLiteral("Ready"));
}

void OperatorScreenTest::buttons_are_large_and_nothing_is_cut_off_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QSize>("size");
    for (int type : {1, 2}) {
        for (char const* language : {"zh_CN", "en"}) {
            for (QSize const& size : {QSize(1024, 600), QSize(1920, 1080)})
                QTest::addRow("%s, %s, %d", type == 1 ? "whole" : "tab", language, size.width())
                    << type << QString::fromLatin1(language) << size;
        }
    }
}

void OperatorScreenTest::buttons_are_large_and_nothing_is_cut_off() {
    QFETCH(int, type);
    QFETCH(QString, language);
    QFETCH(QSize, size);
    LanguageManager::SetCurrentLan(language);
    start(type);
    window().resize(size);
    auto* screen = m_Window->child<QWidget>("operatorScreen");
    QTRY_VERIFY(screen->geometry().bottom() > size.height() / 2 && button("operatorStart")->isEnabled());
    for (char const* name : {"operatorStart", "operatorPause", "operatorStop"}) {
        QVERIFY2(button(name)->height() >= 100 && button(name)->width() >= 120, name);
        QVERIFY2(button(name)->fontMetrics().horizontalAdvance(button(name)->text()) < button(name)->width() - 8, name);
    }
    for (QLabel* label : screen->findChildren<QLabel*>()) {
        const bool fits = tests::waitFor([label] {
            const QSize needs = label->fontMetrics().size(0, label->text());
            return needs.width() <= label->width() && needs.height() <= label->height();
        });
        QVERIFY2(fits, qPrintable(QStringLiteral("%1 %2: %3 of %4, %5")
                                      .arg(label->objectName(), label->text())
                                      .arg(label->height())
                                      .arg(label->fontMetrics().height())
                                      .arg(screen->height())));
    }
    const QByteArray folder = qgetenv("TESSERA_TEST_SCREENSHOTS");
    if (!folder.isEmpty())
        QVERIFY(window().grab().save(
            QDir(QString::fromLocal8Bit(folder))
                .filePath(QStringLiteral("operatorscreen-%1-%2-%3.png").arg(type).arg(language).arg(size.width()))));
}

QTEST_MAIN(OperatorScreenTest)
#include "tst_operatorscreen.moc"

// SPDX-License-Identifier: MIT
#include "tests/remote/remotefixture.h"

#include <QSignalSpy>

using namespace tests;

Q_DECLARE_METATYPE(std::vector<QString>)

namespace {

/// What the busy state of the window changes to.
class BusyWatch : public QObject {
public:
    explicit BusyWatch(QWidget* part)
        : m_pPart(part) {
        part->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::EnabledChange)
            told.append(QStringLiteral("%1 after %2 answers")
                            .arg(m_pPart->isEnabled() ? QStringLiteral("free") : QStringLiteral("busy"))
                            .arg(machineCalls("WriteTcpMsg")));
        return QObject::eventFilter(watched, event);
    }
    QStringList told;

private:
    QWidget* m_pPart;
};

} // namespace

/// The commands of the controlling station: which is taken for which, and what is answered.
class ExternalCommandsTest : public QObject, private RemoteFixture {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void a_station_of_the_server_kind_starts_the_server();
    void each_word_of_the_table_reaches_its_handler_data();
    void each_word_of_the_table_reaches_its_handler();
    void a_name_needs_only_contain_the_word_data();
    void a_name_needs_only_contain_the_word();
    void of_two_words_the_first_of_the_table_counts_data();
    void of_two_words_the_first_of_the_table_counts();
    void an_unknown_name_gets_no_answer();
    void calibrations_are_passed_on_with_everything_and_not_answered_here();
    void an_answer_keeps_integers_name_and_tag();
    void the_window_is_busy_while_documents_are_handled_data();
    void the_window_is_busy_while_documents_are_handled();

    void the_document_is_switched_by_its_file_name();
    void switching_is_refused_in_order_data();
    void switching_is_refused_in_order();
    void switching_during_a_run_is_refused();
    void a_command_that_is_refused_during_a_run_frees_the_window_data();
    void a_command_that_is_refused_during_a_run_frees_the_window();

    void documents_are_made_equal_to_the_list();
    void no_pairs_close_everything();
    void an_odd_list_closes_nothing_data();
    void an_odd_list_closes_nothing();
    void synchronising_during_a_run_is_refused();
    void a_pair_that_fails_ends_it_with_its_second_name();
    void a_name_that_stands_twice_is_closed_like_any_other();
    void a_stop_with_nothing_running_is_good();
    void a_command_that_closes_the_marked_document_is_refused_and_the_run_goes_on();

    void orders_and_answers_are_recorded();
};

void ExternalCommandsTest::a_station_of_the_server_kind_starts_the_server() {
    m_Window.reset();
    machine().clearJournal();
    m_Window = std::make_unique<RunningWindow>();
    QCOMPARE(machineCalls("InitServer"), 1);
    QCOMPARE(machineCalls("CloseServer"), 0);
    machine().clearJournal();
    m_Window.reset();
    QCOMPARE(machineJournal().first().name, QStringLiteral("CloseServer"));
}

void ExternalCommandsTest::each_word_of_the_table_reaches_its_handler_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("emitted"); ///< index of the signal, -1 for none
    QTest::addColumn<QStringList>("answered");
    QTest::newRow("1 run") << "RunManualStart" << 0 << QStringList{"1|数据格式错误"};
    QTest::newRow("2 stop") << "RunManualStop" << -1 << QStringList{"0|终止运行成功"};
    QTest::newRow("3 document") << "SetCurDoc" << -1 << QStringList{"1|接收消息列表为空"};
    QTest::newRow("4 documents") << "SyncFile" << -1 << QStringList{"0|"};
    QTest::newRow("5 box") << "StandrdBoxCalib" << 1 << QStringList{};
    QTest::newRow("6 manual box") << "ManualBoxCalib" << 2 << QStringList{};
    QTest::newRow("7 high precision") << "ManualHighBoxCalib" << 3 << QStringList{};
}

void ExternalCommandsTest::each_word_of_the_table_reaches_its_handler() {
    QFETCH(QString, name);
    QFETCH(int, emitted);
    QFETCH(QStringList, answered);
    QSignalSpy run(&response(), &ExternalResponse::RunManualStart);
    QSignalSpy box(&response(), &ExternalResponse::StandardBoxCalib);
    QSignalSpy manual(&response(), &ExternalResponse::ManualBoxCalib);
    QSignalSpy high(&response(), &ExternalResponse::ManualHighBoxCalib);
    order(name);
    const QVector<QSignalSpy*> spies{&run, &box, &manual, &high};
    for (int i = 0; i < spies.size(); ++i)
        QCOMPARE(spies.at(i)->count(), i == emitted ? 1 : 0);
    QCOMPARE(answers(), answered);
}

void ExternalCommandsTest::a_name_needs_only_contain_the_word_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("answered");
    QTest::newRow("around") << "XSyncFileY" << QStringList{"0|"};
    QTest::newRow("before") << "ASetCurDoc" << QStringList{"1|接收消息列表为空"};
    QTest::newRow("behind") << "RunManualStopNow" << QStringList{"0|终止运行成功"};
    QTest::newRow("other case") << "syncfile" << QStringList{};
    QTest::newRow("a part of the word") << "SyncFil" << QStringList{};
    QTest::newRow("the correct spelling") << "StandardBoxCalib" << QStringList{};
    QTest::newRow("empty") << "" << QStringList{};
}

void ExternalCommandsTest::a_name_needs_only_contain_the_word() {
    QFETCH(QString, name);
    QFETCH(QStringList, answered);
    QSignalSpy box(&response(), &ExternalResponse::StandardBoxCalib);
    order(name);
    QCOMPARE(answers(), answered);
    QCOMPARE(box.count(), 0);
}

void ExternalCommandsTest::of_two_words_the_first_of_the_table_counts_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("answered");
    QTest::newRow("stop behind documents") << "SyncFileRunManualStop"
                                           << "0|终止运行成功";
    QTest::newRow("run behind stop") << "RunManualStopRunManualStart"
                                     << "1|数据格式错误";
    QTest::newRow("document behind documents") << "SyncFileSetCurDoc"
                                               << "1|接收消息列表为空";
    QTest::newRow("documents behind a calibration") << "ManualBoxCalibSyncFile"
                                                    << "0|";
}

void ExternalCommandsTest::of_two_words_the_first_of_the_table_counts() {
    QFETCH(QString, name);
    QFETCH(QString, answered);
    QSignalSpy manual(&response(), &ExternalResponse::ManualBoxCalib);
    order(name);
    QCOMPARE(answers(), QStringList{answered});
    QCOMPARE(manual.count(), 0);
}

void ExternalCommandsTest::an_unknown_name_gets_no_answer() {
    open(QStringLiteral("test"));
    order(QStringLiteral("Reboot"), {"0", "1"});
    QCoreApplication::processEvents();
    QVERIFY(machineJournal().isEmpty());
    QCOMPARE(openNames(), QStringList{"test"});
}

void ExternalCommandsTest::calibrations_are_passed_on_with_everything_and_not_answered_here() {
    QSignalSpy spy(&response(), &ExternalResponse::ManualHighBoxCalib);
    order(QStringLiteral("ManualHighBoxCalib"), {"2", "b"}, -9);
    QCOMPARE(spy.count(), 1);
    const auto cmd = spy.first().at(0).value<CCSCmd>();
    QCOMPARE(cmd.Id, 11);
    QCOMPARE(cmd.First, 22);
    QCOMPARE(cmd.Second, 33);
    QCOMPARE(cmd.Args, (std::vector<QString>{"2", "b"}));
    QCOMPARE(spy.first().at(1).toInt(), -9);
    QVERIFY(machineJournal().isEmpty());
}

void ExternalCommandsTest::an_answer_keeps_integers_name_and_tag() {
    CCSCmd cmd = command(QStringLiteral("XSetCurDocY"), {"nothing"});
    cmd.Id = -2147483647;
    cmd.First = 2147483647;
    cmd.Second = 0;
    emit CCSServer::Instance()->SendSignals(cmd, 4711);
    COMPARE_JOURNAL(machineJournal(),
                    {call("WriteTcpMsg", 4711, -2147483647, "XSetCurDocY", 2147483647, 0, "1", "切换文档失败")});
}

void ExternalCommandsTest::the_window_is_busy_while_documents_are_handled_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("switching") << "SetCurDoc";
    QTest::newRow("synchronising") << "SyncFile";
}

void ExternalCommandsTest::the_window_is_busy_while_documents_are_handled() {
    QFETCH(QString, name);
    BusyWatch watch(m_Window->child<QWidget>("centralwidget"));
    order(name);
    QCOMPARE(watch.told, (QStringList{"busy after 0 answers", "free after 1 answers"}));
    QVERIFY(m_Window->child<QWidget>("menuBar")->isEnabled());
}

void ExternalCommandsTest::the_document_is_switched_by_its_file_name() {
    open(QStringLiteral("one"));
    open(QStringLiteral("two"));
    order(QStringLiteral("SetCurDoc"), {file("one"), "left aside"});
    COMPARE_JOURNAL(machineJournal(), {answer("SetCurDoc", "0", "文档切换成功")});
    QCOMPARE(window().GetActiveView()->GetFileName(), file("one"));
}

void ExternalCommandsTest::switching_is_refused_in_order_data() {
    QTest::addColumn<bool>("busy");
    QTest::addColumn<std::vector<QString>>("args");
    QTest::addColumn<QString>("answered");
    QTest::newRow("busy before empty") << true << std::vector<QString>{} << "1|文档正在运行中";
    QTest::newRow("no argument") << false << std::vector<QString>{} << "1|接收消息列表为空";
    QTest::newRow("empty first argument") << false << std::vector<QString>{"", "one"} << "1|接收消息列表为空";
    QTest::newRow("not open") << false << std::vector<QString>{"nobody.mkf"} << "1|切换文档失败";
}

void ExternalCommandsTest::switching_is_refused_in_order() {
    QFETCH(bool, busy);
    QFETCH(std::vector<QString>, args);
    QFETCH(QString, answered);
    QRulerView const* view = open(QStringLiteral("one"));
    card()->SetMarkStaus(busy ? MarkStatusPause : MarkStatusStop);
    order(QStringLiteral("SetCurDoc"), args);
    QCOMPARE(answers(), QStringList{answered});
    QCOMPARE(window().GetActiveView(), view);
    card()->SetMarkStaus(MarkStatusStop);
}

void ExternalCommandsTest::switching_during_a_run_is_refused() {
    open(QStringLiteral("one"));
    open(QStringLiteral("two"));
    startSlowly();
    order(QStringLiteral("SetCurDoc"), {file("one")});
    QCOMPARE(answers(), QStringList{"1|文档正在运行中"});
    QCOMPARE(window().GetActiveView()->GetFileName(), file("two"));
    letEnd();
    QCOMPARE(answers(), (QStringList{"1|文档正在运行中", "0|文档执行成功"}));
}

void ExternalCommandsTest::a_command_that_is_refused_during_a_run_frees_the_window_data() {
    the_window_is_busy_while_documents_are_handled_data();
}

/// Kept: every answered command ends with the free window, the refused one too.
void ExternalCommandsTest::a_command_that_is_refused_during_a_run_frees_the_window() {
    QFETCH(QString, name);
    open(QStringLiteral("one"));
    startSlowly();
    QTRY_VERIFY(!windowIsFree());
    order(name, {"one"});
    QCOMPARE(answers(), QStringList{"1|文档正在运行中"});
    QVERIFY(windowIsFree());
    QCOMPARE(machine().state().activity, sim::SimActivity::Running);
    letEnd();
}

void ExternalCommandsTest::documents_are_made_equal_to_the_list() {
    open(QStringLiteral("old"));
    const QString first = makeFile(QStringLiteral("first"), 3);
    const QString second = makeFile(QStringLiteral("second"), 2);
    order(QStringLiteral("SyncFile"), {first, file("a"), second, file("b")});
    QCOMPARE(answers(), QStringList{"0|文档同步成功"});
    QCOMPARE(openNames(), (QStringList{"a", "b"}));
    QVERIFY(window().IsFileOpened(file("a")));
    QVERIFY(!window().IsFileOpened(file("old")));
    QCOMPARE(window().GetDocs().first()->GetMarkTools()->GetMarkTools().size(), 3);
    QVERIFY(QFile::exists(file("b")));
}

void ExternalCommandsTest::no_pairs_close_everything() {
    open(QStringLiteral("one"));
    open(QStringLiteral("two"));
    order(QStringLiteral("SyncFile"));
    COMPARE_JOURNAL(machineJournal(), {answer("SyncFile", "0", "")});
    QVERIFY(window().GetDocs().isEmpty());
    QVERIFY(!window().GetActiveView());
}

void ExternalCommandsTest::an_odd_list_closes_nothing_data() {
    QTest::addColumn<int>("count");
    for (int count : {1, 3, 13})
        QTest::addRow("%d", count) << count;
}

void ExternalCommandsTest::an_odd_list_closes_nothing() {
    QFETCH(int, count);
    open(QStringLiteral("one"));
    order(QStringLiteral("SyncFile"), std::vector<QString>(static_cast<std::size_t>(count), file("one")));
    QCOMPARE(answers(), QStringList{QStringLiteral("1|接收消息列表个数错误,个数为%1").arg(count)});
    QCOMPARE(openNames(), QStringList{"one"});
}

void ExternalCommandsTest::synchronising_during_a_run_is_refused() {
    open(QStringLiteral("one"));
    startSlowly();
    for (std::vector<QString> const& args : {std::vector<QString>{}, std::vector<QString>{"a"}})
        order(QStringLiteral("SyncFile"), args);
    QCOMPARE(answers(), (QStringList{"1|文档正在运行中", "1|文档正在运行中"}));
    QCOMPARE(openNames(), QStringList{"one"});
    letEnd();
}

void ExternalCommandsTest::a_pair_that_fails_ends_it_with_its_second_name() {
    open(QStringLiteral("old"));
    const QString good = makeFile(QStringLiteral("good"));
    order(QStringLiteral("SyncFile"), {good, file("a"), file("missing"), file("b"), good, file("c")});
    QCOMPARE(answers(), QStringList{QStringLiteral("1|%1文档同步失败").arg(file("b"))});
    QCOMPARE(openNames(), QStringList{"a"});
    QVERIFY(!QFile::exists(file("c")));
}

void ExternalCommandsTest::a_name_that_stands_twice_is_closed_like_any_other() {
    const QString one = makeFile(QStringLiteral("one"), 1);
    const QString three = makeFile(QStringLiteral("three"), 3);
    order(QStringLiteral("SyncFile"), {one, file("a"), three, file("b"), three, file("a")});
    QCOMPARE(answers().last(), QStringLiteral("0|文档同步成功"));
    QCOMPARE(openNames(), (QStringList{"a", "b", "a"}));
    order(QStringLiteral("SyncFile"), {one, file("c")});
    QCOMPARE(answers().last(), QStringLiteral("0|文档同步成功"));
    QCOMPARE(openNames(), QStringList{"c"});
    QVERIFY(!window().IsFileOpened(file("a")));
    order(QStringLiteral("RunManualStart"), {"0", "0"});
    QTRY_COMPARE(answers().last(), QStringLiteral("0|文档执行成功"));
}

void ExternalCommandsTest::a_stop_with_nothing_running_is_good() {
    order(QStringLiteral("RunManualStop"), {"left", "aside"});
    // The second pair is the multi-document run's, which stops without being asked whether it goes on.
    COMPARE_JOURNAL(machineJournal(), {call("SetMarkStaus", 2), call("StopMark"), call("StopMark"),
                                       call("SetMarkStaus", 2), answer("RunManualStop", "0", "终止运行成功")});
}

void ExternalCommandsTest::a_command_that_closes_the_marked_document_is_refused_and_the_run_goes_on() {
    open(QStringLiteral("one"));
    startSlowly();
    order(QStringLiteral("SyncFile"));
    QCOMPARE(machine().state().activity, sim::SimActivity::Running);
    QCOMPARE(machineCalls("StopMark"), 0);
    letEnd();
    QCOMPARE(answers().last(), QStringLiteral("0|文档执行成功"));
}

void ExternalCommandsTest::orders_and_answers_are_recorded() {
    order(QStringLiteral("SetCurDoc"), {"no such", "second"});
    order(QStringLiteral("Reboot"));
    order(QStringLiteral("StandrdBoxCalib"), {"1"});
    open(QStringLiteral("test"));
    order(QStringLiteral("RunManualStart"), {"0", "1"});
    QTRY_VERIFY(!response().IsRunning());
    response().StopRunAndWait();
    response().OrderLog().Flush();
    QStringList lines = QString::fromUtf8(m_Root.read(QStringLiteral("/日志文件/RemoteOrders.txt")))
                            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines = lines.mid(lines.size() - 4);
    const QRegularExpression time(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\t"));
    for (QString& line : lines) {
        QVERIFY2(line.contains(time), qPrintable(line));
        line.remove(time);
    }
    const QString from = QStringLiteral("command server\t");
    QCOMPARE(lines, (QStringList{from + "SetCurDoc(no such,second)\t1,切换文档失败", from + "Reboot()\t",
                                 from + "StandrdBoxCalib(1)\t", from + "RunManualStart(0,1)\t0,文档执行成功"}));
}

QTEST_MAIN(ExternalCommandsTest)
#include "tst_externalcommands.moc"

// SPDX-License-Identifier: MIT
#include "engine/layerparamex.h"
#include "engine/markingmparam_vz.h"
#include "tests/remote/hostfixture.h"

#include <cmath>

using namespace tests;

/// What a plant host orders and the bytes that it gets for it, over a real socket and with the whole program.
class HostRepliesTest : public QObject, private HostCase {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_test_gets_no_reply();
    void a_frame_without_an_order_gets_no_reply();
    void a_stop_while_idle_is_answered();
    void a_stop_with_an_argument_gets_no_reply_and_stops_nothing();
    void a_stop_ends_a_run_and_both_are_answered();
    void a_stop_sent_behind_an_order_ends_it();
    void a_run_without_arguments_is_a_bad_format_while_idle_and_busy_during_a_run();
    void a_run_is_answered_when_it_has_ended();
    void a_run_without_records_leaves_the_offsets_of_the_order_before();
    void a_bad_record_refuses_the_whole_order_data();
    void a_bad_record_refuses_the_whole_order();
    void a_document_number_is_refused_beyond_the_count_only();
    void a_run_under_an_alarm_is_refused();
    void an_alarm_is_told_before_the_document_number();
    void a_run_of_an_empty_document_fails();
    void a_second_run_is_refused_at_once_and_the_first_goes_on();
    void a_layer_is_told_by_its_18_values();
    void a_bad_layer_order_is_refused_data();
    void a_bad_layer_order_is_refused();
    void two_frames_in_one_read_act_in_their_order();
    void two_prefixes_in_one_frame_act_twice_in_the_fixed_order();
    void a_frame_may_come_in_two_reads();
    void the_end_of_a_run_that_nobody_waited_for_can_be_told_data();
    void the_end_of_a_run_that_nobody_waited_for_can_be_told();
    void a_text_between_two_marks_data();
    void a_text_between_two_marks();
    void messages_are_logged_as_debug_traffic();
    void orders_are_recorded_with_sender_and_answer();

private:
    /// Number of cards' stops in the journal.
    static int stops() { return machineCalls("StopMark"); }
    /// Where the last job marked its first point, mm.
    static double markedX() {
        std::uint64_t pass = 0;
        std::size_t from = 0;
        std::vector<sim::SimTraceRow> rows;
        machine().followTrace(pass, from, rows);
        for (sim::SimTraceRow const& row : rows) {
            if (row.laser)
                return row.x;
        }
        return std::nan("");
    }
};

void HostRepliesTest::initTestCase() {
    QVERIFY(hasRoot());
}

void HostRepliesTest::init() {
    beginHost();
    clearLog();
}

void HostRepliesTest::cleanup() {
    endHost();
}

void HostRepliesTest::a_test_gets_no_reply() {
    startWithHost();
    QTest::ignoreMessage(QtDebugMsg, "接收指令: _VZTest()");
    QVERIFY(host().write("_VZTest();"));
    QVERIFY(isQuiet());
}

void HostRepliesTest::a_frame_without_an_order_gets_no_reply() {
    startWithHost();
    QVERIFY(host().write("hello;;_vzmarkstop();_VZMarkStop;\xc4\xe3;"));
    QVERIFY(isQuiet());
    QCOMPARE(stops(), 0);
}

void HostRepliesTest::a_stop_while_idle_is_answered() {
    startWithHost();
    QCOMPARE(ask("_VZMarkStop();"), stopReply());
}

void HostRepliesTest::a_stop_with_an_argument_gets_no_reply_and_stops_nothing() {
    startWithHost();
    QVERIFY(startRun());
    machine().clearJournal();
    QVERIFY(host().write("_VZMarkStop(1);"));
    QVERIFY(isQuiet());
    QVERIFY(isRunning());
    QCOMPARE(stops(), 0);
}

void HostRepliesTest::a_stop_ends_a_run_and_both_are_answered() {
    startWithHost();
    QVERIFY(startRun());
    QVERIFY(host().write("_VZMarkStop();"));
    const QByteArray first = answer();
    const QByteArray second = answer();
    QVERIFY(!isRunning());
    // The end of the run and the answer to the stop come from two threads.
    QVERIFY(first == stopReply() || second == stopReply());
    const QByteArray run = first == stopReply() ? second : first;
    QVERIFY2(run == runReply(kRunDoneGbk, "0") || run == runReply(kRunFailedGbk), run.constData());
}

/// It may begin when the program takes a turn between the two, but it never goes on.
void HostRepliesTest::a_stop_sent_behind_an_order_ends_it() {
    startWithHost();
    machine().setSpeed(kSlowJob);
    for (int i = 0; i < 50; ++i) {
        QVERIFY(host().write("_VZSetOffset(0);_VZMarkStop();"));
        const QByteArray first = answer();
        const QByteArray second = answer();
        QVERIFY2(first == stopReply() || second == stopReply(), first + second);
        QVERIFY2(first.startsWith("_VZSetOffset(") || second.startsWith("_VZSetOffset("), first + second);
        QVERIFY(!isRunning());
    }
    // The next one runs.
    QVERIFY(startRun());
}

void HostRepliesTest::a_run_without_arguments_is_a_bad_format_while_idle_and_busy_during_a_run() {
    startWithHost();
    QCOMPARE(ask("_VZSetOffset();"), runReply(kBadFormatGbk));
    QVERIFY(startRun());
    QCOMPARE(ask("_VZSetOffset();"), runReply(kBusyGbk));
    QVERIFY(isRunning());
}

void HostRepliesTest::a_run_is_answered_when_it_has_ended() {
    startWithHost();
    machine().setSpeed(0.0);
    machine().clearJournal();
    QCOMPARE(ask("_VZSetOffset(0);"), runReply(kRunDoneGbk, "0"));
    QVERIFY(!isRunning());
    QCOMPARE(machineCalls("DownLayerPara"), 1);
    QCOMPARE(only(machineJournal(), {"SetMarkStaus"}).size(), 2);
}

void HostRepliesTest::a_run_without_records_leaves_the_offsets_of_the_order_before() {
    startWithHost();
    machine().setSpeed(0.0);
    QCOMPARE(ask("_VZSetOffset(0%1.5,0,0,0,0,0,0);"), runReply(kRunDoneGbk, "0"));
    QCOMPARE(markedX(), 1.5);
    QCOMPARE(ask("_VZSetOffset(0);"), runReply(kRunDoneGbk, "0"));
    QCOMPARE(markedX(), 1.5);
    QCOMPARE(ask("_VZSetOffset(0%-2,0,0,0,0,0,0);"), runReply(kRunDoneGbk, "0"));
    QCOMPARE(markedX(), -2.0);
}

void HostRepliesTest::a_bad_record_refuses_the_whole_order_data() {
    QTest::addColumn<QByteArray>("frame");
    QTest::newRow("empty second part") << QByteArray("_VZSetOffset(0%);");
    QTest::newRow("six fields") << QByteArray("_VZSetOffset(0%1,2,3,4,5,6);");
    QTest::newRow("eight fields") << QByteArray("_VZSetOffset(0%1,2,3,4,5,6,7,8);");
    QTest::newRow("eight fields behind good records")
        << QByteArray("_VZSetOffset(0%1,0,0,0,0,0,0#2,0,0,0,0,0,0#1,2,3,4,5,6,7,8);");
}

void HostRepliesTest::a_bad_record_refuses_the_whole_order() {
    QFETCH(QByteArray, frame);
    startWithHost();
    machine().setSpeed(0.0);
    machine().clearJournal();
    QCOMPARE(ask(frame), runReply(kBadLengthGbk));
    QCOMPARE(machineCalls("DownLayerPara"), 0);
    // The offsets were not touched either.
    QCOMPARE(ask("_VZSetOffset(0);"), runReply(kRunDoneGbk, "0"));
    QCOMPARE(markedX(), 0.0);
}

/// The count itself passes and makes no document the active one, so that there is nothing to run.
void HostRepliesTest::a_document_number_is_refused_beyond_the_count_only() {
    startWithHost();
    machine().setSpeed(0.0);
    QCOMPARE(ask("_VZSetOffset(-1);"), runReply(kNoDocumentGbk));
    QCOMPARE(ask("_VZSetOffset(2);"), runReply(kNoDocumentGbk));
    QCOMPARE(ask("_VZSetOffset(1);"), runReply(kRunFailedGbk));
    QCOMPARE(ask("_VZSetOffset(x);"), runReply(kRunDoneGbk, "0"));
}

void HostRepliesTest::a_run_under_an_alarm_is_refused() {
    // Not shown: the input poll would take the alarm back.
    startWithHost(false);
    machine().clearJournal();
    window().SetSafeAlarm(true, 2);
    QCOMPARE(ask("_VZSetOffset(0);"), runReply(kAlarmGbk));
    QCOMPARE(machineCalls("DownLayerPara"), 0);
    window().SetSafeAlarm(false, 2);
}

void HostRepliesTest::an_alarm_is_told_before_the_document_number() {
    startWithHost(false);
    window().SetSafeAlarm(true, 2);
    QCOMPARE(ask("_VZSetOffset(99);"), runReply(kAlarmGbk));
    window().SetSafeAlarm(false, 2);
}

void HostRepliesTest::a_run_of_an_empty_document_fails() {
    start();
    m_Window->newDocument(0);
    connectHost();
    QCOMPARE(ask("_VZSetOffset(0);"), runReply(kRunFailedGbk));
}

void HostRepliesTest::a_second_run_is_refused_at_once_and_the_first_goes_on() {
    startWithHost();
    QVERIFY(startRun());
    machine().clearJournal();
    for (int i = 0; i < 100; ++i)
        QCOMPARE(ask("_VZSetOffset(0%1,0,0,0,0,0,0);"), runReply(kBusyGbk));
    QVERIFY(isRunning());
    QCOMPARE(machineCalls("DownLayerPara"), 0);
    QCOMPARE(stops(), 0);
}

void HostRepliesTest::a_layer_is_told_by_its_18_values() {
    startWithHost();
    LayerData layer;
    layer.MarkCnt = 2;
    layer.MarkSpeed = 1234567.0;
    layer.Power = 1.0 / 3.0;
    layer.Fre = 20.5;
    layer.EndDelay = 777;
    layer.PointTime = 2999;
    layer.MinJumpDelayDist = 0.25;
    layer.UseDefault = true;
    m_Window->operator->()->GetActiveView()->GetLayerParams()->SetLayerData(19, layer);
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardFilber);
    QCOMPARE(
        ask("_VZGetLayerParas(0,19);"),
        QByteArray(
            "_VZGetLayerParas(0,2,1.23457e+06,2000,0.333333,0,20500,50,100,100,50,3000,500,100,200,2,0.25,10,1);"));
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYAG);
    QCOMPARE(ask("_VZGetLayerParas(0,19);"),
             QByteArray(
                 "_VZGetLayerParas(0,2,1.23457e+06,2000,0.333333,0,20.5,50,100,100,50,3000,500,100,200,2,0.25,10,1);"));
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardFilber);
}

void HostRepliesTest::a_bad_layer_order_is_refused_data() {
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("no arguments") << QByteArray("_VZGetLayerParas();") << layerReply(kBadFormatGbk);
    QTest::newRow("not closed") << QByteArray("_VZGetLayerParas(0,0;") << layerReply(kBadFormatGbk);
    QTest::newRow("one argument") << QByteArray("_VZGetLayerParas(0);") << layerReply(kBadLengthGbk);
    QTest::newRow("no such document") << QByteArray("_VZGetLayerParas(99,0);") << layerReply(kNoDocumentGbk);
    QTest::newRow("the count itself") << QByteArray("_VZGetLayerParas(1,0);") << layerReply(kNoDocumentGbk);
    QTest::newRow("negative document") << QByteArray("_VZGetLayerParas(-1,0);") << layerReply(kNoDocumentGbk);
    QTest::newRow("layer 20") << QByteArray("_VZGetLayerParas(0,20);") << layerReply(kNoDocumentGbk);
    QTest::newRow("layer beyond int") << QByteArray("_VZGetLayerParas(0,4294967295);") << layerReply(kNoDocumentGbk);
    QTest::newRow("layer 2147483648") << QByteArray("_VZGetLayerParas(0,2147483648);") << layerReply(kNoDocumentGbk);
}

void HostRepliesTest::a_bad_layer_order_is_refused() {
    QFETCH(QByteArray, frame);
    startWithHost();
    QTEST(ask(frame), "reply");
}

void HostRepliesTest::two_frames_in_one_read_act_in_their_order() {
    startWithHost();
    QTest::ignoreMessage(QtDebugMsg, "接收指令: _VZTest(a)");
    QCOMPARE(ask("_VZMarkStop();_VZTest(a);"), stopReply());
    QVERIFY(isQuiet());
    const QString all = log();
    QVERIFY(all.indexOf(QStringLiteral("Tcp接收消息---_VZMarkStop();_VZTest(a);")) > 0);
    QVERIFY(host().write("_VZGetLayerParas(0);_VZMarkStop();_VZGetLayerParas();"));
    QCOMPARE(answer(), layerReply(kBadLengthGbk));
    QCOMPARE(answer(), stopReply());
    QCOMPARE(answer(), layerReply(kBadFormatGbk));
}

void HostRepliesTest::two_prefixes_in_one_frame_act_twice_in_the_fixed_order() {
    startWithHost();
    QVERIFY(host().write("_VZMarkStop()_VZGetLayerParas(0);"));
    // The first brackets of the frame are those of the stop: for the layers they hold nothing.
    QCOMPARE(answer(), layerReply(kBadFormatGbk));
    QCOMPARE(answer(), stopReply());
    QVERIFY(isQuiet());
}

void HostRepliesTest::a_frame_may_come_in_two_reads() {
    startWithHost();
    clearLog();
    QVERIFY(host().write("_VZMarkSt"));
    QVERIFY(waitFor([this] { return log().contains(QStringLiteral("Tcp接收消息---_VZMarkSt\n")); }));
    QCOMPARE(ask("op();"), stopReply());
}

void HostRepliesTest::the_end_of_a_run_that_nobody_waited_for_can_be_told_data() {
    QTest::addColumn<bool>("success");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("good") << true << QString() << runReply(kRunDoneGbk, "0");
    QTest::newRow("good with a text") << true << QStringLiteral("x") << runReply(kRunDoneGbk, "0");
    QTest::newRow("failed") << false << QString() << runReply(kRunFailedGbk);
    QTest::newRow("failed with a text") << false << QStringLiteral("安全报警") << runReply(kAlarmGbk);
}

void HostRepliesTest::the_end_of_a_run_that_nobody_waited_for_can_be_told() {
    QFETCH(bool, success);
    QFETCH(QString, message);
    startWithHost();
    HostResponseTcp::Instance()->OnMarkFinish(success, message);
    QTEST(answer(), "reply");
}

void HostRepliesTest::a_text_between_two_marks_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::addColumn<QString>("between");
    QTest::newRow("arguments") << "_VZSetOffset(1,2)"
                               << "("
                               << ")"
                               << "1,2";
    QTest::newRow("shortest") << "a[b]c]"
                              << "["
                              << "]"
                              << "b";
    QTest::newRow("at least one character") << "())"
                                            << "("
                                            << ")"
                                            << ")";
    QTest::newRow("longer marks") << "<a>x</a>"
                                  << "<a>"
                                  << "</a>"
                                  << "x";
    QTest::newRow("numbered places are only text") << "%1x%2"
                                                   << "%1"
                                                   << "%2"
                                                   << "x";
    QTest::newRow("not there") << "abc"
                               << "("
                               << ")"
                               << "";
    QTest::newRow("not over a line end") << "(\n)"
                                         << "("
                                         << ")"
                                         << "";
    QTest::newRow("empty text") << ""
                                << "("
                                << ")"
                                << "";
    QTest::newRow("empty left") << "(a)"
                                << ""
                                << ")"
                                << "";
    QTest::newRow("empty right") << "(a)"
                                 << "("
                                 << ""
                                 << "";
}

void HostRepliesTest::a_text_between_two_marks() {
    QFETCH(QString, text);
    QFETCH(QString, left);
    QFETCH(QString, right);
    QTEST(HostResponseTcp::StrMatch(text, left, right), "between");
}

void HostRepliesTest::messages_are_logged_as_debug_traffic() {
    startWithHost();
    clearLog();
    QCOMPARE(ask("_VZMarkStop();"), stopReply());
    QVERIFY(waitFor([this] { return log().contains(QStringLiteral("Tcp发送消息---")); }));
    const QStringList lines = log().split(QLatin1Char('\n'), Qt::SkipEmptyParts).filter(QStringLiteral("\tdebug\tTcp"));
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(0).endsWith(QStringLiteral("\tdebug\tTcp接收消息---_VZMarkStop();")));
    QVERIFY(lines.at(1).endsWith(QStringLiteral("\tdebug\tTcp发送消息---_VZMarkStop(0,终止运行成功);")));
}

void HostRepliesTest::orders_are_recorded_with_sender_and_answer() {
    startWithHost();
    QTest::ignoreMessage(QtDebugMsg, "接收指令: _VZTest(a)");
    QCOMPARE(ask("_VZTest(a);_VZMarkStop(1);_VZMarkStop();"), stopReply());
    QCOMPARE(ask("_VZSetOffset();"), runReply(kBadFormatGbk));
    tessera::RemoteOrderLog& orders = ExternalResponse::Instance()->OrderLog();
    const auto recorded = [&] {
        orders.Flush();
        QStringList fields;
        for (QString const& line : QString::fromUtf8(m_Root.read("/日志文件/RemoteOrders.txt")).split('\n').mid(0)) {
            if (!line.isEmpty())
                fields.append(line.section(QLatin1Char('\t'), 2));
        }
        return fields.mid(fields.size() - 4);
    };
    QVERIFY(waitFor([&] { return recorded().last().startsWith(QStringLiteral("_VZSetOffset()")); }));
    QCOMPARE(recorded(), (QStringList{"_VZTest(a)\t", "_VZMarkStop(1)\t", "_VZMarkStop()\t_VZMarkStop(0,终止运行成功);",
                                      "_VZSetOffset()\t_VZSetOffset(1,数据格式错误);"}));
    const QString last =
        QString::fromUtf8(m_Root.read("/日志文件/RemoteOrders.txt")).split('\n', Qt::SkipEmptyParts).last();
    QVERIFY2(last.section(QLatin1Char('\t'), 1, 1).startsWith(QStringLiteral("127.0.0.1:")), qPrintable(last));
}

QTEST_MAIN(HostRepliesTest)
#include "tst_hostreplies.moc"

// SPDX-License-Identifier: MIT
#include "engine/layerparamex.h"
#include "engine/markingmparam_vz.h"
#include "engine/rundatagather.h"
#include "tests/remote/remotefixture.h"

#include <QSignalSpy>

using namespace tests;

namespace {

using Reply = std::pair<bool, QString>;

Reply refused(char const* text) {
    return {false, QString::fromUtf8(text)};
}

Reply done() {
    return {true, QStringLiteral("文档执行成功")};
}

/// Vertices that the last job marked.
int marked() {
    std::uint64_t pass = 0;
    std::size_t from = 0;
    std::vector<sim::SimTraceRow> rows;
    machine().followTrace(pass, from, rows);
    return static_cast<int>(
        std::count_if(rows.begin(), rows.end(), [](sim::SimTraceRow const& row) { return row.laser; }));
}

} // namespace

/// Runs that the host orders, with and without waiting, and what it reads.
class ExternalOffsetsTest : public QObject, private RemoteFixture {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() {
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardFilber);
        end();
    }

    void a_run_with_offsets_makes_its_calls_in_order();
    void an_order_returns_when_the_run_has_ended();
    void an_order_is_refused_in_order_data();
    void an_order_is_refused_in_order();
    void an_index_equal_to_the_count_passes();
    void an_order_without_any_document_fails_at_its_run();
    void a_run_that_could_mark_nothing_is_told();
    void an_order_by_name_runs_that_document();
    void offsets_stay_until_an_order_brings_others();
    void a_refused_order_leaves_the_offsets();
    void orders_without_waiting_tell_refusals_alone_data();
    void orders_without_waiting_tell_refusals_alone();
    void an_order_without_waiting_returns_during_the_run();
    void an_order_without_waiting_may_come_from_another_thread();
    void of_orders_at_the_same_moment_one_runs();
    void a_station_and_a_host_at_the_same_moment_give_one_run();
    void a_host_run_is_not_answered_to_the_station();
    void a_stop_while_an_order_waits_for_the_main_thread_does_not_block();
    void the_end_of_the_program_refuses_an_order_that_waits();
    void the_end_of_the_program_ends_a_run_that_is_waited_for();
    void an_order_after_the_end_of_the_window_is_refused();

    void pens_are_read_by_document_and_number();
    void a_pen_or_document_outside_is_refused_data();
    void a_pen_or_document_outside_is_refused();
    void pens_are_read_from_other_threads();
    void the_report_has_the_last_pen_data();
    void the_report_has_the_last_pen();
    void a_report_without_pens_has_the_result_alone();
    void a_report_without_a_document_is_a_text();
    void times_have_hours_and_milliseconds_data();
    void times_have_hours_and_milliseconds();

private:
    void prepareRefusal();
};

/// One document, and alarm and state of the card as the row says.
void ExternalOffsetsTest::prepareRefusal() {
    QFETCH(bool, alarm);
    QFETCH(bool, busy);
    open(QStringLiteral("test"));
    window().SetSafeAlarm(alarm, tessera::AlarmCurtain);
    card()->SetMarkStaus(busy ? MarkStatusPause : MarkStatusStop);
    machine().clearJournal();
}

void ExternalOffsetsTest::a_run_with_offsets_makes_its_calls_in_order() {
    open(QStringLiteral("test"));
    QCOMPARE(hostOrder(0, {offsetRecord(1.0, 2.0)}), done());
    COMPARE_JOURNAL(runJournal(), {call("SetMarkStaus", 0), call("SetMarkType", 0),
                                   call("DownLayerPara", 20, ArgumentPattern::rest()), call("StartMark", 0, 0),
                                   call("SetMarkStaus", 2)});
}

void ExternalOffsetsTest::an_order_returns_when_the_run_has_ended() {
    open(QStringLiteral("test"));
    machine().setSpeed(kSlowRun);
    auto reply = hostOrderLater(0);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QVERIFY(!isReady(reply));
    machine().setSpeed(0.0);
    QTRY_VERIFY(isReady(reply));
    QCOMPARE(reply.get(), done());
    QVERIFY(!response().IsRunning());
    QTRY_VERIFY(windowIsFree());
}

void ExternalOffsetsTest::an_order_is_refused_in_order_data() {
    QTest::addColumn<bool>("alarm");
    QTest::addColumn<bool>("busy");
    QTest::addColumn<int>("doc");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("textByName");
    QTest::newRow("alarm before all else") << true << true << -1 << "安全报警"
                                           << "安全报警";
    QTest::newRow("busy before a wrong number") << false << true << 9 << "文档正在运行中"
                                                << "文档正在运行中";
    QTest::newRow("negative number") << false << false << -1 << "文档号超出范围"
                                     << "该文档不存在";
    QTest::newRow("number above the count") << false << false << 2 << "文档号超出范围"
                                            << "该文档不存在";
}

void ExternalOffsetsTest::an_order_is_refused_in_order() {
    QFETCH(int, doc);
    QFETCH(QString, text);
    QFETCH(QString, textByName);
    prepareRefusal();
    QCOMPARE(hostOrder(doc, {offsetRecord(1.0, 0.0)}), refused(qPrintable(text)));
    QCOMPARE(hostOrder(QStringLiteral("nobody.mkf"), {offsetRecord(1.0, 0.0)}), refused(qPrintable(textByName)));
    QVERIFY(machineJournal().isEmpty());
    card()->SetMarkStaus(MarkStatusStop);
}

/// The list has no such row, so no document is active then.
void ExternalOffsetsTest::an_index_equal_to_the_count_passes() {
    open(QStringLiteral("test"));
    machine().clearJournal();
    QCOMPARE(hostOrder(1, {offsetRecord(1.0, 0.0)}), refused("文档执行失败"));
    COMPARE_JOURNAL(runJournal(), {call("SetMarkStaus", 0), call("SetMarkType", 0), call("SetMarkStaus", 2)});
}

void ExternalOffsetsTest::an_order_without_any_document_fails_at_its_run() {
    QCOMPARE(hostOrder(0), refused("文档执行失败"));
    QCOMPARE(hostOrder(1), refused("文档号超出范围"));
}

void ExternalOffsetsTest::a_run_that_could_mark_nothing_is_told() {
    open(QStringLiteral("test"), 0);
    QCOMPARE(hostOrder(0), refused("文档执行失败"));
    QCOMPARE(card()->GetMarkStatus(), MarkStatusStop);
}

void ExternalOffsetsTest::an_order_by_name_runs_that_document() {
    open(QStringLiteral("one"));
    open(QStringLiteral("two"), 3);
    QCOMPARE(hostOrder(file("one")), done());
    QCOMPARE(window().GetActiveView()->GetFileName(), file("one"));
    QCOMPARE(marked(), 1);
    QCOMPARE(hostOrder(1), done());
    QCOMPARE(marked(), 3);
}

void ExternalOffsetsTest::offsets_stay_until_an_order_brings_others() {
    open(QStringLiteral("test"));
    QCOMPARE(hostOrder(0, {offsetRecord(1.0, 0.0), offsetRecord(2.0, 0.0), offsetRecord(3.0, 0.0)}), done());
    QCOMPARE(marked(), 3);
    QCOMPARE(hostOrder(0), done());
    QCOMPARE(marked(), 3);
    QCOMPARE(hostOrder(0, {offsetRecord(1.0, 0.0)}), done());
    QCOMPARE(marked(), 1);
}

void ExternalOffsetsTest::a_refused_order_leaves_the_offsets() {
    open(QStringLiteral("test"));
    QCOMPARE(hostOrder(0, {offsetRecord(1.0, 0.0), offsetRecord(2.0, 0.0)}), done());
    window().SetSafeAlarm(true, tessera::AlarmCurtain);
    QCOMPARE(hostOrder(0, {offsetRecord(9.0, 0.0)}), refused("安全报警"));
    window().SetSafeAlarm(false, tessera::AlarmCurtain);
    QCOMPARE(hostOrder(0), done());
    QCOMPARE(marked(), 2);
}

void ExternalOffsetsTest::orders_without_waiting_tell_refusals_alone_data() {
    an_order_is_refused_in_order_data();
}

void ExternalOffsetsTest::orders_without_waiting_tell_refusals_alone() {
    QFETCH(int, doc);
    QFETCH(QString, text);
    QFETCH(QString, textByName);
    prepareRefusal();
    QSignalSpy told(&response(), qOverload<bool, QString>(&ExternalResponse::MarkFinish));
    response().VZSetOffset(doc, QVector<CCDBufdata>{});
    response().VZSetOffset(QStringLiteral("nobody.mkf"), QVector<CCDBufdata>{});
    QCOMPARE(told.count(), 2);
    QCOMPARE(told.at(0), (QVariantList{false, text}));
    QCOMPARE(told.at(1), (QVariantList{false, textByName}));
    QVERIFY(machineJournal().isEmpty());
    card()->SetMarkStaus(MarkStatusStop);
}

void ExternalOffsetsTest::an_order_without_waiting_returns_during_the_run() {
    open(QStringLiteral("test"));
    QSignalSpy told(&response(), qOverload<bool, QString>(&ExternalResponse::MarkFinish));
    machine().setSpeed(kSlowRun);
    response().VZSetOffset(file("test"), {offsetRecord(1.0, 0.0)});
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    response().VZSetOffset(0, QVector<CCDBufdata>{});
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.at(0), (QVariantList{false, QStringLiteral("文档正在运行中")}));
    letEnd();
    QCOMPARE(told.count(), 1);
}

void ExternalOffsetsTest::an_order_without_waiting_may_come_from_another_thread() {
    open(QStringLiteral("test"));
    auto ordered =
        std::async(std::launch::async, [] { response().VZSetOffset(0, QVector<CCDBufdata>{offsetRecord(1.0, 0.0)}); });
    QTRY_VERIFY(isReady(ordered));
    QTRY_COMPARE(machineCalls("StartMark"), 1);
    letEnd();
}

void ExternalOffsetsTest::of_orders_at_the_same_moment_one_runs() {
    open(QStringLiteral("test"));
    machine().setSpeed(kSlowRun);
    std::vector<std::future<Reply>> replies;
    for (int i = 0; i < 8; ++i)
        replies.push_back(hostOrderLater(0));
    const auto answered = [&replies] {
        return std::count_if(replies.begin(), replies.end(), [](std::future<Reply> const& r) { return isReady(r); });
    };
    QTRY_COMPARE(answered(), 7);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    machine().setSpeed(0.0);
    QTRY_COMPARE(answered(), 8);
    int ran = 0;
    for (std::future<Reply>& reply : replies) {
        const Reply got = reply.get();
        QVERIFY(got == done() || got == refused("文档正在运行中"));
        ran += got.first;
    }
    QCOMPARE(ran, 1);
    QCOMPARE(machineCalls("StartMark"), 1);
}

void ExternalOffsetsTest::a_station_and_a_host_at_the_same_moment_give_one_run() {
    open(QStringLiteral("test"));
    machine().setSpeed(kSlowRun);
    // The station's order has not set the card to run yet when the host's is looked at.
    order(QStringLiteral("RunManualStart"), {"0", "0"});
    QString message;
    QVERIFY(!response().VZSetOffset(0, {}, message));
    QCOMPARE(message, QStringLiteral("文档正在运行中"));
    letEnd();
    QTRY_COMPARE(answers(), QStringList{"0|文档执行成功"});
}

void ExternalOffsetsTest::a_host_run_is_not_answered_to_the_station() {
    open(QStringLiteral("test"));
    order(QStringLiteral("RunManualStart"), {"1", "1"});
    QTRY_COMPARE(answers().size(), 1);
    machine().clearJournal();
    QCOMPARE(hostOrder(0), done());
    QVERIFY(answers().isEmpty());
    // Nor does it take over the station's choice.
    COMPARE_JOURNAL(only(machineJournal(), {"SetMarkType", "StartMark"}),
                    {call("SetMarkType", 0), call("StartMark", 0, 0)});
}

void ExternalOffsetsTest::a_stop_while_an_order_waits_for_the_main_thread_does_not_block() {
    open(QStringLiteral("test"));
    startSlowly();
    // No event is handled until the stop has returned, so the host's order waits all that time.
    auto reply = hostOrderLater(0);
    QVERIFY(reply.wait_for(std::chrono::milliseconds(20)) == std::future_status::timeout);
    response().VZMarkStop();
    QVERIFY(!response().IsRunning());
    machine().setSpeed(0.0);
    QTRY_VERIFY(isReady(reply));
    QCOMPARE(reply.get(), done());
}

void ExternalOffsetsTest::the_end_of_the_program_refuses_an_order_that_waits() {
    open(QStringLiteral("test"));
    auto reply = hostOrderLater(0);
    QVERIFY(reply.wait_for(std::chrono::milliseconds(20)) == std::future_status::timeout);
    m_Window.reset();
    QCOMPARE(reply.get(), refused("文档执行失败"));
    QCoreApplication::processEvents();
    QCOMPARE(machineCalls("StartMark"), 0);
    m_Window = std::make_unique<RunningWindow>();
    open(QStringLiteral("next"));
    QCOMPARE(hostOrder(file("next")), done());
}

void ExternalOffsetsTest::the_end_of_the_program_ends_a_run_that_is_waited_for() {
    open(QStringLiteral("test"));
    machine().setSpeed(kSlowRun);
    auto reply = hostOrderLater(0);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    m_Window.reset();
    QCOMPARE(reply.get(), done());
    m_Window = std::make_unique<RunningWindow>();
}

void ExternalOffsetsTest::an_order_after_the_end_of_the_window_is_refused() {
    m_Window.reset();
    QCOMPARE(hostOrderLater(0).get(), refused("文档执行失败"));
    QString message;
    QVERIFY(!response().VZSetOffset(0, {}, message));
    QCOMPARE(message, QStringLiteral("安全报警"));
    LayerData data;
    QVERIFY(!response().VZGetLayerParas(0, 0, data));
    order(QStringLiteral("RunManualStart"), {"0", "0"});
    order(QStringLiteral("SyncFile"), {"a", "b"});
    order(QStringLiteral("RunManualStop"));
    QCOMPARE(answers().mid(answers().size() - 3), (QStringList{"1|安全报警", "1|b文档同步失败", "0|终止运行成功"}));
    m_Window = std::make_unique<RunningWindow>();
}

void ExternalOffsetsTest::pens_are_read_by_document_and_number() {
    for (char const* name : {"one", "two"}) {
        QRulerView* view = open(QString::fromLatin1(name));
        for (int pen : {0, 19}) {
            LayerData data;
            data.MarkSpeed = view == window().GetDocs().first() ? 100.0 + pen : 200.0 + pen;
            view->GetLayerParams()->SetLayerData(pen, data);
        }
    }
    LayerData data;
    QVERIFY(response().VZGetLayerParas(0, 0, data));
    QCOMPARE(data.MarkSpeed, 100.0);
    QVERIFY(response().VZGetLayerParas(0, 19, data));
    QCOMPARE(data.MarkSpeed, 119.0);
    QVERIFY(response().VZGetLayerParas(1, 19, data));
    QCOMPARE(data.MarkSpeed, 219.0);
}

void ExternalOffsetsTest::a_pen_or_document_outside_is_refused_data() {
    QTest::addColumn<int>("doc");
    QTest::addColumn<int>("layer");
    QTest::newRow("document -1") << -1 << 0;
    QTest::newRow("document equal to the count") << 1 << 0;
    QTest::newRow("document 99") << 99 << 0;
    QTest::newRow("pen 20") << 0 << 20;
    QTest::newRow("pen -1") << 0 << -1;
    QTest::newRow("largest pen") << 0 << 2147483647;
}

void ExternalOffsetsTest::a_pen_or_document_outside_is_refused() {
    QFETCH(int, doc);
    QFETCH(int, layer);
    open(QStringLiteral("test"));
    LayerData data;
    data.MarkSpeed = 1.5;
    QVERIFY(!response().VZGetLayerParas(doc, layer, data));
    QCOMPARE(data.MarkSpeed, 1.5);
}

void ExternalOffsetsTest::pens_are_read_from_other_threads() {
    open(QStringLiteral("test"));
    auto reading = std::async(std::launch::async, [] {
        LayerData data;
        return response().VZGetLayerParas(0, 3, data);
    });
    QTRY_VERIFY(isReady(reading));
    QVERIFY(reading.get());
}

void ExternalOffsetsTest::the_report_has_the_last_pen_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("duty");
    QTest::addColumn<QString>("report");
    QTest::newRow("fibre") << 0 << 20.0 << 50.0 << "0,12.346,20000,25.000,321.988,";
    QTest::newRow("YLR") << 1 << 20.0 << 50.0 << "0,12.346,20,25000.000,321.988,";
    QTest::newRow("YAG") << 2 << 1234567.0 << 50.0 << "0,12.346,1.23457e+06,0.405,321.988,";
    QTest::newRow("SPI") << 3 << 0.5 << 10.0 << "0,12.346,500,200.000,321.988,";
    QTest::newRow("EP") << 4 << 1234.5678 << 100.0 << "0,12.346,1.23457e+06,0.810,321.988,";
    QTest::newRow("YLM") << 5 << 30.0 << 25.0 << "0,12.346,30,8333.333,321.988,";
}

void ExternalOffsetsTest::the_report_has_the_last_pen() {
    QFETCH(int, type);
    QFETCH(double, frequency);
    QFETCH(double, duty);
    QFETCH(QString, report);
    QRulerView* view = open(QStringLiteral("test"));
    LayerData data;
    data.Power = 12.3456;
    data.Fre = frequency;
    data.PWM = duty;
    data.MarkSpeed = 321.9876;
    view->GetLayerParams()->SetLayerData(0, data);
    QCOMPARE(hostOrder(0), done());
    MarkingMParam_VZ::Instance()->SetMarkCardType(static_cast<MarkCardType>(type));
    QString out = QStringLiteral("before,");
    QVERIFY(response().VZGetSendRunData(out));
    QCOMPARE(out, QStringLiteral("before,") + report + QString::number(RunDataGather::Instance()->GetRunTime()));
}

void ExternalOffsetsTest::a_report_without_pens_has_the_result_alone() {
    open(QStringLiteral("test"), 0);
    QCOMPARE(hostOrder(0), refused("文档执行失败"));
    QString out;
    QVERIFY(response().VZGetSendRunData(out));
    QCOMPARE(out, QStringLiteral("1,"));
}

void ExternalOffsetsTest::a_report_without_a_document_is_a_text() {
    QString out = QStringLiteral("before");
    QVERIFY(!response().VZGetSendRunData(out));
    QCOMPARE(out, QStringLiteral("当前文档为空"));
}

void ExternalOffsetsTest::times_have_hours_and_milliseconds_data() {
    QTest::addColumn<qint64>("ms");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << qint64(0) << "00:00:00.000";
    QTest::newRow("7 ms") << qint64(7) << "00:00:00.007";
    QTest::newRow("each part") << qint64(3723004) << "01:02:03.004";
    QTest::newRow("last of a day") << qint64(86399999) << "23:59:59.999";
    QTest::newRow("a day is 24 hours") << qint64(86400000) << "24:00:00.000";
    QTest::newRow("100 hours") << qint64(360000000) << "100:00:00.000";
    QTest::newRow("negative") << qint64(-3723004) << "-01:02:03.004";
    QTest::newRow("most negative") << std::numeric_limits<qint64>::min() << "-2562047788015:12:55.808";
}

void ExternalOffsetsTest::times_have_hours_and_milliseconds() {
    QFETCH(qint64, ms);
    QFETCH(QString, text);
    QCOMPARE(ExternalResponse::FormatHHMMSS3(ms), text);
}

QTEST_MAIN(ExternalOffsetsTest)
#include "tst_externaloffsets.moc"

// SPDX-License-Identifier: MIT
#include "shell/alarmhistory.h"
#include "shell/alarmhistorycsv.h"
#include "shell/alarmmask.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>
#include <random>
#include <set>

using namespace tessera;

/// What is kept of alarms, without disk, window and clock.
class AlarmHistoryTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_Root.isValid()); }

    void an_alarm_is_raised_once_and_cleared_once();
    void the_alarm_that_comes_while_none_is_there_is_the_first_out();
    void of_several_in_one_look_the_first_source_is_the_first_out();
    void an_alarm_that_takes_over_in_one_look_belongs_to_the_group();
    void an_alarm_that_comes_again_is_another_entry();
    void acknowledging_notes_who_and_when_once_and_ends_nothing();
    void all_are_acknowledged_but_those_that_were();
    void a_clock_set_back_does_not_reorder();
    void beyond_the_limit_the_oldest_that_is_over_goes();
    void when_all_are_active_the_oldest_goes();
    void the_end_of_the_program_ends_what_is_active_and_says_so();
    void ten_thousand_and_more_are_held_at_the_limit();
    void a_random_walk_agrees_with_a_model();

    void every_bit_is_a_source_with_a_text_data();
    void every_bit_is_a_source_with_a_text();
    void bits_without_an_alarm_are_none_data();
    void bits_without_an_alarm_are_none();
    void another_cause_of_the_laser_is_another_alarm();
    void a_text_is_given_in_the_language_of_now_where_it_can_be();

    void csv_fields_are_quoted_where_they_must_be_data();
    void csv_fields_are_quoted_where_they_must_be();
    void csv_has_a_mark_titles_and_a_line_for_each_entry();

private:
    static QVector<ActiveAlarm> alarms(QStringList const& codes) {
        QVector<ActiveAlarm> active;
        for (QString const& code : codes)
            active.append({code, QStringLiteral("text of ") + code});
        return active;
    }
    static QString codes(AlarmHistory const& history) {
        QStringList all;
        for (AlarmEntry const& entry : history.Entries())
            all.append(entry.code + (entry.firstOut ? QStringLiteral("*") : QString()));
        return all.join(QLatin1Char(' '));
    }

    tests::TemporaryRoot m_Root;
};

void AlarmHistoryTest::an_alarm_is_raised_once_and_cleared_once() {
    AlarmHistory history;
    const QVector<AlarmEntry> raised = history.Update(alarms({"a"}), 1000);
    QCOMPARE(raised.size(), 1);
    QCOMPARE(raised.at(0).number, 1);
    QCOMPARE(raised.at(0).code, QStringLiteral("a"));
    QCOMPARE(raised.at(0).text, QStringLiteral("text of a"));
    QCOMPARE(raised.at(0).raisedMs, 1000);
    QCOMPARE(raised.at(0).clearedMs, 0);
    QVERIFY(raised.at(0).IsActive());
    QVERIFY(history.Update(alarms({"a"}), 1030).isEmpty());
    QCOMPARE(history.ActiveCount(), 1);
    const QVector<AlarmEntry> cleared = history.Update({}, 1060);
    QCOMPARE(cleared.size(), 1);
    QCOMPARE(cleared.at(0).number, 1);
    QCOMPARE(cleared.at(0).raisedMs, 1000);
    QCOMPARE(cleared.at(0).clearedMs, 1060);
    QCOMPARE(cleared.at(0).end, AlarmEnd::Cleared);
    QVERIFY(history.Update({}, 1090).isEmpty());
    QCOMPARE(history.ActiveCount(), 0);
    QCOMPARE(int(history.Entries().size()), 1);
}

void AlarmHistoryTest::the_alarm_that_comes_while_none_is_there_is_the_first_out() {
    AlarmHistory history;
    history.Update(alarms({"a"}), 1);
    history.Update(alarms({"a", "b"}), 2);
    history.Update(alarms({"b"}), 3);
    history.Update(alarms({"b", "c"}), 4);
    QCOMPARE(codes(history), QStringLiteral("a* b c"));
    history.Update({}, 5);
    history.Update(alarms({"c"}), 6);
    QCOMPARE(codes(history), QStringLiteral("a* b c c*"));
}

void AlarmHistoryTest::of_several_in_one_look_the_first_source_is_the_first_out() {
    AlarmHistory history;
    history.Update(alarms({"z", "a", "m"}), 1);
    QCOMPARE(codes(history), QStringLiteral("z* a m"));
}

void AlarmHistoryTest::an_alarm_that_takes_over_in_one_look_belongs_to_the_group() {
    AlarmHistory history;
    history.Update(alarms({"a"}), 1);
    const QVector<AlarmEntry> changed = history.Update(alarms({"b"}), 2);
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.at(0).end, AlarmEnd::Cleared);
    QCOMPARE(codes(history), QStringLiteral("a* b"));
}

void AlarmHistoryTest::an_alarm_that_comes_again_is_another_entry() {
    AlarmHistory history;
    for (int i = 0; i < 3; ++i) {
        history.Update(alarms({"a"}), 10 * i);
        history.Update({}, 10 * i + 5);
    }
    QCOMPARE(codes(history), QStringLiteral("a* a* a*"));
    QCOMPARE(history.LastNumber(), 3);
}

void AlarmHistoryTest::acknowledging_notes_who_and_when_once_and_ends_nothing() {
    AlarmHistory history;
    history.Update(alarms({"a"}), 1);
    const std::optional<AlarmEntry> entry = history.Acknowledge(1, QStringLiteral("li"), 7);
    QVERIFY(entry);
    QCOMPARE(entry->acknowledgedMs, 7);
    QCOMPARE(entry->acknowledgedBy, QStringLiteral("li"));
    QVERIFY(entry->IsActive());
    QVERIFY(!history.Acknowledge(1, QStringLiteral("wu"), 8));
    QCOMPARE(history.Entries().front().acknowledgedBy, QStringLiteral("li"));
    QVERIFY(!history.Acknowledge(2, QStringLiteral("wu"), 8));
    QVERIFY(!history.Acknowledge(0, QStringLiteral("wu"), 8));
    QCOMPARE(history.Update({}, 9).at(0).acknowledgedMs, 7);
}

void AlarmHistoryTest::all_are_acknowledged_but_those_that_were() {
    AlarmHistory history;
    history.Update(alarms({"a", "b", "c"}), 1);
    history.Acknowledge(2, QStringLiteral("li"), 2);
    const QVector<AlarmEntry> changed = history.AcknowledgeAll(QStringLiteral("wu"), 3);
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.at(0).number, 1);
    QCOMPARE(changed.at(1).number, 3);
    QCOMPARE(history.Entries()[1].acknowledgedBy, QStringLiteral("li"));
    QVERIFY(history.AcknowledgeAll(QStringLiteral("xu"), 4).isEmpty());
}

void AlarmHistoryTest::a_clock_set_back_does_not_reorder() {
    AlarmHistory history;
    history.Update(alarms({"a"}), 5'000'000);
    history.Update({}, 1000);
    history.Update(alarms({"b"}), 2000);
    QCOMPARE(codes(history), QStringLiteral("a* b*"));
    QCOMPARE(history.Entries()[0].clearedMs, 1000);
    QVERIFY(history.Entries()[0].number < history.Entries()[1].number);
}

void AlarmHistoryTest::beyond_the_limit_the_oldest_that_is_over_goes() {
    AlarmHistory history(3);
    history.Update(alarms({"stays"}), 1);
    for (int i = 0; i < 4; ++i) {
        history.Update(alarms({"stays", QString::number(i)}), 2);
        history.Update(alarms({"stays"}), 3);
    }
    QCOMPARE(codes(history), QStringLiteral("stays* 2 3"));
    QVERIFY(history.IsActive(QStringLiteral("stays")));
    // It is still found, although many came behind it.
    QCOMPARE(history.Update({}, 4).at(0).number, 1);
}

void AlarmHistoryTest::when_all_are_active_the_oldest_goes() {
    AlarmHistory history(2);
    history.Update(alarms({"a", "b", "c"}), 1);
    QCOMPARE(codes(history), QStringLiteral("b c"));
    // An alarm without entry is still known: it is not raised anew, and its end changes nothing that is kept.
    QVERIFY(history.Update(alarms({"a", "b", "c"}), 2).isEmpty());
    QVERIFY(history.Update(alarms({"b", "c"}), 3).isEmpty());
    QCOMPARE(history.Update({}, 4).size(), 2);
    QCOMPARE(AlarmHistory(0).Limit(), 1);
}

void AlarmHistoryTest::the_end_of_the_program_ends_what_is_active_and_says_so() {
    AlarmHistory history;
    history.Update(alarms({"a", "b"}), 1);
    history.Update(alarms({"b"}), 2);
    const QVector<AlarmEntry> ended = history.EndAll(3);
    QCOMPARE(ended.size(), 1);
    QCOMPARE(ended.at(0).code, QStringLiteral("b"));
    QCOMPARE(ended.at(0).end, AlarmEnd::ProgramEnd);
    QCOMPARE(ended.at(0).clearedMs, 3);
    QCOMPARE(history.Entries()[0].end, AlarmEnd::Cleared);
    QVERIFY(history.EndAll(4).isEmpty());
}

void AlarmHistoryTest::ten_thousand_and_more_are_held_at_the_limit() {
    AlarmHistory history;
    QCOMPARE(history.Limit(), 10'000);
    for (int i = 0; i < 25'000; ++i) {
        history.Update(alarms({"a"}), i);
        history.Update({}, i);
    }
    QCOMPARE(int(history.Entries().size()), 10'000);
    QCOMPARE(history.Entries().front().number, 15'001);
    QCOMPARE(history.Entries().back().number, 25'000);
    // They share their texts: a day of chattering inputs must not fill the memory.
    QCOMPARE(static_cast<void const*>(history.Entries().front().text.constData()),
             static_cast<void const*>(history.Entries().back().text.constData()));
    QVERIFY(history.Acknowledge(15'001, QString(), 1));
    QVERIFY(!history.Acknowledge(15'000, QString(), 1));
}

/// Eight sources at random; the model knows which are active and what has been raised.
void AlarmHistoryTest::a_random_walk_agrees_with_a_model() {
    std::mt19937 random(11);
    AlarmHistory history(500);
    std::set<QString> active;
    qint64 raised = 0;
    for (int step = 0; step < 20'000; ++step) {
        QStringList now;
        for (int source = 0; source < 8; ++source) {
            if (random() % 3 == 0)
                now.append(QString::number(source));
        }
        const bool quiet = active.empty();
        int come = 0;
        int gone = 0;
        for (QString const& code : now)
            come += active.count(code) ? 0 : 1;
        for (QString const& code : active)
            gone += now.contains(code) ? 0 : 1;
        const QVector<AlarmEntry> changed = history.Update(alarms(now), step);
        QCOMPARE(changed.size(), come + gone);
        int marks = 0;
        qint64 number = 0;
        for (AlarmEntry const& entry : changed) {
            QVERIFY(entry.number > number);
            number = entry.number;
            marks += entry.IsActive() && entry.firstOut ? 1 : 0;
            QVERIFY(entry.IsActive() || entry.clearedMs == step);
        }
        QCOMPARE(marks, quiet && come > 0 ? 1 : 0);
        active = std::set<QString>(now.begin(), now.end());
        raised += come;
        QCOMPARE(history.ActiveCount(), int(active.size()));
    }
    QCOMPARE(history.LastNumber(), raised);
    QCOMPARE(int(history.Entries().size()), 500);
}

void AlarmHistoryTest::every_bit_is_a_source_with_a_text_data() {
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("bit");
    QTest::addColumn<QString>("text");
    const struct {
        char const* word;
        int bit;
        char const* text;
    } rows[] = {{"mask", 0, "机台就绪"},       {"mask", 1, "安全门1报警"},
                {"mask", 2, "安全门2报警"},    {"mask", 3, "安全门3报警"},
                {"mask", 4, "安全门4报警"},    {"mask", 5, "安全门5报警"},
                {"mask", 6, "安全光幕触发"},   {"mask", 7, "急停"},
                {"mask", 8, "激光器报警"},     {"mask", 9, "水冷机报警"},
                {"system", 0, "板卡系统报警"}, {"scan", 1, "振镜闭环异常"},
                {"scan", 2, "X反馈异常"},      {"scan", 3, "Y反馈异常"},
                {"scan", 4, "X振镜报警"},      {"scan", 5, "Y振镜报警"},
                {"scan", 6, "X无反馈"},        {"scan", 7, "Y无反馈"},
                {"scan", 10, "振镜过流"},      {"scan", 11, "振镜电源异常"},
                {"scan", 12, "X位置超差"},     {"scan", 13, "Y位置超差"},
                {"scan", 14, "振镜通信断开"},  {"run", 10, "数据断流"},
                {"run", 25, "IO超时"},         {"fibre", 0, "光纤激光器报警已锁定"},
                {"stop", 0, "停止未确认"},     {"laser", 0, "激光器报警"}};
    for (auto const& row : rows)
        QTest::addRow("%s %d", row.word, row.bit) << row.word << row.bit << QString::fromUtf8(row.text);
}

void AlarmHistoryTest::every_bit_is_a_source_with_a_text() {
    QFETCH(QString, word);
    QFETCH(int, bit);
    AlarmSnapshot snapshot;
    QVERIFY(snapshot == AlarmSnapshot());
    unsigned int* words[] = {&snapshot.mask, &snapshot.system, &snapshot.scan, &snapshot.run};
    const int index = QStringList({"mask", "system", "scan", "run"}).indexOf(word);
    if (index >= 0)
        *words[index] = 1U << bit;
    snapshot.fibreLatch = word == QLatin1String("fibre");
    snapshot.stopUnconfirmed = word == QLatin1String("stop");
    snapshot.laser = word == QLatin1String("laser");
    QVERIFY(snapshot != AlarmSnapshot());
    const QVector<ActiveAlarm> active = ActiveAlarms(snapshot);
    QCOMPARE(active.size(), 1);
    QTEST(active.at(0).text, "text");
    QTEST(AlarmText(active.at(0).code, active.at(0).text), "text");
}

void AlarmHistoryTest::bits_without_an_alarm_are_none_data() {
    QTest::addColumn<unsigned int>("mask");
    QTest::addColumn<unsigned int>("system");
    QTest::addColumn<unsigned int>("scan");
    QTest::addColumn<unsigned int>("run");
    QTest::newRow("nothing") << 0U << 0U << 0U << 0U;
    QTest::newRow("mask above the inputs") << ~0x3FFU << 0U << 0U << 0U;
    QTest::newRow("system above the laser") << 0U << ~1U << 0U << 0U;
    QTest::newRow("head: loop good, closed loop, initialises, unused")
        << 0U << 0U << (3U | 0x100U | 0x200U | 0xFFFF8000U) << 0U;
    QTest::newRow("head: loop not known") << 0U << 0U << 1U << 0U;
    QTest::newRow("run: all but underrun and time-out") << 0U << 0U << 0U << ~(1U << 10 | 1U << 25);
}

void AlarmHistoryTest::bits_without_an_alarm_are_none() {
    QFETCH(unsigned int, mask);
    QFETCH(unsigned int, system);
    QFETCH(unsigned int, scan);
    QFETCH(unsigned int, run);
    AlarmSnapshot snapshot;
    snapshot.mask = mask;
    snapshot.system = system;
    snapshot.scan = scan;
    snapshot.run = run;
    QVERIFY(ActiveAlarms(snapshot).isEmpty());
}

void AlarmHistoryTest::another_cause_of_the_laser_is_another_alarm() {
    AlarmHistory history;
    AlarmSnapshot snapshot;
    snapshot.laser = true;
    snapshot.laserText = QStringLiteral("温度超标");
    history.Update(ActiveAlarms(snapshot), 1);
    snapshot.laserText = QStringLiteral("PD报警");
    QCOMPARE(history.Update(ActiveAlarms(snapshot), 2).size(), 2);
    QCOMPARE(history.Entries()[0].text, QStringLiteral("温度超标"));
    QCOMPARE(history.Entries()[1].text, QStringLiteral("PD报警"));
    QCOMPARE(history.ActiveCount(), 1);
}

void AlarmHistoryTest::a_text_is_given_in_the_language_of_now_where_it_can_be() {
    QCOMPARE(AlarmText(QStringLiteral("door2"), QStringLiteral("door 2 alarm")), QStringLiteral("安全门2报警"));
    QCOMPARE(AlarmText(QStringLiteral("laser:x"), QStringLiteral("x")), QStringLiteral("x"));
    QCOMPARE(AlarmText(QStringLiteral("of a newer program"), QStringLiteral("y")), QStringLiteral("y"));
}

void AlarmHistoryTest::csv_fields_are_quoted_where_they_must_be_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("field");
    QTest::newRow("plain") << "a b;c"
                           << "a b;c";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("comma") << "a,b"
                           << "\"a,b\"";
    QTest::newRow("quote") << "a\"b"
                           << "\"a\"\"b\"";
    QTest::newRow("line feed") << "a\nb"
                               << "\"a\nb\"";
    QTest::newRow("carriage return") << "a\rb"
                                     << "\"a\rb\"";
    QTest::newRow("Chinese") << QStringLiteral("急停") << QStringLiteral("急停");
}

void AlarmHistoryTest::csv_fields_are_quoted_where_they_must_be() {
    QFETCH(QString, text);
    QTEST(CsvField(text), "field");
}

void AlarmHistoryTest::csv_has_a_mark_titles_and_a_line_for_each_entry() {
    AlarmEntry entry;
    entry.number = 4;
    entry.code = QStringLiteral("emergency");
    entry.text = QStringLiteral("急停");
    entry.firstOut = true;
    entry.raisedMs = 1'000'000'000'123;
    entry.clearedMs = 1'000'000'060'000;
    entry.end = AlarmEnd::Cleared;
    entry.acknowledgedMs = 1'000'000'030'000;
    entry.acknowledgedBy = QStringLiteral("Li, \"the\" operator");
    AlarmEntry second;
    second.code = QStringLiteral("laser:x");
    second.text = QStringLiteral("x");
    second.raisedMs = 1'000'000'000'000;
    second.end = AlarmEnd::Crash;
    second.acknowledgedMs = 1'000'000'030'000;
    QCOMPARE(QString::fromUtf8(AlarmCsv({entry, second}).mid(3)),
             QStringLiteral("状态,首发,触发时间,报警内容,清除时间,确认时间,确认人\r\n"
                            "已清除,首发,2001-09-09 01:46:40.123,急停,2001-09-09 01:47:40.000,"
                            "2001-09-09 01:47:10.000,\"Li, \"\"the\"\" operator\"\r\n"
                            "程序中断,,2001-09-09 01:46:40.000,x,,2001-09-09 01:47:10.000,未登录\r\n"));
    QVERIFY(AlarmCsv({}).startsWith("\xEF\xBB\xBF"));
    QVERIFY(!AlarmCsv({}).mid(3).startsWith("\xEF\xBB\xBF"));
    entry.end = AlarmEnd::Active;
    QCOMPARE(AlarmStateText(entry), QStringLiteral("报警中"));
    entry.end = AlarmEnd::ProgramEnd;
    QCOMPARE(AlarmStateText(entry), QStringLiteral("程序退出"));
    QVERIFY(AlarmCellText(entry, AlarmColumnCount).isEmpty());
    QVERIFY(AlarmColumnTitle(-1).isEmpty());
}

QTEST_GUILESS_MAIN(AlarmHistoryTest)
#include "tst_alarmhistory.moc"

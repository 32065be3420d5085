// SPDX-License-Identifier: MIT
// The models that the bench of input changes compares the program with: they have to refuse what is wrong.
#include "bench/multidoc/triggermodel.h"

#include <QtTest>

Q_DECLARE_METATYPE(QVector<bench::FreeTrigger>)

using namespace bench;

class TriggerModelTest : public QObject {
    Q_OBJECT

private slots:
    void the_table_fires_on_the_edge_into_a_pattern();
    void a_waiting_and_a_shown_document_are_not_queued_again();
    void runs_can_come_of_triggers_data();
    void runs_can_come_of_triggers();
};

void TriggerModelTest::the_table_fires_on_the_edge_into_a_pattern() {
    TriggerTable table({{4, 12, "A"}, {1, 1, "B"}, {0, 1, "C"}});
    QCOMPARE(table.take(5), 0);
    QCOMPARE(table.take(6), 2);
    QCOMPARE(table.take(7), 1);
    QCOMPARE(table.take(7), -1);
    QCOMPARE(table.last(), 7U);
    QCOMPARE(table.lines(5, 5, -1), QStringList());
    QCOMPARE(table.lines(0, 0xab, -1), QStringList{"MultDocMark Triger File Input:Last->0,Input->AB"});
    QCOMPARE(table.lines(0, 5, 0).last(), QStringLiteral("MultDocMark Triger File: 0,4,0,4,0,5,12,4,A"));
}

void TriggerModelTest::a_waiting_and_a_shown_document_are_not_queued_again() {
    QueueModel queue;
    QVERIFY(queue.trigger(1, false) && queue.trigger(2, false) && !queue.trigger(1, false));
    QCOMPARE(queue.take(), 1);
    QVERIFY(!queue.trigger(1, true) && queue.trigger(1, false) && !queue.trigger(2, true));
    QCOMPARE(queue.waiting(), std::size_t(2));
    queue.done();
    QCOMPARE(queue.current(), -1);
    QCOMPARE(queue.take(), 2);
    QCOMPARE(queue.take(), 1);
    QCOMPARE(queue.take(), -1);
}

void TriggerModelTest::runs_can_come_of_triggers_data() {
    QTest::addColumn<QVector<int>>("runs");
    QTest::addColumn<QVector<FreeTrigger>>("triggers");
    QTest::addColumn<bool>("can");
    using Runs = QVector<int>;
    using Triggers = QVector<FreeTrigger>;
    const Triggers both{{1, 0, 0, 0}, {2, 0, 0, 1}};
    QTest::newRow("nothing") << Runs() << Triggers() << true;
    QTest::newRow("in order") << Runs{1, 2} << both << true;
    QTest::newRow("out of order") << Runs{2, 1} << both << false;
    QTest::newRow("one is missing") << Runs{1} << both << false;
    QTest::newRow("one is invented") << Runs{1, 2, 3} << both << false;
    QTest::newRow("one runs twice") << Runs{1, 2, 2} << both << false;
    // 1 is being marked, 2 and 3 wait.
    const Triggers waiting{{1, 0, 0, 1}, {2, 1, 0, 1}, {3, 1, 0, 1}};
    QTest::newRow("waiting ones dropped") << Runs{1, 2, 3} << waiting + Triggers{{3, 1, 0, 1}} << true;
    QTest::newRow("a waiting one queued again") << Runs{1, 2, 3, 3} << waiting + Triggers{{3, 1, 0, 1}} << false;
    QTest::newRow("the running one dropped") << Runs{1, 2, 3} << waiting + Triggers{{1, 1, 0, 1}} << true;
    QTest::newRow("the running one, not seen yet, queued")
        << Runs{1, 2, 3, 1} << waiting + Triggers{{1, 1, 0, 1}} << true;
    QTest::newRow("one that has ended dropped") << Runs{1, 2, 3} << waiting + Triggers{{1, 2, 1, 2}} << false;
    QTest::newRow("one that has ended queued") << Runs{1, 2, 3, 1} << waiting + Triggers{{1, 2, 1, 2}} << true;
    QTest::newRow("the next one in hand, not begun") << Runs{1, 2, 3, 2} << waiting + Triggers{{2, 1, 1, 1}} << true;
    QTest::newRow("begun before it was triggered") << Runs{1} << Triggers{{2, 0, 0, 1}} << false;
}

void TriggerModelTest::runs_can_come_of_triggers() {
    QFETCH(QVector<int>, runs);
    QFETCH(QVector<FreeTrigger>, triggers);
    QTEST(canComeOf({runs.begin(), runs.end()}, {triggers.begin(), triggers.end()}), "can");
}

QTEST_GUILESS_MAIN(TriggerModelTest)
#include "tst_triggermodel.moc"

// SPDX-License-Identifier: MIT
#include "multidoc/patterns.h"
#include "multidoc/projectrows.h"
#include "multidoc/triggerrule.h"

#include <QtTest>

using namespace tessera;

/// What the project list shows of its entries besides their names.
class PatternsTest : public QObject {
    Q_OBJECT

private slots:
    void a_pattern_is_a_letter_for_each_input();
    void the_usual_inputs_are_shown_and_more_when_they_are_watched();
    void two_entries_fire_together_when_some_change_fires_both();
    void clashes_name_the_pairs();
    void columns_stand_beside_one_another_data();
    void columns_stand_beside_one_another();
    void runs_are_kept_for_each_entry();
    void a_run_without_a_trigger_belongs_to_the_first_of_its_name();
    void forgotten_entries_have_no_runs();
};

void PatternsTest::a_pattern_is_a_letter_for_each_input() {
    QCOMPARE(PatternText({4, 12, "A"}), "--10" + QString(28, '-'));
    QCOMPARE(PatternText({~0U, 0x80000001U, "A"}), "1" + QString(30, '-') + "1");
    QCOMPARE(PatternText({0, ~0U, "A"}), QString(32, '0'));
}

void PatternsTest::the_usual_inputs_are_shown_and_more_when_they_are_watched() {
    TrigerDoc low{0, 1U << 9, "A"};
    TrigerDoc high{~0U, 1U << 10, "B"};
    TrigerDoc last{0, 1U << 31, "C"};
    QCOMPARE(ShownInputs({}), 10);
    QCOMPARE(ShownInputs({&low}), 10);
    QCOMPARE(ShownInputs({&low, &high}), 11);
    QCOMPARE(ShownInputs({&last, &low}), 32);
}

/// All pairs of entries over three inputs, tried with all changes.
void PatternsTest::two_entries_fire_together_when_some_change_fires_both() {
    int together = 0;
    for (unsigned int code = 0; code < 1U << 12; ++code) {
        const TrigerDoc first{code & 7U, code >> 3 & 7U, "A"};
        const TrigerDoc second{code >> 6 & 7U, code >> 9 & 7U, "B"};
        bool found = false;
        for (unsigned int change = 0; change < 64; ++change) {
            const unsigned int last = change & 7U;
            const unsigned int input = change >> 3;
            found = found || (Fires(first, last, input) && Fires(second, last, input));
        }
        QVERIFY2(CanFireTogether(first, second) == found, qPrintable(QString::number(code, 8)));
        together += found ? 1 : 0;
    }
    QVERIFY(together > 0 && together < 1 << 12);
}

void PatternsTest::clashes_name_the_pairs() {
    TrigerDoc rising{1, 1, "A"};
    TrigerDoc falling{0, 1, "B"};
    TrigerDoc other{2, 2, "C"};
    QCOMPARE(Clashes({&rising, &falling}), (QVector<QPair<int, int>>()));
    QCOMPARE(Clashes({&rising, &falling, &other}), (QVector<QPair<int, int>>{{0, 2}, {1, 2}}));
}

void PatternsTest::columns_stand_beside_one_another_data() {
    QTest::addColumn<int>("inputs");
    QTest::newRow("usual") << 10;
    QTest::newRow("all") << 32;
}

void PatternsTest::columns_stand_beside_one_another() {
    QFETCH(int, inputs);
    const QRect row(3, 32, 740, 32);
    const ProjectColumns columns(row, inputs);
    QCOMPARE(columns.inputs.size(), inputs);
    QVector<QRect> all{columns.number, columns.name};
    all += columns.inputs;
    all += {columns.lastRun, columns.runCount};
    int right = row.left();
    for (QRect const& column : all) {
        QVERIFY(column.left() >= right && row.contains(column));
        right = column.right();
    }
    QVERIFY(columns.name.width() >= 60);
}

void PatternsTest::runs_are_kept_for_each_entry() {
    TrigerDoc first{1, 1, "A"};
    TrigerDoc second{2, 2, "A"};
    RunRecords runs;
    QCOMPARE(runs.LastRun(&first), QString());
    QVERIFY(!runs.End());
    for (TrigerDoc const* doc : {&second, &first, &second}) {
        runs.Triggered("A", doc);
        QCOMPARE(runs.Begin("A", {&first, &second}), doc);
        QVERIFY(QRegularExpression("^\\d\\d:\\d\\d:\\d\\d$").match(runs.LastRun(doc)).hasMatch());
        QCOMPARE(runs.End(), doc);
        QVERIFY(QRegularExpression("^\\d\\d:\\d\\d:\\d\\d  \\d+ ms$").match(runs.LastRun(doc)).hasMatch());
    }
    QCOMPARE(runs.Count(&first), 1);
    QCOMPARE(runs.Count(&second), 2);
}

void PatternsTest::a_run_without_a_trigger_belongs_to_the_first_of_its_name() {
    TrigerDoc first{1, 1, "A"};
    TrigerDoc second{2, 2, "B"};
    TrigerDoc third{3, 3, "B"};
    RunRecords runs;
    QCOMPARE(runs.Begin("B", {&first, &second, &third}), &second);
    QVERIFY(!runs.Begin("C", {&first, &second, &third}));
    QVERIFY(!runs.End());
}

void PatternsTest::forgotten_entries_have_no_runs() {
    TrigerDoc doc{1, 1, "A"};
    RunRecords runs;
    runs.Triggered("A", &doc);
    runs.Begin("A", {&doc});
    runs.Triggered("A", &doc);
    runs.Forget(&doc);
    QVERIFY(!runs.End() && !runs.Begin("A", {}));
    QCOMPARE(runs.Count(&doc), 0);
    runs.Begin("A", {&doc});
    runs.Clear();
    QCOMPARE(runs.LastRun(&doc), QString());
}

QTEST_MAIN(PatternsTest)
#include "tst_patterns.moc"

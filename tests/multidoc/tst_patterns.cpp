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
    void a_single_input_fires_both_when_some_change_of_one_does();
    void clashes_of_one_input_are_named_and_the_others_counted();
    void the_text_tells_each_kind_in_a_line_data();
    void the_text_tells_each_kind_in_a_line();
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

void PatternsTest::a_single_input_fires_both_when_some_change_of_one_does() {
    int both = 0;
    for (unsigned int code = 0; code < 1U << 12; ++code) {
        const TrigerDoc first{code & 7U, code >> 3 & 7U, "A"};
        const TrigerDoc second{code >> 6 & 7U, code >> 9 & 7U, "B"};
        bool found = false;
        for (unsigned int last = 0; last < 8; ++last) {
            for (unsigned int bit : {1U, 2U, 4U})
                found = found || (Fires(first, last, last ^ bit) && Fires(second, last, last ^ bit));
        }
        QVERIFY2(OneInputFiresBoth(first, second) == found, qPrintable(QString::number(code, 8)));
        both += found ? 1 : 0;
    }
    QVERIFY(both > 0 && both < 1 << 12);
}

void PatternsTest::clashes_of_one_input_are_named_and_the_others_counted() {
    TrigerDoc rising{1, 1, "A"};
    TrigerDoc falling{0, 1, "B"};
    TrigerDoc other{2, 2, "C"};
    TrigerDoc both{3, 3, "D"};
    const auto found = [](QVector<TrigerDoc*> const& docs, int limit) {
        const Clashes clashes = FindClashes(docs, limit);
        QStringList parts;
        for (QPair<int, int> const& pair : clashes.named)
            parts.append(QStringLiteral("%1-%2").arg(pair.first).arg(pair.second));
        return QStringLiteral("%1 +%2 /%3").arg(parts.join(' ')).arg(clashes.more).arg(clashes.several);
    };
    QCOMPARE(found({}, 8), QStringLiteral(" +0 /0"));
    QCOMPARE(found({&rising, &falling}, 8), QStringLiteral(" +0 /0"));
    QCOMPARE(found({&rising, &falling, &other}, 8), QStringLiteral(" +0 /2"));
    QCOMPARE(found({&rising, &falling, &other, &both}, 8), QStringLiteral("0-3 2-3 +0 /2"));
    QCOMPARE(found({&both, &falling, &other, &both}, 2), QStringLiteral("0-2 0-3 +1 /1"));
    // Documents with an input each, as most plants have them, clash nowhere by one input.
    QVector<TrigerDoc> single;
    for (int i = 0; i < 32; ++i)
        single.append({1U << i, 1U << i, "E"});
    QVector<TrigerDoc*> docs;
    for (TrigerDoc& doc : single)
        docs.append(&doc);
    QCOMPARE(found(docs, 8), QStringLiteral(" +0 /496"));
}

void PatternsTest::the_text_tells_each_kind_in_a_line_data() {
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<int>("named");
    QTest::addColumn<int>("more");
    QTest::addColumn<int>("several");
    QTest::newRow("none") << "" << 0 << 0 << 0;
    QTest::newRow("one") << "one: 0-1" << 1 << 0 << 0;
    QTest::newRow("all named") << "one: 0-1, 1-2, 2-3" << 3 << 0 << 0;
    QTest::newRow("more than are named") << "one: 0-1, 1-2 +17" << 2 << 17 << 0;
    QTest::newRow("only with several inputs") << "6 of many" << 0 << 0 << 6;
    QTest::newRow("both kinds") << "one: 0-1 +1\n45 of many" << 1 << 1 << 45;
}

void PatternsTest::the_text_tells_each_kind_in_a_line() {
    QFETCH(int, named);
    QFETCH(int, more);
    QFETCH(int, several);
    Clashes clashes;
    for (int i = 0; i < named; ++i)
        clashes.named.append({i, i + 1});
    clashes.more = more;
    clashes.several = several;
    QTEST(ClashText(clashes, QStringLiteral("one"), QStringLiteral("%1 of many")), "wanted");
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

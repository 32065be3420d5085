// SPDX-License-Identifier: MIT
#include "multidoc/triggerrule.h"

#include <QtTest>
#include <array>
#include <memory>
#include <random>
#include <vector>

using namespace tessera;

namespace {

/// Records what the rule asks for and answers as set.
class Port : public TriggerPort {
public:
    bool isSafe() override {
        asked.append("safe");
        return safe;
    }
    unsigned int settledInput() override {
        asked.append("settled");
        return settled;
    }
    bool isIdle() override { return idle; }
    bool isOpen(QString const& name) override { return open.contains(name); }
    void queueDocument(TrigerDoc const& doc) override { queued.append(doc.m_FileName); }
    void note(QString const& text) override { notes.append(text); }

    bool safe = true;
    unsigned int settled = 0;
    bool idle = false;
    QStringList open;
    QStringList asked;
    QStringList queued;
    QStringList notes;
};

/// A project and the rule at work on it; every name is open unless told otherwise.
struct Run {
    QVector<TrigerDoc*> docs;
    std::vector<std::unique_ptr<TrigerDoc>> owned;
    Port port;
    TriggerRule rule;

    void add(QString const& name, unsigned int value, unsigned int mask) {
        owned.push_back(std::make_unique<TrigerDoc>());
        *owned.back() = {value, mask, name};
        docs.append(owned.back().get());
        port.open.append(name);
    }
    /// The documents that an input word starts; it lasts.
    QStringList take(unsigned int input) {
        port.settled = input;
        port.queued.clear();
        rule.InputChange(input, docs, port);
        return port.queued;
    }
};

} // namespace

/// The rule that says which document an input change starts.
class TriggerRuleTest : public QObject {
    Q_OBJECT

private slots:
    void the_pattern_of_two_inputs_fires_once_on_its_edge();
    void one_input_fires_on_its_edge_data();
    void one_input_fires_on_its_edge();
    void a_change_outside_the_mask_does_not_fire();
    void a_value_bit_outside_the_mask_does_not_count();
    void an_empty_mask_never_fires();
    void of_two_equal_entries_the_earlier_fires();
    void one_change_starts_one_document();
    void a_document_that_is_not_open_hides_those_behind_it_without_a_word();
    void without_a_run_words_are_taken_over_and_start_nothing();
    void a_held_input_fires_after_leaving_and_entering_again();
    void an_alarm_holds_the_change_back_until_it_is_gone();
    void a_word_that_does_not_last_is_forgotten();
    void the_same_word_asks_for_nothing();
    void what_is_noted_data();
    void what_is_noted();
    void random_sequences_agree_with_a_table();
};

void TriggerRuleTest::the_pattern_of_two_inputs_fires_once_on_its_edge() {
    Run run;
    run.add("PlateA", 0b0100, 0b1100);
    QCOMPARE(run.take(0b0101), QStringList{"PlateA"});
    QCOMPARE(run.take(0b0110), QStringList());
    QCOMPARE(run.rule.LastInput(), 0b0110U);
}

void TriggerRuleTest::one_input_fires_on_its_edge_data() {
    QTest::addColumn<bool>("value");
    QTest::newRow("rising") << true;
    QTest::newRow("falling") << false;
}

void TriggerRuleTest::one_input_fires_on_its_edge() {
    QFETCH(bool, value);
    for (int bit = 0; bit < 32; ++bit) {
        Run run;
        const unsigned int mask = 1U << bit;
        run.add("A", value ? mask : 0, mask);
        run.rule.SetLastInput(value ? 0 : mask);
        QCOMPARE(run.take(value ? mask : 0), QStringList{"A"});
        QCOMPARE(run.take(value ? 0 : mask), QStringList());
    }
}

void TriggerRuleTest::a_change_outside_the_mask_does_not_fire() {
    Run run;
    run.add("A", 1, 1);
    QCOMPARE(run.take(1), QStringList{"A"});
    for (unsigned int const other : {3U, 0x80000003U, 1U})
        QCOMPARE(run.take(other), QStringList());
}

void TriggerRuleTest::a_value_bit_outside_the_mask_does_not_count() {
    Run run;
    run.add("A", 0b11, 0b01);
    QCOMPARE(run.take(0b01), QStringList{"A"});
}

void TriggerRuleTest::an_empty_mask_never_fires() {
    Run run;
    run.add("A", 0, 0);
    QCOMPARE(run.take(1), QStringList());
    QCOMPARE(run.take(0), QStringList());
}

void TriggerRuleTest::of_two_equal_entries_the_earlier_fires() {
    Run run;
    run.add("A", 1, 1);
    run.add("B", 1, 1);
    QCOMPARE(run.take(1), QStringList{"A"});
    QCOMPARE(FirstThatFires(run.docs, 0, 1), 0);
}

void TriggerRuleTest::one_change_starts_one_document() {
    Run run;
    run.add("A", 2, 2);
    run.add("B", 1, 1);
    QCOMPARE(run.take(3), QStringList{"A"});
    QCOMPARE(run.take(2), QStringList());
    QCOMPARE(run.take(3), QStringList{"B"});
}

void TriggerRuleTest::a_document_that_is_not_open_hides_those_behind_it_without_a_word() {
    Run run;
    run.add("A", 1, 1);
    run.add("B", 1, 1);
    run.port.open.removeOne("A");
    QCOMPARE(run.take(1), QStringList());
    QCOMPARE(run.port.notes.size(), 1);
    QCOMPARE(run.rule.LastInput(), 1U);
}

void TriggerRuleTest::without_a_run_words_are_taken_over_and_start_nothing() {
    Run run;
    run.add("A", 1, 1);
    run.port.idle = true;
    QCOMPARE(run.take(1), QStringList());
    QCOMPARE(run.rule.LastInput(), 1U);
    QCOMPARE(run.port.notes, QStringList{"MultDocMark Triger File Input:Last->0,Input->1"});
}

void TriggerRuleTest::a_held_input_fires_after_leaving_and_entering_again() {
    Run run;
    run.add("A", 1, 1);
    run.rule.SetLastInput(1);
    QCOMPARE(run.take(1), QStringList());
    QCOMPARE(run.take(3), QStringList());
    QCOMPARE(run.take(2), QStringList());
    QCOMPARE(run.take(3), QStringList{"A"});
}

void TriggerRuleTest::an_alarm_holds_the_change_back_until_it_is_gone() {
    Run run;
    run.add("A", 1, 1);
    run.port.safe = false;
    QCOMPARE(run.take(1), QStringList());
    QCOMPARE(run.rule.LastInput(), 0U);
    QCOMPARE(run.port.asked, QStringList{"safe"});
    QVERIFY(run.port.notes.isEmpty());
    run.port.safe = true;
    QCOMPARE(run.take(1), QStringList{"A"});
}

void TriggerRuleTest::a_word_that_does_not_last_is_forgotten() {
    Run run;
    run.add("A", 1, 1);
    run.port.settled = 0;
    run.rule.InputChange(1, run.docs, run.port);
    QCOMPARE(run.rule.LastInput(), 0U);
    run.port.settled = 3;
    run.rule.InputChange(1, run.docs, run.port);
    QCOMPARE(run.rule.LastInput(), 0U);
    QVERIFY(run.port.notes.isEmpty() && run.port.queued.isEmpty());
    QCOMPARE(run.take(1), QStringList{"A"});
}

void TriggerRuleTest::the_same_word_asks_for_nothing() {
    Run run;
    run.rule.SetLastInput(5);
    run.take(5);
    QVERIFY(run.port.asked.isEmpty() && run.port.notes.isEmpty());
}

void TriggerRuleTest::what_is_noted_data() {
    QTest::addColumn<unsigned int>("last");
    QTest::addColumn<unsigned int>("input");
    QTest::addColumn<unsigned int>("mask");
    QTest::addColumn<unsigned int>("value");
    QTest::addColumn<QStringList>("notes");
    QTest::newRow("a document") << 0U << 5U << 12U << 4U
                                << QStringList{"MultDocMark Triger File Input:Last->0,Input->5",
                                               "MultDocMark Triger File: 1,4,0,4,0,5,12,4,Plate A"};
    QTest::newRow("capital letters") << 0xabcU << 0xdefU << 0U << 0U
                                     << QStringList{"MultDocMark Triger File Input:Last->ABC,Input->DEF"};
    QTest::newRow("the highest input is a negative number")
        << 0U << 0x80000000U << 0x80000000U << 0xffffffffU
        << QStringList{"MultDocMark Triger File Input:Last->0,Input->80000000",
                       "MultDocMark Triger File: 1,-2147483648,0,-2147483648,0,-2147483648,-2147483648,-1,Plate A"};
}

void TriggerRuleTest::what_is_noted() {
    QFETCH(unsigned int, last);
    QFETCH(unsigned int, input);
    QFETCH(unsigned int, mask);
    QFETCH(unsigned int, value);
    QFETCH(QStringList, notes);
    Run run;
    run.add("other", 0, 0);
    run.add("Plate A", value, mask);
    run.rule.SetLastInput(last);
    run.take(input);
    QCOMPARE(run.port.notes, notes);
}

namespace {

/// The rule once more, from a table: a row an entry, a cell an input, and words told contact by contact.
class Table {
public:
    using Word = std::array<bool, 32>;

    static Word contacts(unsigned int word) {
        Word cells{};
        for (unsigned int bit = 0; bit < 32; ++bit)
            cells[bit] = word / (1ULL << bit) % 2 == 1;
        return cells;
    }
    void add(unsigned int value, unsigned int mask) {
        std::array<char, 32> row{};
        for (unsigned int bit = 0; bit < 32; ++bit)
            row[bit] = !contacts(mask)[bit] ? '-' : contacts(value)[bit] ? '1' : '0';
        m_Rows.push_back(row);
    }
    void hold(unsigned int word) { m_Last = contacts(word); }
    /// The row that the word starts, -1 for none.
    int take(unsigned int word, unsigned int settled, bool safe, bool idle) {
        const Word now = contacts(word);
        if (now == m_Last || !safe || now != contacts(settled))
            return -1;
        int found = -1;
        for (int row = int(m_Rows.size()) - 1; row >= 0 && !idle; --row) {
            if (enters(m_Rows[std::size_t(row)], now))
                found = row;
        }
        m_Last = now;
        return found;
    }

private:
    bool enters(std::array<char, 32> const& row, Word const& now) const {
        bool edge = false;
        for (std::size_t bit = 0; bit < 32; ++bit) {
            if (row[bit] == '-')
                continue;
            if (now[bit] != (row[bit] == '1'))
                return false;
            edge = edge || m_Last[bit] != now[bit];
        }
        return edge;
    }

    std::vector<std::array<char, 32>> m_Rows;
    Word m_Last{};
};

/// Random words that meet patterns often: few inputs are wired.
struct Dice {
    std::mt19937 random;
    unsigned int wired = 0;

    unsigned int below(unsigned int end) { return random() % end; }
    unsigned int word() { return random() & wired; }
};

/// One project and eight words; false at the first difference.
bool agree(Dice& dice, int& fired) {
    dice.wired = dice.below(8) == 0 ? ~0U : 0b111U << dice.below(30);
    Run run;
    Table table;
    const unsigned int entries = dice.below(7);
    QVector<bool> open;
    for (unsigned int i = 0; i < entries; ++i) {
        const unsigned int value = dice.random() & (dice.below(4) == 0 ? ~0U : dice.wired);
        const unsigned int mask = dice.below(8) == 0 ? dice.random() & dice.random() & dice.random() : dice.word();
        run.add(QString::number(i), value, mask);
        table.add(value, mask);
        open.append(dice.below(8) != 0);
        if (!open.last())
            run.port.open.removeOne(QString::number(i));
    }
    const unsigned int first = dice.word();
    run.rule.SetLastInput(first);
    table.hold(first);
    for (int step = 0; step < 8; ++step) {
        const unsigned int input = dice.word();
        run.port.settled = dice.below(8) == 0 ? dice.word() : input;
        run.port.safe = dice.below(8) != 0;
        run.port.idle = dice.below(8) == 0;
        run.port.queued.clear();
        run.rule.InputChange(input, run.docs, run.port);
        const int row = table.take(input, run.port.settled, run.port.safe, run.port.idle);
        const QStringList wanted = row >= 0 && open.at(row) ? QStringList{QString::number(row)} : QStringList();
        if (run.port.queued != wanted)
            return false;
        fired += wanted.size();
    }
    return true;
}

} // namespace

void TriggerRuleTest::random_sequences_agree_with_a_table() {
    const int sequences = qMax(20000, qEnvironmentVariableIntValue("TESSERA_SEQUENCES"));
    Dice dice{std::mt19937(20261121), 0};
    int fired = 0;
    for (int i = 0; i < sequences; ++i)
        QVERIFY2(agree(dice, fired), qPrintable(QStringLiteral("sequence %1").arg(i)));
    // The words meet patterns often enough for the comparison to mean something.
    QVERIFY(fired > sequences / 2);
    qInfo("%d sequences, %d documents started", sequences, fired);
}

QTEST_GUILESS_MAIN(TriggerRuleTest)
#include "tst_triggerrule.moc"

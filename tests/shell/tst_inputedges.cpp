// SPDX-License-Identifier: MIT
#include "tests/shell/edgemodel.h"

#include <QtTest>
#include <random>
#include <vector>

using namespace tessera;
using namespace tests;

namespace {

constexpr int kRandomWords = 1'000'000;

IOFuncList wired(unsigned int mask, unsigned int pattern, unsigned int last = 0) {
    IOFuncList function;
    function.Name = QStringLiteral("运行");
    function.InputEnable = true;
    function.InputMask = mask;
    function.InputValue = pattern;
    function.LastInput = last;
    return function;
}

/// The sub-words of a mask of at most two bits.
std::vector<unsigned int> subWords(unsigned int mask) {
    std::vector<unsigned int> words;
    for (unsigned int word = mask;; word = (word - 1) & mask) {
        words.push_back(word);
        if (word == 0)
            return words;
    }
}

} // namespace

/// Edges of named input functions.
class InputEdgesTest : public QObject {
    Q_OBJECT

private slots:
    void an_unknown_function_gives_minus_2();
    void a_function_without_watched_inputs_never_fires_and_keeps_its_state();
    void a_disabled_function_never_fires_and_keeps_its_state();
    void an_input_is_seen_going_in_and_out();
    void a_low_active_function_fires_when_the_wire_breaks();
    void all_inputs_of_a_mask_must_match();
    void a_change_among_others_is_no_edge();
    void levels_outside_the_mask_do_not_matter();
    void only_the_first_wired_function_is_judged_without_its_state_before();
    void a_function_that_is_not_wired_does_not_use_up_the_first();
    void a_function_active_at_start_gives_no_edge_until_it_changes();
    void every_single_watched_bit_follows_the_table();
    void every_pair_of_watched_bits_follows_the_table();
    void every_word_of_one_or_two_bits_follows_the_table();
    void a_million_random_words_follow_the_table();

private:
    /// Number of records, levels and words in which the class and the table differ, over one mask.
    static int differences(unsigned int mask, int& looked);
};

void InputEdgesTest::an_unknown_function_gives_minus_2() {
    InputEdges edges;
    QCOMPARE(edges.Ask(nullptr, 0xFFFFFFFFU), EdgeElsewhere);
}

void InputEdgesTest::a_function_without_watched_inputs_never_fires_and_keeps_its_state() {
    InputEdges edges;
    IOFuncList function = wired(0, 0, 5);
    for (unsigned int word : {0U, 1U, 0xFFFFFFFFU})
        QCOMPARE(edges.Ask(&function, word), EdgeElsewhere);
    QCOMPARE(function.LastInput, 5U);
}

void InputEdgesTest::a_disabled_function_never_fires_and_keeps_its_state() {
    InputEdges edges;
    IOFuncList function = wired(1, 1, 0);
    function.InputEnable = false;
    QCOMPARE(edges.Ask(&function, 1), EdgeElsewhere);
    QCOMPARE(function.LastInput, 0U);
}

void InputEdgesTest::an_input_is_seen_going_in_and_out() {
    InputEdges edges;
    IOFuncList function = wired(1U << 31, 1U << 31);
    QCOMPARE(edges.Ask(&function, 0), EdgeElsewhere);
    QCOMPARE(edges.Ask(&function, 0), EdgeNone);
    QCOMPARE(edges.Ask(&function, 1U << 31), EdgeEntered);
    QCOMPARE(function.LastInput, 1U << 31);
    QCOMPARE(edges.Ask(&function, 1U << 31), EdgeNone);
    QCOMPARE(edges.Ask(&function, 0), EdgeLeft);
    QCOMPARE(edges.Ask(&function, 0), EdgeNone);
}

void InputEdgesTest::a_low_active_function_fires_when_the_wire_breaks() {
    InputEdges edges;
    IOFuncList function = wired(1, 0, 1);
    QCOMPARE(edges.Ask(&function, 1), EdgeElsewhere);
    QCOMPARE(edges.Ask(&function, 0), EdgeEntered);
    QCOMPARE(edges.Ask(&function, 1), EdgeLeft);
}

void InputEdgesTest::all_inputs_of_a_mask_must_match() {
    InputEdges edges;
    IOFuncList function = wired(0b111, 0b101);
    edges.Ask(&function, 0);
    QCOMPARE(edges.Ask(&function, 0b001), EdgeElsewhere);
    QCOMPARE(edges.Ask(&function, 0b111), EdgeElsewhere);
    QCOMPARE(edges.Ask(&function, 0b101), EdgeEntered);
    QCOMPARE(edges.Ask(&function, 0b100), EdgeLeft);
}

void InputEdgesTest::a_change_among_others_is_no_edge() {
    InputEdges edges;
    IOFuncList function = wired(0b11, 0b11);
    edges.Ask(&function, 0);
    QCOMPARE(edges.Ask(&function, 0b01), EdgeElsewhere);
    QCOMPARE(edges.Ask(&function, 0b10), EdgeElsewhere);
    QCOMPARE(edges.Ask(&function, 0b10), EdgeNone);
}

void InputEdgesTest::levels_outside_the_mask_do_not_matter() {
    InputEdges edges;
    IOFuncList function = wired(0b0010, 0b1110);
    edges.Ask(&function, 0);
    QCOMPARE(edges.Ask(&function, 0b1101), EdgeNone);
    QCOMPARE(edges.Ask(&function, 0b0010), EdgeEntered);
    QCOMPARE(function.LastInput, 0b0010U);
    QCOMPARE(edges.Ask(&function, 0b1101), EdgeLeft);
}

void InputEdgesTest::only_the_first_wired_function_is_judged_without_its_state_before() {
    InputEdges edges;
    IOFuncList first = wired(1, 0);
    IOFuncList second = wired(2, 0);
    QCOMPARE(edges.Ask(&first, 0), EdgeEntered);
    QCOMPARE(edges.Ask(&second, 0), EdgeNone);
    QCOMPARE(edges.Ask(&first, 0), EdgeNone);
}

void InputEdgesTest::a_function_that_is_not_wired_does_not_use_up_the_first() {
    InputEdges edges;
    IOFuncList off = wired(1, 0);
    off.InputEnable = false;
    IOFuncList function = wired(2, 0);
    edges.Ask(nullptr, 0);
    edges.Ask(&off, 0);
    QCOMPARE(edges.Ask(&function, 0), EdgeEntered);
}

void InputEdgesTest::a_function_active_at_start_gives_no_edge_until_it_changes() {
    InputEdges edges;
    IOFuncList first = wired(1, 1);
    IOFuncList door = wired(2, 0);
    edges.Ask(&first, 0);
    QCOMPARE(edges.Ask(&door, 0), EdgeNone);
    QCOMPARE(edges.Ask(&door, 2), EdgeLeft);
    QCOMPARE(edges.Ask(&door, 0), EdgeEntered);
}

int InputEdgesTest::differences(unsigned int mask, int& looked) {
    int wrong = 0;
    for (bool enabled : {true, false}) {
        for (unsigned int pattern : subWords(mask)) {
            for (unsigned int last : subWords(mask)) {
                for (unsigned int input : subWords(mask)) {
                    for (bool first : {true, false}) {
                        InputEdges edges;
                        EdgeModel table;
                        IOFuncList opener = wired(1, 1);
                        if (!first) {
                            edges.Ask(&opener, 0);
                            opener.LastInput = 0;
                            table.ask(opener, 0);
                        }
                        IOFuncList ours = wired(mask, pattern, last);
                        ours.InputEnable = enabled;
                        IOFuncList theirs = ours;
                        ++looked;
                        if (edges.Ask(&ours, input) != table.ask(theirs, input) || ours.LastInput != theirs.LastInput)
                            ++wrong;
                    }
                }
            }
        }
    }
    return wrong;
}

void InputEdgesTest::every_single_watched_bit_follows_the_table() {
    int looked = 0;
    for (int i = 0; i < kBits; ++i)
        QCOMPARE(differences(1U << i, looked), 0);
    QCOMPARE(looked, kBits * 2 * 2 * 2 * 2 * 2);
}

void InputEdgesTest::every_pair_of_watched_bits_follows_the_table() {
    int looked = 0;
    for (int i = 0; i < kBits; ++i) {
        for (int j = i + 1; j < kBits; ++j)
            QCOMPARE(differences((1U << i) | (1U << j), looked), 0);
    }
    QCOMPARE(looked, kBits * (kBits - 1) / 2 * 2 * 4 * 4 * 4 * 2);
}

void InputEdgesTest::every_word_of_one_or_two_bits_follows_the_table() {
    const std::vector<unsigned int> words = singlesAndPairs();
    QCOMPARE(words.size(), size_t(kBits + kBits * (kBits - 1) / 2));
    for (unsigned int mask : {0x1U, 0x80000000U, 0x3U, 0xFFU, 0x55555555U, 0xFFFFFFFFU}) {
        for (unsigned int pattern : {0U, 0x1U, 0x3U, 0x80000001U, 0xFFFFFFFFU}) {
            InputEdges edges;
            EdgeModel table;
            IOFuncList ours = wired(mask, pattern);
            IOFuncList theirs = ours;
            for (unsigned int word : words) {
                QCOMPARE(int(edges.Ask(&ours, word)), table.ask(theirs, word));
                QCOMPARE(ours.LastInput, theirs.LastInput);
            }
        }
    }
}

void InputEdgesTest::a_million_random_words_follow_the_table() {
    std::mt19937 random(20240607);
    InputEdges edges;
    EdgeModel table;
    std::vector<IOFuncList> ours;
    // Few watched bits, so that all results come often.
    for (int i = 0; i < 16; ++i) {
        unsigned int mask = 0;
        for (int k = 0; k <= i % 4; ++k)
            mask |= 1U << (random() % kBits);
        ours.push_back(wired(mask, random()));
    }
    ours[7].InputEnable = false;
    ours[11].InputMask = 0;
    std::vector<IOFuncList> theirs = ours;
    QMap<int, int> seen;
    for (int i = 0; i < kRandomWords; ++i) {
        const unsigned int word = random();
        const size_t at = random() % ours.size();
        // The installer changes the wiring while the program runs.
        if (i % 100 == 99) {
            unsigned int mask = 0;
            for (unsigned int bits = random() % 5; bits > 0; --bits)
                mask |= 1U << (random() % kBits);
            ours[at].InputMask = theirs[at].InputMask = mask;
            ours[at].InputValue = theirs[at].InputValue = random();
            ours[at].InputEnable = theirs[at].InputEnable = random() % 8 != 0;
        }
        const int expected = table.ask(theirs[at], word);
        ++seen[expected];
        QCOMPARE(int(edges.Ask(&ours[at], word)), expected);
        QCOMPARE(ours[at].LastInput, theirs[at].LastInput);
    }
    for (int result : {-2, -1, 0, 1})
        QVERIFY2(seen.value(result) > kRandomWords / 100, qPrintable(QString::number(result)));
}

QTEST_GUILESS_MAIN(InputEdgesTest)
#include "tst_inputedges.moc"

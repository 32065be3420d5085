// SPDX-License-Identifier: MIT
#include "shell/alarmmask.h"
#include "tests/shell/safetymodel.h"

#include <QStringList>
#include <QtTest>
#include <random>

using namespace tessera;
using namespace tests;

namespace {

constexpr int kRandomWords = 1'000'000;

QString lampText(StackLight light) {
    return light == StackLight::Red ? "red" : light == StackLight::Yellow ? "yellow" : "keep";
}

QString planText(SafetyPlan const& plan) {
    constexpr char kActs[] = {'+', '-', 'S', 'P'};
    QString text;
    for (SafetyStep const& step : plan.steps)
        text += QLatin1Char(kActs[int(step.act)]) + QString::number(step.bit) + ' ';
    return text;
}

/// The decisions under test.
class Ours {
public:
    PollResult poll(unsigned int input, SafetySettings const& settings, unsigned int before, int visible,
                    bool alarmFree) {
        const AskInput ask = [&](char const* name) { return m_edges.Ask(&machine[name], input); };
        const SafetyPlan plan = CheckSafe(ask, settings, before);
        const RunOrder order = CheckRunStop(ask, visible, [alarmFree] { return alarmFree; });
        CheckAutoManual(ask);
        return {planText(plan) + (plan.indicatorRed ? "bad " : "good ") + lampText(plan.light) + ' ' +
                    QString::number(int(order)),
                plan.mask};
    }
    WiredMachine machine;

private:
    InputEdges m_edges;
};

/// How a machine may be wired: the watched inputs of its function number `at`, their levels when it is active, and
/// whether it is switched on.
struct Wiring {
    char const* name;
    unsigned int (*mask)(int at);
    unsigned int (*value)(int at);
    bool (*on)(int at);
};

unsigned int ownInput(int at) {
    return 1U << at;
}
/// With the input of the next function, so that two functions watch each input.
unsigned int sharedInputs(int at) {
    return 1U << at | 1U << (at + 1);
}
bool always(int) {
    return true;
}

constexpr Wiring kWirings[] = {
    {"active high", ownInput, ownInput, always},
    {"active low", ownInput, [](int) { return 0U; }, always},
    {"two inputs each", sharedInputs, sharedInputs, always},
    {"one high and one low", sharedInputs, ownInput, always},
    {"levels beyond the mask", ownInput, [](int) { return 0xFFFFFFFFU; }, always},
    {"every third switched off", ownInput, ownInput, [](int at) { return at % 3 != 0; }},
    {"high inputs", [](int at) { return 1U << (31 - at); }, [](int at) { return 1U << (31 - at); }, always},
    {"without inputs", [](int) { return 0U; }, [](int) { return 0U; }, always},
};

void addWirings() {
    QTest::addColumn<int>("wiring");
    for (std::size_t i = 0; i < std::size(kWirings); ++i)
        QTest::newRow(kWirings[i].name) << static_cast<int>(i);
}

/// Both, given the same samples.
class Pair {
public:
    /// Empty when both decided the same and keep the same states.
    QString poll(unsigned int input, SafetySettings const& settings = {}, int visible = 1, bool alarmFree = true) {
        const PollResult mine = m_ours.poll(input, settings, m_mask, visible, alarmFree);
        const PollResult expected = m_model.poll(input, settings, m_mask, visible, alarmFree);
        m_mask = expected.mask;
        m_text = mine.text;
        if (mine.text != expected.text || mine.mask != expected.mask)
            return QStringLiteral("%1: %2 instead of %3").arg(input, 0, 16).arg(mine.text, expected.text);
        for (auto const& name : m_ours.machine.functions().keys()) {
            if (m_ours.machine[name].LastInput != m_model.machine[name].LastInput)
                return QStringLiteral("%1: state of ").arg(input, 0, 16) + QString::fromUtf8(name);
        }
        return QString();
    }
    QString const& text() const { return m_text; }
    void rewire(char const* name, unsigned int mask, unsigned int value, bool on) {
        for (IOFuncList* function : {&m_ours.machine[name], &m_model.machine[name]}) {
            function->InputMask = mask;
            function->InputValue = value;
            function->InputEnable = on;
        }
    }
    void rewire(Wiring const& wiring) {
        int at = 0;
        for (QByteArray const& name : m_ours.machine.functions().keys()) {
            rewire(name.constData(), wiring.mask(at), wiring.value(at), wiring.on(at));
            ++at;
        }
    }
    /// An alarm that came by another way than an input.
    void raise(unsigned int bit) { m_mask |= bit; }

private:
    Ours m_ours;
    SafetyModel m_model;
    unsigned int m_mask = 0;
    QString m_text;
};

/// Answers as set; a name that is not set has not changed. Keeps the names in the order of the questions.
class Answers {
public:
    void set(char const* name, InputEdge edge) { m_edges.insert(name, edge); }
    AskInput ask() {
        return [this](char const* name) {
            asked.append(QString::fromUtf8(name));
            return m_edges.value(name, EdgeNone);
        };
    }
    QStringList asked;

private:
    QMap<QByteArray, InputEdge> m_edges;
};

std::function<bool()> free() {
    return [] { return true; };
}

} // namespace

/// What a poll decides about safety and operating inputs.
class SafetyCheckTest : public QObject {
    Q_OBJECT

private slots:
    void inputs_are_looked_at_in_their_order();
    void each_edge_into_active_takes_its_steps_data();
    void each_edge_into_active_takes_its_steps();
    void an_alarm_goes_when_its_input_leaves_or_is_switched_off();
    void nothing_is_cleared_that_was_not_set();
    void a_closed_door_resumes_nothing();
    void the_laser_alarm_alone_leaves_the_safety_indicator_green_and_the_lamp_red();
    void the_lamp_is_red_in_every_poll_and_yellow_once_behind_the_last_alarm();
    void stop_and_run_in_one_poll_handle_stop_alone();
    void a_run_edge_under_an_alarm_starts_nothing();
    void alarms_are_asked_for_a_start_alone();
    void orders_follow_the_visible_dialog_data();
    void orders_follow_the_visible_dialog();
    void the_mode_switch_is_followed();
    void every_single_input_follows_the_tables_data() { addWirings(); }
    void every_single_input_follows_the_tables();
    void every_pair_of_inputs_follows_the_tables_data() { addWirings(); }
    void every_pair_of_inputs_follows_the_tables();
    void a_million_random_words_follow_the_tables();
};

void SafetyCheckTest::inputs_are_looked_at_in_their_order() {
    Answers answers;
    CheckSafe(answers.ask(), {}, 0);
    CheckRunStop(answers.ask(), 1, free());
    CheckAutoManual(answers.ask());
    QStringList expected;
    for (SafetyModelRow const& row : kSafetyModel)
        expected.append(QString::fromUtf8(row.name));
    for (RunModelRow const& row : kRunModel)
        expected.append(QString::fromUtf8(row.name));
    expected << QStringLiteral("手动") << QStringLiteral("自动");
    QCOMPARE(answers.asked, expected);
}

void SafetyCheckTest::each_edge_into_active_takes_its_steps_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("runActive");
    QTest::addColumn<bool>("doorPauses");
    QTest::addColumn<QString>("steps");
    for (SafetyModelRow const& row : kSafetyModel) {
        const struct {
            char const* tag;
            bool runActive, doorPauses;
            char const* steps;
        } cases[] = {{"stops", true, false, row.stopping},
                     {"pauses", true, true, row.pausing},
                     {"without a job", false, false, row.withoutJob},
                     {"pauses, without a job", false, true, row.withoutJob}};
        for (auto const& entry : cases) {
            QString steps;
            for (char const* step = entry.steps; *step; ++step)
                steps += QLatin1Char(*step) + QString::number(row.bit) + ' ';
            QTest::addRow("%s %s", row.name, entry.tag)
                << QByteArray(row.name) << entry.runActive << entry.doorPauses << steps;
        }
    }
}

void SafetyCheckTest::each_edge_into_active_takes_its_steps() {
    QFETCH(QByteArray, name);
    QFETCH(bool, runActive);
    QFETCH(bool, doorPauses);
    Answers answers;
    answers.set(name, EdgeEntered);
    QTEST(planText(CheckSafe(answers.ask(), {runActive, doorPauses}, 0)), "steps");
}

void SafetyCheckTest::an_alarm_goes_when_its_input_leaves_or_is_switched_off() {
    for (SafetyModelRow const& row : kSafetyModel) {
        for (InputEdge edge : {EdgeLeft, EdgeElsewhere}) {
            Answers answers;
            answers.set(row.name, edge);
            const SafetyPlan plan = CheckSafe(answers.ask(), {}, 1023);
            QCOMPARE(planText(plan), QStringLiteral("-%1 ").arg(row.bit));
            QCOMPARE(plan.mask, 1023U - row.bit);
        }
        Answers unchanged;
        QCOMPARE(CheckSafe(unchanged.ask(), {}, row.bit).mask, row.bit);
    }
}

void SafetyCheckTest::nothing_is_cleared_that_was_not_set() {
    Answers answers;
    for (SafetyModelRow const& row : kSafetyModel)
        answers.set(row.name, EdgeElsewhere);
    const SafetyPlan plan = CheckSafe(answers.ask(), {}, 0);
    QVERIFY(plan.steps.empty());
    QCOMPARE(plan.light, StackLight::Keep);
}

void SafetyCheckTest::a_closed_door_resumes_nothing() {
    Answers answers;
    answers.set("机台安全门2", EdgeLeft);
    QCOMPARE(planText(CheckSafe(answers.ask(), {true, true}, 4)), QStringLiteral("-4 "));
}

void SafetyCheckTest::the_laser_alarm_alone_leaves_the_safety_indicator_green_and_the_lamp_red() {
    Answers answers;
    SafetyPlan plan = CheckSafe(answers.ask(), {}, 256);
    QVERIFY(!plan.indicatorRed);
    QCOMPARE(plan.light, StackLight::Red);
    plan = CheckSafe(answers.ask(), {}, 256 + 32);
    QVERIFY(plan.indicatorRed);
}

void SafetyCheckTest::the_lamp_is_red_in_every_poll_and_yellow_once_behind_the_last_alarm() {
    Answers answers;
    for (int i = 0; i < 3; ++i)
        QCOMPARE(CheckSafe(answers.ask(), {}, 2).light, StackLight::Red);
    answers.set("机台安全门1", EdgeLeft);
    QCOMPARE(CheckSafe(answers.ask(), {}, 2 + 4).light, StackLight::Red);
    QCOMPARE(CheckSafe(answers.ask(), {}, 2).light, StackLight::Yellow);
    QCOMPARE(CheckSafe(answers.ask(), {}, 0).light, StackLight::Keep);
}

void SafetyCheckTest::stop_and_run_in_one_poll_handle_stop_alone() {
    Answers answers;
    answers.set("终止", EdgeEntered);
    answers.set("运行", EdgeEntered);
    QCOMPARE(CheckRunStop(answers.ask(), 1, free()), RunOrder::Stop);
    QCOMPARE(answers.asked, QStringList{QStringLiteral("终止")});
}

void SafetyCheckTest::a_run_edge_under_an_alarm_starts_nothing() {
    Answers answers;
    answers.set("运行", EdgeEntered);
    answers.set("暂停", EdgeEntered);
    for (int visible : {0, 1, 2})
        QCOMPARE(CheckRunStop(answers.ask(), visible, [] { return false; }), RunOrder::Nothing);
    QVERIFY(!answers.asked.contains(QStringLiteral("暂停")));
}

void SafetyCheckTest::alarms_are_asked_for_a_start_alone() {
    int asked = 0;
    const auto count = [&asked] {
        ++asked;
        return true;
    };
    for (char const* name : {"终止", "暂停", "红光预览"}) {
        Answers answers;
        answers.set(name, EdgeEntered);
        CheckRunStop(answers.ask(), 1, count);
    }
    QCOMPARE(asked, 0);
    Answers answers;
    answers.set("运行", EdgeEntered);
    CheckRunStop(answers.ask(), 1, count);
    QCOMPARE(asked, 1);
}

void SafetyCheckTest::orders_follow_the_visible_dialog_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("visible");
    QTest::addColumn<int>("order");
    for (RunModelRow const& row : kRunModel) {
        for (int visible : {0, 1, 2})
            QTest::addRow("%s, dialog %d", row.name, visible)
                << QByteArray(row.name) << visible << int(row.orders[visible]);
    }
}

void SafetyCheckTest::orders_follow_the_visible_dialog() {
    QFETCH(QByteArray, name);
    QFETCH(int, visible);
    Answers answers;
    answers.set(name, EdgeEntered);
    QTEST(int(CheckRunStop(answers.ask(), visible, free())), "order");
}

void SafetyCheckTest::the_mode_switch_is_followed() {
    Ours ours;
    const unsigned int bit = ours.machine["自动"].InputMask;
    ours.poll(bit, {}, 0, 1, true);
    QCOMPARE(ours.machine["自动"].LastInput, bit);
    QCOMPARE(ours.machine["手动"].LastInput, 0U);
}

void SafetyCheckTest::every_single_input_follows_the_tables() {
    QFETCH(int, wiring);
    for (int i = 0; i < kBits; ++i) {
        for (bool runActive : {true, false}) {
            for (bool doorPauses : {true, false}) {
                for (int visible : {0, 1, 2}) {
                    for (bool alarmFree : {true, false}) {
                        Pair pair;
                        pair.rewire(kWirings[wiring]);
                        for (unsigned int word : {0U, 1U << i, 1U << i, 0U, 0U, ~(1U << i), ~0U})
                            QCOMPARE(pair.poll(word, {runActive, doorPauses}, visible, alarmFree), QString());
                    }
                }
            }
        }
    }
}

void SafetyCheckTest::every_pair_of_inputs_follows_the_tables() {
    QFETCH(int, wiring);
    for (int i = 0; i < kBits; ++i) {
        for (int j = 0; j < kBits; ++j) {
            if (i == j)
                continue;
            const unsigned int one = 1U << i;
            const unsigned int both = one | (1U << j);
            // Together, one behind the other, crossing over, and the same among inputs that are all high.
            for (bool doorPauses : {true, false}) {
                Pair pair;
                pair.rewire(kWirings[wiring]);
                for (unsigned int word : {0U, both, 0U, one, both, both & ~one, one, 0U, ~both, ~0U, ~one})
                    QCOMPARE(pair.poll(word, {true, doorPauses}), QString());
            }
        }
    }
}

void SafetyCheckTest::a_million_random_words_follow_the_tables() {
    std::mt19937 random(77);
    Pair pair;
    const QList<QByteArray> names = WiredMachine().functions().keys();
    QMap<QString, int> seen;
    for (int i = 0; i < kRandomWords; ++i) {
        // Now and then few inputs, so that single edges come as well as crowds of them.
        const unsigned int word = i % 3 == 0 ? random() : random() & random() & random() & random();
        const SafetySettings settings{random() % 4 != 0, random() % 2 != 0};
        if (i % 100 == 99) {
            unsigned int mask = 0;
            for (unsigned int bits = random() % 4; bits > 0; --bits)
                mask |= 1U << (random() % kBits);
            pair.rewire(names.at(static_cast<int>(random() % static_cast<unsigned int>(names.size()))).constData(),
                        mask, random(), random() % 8 != 0);
        }
        if (random() % 1000 == 0)
            pair.raise(AlarmLaser);
        const QString difference = pair.poll(word, settings, int(random() % 3), random() % 4 != 0);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
        ++seen[pair.text().section(' ', -2)];
    }
    for (char const* ending : {"red 0", "red 1", "red 2", "red 3", "red 4", "red 5", "yellow 0", "keep 0"})
        QVERIFY2(seen.value(ending) > 0, ending);
}

QTEST_GUILESS_MAIN(SafetyCheckTest)
#include "tst_safetycheck.moc"

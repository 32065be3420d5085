// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "iosetup/ionametable.h"
#include "iosetup/iorules.h"
#include "iosetup/laseralarmrules.h"
#include "tests/support/temporaryroot.h"

#include <QMap>
#include <QtTest>

using namespace tessera;

/// Decisions of the I/O pages and of the laser's fault lines, without a window.
class IORulesTest : public QObject {
    Q_OBJECT

private slots:
    void lines_are_named_by_card_type_data();
    void lines_are_named_by_card_type();
    void pilot_beam_output_by_card_type();
    void bits_are_set_and_cleared_data();
    void bits_are_set_and_cleared();
    void fields_of_the_end_signal_by_clear_type_data();
    void fields_of_the_end_signal_by_clear_type();
    void a_clear_type_that_nobody_knows_blocks_for_a_time();
    void saved_functions_keep_the_running_input_state();
    void channels_by_card_type();
    void custom_type_compares_enabled_channels_with_their_levels();
    void custom_type_without_a_channel_leaves_the_alarm_as_it_was();
    void coded_type_data();
    void coded_type();
    void other_types_never_raise_an_alarm_data();
    void other_types_never_raise_an_alarm();

private:
    tests::TemporaryRoot root;
};

using Names = QMap<int, QString>;
Q_DECLARE_METATYPE(Names)

void IORulesTest::lines_are_named_by_card_type_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<Names>("outputs");
    QTest::addColumn<Names>("inputs");
    const Names ylrOut = {{22, "激光触发"},       {23, "激光器使能"}, {24, "激光器复位"},    {25, "MO"},
                          {26, "激光器远程开关"}, {28, "红光"},       {29, "激光器模式选择"}};
    const Names ylrIn = {{22, "Ready"}, {23, "出光中"}, {27, "激光器报警"}};
    QTest::newRow("0") << 0 << Names{{19, "RED"}, {20, "Booster_Gate"}, {21, "MO-Enable"}, {22, "激光触发"}, {23, "D0"},
                                     {24, "D1"},  {25, "D2"},           {26, "D3"},        {27, "D4"},       {28, "D5"},
                                     {29, "D6"},  {30, "D7"},           {31, "Latch"}}
                       << Names{{22, "Sta0"}, {23, "Sta1"}, {24, "Sta2"}, {25, "Sta3"}};
    QTest::newRow("1") << 1 << ylrOut << ylrIn;
    QTest::newRow("2") << 2 << Names{{22, "激光触发"}, {23, "波形1"}, {24, "波形2"},  {25, "波形4"},   {26, "波形8"},
                                     {27, "波形16"},   {28, "红光"},  {29, "波形锁"}, {30, "申请光路"}}
                       << Names{};
    QTest::newRow("3") << 3
                       << Names{{19, "RED"}, {20, "EnGate"}, {21, "Enable"}, {22, "激光触发"}, {23, "D0"},   {24, "D1"},
                                {25, "D2"},  {26, "D3"},     {27, "D4"},     {28, "D5"},       {29, "PULSE"}}
                       << Names{{22, "SYSTEM_FAULT"}, {23, "LASER_IS_ON"}};
    QTest::newRow("4") << 4
                       << Names{{19, "RED"}, {20, "Booster_Gate"}, {22, "激光触发"}, {26, "首脉冲抑制"}, {31, "Latch"}}
                       << Names{};
    QTest::newRow("5") << 5 << ylrOut << ylrIn;
    for (int type : {-1, 6, 100, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::addRow("%d adds nothing", type) << type << Names{} << Names{};
}

void IORulesTest::lines_are_named_by_card_type() {
    QFETCH(int, type);
    QFETCH(Names, outputs);
    QFETCH(Names, inputs);
    QCOMPARE(LanguageManager::GetCurrentLan(), QStringLiteral("zh_CN"));
    outputs.insert(0, QStringLiteral("运行状态专用"));
    outputs.insert(1, QStringLiteral("激光状态专用"));
    outputs.insert(2, QStringLiteral("卡报警专用"));
    const IONameTable names = cardLineNames(type);
    for (int i = 0; i < kIOLines; ++i) {
        QCOMPARE(names.outputs[size_t(i)], outputs.value(i, QStringLiteral("Out%1").arg(i)));
        QCOMPARE(names.inputs[size_t(i)], inputs.value(i, QStringLiteral("In%1").arg(i)));
    }
}

void IORulesTest::pilot_beam_output_by_card_type() {
    const int expected[] = {19, 28, 28, 19, -1, 28, -1};
    for (int type = 0; type < 7; ++type)
        QCOMPARE(redLightOutput(type), expected[type]);
    QCOMPARE(redLightOutput(-1), -1);
}

void IORulesTest::bits_are_set_and_cleared_data() {
    QTest::addColumn<unsigned>("word");
    QTest::addColumn<unsigned>("bit");
    QTest::addColumn<unsigned>("value");
    QTest::addColumn<unsigned>("result");
    QTest::newRow("set first") << 0U << 0U << 1U << 1U;
    QTest::newRow("set last") << 0U << 31U << 1U << 0x80000000U;
    QTest::newRow("any value sets") << 4U << 1U << 77U << 6U;
    QTest::newRow("set again") << 4U << 2U << 1U << 4U;
    QTest::newRow("clear") << 0xFFFFFFFFU << 31U << 0U << 0x7FFFFFFFU;
    QTest::newRow("clear what is clear") << 5U << 1U << 0U << 5U;
    QTest::newRow("no such bit") << 5U << 32U << 1U << 5U;
}

void IORulesTest::bits_are_set_and_cleared() {
    QFETCH(unsigned, word);
    QFETCH(unsigned, bit);
    QFETCH(unsigned, value);
    setBitValue(word, bit, value);
    QTEST(word, "result");
}

void IORulesTest::fields_of_the_end_signal_by_clear_type_data() {
    QTest::addColumn<int>("clearType");
    QTest::addColumn<bool>("duration");
    QTest::addColumn<bool>("acknowledge");
    QTest::newRow("blocks") << 0 << true << false;
    QTest::newRow("cleared by the next run") << 1 << false << false;
    QTest::newRow("waits for the acknowledge") << 2 << false << true;
    QTest::newRow("clears without blocking") << 3 << true << false;
}

void IORulesTest::fields_of_the_end_signal_by_clear_type() {
    QFETCH(int, clearType);
    const EndSignalFields fields = endSignalFields(clearType);
    QTEST(fields.duration, "duration");
    QTEST(fields.acknowledge, "acknowledge");
}

void IORulesTest::a_clear_type_that_nobody_knows_blocks_for_a_time() {
    for (int type = 0; type < 4; ++type)
        QCOMPARE(knownClearType(type), type);
    for (int type : {-1, 4, 9, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QCOMPARE(knownClearType(type), 0);
}

void IORulesTest::saved_functions_keep_the_running_input_state() {
    IOFuncList edited;
    edited.Name = QStringLiteral("运行");
    edited.LastInput = 1;
    edited.InputMask = 6;
    IOFuncList live = edited;
    live.LastInput = 4;
    live.InputMask = 2;
    IOFuncList own;
    own.Name = QStringLiteral("own");
    own.LastInput = 9;
    const QVector<IOFuncList> result = withLiveInputs({own, edited}, {live});
    QCOMPARE(result.size(), 2);
    QCOMPARE(result[0].LastInput, 9U);
    QCOMPARE(result[1].LastInput, 4U);
    QCOMPARE(result[1].InputMask, 6U);
}

void IORulesTest::channels_by_card_type() {
    QCOMPARE(laserAlarmInputs(0), (std::array<int, 4>{22, 23, 24, 25}));
    for (int type : {1, 2, 3, 4, 5, -1, 9})
        QCOMPARE(laserAlarmInputs(type), (std::array<int, 4>{27, 3, 4, 5}));
}

/// Every state of the four lines, of the enable boxes, of the level boxes and of the alarm before.
void IORulesTest::custom_type_compares_enabled_channels_with_their_levels() {
    for (int cardType : {0, 1}) {
        const std::array<int, 4> bits = laserAlarmInputs(cardType);
        for (unsigned state = 0; state < 1U << 13; ++state) {
            LaserAlarmRule rule;
            unsigned int input = 0;
            bool matches = false;
            for (size_t i = 0; i < 4; ++i) {
                const bool line = state >> i & 1U;
                rule.enabled[i] = state >> (4 + i) & 1U;
                rule.level[i] = state >> (8 + i) & 1U;
                input |= line ? 1U << bits[i] : 0U;
                if (rule.enabled[i] && rule.level[i] == line)
                    matches = true;
            }
            const bool before = state >> 12 & 1U;
            const LaserAlarmResult result = detectLaserAlarm(rule, cardType, input, before);
            QCOMPARE(result.alarm, before || matches);
            QCOMPARE(QString::fromUtf8(result.textKey),
                     result.alarm ? QStringLiteral("激光器报警(与配置IO状态不匹配)") : QString());
        }
    }
}

void IORulesTest::custom_type_without_a_channel_leaves_the_alarm_as_it_was() {
    const LaserAlarmRule rule;
    QVERIFY(!detectLaserAlarm(rule, 1, 0xFFFFFFFFU, false).alarm);
    QCOMPARE(detectLaserAlarm(rule, 1, 0xFFFFFFFFU, false).textKey, "");
    QVERIFY(detectLaserAlarm(rule, 1, 0, true).alarm);
    QCOMPARE(detectLaserAlarm(rule, 1, 0, true).textKey, "激光器报警(与配置IO状态不匹配)");
}

void IORulesTest::coded_type_data() {
    QTest::addColumn<bool>("inverted");
    QTest::addColumn<bool>("b1");
    QTest::addColumn<bool>("b2");
    QTest::addColumn<QString>("text");
    QTest::newRow("both low") << false << false << false << QStringLiteral("温度超标");
    QTest::newRow("first high") << false << true << false << QStringLiteral("PD报警");
    QTest::newRow("second high") << false << false << true << QString();
    QTest::newRow("both high") << false << true << true << QString();
    QTest::newRow("inverted, both high") << true << true << true << QStringLiteral("温度超标");
    QTest::newRow("inverted, second high") << true << false << true << QStringLiteral("PD报警");
    QTest::newRow("inverted, first high") << true << true << false << QString();
    QTest::newRow("inverted, both low") << true << false << false << QString();
}

void IORulesTest::coded_type() {
    QFETCH(bool, inverted);
    QFETCH(bool, b1);
    QFETCH(bool, b2);
    QFETCH(QString, text);
    LaserAlarmRule rule;
    rule.laserType = kLaserTypeCoded;
    rule.inverted = inverted;
    for (int cardType : {0, 5}) {
        const auto bits = laserAlarmInputs(cardType);
        const unsigned int input = (b1 ? 1U << bits[0] : 0U) | (b2 ? 1U << bits[1] : 0U);
        for (bool before : {false, true}) {
            const LaserAlarmResult result = detectLaserAlarm(rule, cardType, input, before);
            QCOMPARE(result.alarm, !text.isEmpty());
            QCOMPARE(QString::fromUtf8(result.textKey), text);
        }
    }
}

void IORulesTest::other_types_never_raise_an_alarm_data() {
    QTest::addColumn<int>("type");
    for (int type : {1, 2, 3, 4, 6, -1})
        QTest::addRow("%d", type) << type;
}

void IORulesTest::other_types_never_raise_an_alarm() {
    LaserAlarmRule rule;
    QFETCH(int, type);
    rule.laserType = type;
    rule.enabled.fill(true);
    for (unsigned int input : {0U, 0xFFFFFFFFU, 0x5A5A5A5AU}) {
        for (bool before : {false, true}) {
            QCOMPARE(detectLaserAlarm(rule, 1, input, before).alarm, before);
            QCOMPARE(detectLaserAlarm(rule, 1, input, before).textKey, "");
        }
    }
}

QTEST_GUILESS_MAIN(IORulesTest)
#include "tst_iorules.moc"

// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "shell/cardstatuswords.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>
#include <random>

using namespace tests;
using tessera::CardLamp;

namespace {

/// The lamps that are on with a mark information word.
QSet<int> lampsOf(std::uint32_t word) {
    QSet<int> on;
    for (tessera::CardLampRule const& rule : tessera::kCardLampRules) {
        if (tessera::CardLampIsOn(rule, word))
            on.insert(static_cast<int>(rule.lamp));
    }
    return on;
}

QSet<int> only(CardLamp lamp) {
    return {static_cast<int>(lamp)};
}

/// What a scan state word says, written down bit by bit without the table.
QString expectedText(std::uint32_t word) {
    QStringList lines;
    switch (word % 4) {
    case 0:
        lines << QStringLiteral("开环未知");
        break;
    case 2:
        lines << QStringLiteral("闭环异常");
        break;
    case 3:
        lines << QStringLiteral("闭环正常");
        break;
    default:
        lines << QString();
    }
    auto line = [&](int bit, char const* text) {
        if (word >> bit & 1u)
            lines << QString::fromUtf8(text);
    };
    line(14, "通迅校验异常");
    line(13, "Y位置异常");
    line(12, "X位置异常");
    line(11, "电源异常");
    line(10, "过流");
    line(9, "初始化中");
    lines << QString::fromUtf8(word & 256 ? "闭环振镜" : "开环振镜");
    line(7, "Y无反馈");
    line(6, "X无反馈");
    line(5, "Y振镜报警");
    line(4, "X振镜报警");
    line(3, "Y反馈位置异常");
    line(2, "X反馈位置异常");
    return lines.join(QStringLiteral("\r\n"));
}

} // namespace

/// What the status words of the card and of the scan head say.
class CardStatusWordsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QVERIFY(m_Root.isValid());
        LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
    }

    void a_single_bit_lights_its_lamp_data() {
        QTest::addColumn<int>("bit");
        QTest::addColumn<QSet<int>>("lamps");
        const QMap<int, QSet<int>> known{
            {0, only(CardLamp::Running)},     {8, only(CardLamp::Succeeded)},  {9, only(CardLamp::Stopped)},
            {10, only(CardLamp::DataCutOff)}, {20, only(CardLamp::WaitInput)}, {21, only(CardLamp::WaitExMotion)},
            {22, only(CardLamp::WaitMirror)}, {24, only(CardLamp::Paused)},    {25, only(CardLamp::IOTimeOut)},
        };
        for (int bit = 0; bit < 32; ++bit)
            QTest::addRow("bit %d", bit) << bit << known.value(bit);
    }
    void a_single_bit_lights_its_lamp() {
        QFETCH(int, bit);
        QFETCH(QSet<int>, lamps);
        QCOMPARE(lampsOf(1u << bit), lamps);
    }

    void a_wait_number_lights_one_lamp_or_none_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<QSet<int>>("lamps");
        const QSet<int> numbered[] = {{},
                                      only(CardLamp::WaitInput),
                                      only(CardLamp::WaitExMotion),
                                      only(CardLamp::WaitEncoder),
                                      only(CardLamp::WaitMirror)};
        for (int number = 0; number < 16; ++number)
            QTest::addRow("%d", number) << number << (number < 5 ? numbered[number] : QSet<int>());
    }
    void a_wait_number_lights_one_lamp_or_none() {
        QFETCH(int, number);
        QFETCH(QSet<int>, lamps);
        QCOMPARE(lampsOf(static_cast<std::uint32_t>(number) << 20), lamps);
        lamps.insert(static_cast<int>(CardLamp::Running));
        QCOMPARE(lampsOf(static_cast<std::uint32_t>(number) << 20 | 1u), lamps);
    }

    void no_bit_is_no_lamp_and_all_bits_are_all_but_the_waits() {
        QVERIFY(lampsOf(0).isEmpty());
        QCOMPARE(lampsOf(0xFFFFFFFFu),
                 (QSet<int>{int(CardLamp::Running), int(CardLamp::Paused), int(CardLamp::IOTimeOut),
                            int(CardLamp::DataCutOff), int(CardLamp::Stopped), int(CardLamp::Succeeded)}));
    }

    void every_lamp_has_one_rule() {
        QSet<int> lamps;
        for (tessera::CardLampRule const& rule : tessera::kCardLampRules)
            lamps.insert(static_cast<int>(rule.lamp));
        QCOMPARE(lamps.size(), int(tessera::kCardLampRules.size()));
        QCOMPARE(lamps.size(), 10);
    }

    void random_words_light_at_most_one_wait_lamp() {
        std::mt19937 random(20261121);
        const QSet<int> waits{int(CardLamp::WaitInput), int(CardLamp::WaitExMotion), int(CardLamp::WaitEncoder),
                              int(CardLamp::WaitMirror)};
        int lit = 0;
        for (int i = 0; i < 100000; ++i) {
            const std::uint32_t word = random();
            const QSet<int> on = lampsOf(word);
            const int number = int(word >> 20 & 15u);
            QCOMPARE((on & waits).size(), number >= 1 && number <= 4 ? 1 : 0);
            QCOMPARE(on.contains(int(CardLamp::Running)), (word & 1u) != 0);
            lit += (on & waits).size();
        }
        QVERIFY(lit > 10000);
    }

    void the_state_of_the_loop_comes_first_data() {
        QTest::addColumn<int>("word");
        QTest::addColumn<QString>("text");
        QTest::newRow("unknown") << 0 << QStringLiteral("开环未知\r\n开环振镜");
        QTest::newRow("no text") << 1 << QStringLiteral("\r\n开环振镜");
        QTest::newRow("disturbed") << 2 << QStringLiteral("闭环异常\r\n开环振镜");
        QTest::newRow("good") << 3 << QStringLiteral("闭环正常\r\n开环振镜");
        QTest::newRow("good closed-loop head") << 0x103 << QStringLiteral("闭环正常\r\n闭环振镜");
    }
    void the_state_of_the_loop_comes_first() {
        QFETCH(int, word);
        QFETCH(QString, text);
        QCOMPARE(tessera::ScanStateText(static_cast<std::uint32_t>(word)), text);
    }

    void a_single_bit_has_its_line_data() {
        QTest::addColumn<int>("bit");
        QTest::addColumn<QString>("text");
        const QMap<int, QString> above{{14, "通迅校验异常"}, {13, "Y位置异常"}, {12, "X位置异常"},
                                       {11, "电源异常"},     {10, "过流"},      {9, "初始化中"}};
        const QMap<int, QString> below{{7, "Y无反馈"},   {6, "X无反馈"},       {5, "Y振镜报警"},
                                       {4, "X振镜报警"}, {3, "Y反馈位置异常"}, {2, "X反馈位置异常"}};
        for (int bit = 2; bit < 32; ++bit) {
            QString text = QStringLiteral("开环未知\r\n开环振镜");
            if (above.contains(bit))
                text = QStringLiteral("开环未知\r\n%1\r\n开环振镜").arg(above.value(bit));
            else if (below.contains(bit))
                text += QStringLiteral("\r\n") + below.value(bit);
            else if (bit == 8)
                text = QStringLiteral("开环未知\r\n闭环振镜");
            QTest::addRow("bit %d", bit) << bit << text;
        }
    }
    void a_single_bit_has_its_line() {
        QFETCH(int, bit);
        QFETCH(QString, text);
        QCOMPARE(tessera::ScanStateText(1u << bit), text);
    }

    void every_word_of_the_head_reads_as_its_bits() {
        for (std::uint32_t word = 0; word < 0x8000u; ++word)
            QCOMPARE(tessera::ScanStateText(word), expectedText(word));
        QCOMPARE(tessera::ScanStateText(0xFFFF8103u), expectedText(0x103u));
    }

    void an_english_line_keeps_the_axis_apart() {
        LanguageManager::SetCurrentLan(QStringLiteral("en"));
        QCOMPARE(tessera::ScanStateText(0x2113u),
                 QStringLiteral("Closed loop OK\r\nY position error\r\nClosed-loop scanner\r\nX scanner alarm"));
        LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
    }

private:
    TemporaryRoot m_Root;
};

QTEST_GUILESS_MAIN(CardStatusWordsTest)
#include "tst_cardstatuswords.moc"

// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "shell/alarmmask.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>
#include <thread>

using namespace tessera;

class AlarmMaskTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void every_bit_has_its_text_data();
    void every_bit_has_its_text();
    void texts_come_in_the_order_of_the_bits();
    void ready_and_door_5_do_not_refuse_a_start();
    void bits_are_set_and_cleared_together();
    void words_are_translated_one_by_one();
    void threads_may_set_and_ask_at_the_same_time();

private:
    tests::TemporaryRoot m_Root;
};

void AlarmMaskTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void AlarmMaskTest::every_bit_has_its_text_data() {
    QTest::addColumn<unsigned int>("bit");
    QTest::addColumn<QString>("text");
    const struct {
        unsigned int bit;
        char const* text;
    } rows[] = {{2, "安全门1报警"},   {4, "安全门2报警"}, {8, "安全门3报警"},  {16, "安全门4报警"},
                {64, "安全光幕触发"}, {128, "急停"},      {256, "激光器报警"}, {512, "水冷机报警"}};
    for (auto const& row : rows)
        QTest::newRow(row.text) << row.bit << QString::fromUtf8(row.text);
}

void AlarmMaskTest::every_bit_has_its_text() {
    QFETCH(unsigned int, bit);
    QFETCH(QString, text);
    QVERIFY(LanguageManager::SetCurrentLan(QStringLiteral("zh_CN")));
    AlarmMask mask;
    mask.LoadTexts();
    mask.Set(true, bit);
    QCOMPARE(mask.ActiveTexts(), QVector<QString>{text});
    mask.Set(false, bit);
    QVERIFY(mask.ActiveTexts().isEmpty());
}

void AlarmMaskTest::texts_come_in_the_order_of_the_bits() {
    AlarmMask mask;
    mask.LoadTexts();
    mask.Set(true, AlarmChiller);
    mask.Set(true, AlarmDoor3 | AlarmEmergencyStop);
    QCOMPARE(mask.ActiveTexts(),
             (QVector<QString>{QStringLiteral("安全门3报警"), QStringLiteral("急停"), QStringLiteral("水冷机报警")}));
}

void AlarmMaskTest::ready_and_door_5_do_not_refuse_a_start() {
    AlarmMask mask;
    mask.LoadTexts();
    mask.Set(true, AlarmReady | AlarmDoor5);
    QCOMPARE(mask.Mask(), 33U);
    QVERIFY(mask.ActiveTexts().isEmpty());
}

void AlarmMaskTest::bits_are_set_and_cleared_together() {
    AlarmMask mask;
    QCOMPARE(mask.Mask(), 0U);
    mask.Set(true, 6);
    QVERIFY(mask.IsSet(2));
    QVERIFY(mask.IsSet(12));
    QVERIFY(!mask.IsSet(8));
    mask.Set(false, 2 | 512);
    QCOMPARE(mask.Mask(), 4U);
    mask.Set(true, 4);
    QCOMPARE(mask.Mask(), 4U);
}

void AlarmMaskTest::words_are_translated_one_by_one() {
    QVERIFY(LanguageManager::SetCurrentLan(QStringLiteral("en")));
    AlarmMask mask;
    mask.LoadTexts();
    mask.Set(true, AlarmDoor2);
    const QString text = mask.ActiveTexts().value(0);
    QVERIFY(LanguageManager::SetCurrentLan(QStringLiteral("zh_CN")));
    QVERIFY2(text.contains(QLatin1Char('2')), qPrintable(text));
    QVERIFY2(!text.contains(QStringLiteral("安全门")), qPrintable(text));
}

void AlarmMaskTest::threads_may_set_and_ask_at_the_same_time() {
    AlarmMask mask;
    mask.LoadTexts();
    std::vector<std::thread> crowd;
    for (unsigned int bit : {2U, 4U, 8U, 16U}) {
        crowd.emplace_back([&mask, bit] {
            for (int i = 0; i < 2000; ++i) {
                mask.Set(true, bit);
                mask.ActiveTexts();
                mask.Set(false, bit);
            }
            mask.Set(true, bit);
        });
    }
    for (std::thread& thread : crowd)
        thread.join();
    QCOMPARE(mask.Mask(), 30U);
}

QTEST_GUILESS_MAIN(AlarmMaskTest)
#include "tst_alarmmask.moc"

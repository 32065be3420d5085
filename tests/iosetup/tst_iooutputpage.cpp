// SPDX-License-Identifier: MIT
#include "engine/glassparam.h"
#include "engine/iooutputset.h"
#include "engine/languagemanager.h"
#include "tests/iosetup/iosettingfixture.h"

#include <QDoubleSpinBox>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabWidget>

using namespace tests;

/// The output page of the I/O dialog: end signal, lamps, switches, doors.
class IOOutputPageTest : public QObject, private IOSettingCase {
    Q_OBJECT

private slots:
    void init() { beginCase(); }
    void cleanup() { endCase(); }
    void clear_type_opens_its_fields_data();
    void clear_type_opens_its_fields();
    void end_signal_box_opens_its_group();
    void output_page_stores_every_value();
    void red_light_is_stored_without_an_output();
    void names_of_switches_follow_the_language_until_they_are_typed();
    void door_stops_or_pauses_data();
    void door_stops_or_pauses();
    void the_page_is_seen_whole_on_a_small_screen_data();
    void the_page_is_seen_whole_on_a_small_screen();
};

void IOOutputPageTest::clear_type_opens_its_fields_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("duration");
    QTest::addColumn<bool>("acknowledge");
    QTest::newRow("0") << 0 << "阻塞一段时间" << true << false;
    QTest::newRow("1") << 1 << "下次运行关闭" << false << false;
    QTest::newRow("2") << 2 << "等待应答信号" << false << true;
    QTest::newRow("3") << 3 << "多线程阻塞" << true << false;
}

void IOOutputPageTest::clear_type_opens_its_fields() {
    QFETCH(int, type);
    QFETCH(bool, acknowledge);
    box("checkBoxEndSignal")->setChecked(true);
    combo("comboBoxClearType")->setCurrentIndex((type + 1) % 4);
    combo("comboBoxClearType")->setCurrentIndex(type);
    QTEST(combo("comboBoxClearType")->currentText(), "text");
    QTEST(spin("spinBoxDuration")->isEnabled(), "duration");
    QCOMPARE(spin("spinBoxAckInput")->isEnabled(), acknowledge);
    QCOMPARE(combo("comboBoxAckLevel")->isEnabled(), acknowledge);
    QCOMPARE(spin("spinBoxAckTimeout")->isEnabled(), acknowledge);
}

void IOOutputPageTest::end_signal_box_opens_its_group() {
    auto* group = part<QWidget>(dialog(), "widgetEndSignal");
    box("checkBoxEndSignal")->setChecked(true);
    QVERIFY(group->isEnabled());
    box("checkBoxEndSignal")->setChecked(false);
    QVERIFY(!group->isEnabled());
}

void IOOutputPageTest::output_page_stores_every_value() {
    box("checkBoxEndSignal")->setChecked(true);
    box("checkBoxSelfCheck")->setChecked(true);
    box("checkBoxStopHasEndSig")->setChecked(true);
    box("checkBoxOutputInv")->setChecked(true);
    box("checkBoxReady")->setChecked(true);
    combo("comboBoxEndLevel")->setCurrentIndex(0);
    combo("comboBoxClearType")->setCurrentIndex(2);
    combo("comboBoxAckLevel")->setCurrentIndex(1);
    const std::pair<char const*, int> numbers[] = {
        {"spinBoxEndOutput", 4}, {"spinBoxDuration", 250}, {"spinBoxAckInput", 6}, {"spinBoxAckTimeout", 70},
        {"spinBoxRed", 11},      {"spinBoxGreen", 12},     {"spinBoxYellow", 13},  {"spinBoxBuzzer", -1},
        {"spinBoxReady", 15},    {"spinBoxGasOutput", 16},
    };
    for (auto const& [name, value] : numbers)
        spin(name)->setValue(value);
    part<QDoubleSpinBox>(dialog(), "doubleSpinBoxGasTime")->setValue(33.5);
    QSignalSpy updates(&dialog(), &IOSetting::UpdateValues);
    button("pushButtonSaveOut")->click();
    QCOMPARE(updates.size(), 1);
    const QByteArray file = root->read(QStringLiteral("/ini/IOOutput.ini"));
    IOOutputSet* outputs = IOOutputSet::Instance();
    bool enable = false;
    bool check = false;
    int n[7] = {};
    outputs->GetEndSignal(enable, n[0], n[1], n[2], n[3], n[4], n[5], n[6], check);
    QVERIFY(enable && check);
    const int expected[] = {4, 0, 2, 250, 6, 1, 70};
    for (int i = 0; i < 7; ++i)
        QCOMPARE(n[i], expected[i]);
    outputs->GetLight(n[0], n[1], n[2], n[3]);
    QVERIFY(n[0] == 11 && n[1] == 12 && n[2] == 13 && n[3] == -1);
    QVERIFY(outputs->IsOutputInv() && outputs->m_bStopHasEndSig && outputs->EnableReadyOut());
    QCOMPARE(outputs->GetReadyOut(), 15);
    QString name;
    double time = 0;
    outputs->GetProtectGas(n[0], time, name);
    QCOMPARE(n[0], 16);
    QCOMPARE(time, 33.5);
    outputs->SetOutputInv(false);
    outputs->SetEndSignal(false, 13, 1, 0, 100, 16, 1, 1000, false);
    outputs->m_bStopHasEndSig = false;
}

void IOOutputPageTest::red_light_is_stored_without_an_output() {
    IOOutputSet* outputs = IOOutputSet::Instance();
    int bit = 5;
    outputs->SetRedLight(bit, QStringLiteral("Pilot"));
    dialog().InitOutput();
    QCOMPARE(edit("lineEditRedLight")->text(), QStringLiteral("Pilot"));
    edit("lineEditRedLight")->setText(QStringLiteral("Beam"));
    button("pushButtonSaveOut")->click();
    QString name;
    outputs->GetRedLight(bit, name);
    QCOMPARE(bit, -1);
    QCOMPARE(name, QStringLiteral("Beam"));
}

void IOOutputPageTest::names_of_switches_follow_the_language_until_they_are_typed() {
    IOOutputSet* outputs = IOOutputSet::Instance();
    int bit = -1;
    double time = 20.0;
    outputs->SetRedLight(bit, QString());
    outputs->SetProtectGas(bit, time, QStringLiteral("ProcGas"));
    dialog().InitOutput();
    QCOMPARE(edit("lineEditRedLight")->text(), QStringLiteral("指示红光"));
    QCOMPARE(edit("lineEditGas")->text(), QStringLiteral("保护气体"));
    button("pushButtonSaveOut")->click();
    QString name;
    outputs->GetProtectGas(bit, time, name);
    QCOMPARE(name, QStringLiteral("ProcGas"));
}

void IOOutputPageTest::door_stops_or_pauses_data() {
    QTest::addColumn<QString>("choice");
    QTest::addColumn<int>("type");
    QTest::newRow("stops") << "radioButtonStop" << 0;
    QTest::newRow("pauses") << "radioButtonPause" << 1;
}

void IOOutputPageTest::door_stops_or_pauses() {
    QFETCH(QString, choice);
    QFETCH(int, type);
    GlassParam::Instance()->SetSafeTrigerType(type == 0 ? SafeTrigerPause : SafeTrigerStop);
    dialog().InitOutput();
    QVERIFY(!part<QRadioButton>(dialog(), choice)->isChecked());
    part<QRadioButton>(dialog(), choice)->click();
    button("pushButtonSaveOut")->click();
    QCOMPARE(int(GlassParam::Instance()->GetSafeTrigerType()), type);
    GlassParam::Instance()->SetSafeTrigerType(SafeTrigerStop);
}

void IOOutputPageTest::the_page_is_seen_whole_on_a_small_screen_data() {
    QTest::addColumn<QString>("language");
    for (char const* language : {"zh_CN", "en"})
        QTest::newRow(language) << QString::fromLatin1(language);
}

void IOOutputPageTest::the_page_is_seen_whole_on_a_small_screen() {
    QFETCH(QString, language);
    QVERIFY(LanguageManager::SetCurrentLan(language));
    dialog().setStyleSheet(styleSheet());
    dialog().resize(1000, 560);
    dialog().ShowWindow();
    part<QTabWidget>(dialog(), "tabWidget")->setCurrentIndex(1);
    QCOMPARE(dialog().size(), QSize(1000, 560));
    auto const* area = part<QScrollArea>(dialog(), "scrollAreaOutputPage");
    QTRY_COMPARE(area->verticalScrollBar()->maximum(), 0);
    QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
    QVERIFY(LanguageManager::SetCurrentLan(QStringLiteral("zh_CN")));
}

QTEST_MAIN(IOOutputPageTest)
#include "tst_iooutputpage.moc"

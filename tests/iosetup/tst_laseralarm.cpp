// SPDX-License-Identifier: MIT
#include "engine/languagemanager.h"
#include "engine/markingmparam_vz.h"
#include "iosetup/laseralarmpara.h"
#include "iosetup/laseralarmset.h"
#include "tests/iosetup/iosetupfixture.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTextEdit>

using namespace tests;

namespace {

constexpr char kMismatch[] = "激光器报警(与配置IO状态不匹配)";

/// The file after everything was set away from its default.
constexpr char kGolden[] = "[LaserAlarm]\n"
                           "m_EnableLaserAlarm=1\n"
                           "m_LaserType=5\n"
                           "m_CheckIn1=1\n"
                           "m_CheckIn2=0\n"
                           "m_CheckIn3=1\n"
                           "m_CheckIn4=0\n"
                           "m_CheckMask1=0\n"
                           "m_CheckMask2=1\n"
                           "m_CheckMask3=0\n"
                           "m_CheckMask4=1\n"
                           "m_ResetOut=7\n"
                           "m_CheckNeg=1\n";

} // namespace

/// The laser's fault lines on the simulated card, and their dialog.
class LaserAlarmTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        root = std::make_unique<TemporaryRoot>();
        card = std::make_unique<OpenCard>();
        MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYLR);
        para().ReadPara();
        para().m_Alarm = false;
    }
    void cleanup() {
        card.reset();
        root.reset();
    }
    void a_missing_file_gives_the_settings_as_delivered();
    void the_file_is_as_written_before();
    void any_number_but_zero_is_a_set_flag();
    void detection_drives_the_error_output();
    void supervision_follows_the_input_while_the_dialog_latches();
    void reset_without_an_output_clears_at_once_without_a_pulse();
    void reset_pulses_its_output_for_a_fifth_of_a_second();
    void a_detection_within_the_pulse_raises_the_alarm_again();
    void the_dialog_may_be_closed_within_the_pulse();
    void widgets_have_their_texts_data();
    void widgets_have_their_texts();
    void channels_show_their_inputs_data();
    void channels_show_their_inputs();
    void channels_and_help_show_for_the_custom_type_only();
    void a_custom_alarm_stays_red_until_it_is_cleared();
    void the_coded_type_clears_itself();
    void faults_of_the_machines_laser_are_told_and_reset_data();
    void faults_of_the_machines_laser_are_told_and_reset();
    void a_feature_that_is_off_is_not_looked_at();
    void save_takes_all_controls();
    void the_window_is_a_tool_on_top_that_ends_with_closing();

private:
    static LaserAlarmPara& para() { return *LaserAlarmPara::Instance(); }
    std::unique_ptr<TemporaryRoot> root;
    std::unique_ptr<OpenCard> card;
};

void LaserAlarmTest::a_missing_file_gives_the_settings_as_delivered() {
    para().m_ResetOut = 5;
    para().m_CheckIn[2] = true;
    para().m_EnableLaserAlarm = true;
    para().ReadPara();
    QVERIFY(!para().m_EnableLaserAlarm && !para().m_CheckNeg);
    QCOMPARE(para().m_LaserType, 0);
    QCOMPARE(para().m_ResetOut, -1);
    for (int i = 0; i < 4; ++i)
        QVERIFY(!para().m_CheckIn[i] && !para().m_CheckMask[i]);
    QVERIFY(!root->exists(QStringLiteral("/ini/UserINI.ini")));
}

void LaserAlarmTest::the_file_is_as_written_before() {
    para().m_EnableLaserAlarm = true;
    para().m_LaserType = 5;
    para().m_CheckIn[0] = para().m_CheckIn[2] = true;
    para().m_CheckMask[1] = para().m_CheckMask[3] = true;
    para().m_ResetOut = 7;
    para().m_CheckNeg = true;
    para().m_Alarm = true;
    para().SavePara();
    QCOMPARE(root->read(QStringLiteral("/ini/UserINI.ini")), QByteArray(kGolden));
    QVERIFY(root->write(QStringLiteral("/ini/UserINI.ini"), "; ours\n[Other]\na=b\n" + QByteArray(kGolden)));
    para().m_LaserType = 0;
    para().SavePara();
    QCOMPARE(root->read(QStringLiteral("/ini/UserINI.ini")),
             "; ours\n[Other]\na=b\n" + QByteArray(kGolden).replace("Type=5", "Type=0"));
}

void LaserAlarmTest::any_number_but_zero_is_a_set_flag() {
    QVERIFY(root->write(QStringLiteral("/ini/UserINI.ini"),
                        "[LaserAlarm]\nm_EnableLaserAlarm=-3\nm_CheckIn1=2\nm_CheckMask4=9\nm_CheckNeg=no\n"));
    para().ReadPara();
    QVERIFY(para().m_EnableLaserAlarm && para().m_CheckIn[0] && para().m_CheckMask[3] && !para().m_CheckNeg);
}

void LaserAlarmTest::detection_drives_the_error_output() {
    para().m_CheckIn[0] = para().m_CheckMask[0] = true;
    bool alarm = false;
    QCOMPARE(para().DetectAlarm(alarm), QString());
    QVERIFY(!alarm && !para().m_Alarm && !OpenCard::errorOutput());
    OpenCard::setInputs(1U << 27);
    QCOMPARE(para().DetectAlarm(alarm), QString::fromUtf8(kMismatch));
    QVERIFY(alarm && para().m_Alarm && OpenCard::errorOutput());
    COMPARE_JOURNAL(OpenCard::calls({"VZ_OutputError"}), {call("VZ_OutputError", 0), call("VZ_OutputError", 1)});
}

void LaserAlarmTest::supervision_follows_the_input_while_the_dialog_latches() {
    para().m_CheckIn[1] = para().m_CheckMask[1] = true;
    OpenCard::setInputs(1U << 3);
    bool first = false;
    para().DetectAlarm(first);
    QVERIFY(first);
    OpenCard::setInputs(0);
    para().DetectAlarm(para().m_Alarm); // the dialog's way
    QVERIFY(para().m_Alarm);
    bool next = false; // the supervision's way
    QCOMPARE(para().DetectAlarm(next), QString());
    QVERIFY(!next && !para().m_Alarm && !OpenCard::errorOutput());
}

void LaserAlarmTest::reset_without_an_output_clears_at_once_without_a_pulse() {
    para().m_Alarm = true;
    para().ResetAlarm();
    QVERIFY(!para().m_Alarm);
    COMPARE_JOURNAL(OpenCard::calls({"SetOutputBit", "VZ_OutputError"}), {call("VZ_OutputError", 0)});
}

void LaserAlarmTest::reset_pulses_its_output_for_a_fifth_of_a_second() {
    para().m_ResetOut = 7;
    para().m_Alarm = true;
    para().ResetAlarm();
    QVERIFY(!para().m_Alarm);
    const auto calls = OpenCard::calls({"SetOutputBit", "VZ_OutputError"});
    COMPARE_JOURNAL(calls, {call("SetOutputBit", 7, 1), call("VZ_OutputError", 0), call("SetOutputBit", 7, 0)});
    QVERIFY(calls.at(2).timeMs - calls.at(0).timeMs >= 199.0);
}

void LaserAlarmTest::a_detection_within_the_pulse_raises_the_alarm_again() {
    para().m_ResetOut = 7;
    para().m_CheckIn[0] = true; // low is the fault
    QTimer::singleShot(50, this, [] { para().DetectAlarm(para().m_Alarm); });
    para().ResetAlarm();
    QVERIFY(para().m_Alarm && OpenCard::errorOutput());
    QCOMPARE(OpenCard::outputs(), 0U);
}

void LaserAlarmTest::the_dialog_may_be_closed_within_the_pulse() {
    para().m_ResetOut = 9;
    para().SavePara();
    QPointer<LaserAlarmSet> dialog = new LaserAlarmSet;
    dialog->show();
    QTimer::singleShot(20, dialog, [dialog] { delete dialog; });
    dialog->on_pushButtonReset_clicked();
    QVERIFY(!dialog);
    QCOMPARE(OpenCard::outputs(), 0U);
}

void LaserAlarmTest::widgets_have_their_texts_data() {
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("text");
    QTest::newRow("checkBoxEnableLaserAlarm") << "text"
                                              << "启用激光器报警";
    QTest::newRow("labelLaserType") << "text"
                                    << "激光器类型";
    QTest::newRow("checkNeg") << "text"
                              << "报警信号取反";
    QTest::newRow("groupBoxReset") << "title"
                                   << "报警清除(请先设置正确的IO号)";
    QTest::newRow("groupBoxInfo") << "title"
                                  << "报警信息";
    QTest::newRow("labelResetOut") << "text"
                                   << "IO";
    QTest::newRow("pushButtonReset") << "text"
                                     << "清除报警";
    QTest::newRow("pushButtonSavePara") << "text"
                                        << "保存";
    QTest::newRow("labelAlarmState") << "text"
                                     << "激光器正常";
    QTest::newRow("labelHelp") << "text"
                               << "0=自定义类型\n1=SPI\n2=Fiber\n3=Fiber MOPA-HFM\n4=Fiber IPG脉宽E27418\n5=Fiber 创鑫";
}

void LaserAlarmTest::widgets_have_their_texts() {
    LaserAlarmSet dialog;
    QFETCH(QString, property);
    QFETCH(QString, text);
    auto* widget = part<QWidget>(dialog, QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(widget->property(property.toLatin1()).toString(), text);
}

void LaserAlarmTest::channels_show_their_inputs_data() {
    QTest::addColumn<int>("cardType");
    QTest::addColumn<QStringList>("labels");
    QTest::newRow("0") << 0 << QStringList{"22", "23", "24", "25"};
    for (int type = 1; type < 6; ++type)
        QTest::addRow("%d", type) << type << QStringList{"27", "3", "4", "5"};
}

void LaserAlarmTest::channels_show_their_inputs() {
    QFETCH(int, cardType);
    QFETCH(QStringList, labels);
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardType(cardType));
    LaserAlarmSet dialog;
    for (int i = 0; i < 4; ++i)
        QCOMPARE(part<QLabel>(dialog, QStringLiteral("labelIn%1").arg(i + 1))->text(), labels.at(i));
}

void LaserAlarmTest::channels_and_help_show_for_the_custom_type_only() {
    LaserAlarmSet dialog;
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.show();
    auto* type = part<QSpinBox>(dialog, "spinBoxLaserType");
    QStringList names = {"labelHelp"};
    for (int i = 1; i <= 4; ++i)
        names << QStringLiteral("labelIn%1").arg(i) << QStringLiteral("checkBoxIn%1").arg(i)
              << QStringLiteral("checkBoxMask%1").arg(i);
    QCOMPARE(type->maximum(), 5);
    for (int value : {5, 0, 1, 2, 3, 4, 0}) {
        type->setValue(value);
        for (QString const& name : names)
            QCOMPARE(part<QWidget>(dialog, name)->isVisible(), value == 0);
    }
}

void LaserAlarmTest::a_custom_alarm_stays_red_until_it_is_cleared() {
    para().m_EnableLaserAlarm = true;
    para().m_CheckIn[2] = para().m_CheckMask[2] = true;
    para().SavePara();
    LaserAlarmSet dialog;
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    auto* state = part<QLabel>(dialog, "labelAlarmState");
    auto* picture = part<QLabel>(dialog, "labelAlarmImg");
    auto* info = part<QTextEdit>(dialog, "textEditShowInfo");
    const QImage green = picture->pixmap(Qt::ReturnByValue).toImage();
    QVERIFY(!green.isNull());
    dialog.show();
    QSignalSpy looks(&dialog, &LaserAlarmSet::AlarmChanged);
    OpenCard::setInputs(1U << 4);
    QTRY_COMPARE(state->text(), QStringLiteral("激光器报警"));
    QCOMPARE(info->toPlainText(), QString::fromUtf8(kMismatch));
    QVERIFY(picture->pixmap(Qt::ReturnByValue).toImage() != green);
    OpenCard::setInputs(0);
    looks.clear();
    QTRY_VERIFY(looks.size() >= 2);
    QCOMPARE(state->text(), QStringLiteral("激光器报警"));
    QTest::mouseClick(part<QPushButton>(dialog, "pushButtonReset"), Qt::LeftButton);
    QCOMPARE(state->text(), QStringLiteral("激光器正常"));
    QCOMPARE(info->toPlainText(), QString());
    QCOMPARE(picture->pixmap(Qt::ReturnByValue).toImage(), green);
    looks.clear();
    QTRY_VERIFY(looks.size() >= 2);
    QCOMPARE(state->text(), QStringLiteral("激光器正常"));
}

void LaserAlarmTest::the_coded_type_clears_itself() {
    para().m_EnableLaserAlarm = true;
    para().m_LaserType = 5;
    para().SavePara();
    LaserAlarmSet dialog;
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.show();
    auto* info = part<QTextEdit>(dialog, "textEditShowInfo");
    QTRY_COMPARE(info->toPlainText(), QStringLiteral("温度超标"));
    OpenCard::setInputs(1U << 27);
    QTRY_COMPARE(info->toPlainText(), QStringLiteral("PD报警"));
    OpenCard::setInputs(1U << 3);
    QTRY_COMPARE(info->toPlainText(), QString());
    QCOMPARE(part<QLabel>(dialog, "labelAlarmState")->text(), QStringLiteral("激光器正常"));
    QVERIFY(!OpenCard::errorOutput());
}

void LaserAlarmTest::faults_of_the_machines_laser_are_told_and_reset_data() {
    QTest::addColumn<int>("cardType");
    QTest::addColumn<bool>("inverted");
    for (const int type : {int(MarkCardFilber), int(MarkCardYLR)})
        for (const bool inverted : {false, true})
            QTest::addRow("card %d, inverted %d", type, int(inverted)) << type << inverted;
}

/// Supervision, wiring and reset output on one machine, by the file that the front end writes.
void LaserAlarmTest::faults_of_the_machines_laser_are_told_and_reset() {
    QFETCH(int, cardType);
    QFETCH(bool, inverted);
    MarkingMParam_VZ::Instance()->SetMarkCardType(static_cast<MarkCardType>(cardType));
    para().m_EnableLaserAlarm = true;
    para().m_LaserType = 5;
    para().m_CheckNeg = inverted;
    para().m_ResetOut = 7;
    para().SavePara();
    card.reset();
    card = std::make_unique<OpenCard>();
    bool alarm = false;
    QCOMPARE(para().DetectAlarm(alarm), QString());
    QVERIFY(!alarm);
    for (auto const& [fault, text] : {std::pair("laser_temperature", "温度超标"), std::pair("laser_pd", "PD报警")}) {
        QVERIFY(tessera_sim_control()->setFault(fault, true));
        QCOMPARE(para().DetectAlarm(alarm), QString::fromUtf8(text));
        QVERIFY(alarm);
        para().ResetAlarm();
        QVERIFY(!tessera_sim_control()->faultIsOn(fault));
        QCOMPARE(para().DetectAlarm(alarm), QString());
        QVERIFY(!alarm);
    }
}

void LaserAlarmTest::a_feature_that_is_off_is_not_looked_at() {
    para().m_CheckIn[0] = true;
    para().SavePara();
    LaserAlarmSet dialog;
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    QSignalSpy looks(&dialog, &LaserAlarmSet::AlarmChanged);
    dialog.show();
    QVERIFY(!looks.wait(350));
    QCOMPARE(OpenCard::calls({"VZ_OutputError"}).size(), 0);
}

void LaserAlarmTest::save_takes_all_controls() {
    LaserAlarmSet dialog;
    part<QCheckBox>(dialog, "checkBoxEnableLaserAlarm")->setChecked(true);
    for (char const* name : {"checkBoxIn1", "checkBoxIn3", "checkBoxMask2", "checkBoxMask4", "checkNeg"})
        part<QCheckBox>(dialog, name)->setChecked(true);
    part<QSpinBox>(dialog, "spinBoxResetOut")->setValue(7);
    part<QSpinBox>(dialog, "spinBoxLaserType")->setValue(5);
    QVERIFY(!para().m_EnableLaserAlarm);
    part<QPushButton>(dialog, "pushButtonSavePara")->click();
    QVERIFY(para().m_EnableLaserAlarm && para().m_CheckNeg);
    QCOMPARE(root->read(QStringLiteral("/ini/UserINI.ini")), QByteArray(kGolden));
    LaserAlarmSet again;
    QCOMPARE(part<QSpinBox>(again, "spinBoxLaserType")->value(), 5);
    QVERIFY(part<QCheckBox>(again, "checkBoxIn3")->isChecked() &&
            !part<QCheckBox>(again, "checkBoxMask3")->isChecked());
}

void LaserAlarmTest::the_window_is_a_tool_on_top_that_ends_with_closing() {
    QPointer<LaserAlarmSet> dialog = new LaserAlarmSet;
    QCOMPARE(dialog->windowFlags() & Qt::WindowType_Mask, Qt::WindowFlags(Qt::Tool));
    QVERIFY(dialog->windowFlags() & Qt::WindowStaysOnTopHint);
    dialog->show();
    dialog->close();
    QTRY_VERIFY(!dialog);
}

QTEST_MAIN(LaserAlarmTest)
#include "tst_laseralarm.moc"

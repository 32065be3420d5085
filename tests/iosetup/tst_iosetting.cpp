// SPDX-License-Identifier: MIT
#include "engine/glassparam.h"
#include "engine/iocheckedsys.h"
#include "engine/iooutputset.h"
#include "engine/markingmparam_vz.h"
#include "iosetup/iosetting.h"
#include "tests/iosetup/iosetupfixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabWidget>

using namespace tests;

namespace {

QStringList g_Warnings;

void keepWarnings(QtMsgType type, QMessageLogContext const&, QString const& message) {
    // The windowless platform tells of window features that it lacks.
    if (type != QtDebugMsg && !message.startsWith(QLatin1String("This plugin does not support")))
        g_Warnings.append(message);
}

bool same(IOFuncList const& a, IOFuncList const& b) {
    return a.Name == b.Name && a.Reserved == b.Reserved && a.InputEnable == b.InputEnable &&
           a.InputMask == b.InputMask && a.InputValue == b.InputValue && a.OutputEnable == b.OutputEnable &&
           a.OutputMask == b.OutputMask && a.OutputValue == b.OutputValue && a.DelayEnable == b.DelayEnable &&
           a.DelayTime == b.DelayTime;
}

} // namespace

/// The I/O dialog on the simulated card.
class IOSettingTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void widgets_have_their_texts_data();
    void widgets_have_their_texts();
    void instance_is_one_until_it_ends();
    void no_slot_is_left_unconnected();
    void functions_are_listed_in_their_order();
    void filling_the_page_writes_nothing_back();
    void every_box_writes_its_bit_of_the_chosen_function();
    void enabling_a_side_opens_its_boxes_and_is_stored();
    void delay_box_opens_its_time();
    void edits_stay_in_the_copy_until_saved();
    void save_keeps_what_the_supervision_has_seen();
    void shown_again_the_page_is_what_is_in_force();
    void clear_type_opens_its_fields_data();
    void clear_type_opens_its_fields();
    void end_signal_box_opens_its_group();
    void output_page_stores_every_value();
    void red_light_is_stored_without_an_output();
    void names_of_switches_follow_the_language_until_they_are_typed();
    void door_stops_or_pauses_data();
    void door_stops_or_pauses();
    void names_file_is_read_but_the_card_names_are_shown();
    void a_typed_name_survives_in_the_file_but_is_replaced_on_screen();
    void names_file_holds_these_bytes();
    void typing_without_the_box_changes_nothing();
    void the_box_switches_the_edits();
    void status_pictures_follow_the_lines();
    void watching_ends_when_hidden();
    void an_output_click_toggles_only_in_the_test_mode();
    void red_light_button_data();
    void red_light_button();
    void wave_test_counts_to_fifteen_and_begins_again();
    void touch_targets_are_large_enough();

private:
    IOSetting& dialog() { return *IOSetting::Instance(); }
    QCheckBox* box(QString const& name) { return part<QCheckBox>(dialog(), name); }
    QSpinBox* spin(char const* name) { return part<QSpinBox>(dialog(), name); }
    QComboBox* combo(char const* name) { return part<QComboBox>(dialog(), name); }
    QPushButton* button(QString const& name) { return part<QPushButton>(dialog(), name); }
    QLineEdit* edit(QString const& name) { return part<QLineEdit>(dialog(), name); }
    QByteArray namesFile() const { return root->read(QStringLiteral("/ini/IOName.ini")); }
    void restart() {
        delete IOSetting::Instance();
        IOSetting::Instance();
    }

    std::unique_ptr<TemporaryRoot> root;
    std::unique_ptr<OpenCard> card;
    QVector<IOFuncList> before;
};

void IOSettingTest::init() {
    root = std::make_unique<TemporaryRoot>();
    card = std::make_unique<OpenCard>();
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardYLR);
    before = IOCheckedSys::Instance()->GetIOFunctions();
    IOSetting::Instance();
}

void IOSettingTest::cleanup() {
    delete IOSetting::Instance();
    IOCheckedSys::Instance()->SetIOFunctions(before);
    card.reset();
    root.reset();
}

void IOSettingTest::widgets_have_their_texts_data() {
    QTest::addColumn<QString>("text");
    constexpr std::pair<char const*, char const*> rows[] = {{"pushButtonSave", "保存"},
                                                            {"checkBoxCheckSafeInRun", "只有运行检测安全状态"},
                                                            {"checkBoxEndSignal", "启用完成信号"},
                                                            {"labelEndOutput", "输出号"},
                                                            {"labelEndLevel", "有效电平"},
                                                            {"labelClearType", "清除方式"},
                                                            {"labelDuration", "持续时间"},
                                                            {"labelAckInput", "应答输入号"},
                                                            {"labelAckLevel", "应答电平"},
                                                            {"labelAckTimeout", "应答超时时间"},
                                                            {"checkBoxSelfCheck", "启用信号自校验"},
                                                            {"labelRed", "红"},
                                                            {"labelGreen", "绿"},
                                                            {"labelYellow", "黄"},
                                                            {"labelBuzzer", "蜂鸣器"},
                                                            {"checkBoxOutputInv", "输出反向"},
                                                            {"checkBoxStopHasEndSig", "停止后输出结束信号"},
                                                            {"radioButtonStop", "终止"},
                                                            {"radioButtonPause", "暂停"},
                                                            {"checkBoxReady", "就绪信号启用"},
                                                            {"pushButtonSaveOut", "保存"},
                                                            {"checkBoxTestOutput", "测试输出"},
                                                            {"pushButtonRedCtrl", "开启红光"}};
    for (auto const& [name, text] : rows)
        QTest::newRow(name) << QString::fromUtf8(text);
    QTest::newRow("groupBoxTrigger") << QStringLiteral("安全门/安全光栅响应方式");
}

void IOSettingTest::widgets_have_their_texts() {
    QFETCH(QString, text);
    auto* widget = part<QWidget>(dialog(), QString::fromLatin1(QTest::currentDataTag()));
    const QVariant title = widget->property("title");
    QCOMPARE(title.isValid() ? title.toString() : widget->property("text").toString(), text);
}

void IOSettingTest::instance_is_one_until_it_ends() {
    QPointer<IOSetting> first = IOSetting::Instance();
    QCOMPARE(IOSetting::Instance(), first.data());
    QVERIFY(!first->isVisible());
    first->ShowWindow();
    QVERIFY(first->isVisible());
    first->close();
    QVERIFY(first);
    QWidget owner;
    delete first;
    QPointer<IOSetting> second = IOSetting::Instance(&owner);
    QCOMPARE(second->parentWidget(), &owner);
    QVERIFY(second->isWindow());
}

void IOSettingTest::no_slot_is_left_unconnected() {
    g_Warnings.clear();
    const QtMessageHandler former = qInstallMessageHandler(keepWarnings);
    restart();
    dialog().ShowWindow();
    qInstallMessageHandler(former);
    QCOMPARE(g_Warnings, QStringList());
}

void IOSettingTest::functions_are_listed_in_their_order() {
    QStringList names;
    for (IOFuncList const& function : before)
        names.append(function.Name);
    QStringList listed;
    for (int i = 0; i < combo("comboBoxSignalName")->count(); ++i)
        listed.append(combo("comboBoxSignalName")->itemText(i));
    QCOMPARE(listed, names);
    QVERIFY(names.contains(QStringLiteral("机台安全门5")));
}

void IOSettingTest::filling_the_page_writes_nothing_back() {
    QVector<IOFuncList> functions = before;
    for (int i = 0; i < functions.size(); ++i) {
        const unsigned int seed = 0x9E3779B9U * unsigned(i + 1);
        functions[i] = {functions[i].Name, i,          3U,         i % 2 == 0, seed,   ~seed,
                        i % 3 == 0,        seed >> 3U, seed << 2U, i % 2 == 1, 100 * i};
    }
    IOCheckedSys::Instance()->SetIOFunctions(functions);
    dialog().ShowWindow();
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < functions.size(); ++i)
            combo("comboBoxSignalName")->setCurrentIndex(i);
    }
    button("pushButtonSave")->click();
    const QVector<IOFuncList> saved = IOCheckedSys::Instance()->GetIOFunctions();
    QCOMPARE(saved.size(), functions.size());
    for (int i = 0; i < saved.size(); ++i)
        QVERIFY2(same(saved[i], functions[i]), qPrintable(functions[i].Name));
}

void IOSettingTest::every_box_writes_its_bit_of_the_chosen_function() {
    const int row = 9;
    combo("comboBoxSignalName")->setCurrentIndex(row);
    box("checkBoxEnableInput")->setChecked(true);
    box("checkBoxEnableOutput")->setChecked(true);
    IOFuncList expected = before[row];
    expected.InputEnable = expected.OutputEnable = true;
    const std::pair<char const*, unsigned int IOFuncList::*> words[] = {
        {"checkBoxValidIn", &IOFuncList::InputMask},
        {"checkBoxInvertIn", &IOFuncList::InputValue},
        {"checkBoxValidOut", &IOFuncList::OutputMask},
        {"checkBoxInvertOut", &IOFuncList::OutputValue}};
    for (auto const& [name, word] : words) {
        for (int bit = 0; bit < 32; ++bit) {
            box(QLatin1String(name) + QString::number(bit))->click();
            expected.*word ^= 1U << bit;
            button("pushButtonSave")->click();
            const QVector<IOFuncList> saved = IOCheckedSys::Instance()->GetIOFunctions();
            QVERIFY2(same(saved[row], expected), qPrintable(QStringLiteral("%1%2").arg(name).arg(bit)));
            QVERIFY(same(saved[row - 1], before[row - 1]) && same(saved[row + 1], before[row + 1]));
        }
    }
}

void IOSettingTest::enabling_a_side_opens_its_boxes_and_is_stored() {
    for (char const* side : {"Input", "Output"}) {
        const QString prefix = QLatin1String(side) == QLatin1String("Input") ? "In" : "Out";
        QVERIFY(!box(QStringLiteral("checkBoxValid%131").arg(prefix))->isEnabled());
        box(QStringLiteral("checkBoxEnable") + QLatin1String(side))->setChecked(true);
        for (int i = 0; i < 32; ++i) {
            QVERIFY(box(QStringLiteral("checkBoxValid%1%2").arg(prefix).arg(i))->isEnabled());
            QVERIFY(box(QStringLiteral("checkBoxInvert%1%2").arg(prefix).arg(i))->isEnabled());
        }
    }
    button("pushButtonSave")->click();
    IOFuncList const* run = IOCheckedSys::Instance()->GetFunObject(before[0].Name);
    QVERIFY(run->InputEnable && run->OutputEnable);
    combo("comboBoxSignalName")->setCurrentIndex(1);
    QVERIFY(!box("checkBoxValidIn0")->isEnabled());
}

void IOSettingTest::delay_box_opens_its_time() {
    QVERIFY(!spin("spinBoxDelayTime")->isEnabled());
    box("checkBoxDelay")->setChecked(true);
    QVERIFY(spin("spinBoxDelayTime")->isEnabled());
    spin("spinBoxDelayTime")->setValue(1500);
    button("pushButtonSave")->click();
    IOFuncList const* run = IOCheckedSys::Instance()->GetFunObject(before[0].Name);
    QVERIFY(run->DelayEnable);
    QCOMPARE(run->DelayTime, 1500);
    box("checkBoxDelay")->setChecked(false);
    QVERIFY(!spin("spinBoxDelayTime")->isEnabled());
}

void IOSettingTest::edits_stay_in_the_copy_until_saved() {
    const bool check = GlassParam::Instance()->IsCheckeSafeInRun();
    box("checkBoxEnableInput")->setChecked(true);
    box("checkBoxCheckSafeInRun")->setChecked(!check);
    QVERIFY(!IOCheckedSys::Instance()->GetFunObject(before[0].Name)->InputEnable);
    QCOMPARE(GlassParam::Instance()->IsCheckeSafeInRun(), check);
    button("pushButtonSave")->click();
    QVERIFY(IOCheckedSys::Instance()->GetFunObject(before[0].Name)->InputEnable);
    QCOMPARE(GlassParam::Instance()->IsCheckeSafeInRun(), !check);
    GlassParam::Instance()->SetCheckSafeInRun(check);
}

void IOSettingTest::save_keeps_what_the_supervision_has_seen() {
    IOCheckedSys::Instance()->GetFunObject(before[0].Name)->LastInput = 1;
    box("checkBoxEnableInput")->setChecked(true);
    button("pushButtonSave")->click();
    QCOMPARE(IOCheckedSys::Instance()->GetFunObject(before[0].Name)->LastInput, 1U);
}

void IOSettingTest::shown_again_the_page_is_what_is_in_force() {
    dialog().ShowWindow();
    combo("comboBoxSignalName")->setCurrentIndex(3);
    box("checkBoxEnableInput")->setChecked(true);
    spin("spinBoxRed")->setValue(30);
    dialog().close();
    dialog().ShowWindow();
    QCOMPARE(combo("comboBoxSignalName")->currentIndex(), 3);
    QVERIFY(!box("checkBoxEnableInput")->isChecked());
    QVERIFY(spin("spinBoxRed")->value() != 30);
}

void IOSettingTest::clear_type_opens_its_fields_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("duration");
    QTest::addColumn<bool>("acknowledge");
    QTest::newRow("0") << 0 << "阻塞一段时间" << true << false;
    QTest::newRow("1") << 1 << "下次运行关闭" << false << false;
    QTest::newRow("2") << 2 << "等待应答信号" << false << true;
    QTest::newRow("3") << 3 << "多线程阻塞" << true << false;
}

void IOSettingTest::clear_type_opens_its_fields() {
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

void IOSettingTest::end_signal_box_opens_its_group() {
    auto* group = part<QWidget>(dialog(), "widgetEndSignal");
    box("checkBoxEndSignal")->setChecked(true);
    QVERIFY(group->isEnabled());
    box("checkBoxEndSignal")->setChecked(false);
    QVERIFY(!group->isEnabled());
}

void IOSettingTest::output_page_stores_every_value() {
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

void IOSettingTest::red_light_is_stored_without_an_output() {
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

void IOSettingTest::names_of_switches_follow_the_language_until_they_are_typed() {
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

void IOSettingTest::door_stops_or_pauses_data() {
    QTest::addColumn<QString>("choice");
    QTest::addColumn<int>("type");
    QTest::newRow("stops") << "radioButtonStop" << 0;
    QTest::newRow("pauses") << "radioButtonPause" << 1;
}

void IOSettingTest::door_stops_or_pauses() {
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

void IOSettingTest::names_file_is_read_but_the_card_names_are_shown() {
    QVERIFY(root->write(QStringLiteral("/ini/IOName.ini"), "[Input]\nIn0=Button\n[Output]\nOut5=Clamp\n"));
    restart();
    dialog().ShowWindow();
    QCOMPARE(edit("lineEditIn0")->text(), QStringLiteral("In0"));
    QCOMPARE(edit("lineEditOut5")->text(), QStringLiteral("Out5"));
    QCOMPARE(edit("lineEditOut0")->text(), QStringLiteral("运行状态专用"));
    QCOMPARE(edit("lineEditIn23")->text(), QStringLiteral("出光中"));
    QCOMPARE(namesFile(), QByteArray("[Input]\nIn0=Button\n[Output]\nOut5=Clamp\n"));
}

void IOSettingTest::a_typed_name_survives_in_the_file_but_is_replaced_on_screen() {
    dialog().ShowWindow();
    box("checkBoxSetIOName")->setChecked(true);
    edit("lineEditIn4")->setText(QStringLiteral("Foot switch"));
    QCOMPARE(edit("lineEditIn4")->text(), QStringLiteral("Foot switch"));
    dialog().close();
    dialog().ShowWindow();
    QCOMPARE(edit("lineEditIn4")->text(), QStringLiteral("In4"));
    QVERIFY(edit("lineEditIn4")->isReadOnly() && !box("checkBoxSetIOName")->isChecked());
    QCOMPARE(namesFile(), QByteArray("[Input]\nIn4=Foot switch\n"));
    restart();
    dialog().ShowWindow();
    QCOMPARE(edit("lineEditIn4")->text(), QStringLiteral("In4"));
    QCOMPARE(namesFile(), QByteArray("[Input]\nIn4=Foot switch\n"));
}

void IOSettingTest::names_file_holds_these_bytes() {
    dialog().ShowWindow();
    box("checkBoxSetIOName")->setChecked(true);
    edit("lineEditOut31")->setText(QStringLiteral("气缸"));
    edit("lineEditIn0")->setText(QStringLiteral("a"));
    QTest::keyClicks(edit("lineEditIn0"), QStringLiteral("b"));
    edit("lineEditIn31")->setText(QString());
    button("pushButtonSaveIOName")->click();
    QCOMPARE(namesFile(), QByteArray("[Output]\nOut31=气缸\n\n[Input]\nIn0=ab\nIn31=\n"));
}

void IOSettingTest::typing_without_the_box_changes_nothing() {
    dialog().ShowWindow();
    QVERIFY(edit("lineEditIn0")->isReadOnly());
    edit("lineEditIn0")->setText(QStringLiteral("x"));
    QVERIFY(!root->exists(QStringLiteral("/ini/IOName.ini")));
}

void IOSettingTest::the_box_switches_the_edits() {
    dialog().ShowWindow();
    box("checkBoxSetIOName")->setChecked(true);
    QVERIFY(!edit("lineEditOut7")->isReadOnly());
    QCOMPARE(edit("lineEditOut7")->styleSheet(), QStringLiteral("background-color:rgb(255,255,255)"));
    box("checkBoxSetIOName")->setChecked(false);
    QVERIFY(edit("lineEditOut7")->isReadOnly());
    const QColor color = dialog().palette().window().color();
    QCOMPARE(edit("lineEditOut7")->styleSheet(),
             QString::asprintf("background-color:rgb(%d,%d,%d)", color.red(), color.green(), color.blue()));
}

void IOSettingTest::status_pictures_follow_the_lines() {
    const auto picture = [this](QString const& name) { return button(name)->icon().pixmap(22, 22).toImage(); };
    dialog().SetInputStatus(0x80000001U);
    const QImage set = picture("pushButtonIn0");
    const QImage clear = picture("pushButtonIn1");
    QVERIFY(!set.isNull() && !clear.isNull() && set != clear);
    QCOMPARE(clear, QIcon(QPixmap(QStringLiteral(":/Icon/Res/green.png"))).pixmap(22, 22).toImage());
    QCOMPARE(set, QIcon(QPixmap(QStringLiteral(":/Icon/Res/gray.png"))).pixmap(22, 22).toImage());
    QCOMPARE(picture("pushButtonIn31"), set);
    dialog().ShowWindow();
    QTRY_COMPARE(picture("pushButtonIn0"), clear);
    OpenCard::setInputs(1U << 7);
    MarkCardInstance::Instance()->SetOutputBit(9, 1);
    OpenCard::control().setEncoder(-123456);
    QTRY_COMPARE(picture("pushButtonIn7"), set);
    QTRY_COMPARE(picture("pushButtonOut9"), set);
    QTRY_COMPARE(spin("spinBoxEncoder")->value(), -123456);
    QCOMPARE(picture("pushButtonOut8"), clear);
    OpenCard::control().setEncoder(0);
}

void IOSettingTest::watching_ends_when_hidden() {
    dialog().ShowWindow();
    QTRY_VERIFY(spin("spinBoxEncoder")->value() == 0);
    for (bool escape : {true, false}) {
        dialog().ShowWindow();
        if (escape)
            QTest::keyClick(&dialog(), Qt::Key_Escape);
        else
            dialog().close();
        QVERIFY(!dialog().isVisible());
        QSignalSpy changes(spin("spinBoxEncoder"), QOverload<int>::of(&QSpinBox::valueChanged));
        OpenCard::control().setEncoder(77);
        QVERIFY(!changes.wait(200)); // more than two periods
        QCOMPARE(spin("spinBoxEncoder")->value(), 0);
        OpenCard::control().setEncoder(0);
    }
}

void IOSettingTest::an_output_click_toggles_only_in_the_test_mode() {
    dialog().ShowWindow();
    OpenCard::control().clearJournal();
    button("pushButtonOut5")->click();
    QCOMPARE(OpenCard::calls({"SetOutputBit"}).size(), 0);
    box("checkBoxTestOutput")->setChecked(true);
    for (int i : {5, 0, 31, 5})
        button(QStringLiteral("pushButtonOut%1").arg(i))->click();
    button("pushButtonIn3")->click();
    COMPARE_JOURNAL(OpenCard::calls({"SetOutputBit"}), {call("SetOutputBit", 5, 1), call("SetOutputBit", 0, 1),
                                                        call("SetOutputBit", 31, 1), call("SetOutputBit", 5, 0)});
    QCOMPARE(OpenCard::outputs(), 0x80000001U);
}

void IOSettingTest::red_light_button_data() {
    QTest::addColumn<int>("cardType");
    QTest::addColumn<int>("output");
    const int outputs[] = {19, 28, 28, 19, -1, 28};
    for (int type = 0; type < 6; ++type)
        QTest::addRow("%d", type) << type << outputs[type];
}

void IOSettingTest::red_light_button() {
    QFETCH(int, cardType);
    QFETCH(int, output);
    MarkingMParam_VZ::Instance()->SetMarkCardType(MarkCardType(cardType));
    OpenCard::control().clearJournal();
    button("pushButtonRedCtrl")->click();
    QCOMPARE(button("pushButtonRedCtrl")->text(), QStringLiteral("关闭红光"));
    button("pushButtonRedCtrl")->click();
    QCOMPARE(button("pushButtonRedCtrl")->text(), QStringLiteral("开启红光"));
    if (output < 0)
        QCOMPARE(OpenCard::calls({"SetOutputBit"}).size(), 0);
    else
        COMPARE_JOURNAL(OpenCard::calls({"SetOutputBit"}),
                        {call("SetOutputBit", output, 1), call("SetOutputBit", output, 0)});
}

void IOSettingTest::wave_test_counts_to_fifteen_and_begins_again() {
    OpenCard::control().clearJournal();
    QVector<ExpectedCall> expected;
    for (int i = 0; i < 18; ++i) {
        button("pushButton")->click();
        expected.append(call("VZ_OutputWaveNo", i % 16));
    }
    COMPARE_JOURNAL(OpenCard::calls({"VZ_OutputWaveNo"}), expected);
}

void IOSettingTest::touch_targets_are_large_enough() {
    QFile style(sourcePath(QStringLiteral("resources/myQSS.qss")));
    QVERIFY(style.open(QIODevice::ReadOnly));
    dialog().setStyleSheet(QString::fromUtf8(style.readAll()));
    dialog().resize(1000, 560);
    dialog().ShowWindow();
    auto* pages = part<QTabWidget>(dialog(), "tabWidget");
    int seen = 0;
    for (int page = 0; page < pages->count(); ++page) {
        pages->setCurrentIndex(page);
        for (QWidget* widget : pages->currentWidget()->findChildren<QWidget*>()) {
            const bool target = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget) ||
                                qobject_cast<QAbstractSpinBox*>(widget) || qobject_cast<QLineEdit*>(widget);
            if (!target || !widget->isVisible() || widget->objectName().startsWith(QLatin1String("qt_")))
                continue;
            QVERIFY2(widget->height() >= 40, qPrintable(widget->objectName()));
            ++seen;
        }
    }
    QVERIFY(seen > 250);
}

QTEST_MAIN(IOSettingTest)
#include "tst_iosetting.moc"

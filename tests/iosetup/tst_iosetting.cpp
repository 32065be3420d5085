// SPDX-License-Identifier: MIT
#include "engine/glassparam.h"
#include "tests/iosetup/iosettingfixture.h"

#include <QPointer>
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

/// The I/O dialog as a whole, and its function page.
class IOSettingTest : public QObject, private IOSettingCase {
    Q_OBJECT

private slots:
    void init() { beginCase(); }
    void cleanup() { endCase(); }
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
    void touch_targets_are_large_enough();
};

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

void IOSettingTest::touch_targets_are_large_enough() {
    dialog().setStyleSheet(styleSheet());
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

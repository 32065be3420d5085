// SPDX-License-Identifier: MIT
#include "tests/iosetup/iosettingfixture.h"

#include <QSignalSpy>
#include <QTabWidget>

using namespace tests;

/// The status page of the I/O dialog: names, live lines, tests of outputs.
class IOStatusPageTest : public QObject, private IOSettingCase {
    Q_OBJECT

private slots:
    void init() { beginCase(); }
    void cleanup() { endCase(); }
    void names_file_is_read_but_the_card_names_are_shown();
    void a_typed_name_survives_in_the_file_but_is_replaced_on_screen();
    void names_file_holds_these_bytes();
    void typing_without_the_box_changes_nothing();
    void the_box_switches_the_edits();
    void status_pictures_follow_the_lines();
    void lines_that_stay_are_not_drawn_again();
    void watching_ends_when_hidden();
    void an_output_click_toggles_only_in_the_test_mode();
    void red_light_button_data();
    void red_light_button();
    void wave_test_counts_to_fifteen_and_begins_again();
};

void IOStatusPageTest::names_file_is_read_but_the_card_names_are_shown() {
    QVERIFY(root->write(QStringLiteral("/ini/IOName.ini"), "[Input]\nIn0=Button\n[Output]\nOut5=Clamp\n"));
    restart();
    dialog().ShowWindow();
    QCOMPARE(edit("lineEditIn0")->text(), QStringLiteral("In0"));
    QCOMPARE(edit("lineEditOut5")->text(), QStringLiteral("Out5"));
    QCOMPARE(edit("lineEditOut0")->text(), QStringLiteral("运行状态专用"));
    QCOMPARE(edit("lineEditIn23")->text(), QStringLiteral("出光中"));
    QCOMPARE(namesFile(), QByteArray("[Input]\nIn0=Button\n[Output]\nOut5=Clamp\n"));
}

void IOStatusPageTest::a_typed_name_survives_in_the_file_but_is_replaced_on_screen() {
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

void IOStatusPageTest::names_file_holds_these_bytes() {
    dialog().ShowWindow();
    box("checkBoxSetIOName")->setChecked(true);
    edit("lineEditOut31")->setText(QStringLiteral("气缸"));
    edit("lineEditIn0")->setText(QStringLiteral("a"));
    QTest::keyClicks(edit("lineEditIn0"), QStringLiteral("b"));
    edit("lineEditIn31")->setText(QString());
    button("pushButtonSaveIOName")->click();
    QCOMPARE(namesFile(), QByteArray("[Output]\nOut31=气缸\n\n[Input]\nIn0=ab\nIn31=\n"));
}

void IOStatusPageTest::typing_without_the_box_changes_nothing() {
    dialog().ShowWindow();
    QVERIFY(edit("lineEditIn0")->isReadOnly());
    edit("lineEditIn0")->setText(QStringLiteral("x"));
    QVERIFY(!root->exists(QStringLiteral("/ini/IOName.ini")));
}

void IOStatusPageTest::the_box_switches_the_edits() {
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

void IOStatusPageTest::status_pictures_follow_the_lines() {
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

void IOStatusPageTest::lines_that_stay_are_not_drawn_again() {
    struct PaintCounter : QObject {
        int paints = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            paints += event->type() == QEvent::Paint;
            return false;
        }
    };
    dialog().ShowWindow();
    part<QTabWidget>(dialog(), "tabWidget")->setCurrentIndex(2);
    const auto ticks = [this](int count) {
        for (int i = 1; i <= count; ++i) {
            OpenCard::control().setEncoder(spin("spinBoxEncoder")->value() + 1);
            if (!waitFor([this, before = spin("spinBoxEncoder")->value()] {
                    return spin("spinBoxEncoder")->value() != before;
                }))
                return false;
        }
        return true;
    };
    QVERIFY(ticks(3));
    PaintCounter counter;
    button("pushButtonIn2")->installEventFilter(&counter);
    QVERIFY(ticks(4));
    QCOMPARE(counter.paints, 0);
    OpenCard::setInputs(1U << 2);
    QTRY_VERIFY(counter.paints > 0);
    OpenCard::control().setEncoder(0);
}

void IOStatusPageTest::watching_ends_when_hidden() {
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

void IOStatusPageTest::an_output_click_toggles_only_in_the_test_mode() {
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

void IOStatusPageTest::red_light_button_data() {
    QTest::addColumn<int>("cardType");
    QTest::addColumn<int>("output");
    const int outputs[] = {19, 28, 28, 19, -1, 28};
    for (int type = 0; type < 6; ++type)
        QTest::addRow("%d", type) << type << outputs[type];
}

void IOStatusPageTest::red_light_button() {
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

void IOStatusPageTest::wave_test_counts_to_fifteen_and_begins_again() {
    OpenCard::control().clearJournal();
    QVector<ExpectedCall> expected;
    for (int i = 0; i < 18; ++i) {
        button("pushButton")->click();
        expected.append(call("VZ_OutputWaveNo", i % 16));
    }
    COMPARE_JOURNAL(OpenCard::calls({"VZ_OutputWaveNo"}), expected);
}

QTEST_MAIN(IOStatusPageTest)
#include "tst_iostatuspage.moc"

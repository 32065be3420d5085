// SPDX-License-Identifier: MIT
#include "tests/support/dialoganswerer.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <QtTest>

using tests::DialogAnswerer;

namespace {

int ask(const QString& title, const QString& text) {
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No);
    box.button(QMessageBox::Yes)->setText(QStringLiteral("确定(&O)"));
    return box.exec();
}

/// Refuses to be left, as dialogs do during work.
class StubbornDialog : public QDialog {
public:
    void reject() override {}
};

} // namespace

class TestDialogAnswerer : public QObject {
    Q_OBJECT

private slots:
    void a_button_is_found_by_its_text_and_the_dialog_is_recorded();
    void a_button_is_found_by_its_object_name_before_its_text();
    void a_standard_button_is_pressed_data();
    void a_standard_button_is_pressed();
    void a_dialog_is_filled_in_before_the_button();
    void a_dialog_is_rejected();
    void dialogs_are_answered_in_order();
    void a_dialog_opened_by_the_button_gets_the_next_answer();
    void a_dialog_shown_again_is_answered_again();
    void a_dialog_that_comes_later_is_waited_for();
    void windows_that_are_not_modal_are_left_alone();
    void dialogs_of_a_class_to_be_left_end_by_themselves();
    void a_dialog_without_an_answer_is_a_complaint_and_does_not_hang();
    void a_missing_button_is_a_complaint_that_names_the_buttons();
    void a_disabled_button_is_a_complaint();
    void a_dialog_that_refuses_to_be_left_does_not_hang();
    void a_dialog_that_does_not_come_fails_the_test();
};

void TestDialogAnswerer::a_button_is_found_by_its_text_and_the_dialog_is_recorded() {
    DialogAnswerer answerer;
    answerer.press("确定(O)");
    QCOMPARE(ask("提示", "保存?"), int(QMessageBox::Yes));
    QVERIFY(answerer.allAnswered());
    QCOMPARE(answerer.seen().size(), 1);
    const tests::SeenDialog& seen = answerer.seen().at(0);
    QCOMPARE(seen.title, QString("提示"));
    QCOMPARE(seen.text, QString("保存?"));
    QCOMPARE(seen.className, QString("QMessageBox"));
    QCOMPARE(seen.pressed, QString("确定(O)"));
    QVERIFY(seen.buttons.contains("No"));
    QCOMPARE(answerer.titles(), QStringList{"提示"});
    QCOMPARE(answerer.texts(), QStringList{"保存?"});
}

void TestDialogAnswerer::a_button_is_found_by_its_object_name_before_its_text() {
    QDialog dialog;
    dialog.setObjectName("Form_Name");
    QVBoxLayout layout(&dialog);
    QPushButton misleading("pushButtonSave");
    QPushButton right("Save");
    right.setObjectName("pushButtonSave");
    layout.addWidget(&misleading);
    layout.addWidget(&right);
    connect(&misleading, &QPushButton::clicked, &dialog, [&dialog] { dialog.done(1); });
    connect(&right, &QPushButton::clicked, &dialog, [&dialog] { dialog.done(2); });
    DialogAnswerer answerer;
    answerer.press("pushButtonSave");
    QCOMPARE(dialog.exec(), 2);
    QCOMPARE(answerer.seen().at(0).objectName, QString("Form_Name"));
    QCOMPARE(answerer.seen().at(0).pressed, QString("Save"));
}

void TestDialogAnswerer::a_standard_button_is_pressed_data() {
    QTest::addColumn<int>("button");
    QTest::newRow("yes") << int(QMessageBox::Yes);
    QTest::newRow("no") << int(QMessageBox::No);
}

void TestDialogAnswerer::a_standard_button_is_pressed() {
    QFETCH(int, button);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::StandardButton(button));
    QCOMPARE(ask("a", "b"), button);
}

void TestDialogAnswerer::a_dialog_is_filled_in_before_the_button() {
    DialogAnswerer answerer;
    answerer.fillAndPress([](QWidget& dialog) { dialog.findChild<QLineEdit*>()->setText("plate 7"); }, "OK");
    bool ok = false;
    QCOMPARE(QInputDialog::getText(nullptr, "Name", "New name", QLineEdit::Normal, "", &ok), QString("plate 7"));
    QVERIFY(ok);
}

void TestDialogAnswerer::a_dialog_is_rejected() {
    DialogAnswerer answerer;
    answerer.reject();
    QInputDialog dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(answerer.seen().at(0).pressed, QString());
}

void TestDialogAnswerer::dialogs_are_answered_in_order() {
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Yes).press(QMessageBox::No).press(QMessageBox::Yes);
    QCOMPARE(ask("1", ""), int(QMessageBox::Yes));
    QCOMPARE(ask("2", ""), int(QMessageBox::No));
    QCOMPARE(ask("3", ""), int(QMessageBox::Yes));
    QCOMPARE(answerer.titles(), QStringList({"1", "2", "3"}));
}

void TestDialogAnswerer::a_dialog_opened_by_the_button_gets_the_next_answer() {
    QDialog outer;
    outer.setWindowTitle("outer");
    QVBoxLayout layout(&outer);
    QPushButton open("Open");
    layout.addWidget(&open);
    int inner = 0;
    connect(&open, &QPushButton::clicked, &outer, [&] {
        inner = ask("inner", "sure?");
        outer.accept();
    });
    DialogAnswerer answerer;
    answerer.press("Open").press(QMessageBox::No);
    QCOMPARE(outer.exec(), int(QDialog::Accepted));
    QCOMPARE(inner, int(QMessageBox::No));
    QCOMPARE(answerer.titles(), QStringList({"outer", "inner"}));
}

void TestDialogAnswerer::a_dialog_shown_again_is_answered_again() {
    QMessageBox box(QMessageBox::Information, "again", "", QMessageBox::Ok);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok).press(QMessageBox::Ok);
    box.exec();
    box.exec();
    QCOMPARE(answerer.titles(), QStringList({"again", "again"}));
}

void TestDialogAnswerer::a_dialog_that_comes_later_is_waited_for() {
    QMessageBox box(QMessageBox::Information, "late", "", QMessageBox::Ok);
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    QTimer::singleShot(20, &box, [&box] { box.open(); });
    QVERIFY(answerer.waitUntilAnswered());
    QVERIFY(!box.isVisible());
    QCOMPARE(answerer.titles(), QStringList{"late"});
}

void TestDialogAnswerer::windows_that_are_not_modal_are_left_alone() {
    QDialog dialog;
    DialogAnswerer answerer;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCoreApplication::processEvents();
    QVERIFY(dialog.isVisible());
    QVERIFY(answerer.seen().isEmpty());
}

void TestDialogAnswerer::dialogs_of_a_class_to_be_left_end_by_themselves() {
    DialogAnswerer answerer;
    answerer.leave("QInputDialog").press("确定(O)");
    QInputDialog left;
    bool wasOpen = false;
    QTimer::singleShot(50, &left, [&] {
        wasOpen = left.isVisible();
        left.accept();
    });
    QCOMPARE(left.exec(), int(QDialog::Accepted));
    QVERIFY(wasOpen);
    QVERIFY(!answerer.allAnswered());
    QCOMPARE(ask("提示", "保存?"), int(QMessageBox::Yes));
    QCOMPARE(answerer.titles(), QStringList("提示"));
}

void TestDialogAnswerer::a_dialog_without_an_answer_is_a_complaint_and_does_not_hang() {
    DialogAnswerer answerer;
    ask("surprise", "text");
    QCOMPARE(answerer.takeComplaints(), QStringList{"no answer for the dialog QMessageBox \"surprise\" \"text\""});
    QCOMPARE(answerer.titles(), QStringList{"surprise"});
}

void TestDialogAnswerer::a_missing_button_is_a_complaint_that_names_the_buttons() {
    DialogAnswerer answerer;
    answerer.press("Maybe");
    ask("t", "x");
    const QStringList complaints = answerer.takeComplaints();
    QCOMPARE(complaints.size(), 1);
    QVERIFY2(complaints.at(0).startsWith("\"Maybe\" is not there in the dialog QMessageBox \"t\" \"x\", which has: "),
             qPrintable(complaints.at(0)));
    QVERIFY(complaints.at(0).contains("No") && complaints.at(0).contains("确定(O)"));
}

void TestDialogAnswerer::a_disabled_button_is_a_complaint() {
    QDialog dialog;
    QVBoxLayout layout(&dialog);
    QPushButton button("Start");
    button.setEnabled(false);
    layout.addWidget(&button);
    DialogAnswerer answerer;
    answerer.press("Start");
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    const QStringList complaints = answerer.takeComplaints();
    QVERIFY2(complaints.value(0).contains("\"Start\" is disabled"), qPrintable(complaints.join("; ")));
}

void TestDialogAnswerer::a_dialog_that_refuses_to_be_left_does_not_hang() {
    StubbornDialog dialog;
    DialogAnswerer answerer;
    answerer.press("none");
    dialog.exec();
    QCOMPARE(answerer.takeComplaints().size(), 1);
}

void TestDialogAnswerer::a_dialog_that_does_not_come_fails_the_test() {
    QProcess program;
    program.start(NO_DIALOG_TEST, QStringList());
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 2); // two failed functions of three
    const QString output = QString::fromUtf8(program.readAllStandardOutput());
    QVERIFY2(output.contains("DialogAnswerer: 1 expected dialogs did not come"), qPrintable(output));
    QVERIFY2(output.contains("no answer for the dialog QMessageBox"), qPrintable(output));
    QVERIFY2(output.contains("PASS   : NoDialog::a_dialog_that_comes()"), qPrintable(output));
}

QTEST_MAIN(TestDialogAnswerer)
#include "tst_dialoganswerer.moc"

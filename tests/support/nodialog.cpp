// SPDX-License-Identifier: MIT
// A test that must fail: run by tst_dialoganswerer, never by itself.
#include "tests/support/dialoganswerer.h"

#include <QtTest>

class NoDialog : public QObject {
    Q_OBJECT

private slots:
    void no_dialog_comes();
    void an_unexpected_dialog_comes();
    void a_dialog_that_comes();
};

void NoDialog::no_dialog_comes() {
    tests::DialogAnswerer answerer;
    answerer.press("OK");
}

void NoDialog::an_unexpected_dialog_comes() {
    const tests::DialogAnswerer answerer;
    QMessageBox(QMessageBox::Information, "title", "text", QMessageBox::Ok).exec();
}

void NoDialog::a_dialog_that_comes() {
    tests::DialogAnswerer answerer;
    answerer.press("OK");
    QMessageBox(QMessageBox::Information, "title", "text", QMessageBox::Ok).exec();
}

QTEST_MAIN(NoDialog)
#include "nodialog.moc"

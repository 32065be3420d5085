// SPDX-License-Identifier: MIT
// The engine's message function: a box that holds nobody up when there is a window, the log otherwise.
#include "engine/cardfunctions.h"
#include "support/approot.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDirIterator>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>

namespace {

QMessageBox* shownBox() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* box = qobject_cast<QMessageBox*>(window);
        if (box && box->isVisible())
            return box;
    }
    return nullptr;
}

bool logHolds(QString const& root, QString const& text) {
    QDirIterator files(root, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly) && QString::fromUtf8(file.readAll()).contains(text))
            return true;
    }
    return false;
}

} // namespace

class tst_CardMessage : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void without_a_window_the_text_goes_into_the_log();
    void with_a_window_a_box_shows_the_text_and_the_caller_goes_on();
    void message_of_another_thread_is_shown_on_the_main_thread();

private:
    QTemporaryDir m_root;
};

void tst_CardMessage::initTestCase() {
    QVERIFY(m_root.isValid());
    tessera::setApplicationRoot(m_root.path());
}

void tst_CardMessage::without_a_window_the_text_goes_into_the_log() {
    MessageBox("打开卡失败 1", 1);
    MessageBox("信息 2", 0);
    QVERIFY(!shownBox());
    QVERIFY(logHolds(m_root.path(), "打开卡失败 1"));
    QVERIFY(logHolds(m_root.path(), "信息 2"));
}

void tst_CardMessage::with_a_window_a_box_shows_the_text_and_the_caller_goes_on() {
    QWidget window;
    window.show();
    MessageBox("打开卡失败", 1);
    QPointer<QMessageBox> box = shownBox();
    QVERIFY(box);
    QCOMPARE(box->text(), QString("打开卡失败"));
    QCOMPARE(box->icon(), QMessageBox::Warning);
    box->button(QMessageBox::Ok)->click();
    QTRY_VERIFY(!box);
}

void tst_CardMessage::message_of_another_thread_is_shown_on_the_main_thread() {
    QWidget window;
    window.show();
    std::thread([] { MessageBox("信息", 0); }).join();
    QTRY_VERIFY(shownBox());
    QPointer<QMessageBox> box = shownBox();
    QCOMPARE(box->text(), QString("信息"));
    QCOMPARE(box->icon(), QMessageBox::Information);
    box->close();
    QTRY_VERIFY(!box);
}

QTEST_MAIN(tst_CardMessage)
#include "tst_cardmessage.moc"

// SPDX-License-Identifier: MIT
#include "maintenance/workprogress.h"
#include "tests/support/dialoganswerer.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <atomic>
#include <thread>

using tessera::WorkControl;

/// The dialog that waits for work on another thread.
class WorkProgressTest : public QObject {
    Q_OBJECT

private slots:
    void work_runs_on_another_thread_and_the_dialog_ends_with_it();
    void state_is_shown_while_the_work_goes_on();
    void cancel_ends_the_work_before_the_dialog_data();
    void cancel_ends_the_work_before_the_dialog();
    void final_work_cannot_be_cancelled();
    void end_of_the_loop_waits_for_the_work();

private:
    /// Calls `act` in the dialog's own loop once `ready` holds.
    static void when(WorkProgress& dialog, std::function<bool()> const& ready, std::function<void()> const& act) {
        auto* timer = new QTimer(&dialog);
        QObject::connect(timer, &QTimer::timeout, &dialog, [timer, ready, act] {
            if (!ready())
                return;
            timer->stop();
            act();
        });
        timer->start(1);
    }
    /// Work that ends when it is told to.
    static void untilCancelled(WorkControl& control) {
        control.setTotal(10);
        control.add(1);
        while (!control.isCancelled())
            std::this_thread::yield();
    }
};

void WorkProgressTest::work_runs_on_another_thread_and_the_dialog_ends_with_it() {
    WorkProgress dialog(nullptr, "<b>text</b>");
    QCOMPARE(dialog.windowTitle(), "<b>text</b>");
    QCOMPARE(dialog.findChild<QLabel*>("labelText")->textFormat(), Qt::PlainText);
    std::thread::id worker;
    dialog.Run([&](WorkControl&) { worker = std::this_thread::get_id(); });
    QVERIFY(worker != std::thread::id() && worker != std::this_thread::get_id());
    QVERIFY(!dialog.isVisible());
}

void WorkProgressTest::state_is_shown_while_the_work_goes_on() {
    WorkProgress dialog(nullptr, "text");
    auto* bar = dialog.findChild<QProgressBar*>("progressBar");
    std::atomic<int> step{0};
    bool busy = false;
    bool half = false;
    when(
        dialog, [&] { return dialog.isVisible() && bar->maximum() == 0; },
        [&] {
            busy = dialog.isModal();
            step = 1;
        });
    when(
        dialog, [&] { return bar->maximum() > 0 && bar->value() * 2 == bar->maximum(); },
        [&] {
            half = true;
            step = 2;
        });
    dialog.Run([&](WorkControl& control) {
        while (step < 1 && !control.isCancelled())
            std::this_thread::yield();
        control.setTotal(200);
        control.add(100);
        while (step < 2 && !control.isCancelled())
            std::this_thread::yield();
    });
    QVERIFY(busy);
    QVERIFY(half);
}

void WorkProgressTest::cancel_ends_the_work_before_the_dialog_data() {
    QTest::addColumn<QString>("way");
    QTest::newRow("button") << "button";
    QTest::newRow("escape") << "escape";
    QTest::newRow("close") << "close";
}

void WorkProgressTest::cancel_ends_the_work_before_the_dialog() {
    QFETCH(QString, way);
    WorkProgress dialog(nullptr, "text");
    auto* button = dialog.findChild<QPushButton*>("pushButtonCancel");
    bool stays = false;
    when(
        dialog, [&] { return dialog.isVisible(); },
        [&] {
            if (way == "button")
                button->click();
            else if (way == "escape")
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                dialog.close();
            stays = dialog.isVisible() && !button->isEnabled();
        });
    bool cancelled = false;
    dialog.Run([&](WorkControl& control) {
        untilCancelled(control);
        cancelled = control.isCancelled();
    });
    QVERIFY(cancelled);
    QVERIFY(stays);
    QVERIFY(!dialog.isVisible());
}

void WorkProgressTest::final_work_cannot_be_cancelled() {
    WorkProgress dialog(nullptr, "text");
    auto* button = dialog.findChild<QPushButton*>("pushButtonCancel");
    std::atomic<bool> tried{false};
    bool enabled = true;
    when(
        dialog, [&] { return dialog.isVisible() && !button->isEnabled(); },
        [&] {
            QTest::keyClick(&dialog, Qt::Key_Escape);
            enabled = button->isEnabled();
            tried = true;
        });
    bool cancelled = true;
    dialog.Run([&](WorkControl& control) {
        control.makeFinal();
        while (!tried)
            std::this_thread::yield();
        cancelled = control.isCancelled();
    });
    QVERIFY(!cancelled);
    QVERIFY(!enabled);
}

void WorkProgressTest::end_of_the_loop_waits_for_the_work() {
    WorkProgress dialog(nullptr, "text");
    when(
        dialog, [&] { return dialog.isVisible(); }, [&] { dialog.done(QDialog::Rejected); });
    bool ended = false;
    dialog.Run([&](WorkControl& control) {
        untilCancelled(control);
        ended = true;
    });
    QVERIFY(ended);
}

QTEST_MAIN(WorkProgressTest)
#include "tst_workprogress.moc"

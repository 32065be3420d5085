// SPDX-License-Identifier: MIT
#include "contentlift.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>
#include <QVBoxLayout>

using namespace tessera;

namespace {

QRect onScreen(QWidget const& widget) {
    return QRect(widget.mapToGlobal(QPoint(0, 0)), widget.size());
}

/// The lower part of the test's screen, as a keyboard takes it.
QRect keyboardArea() {
    QRect const screen = QGuiApplication::primaryScreen()->geometry();
    return screen.adjusted(0, screen.height() / 2, 0, 0);
}

struct Form {
    QDialog dialog;
    QLineEdit upper{&dialog};
    QLineEdit lower{&dialog};
    Form() {
        QRect const screen = QGuiApplication::primaryScreen()->geometry();
        dialog.setGeometry(screen.left() + 50, screen.top() + 60, 300, screen.height() - 100);
        upper.setGeometry(10, 10, 200, 40);
        lower.setGeometry(10, dialog.height() - 60, 200, 40);
        dialog.show();
    }
};

} // namespace

class TestContentLift : public QObject {
    Q_OBJECT

private slots:
    void lift_data() {
        QTest::addColumn<QRect>("field");
        QTest::addColumn<QRect>("keyboard");
        QTest::addColumn<int>("lift");
        QRect const keyboard(80, 330, 864, 270);
        QTest::newRow("clear above") << QRect(100, 100, 200, 40) << keyboard << 0;
        QTest::newRow("just clear, with the gap") << QRect(100, 282, 200, 40) << keyboard << 0;
        QTest::newRow("one pixel too low") << QRect(100, 283, 200, 40) << keyboard << 1;
        QTest::newRow("covered") << QRect(100, 500, 200, 40) << keyboard << 218;
        QTest::newRow("beyond the lower edge") << QRect(100, 640, 200, 40) << keyboard << 358;
        QTest::newRow("left of the keyboard") << QRect(0, 500, 80, 40) << keyboard << 0;
        QTest::newRow("right of the keyboard") << QRect(944, 500, 80, 40) << keyboard << 0;
        QTest::newRow("touches its left edge") << QRect(0, 500, 81, 40) << keyboard << 218;
        QTest::newRow("higher than the room") << QRect(100, 20, 200, 560) << keyboard << 20;
        QTest::newRow("above the screen already") << QRect(100, -30, 200, 560) << keyboard << 0;
        QTest::newRow("no keyboard") << QRect(100, 500, 200, 40) << QRect() << 0;
    }
    void lift() {
        QFETCH(QRect, field);
        QFETCH(QRect, keyboard);
        QTEST(liftFor(field, keyboard, QRect(0, 0, 1024, 600)), "lift");
    }

    void a_dialog_goes_up_and_comes_back() {
        Form form;
        QPoint const place = form.dialog.pos();
        ContentLift lift;
        QVERIFY(onScreen(form.lower).intersects(keyboardArea()));
        lift.keepClear(&form.lower, keyboardArea());
        QVERIFY(!onScreen(form.lower).intersects(keyboardArea()));
        QCOMPARE(form.dialog.x(), place.x());
        lift.restore();
        QCOMPARE(form.dialog.pos(), place);
    }

    void the_next_field_of_the_dialog_is_looked_at_anew() {
        Form form;
        QPoint const place = form.dialog.pos();
        ContentLift lift;
        lift.keepClear(&form.lower, keyboardArea());
        QPoint const lifted = form.dialog.pos();
        lift.keepClear(&form.lower, keyboardArea());
        QCOMPARE(form.dialog.pos(), lifted);
        lift.keepClear(&form.upper, keyboardArea());
        QCOMPARE(form.dialog.pos(), place);
    }

    void a_higher_keyboard_lifts_further() {
        Form form;
        ContentLift lift;
        lift.keepClear(&form.lower, keyboardArea());
        int const before = form.dialog.y();
        lift.keepClear(&form.lower, keyboardArea().adjusted(0, -44, 0, 0));
        QCOMPARE(form.dialog.y(), before - 44);
    }

    void a_dialog_dragged_meanwhile_comes_back_too() {
        Form form;
        QPoint const place = form.dialog.pos();
        ContentLift lift;
        lift.keepClear(&form.lower, keyboardArea());
        QPoint const lifted = form.dialog.pos();
        form.dialog.move(lifted + QPoint(25, 40));
        lift.keepClear(&form.lower, keyboardArea());
        QCOMPARE(form.dialog.pos(), lifted);
        lift.restore();
        QCOMPARE(form.dialog.pos(), place);
    }

    void another_dialog_lets_the_first_one_down() {
        Form first;
        Form second;
        QPoint const place = first.dialog.pos();
        ContentLift lift;
        lift.keepClear(&first.lower, keyboardArea());
        QVERIFY(first.dialog.pos() != place);
        lift.keepClear(&second.lower, keyboardArea());
        QCOMPARE(first.dialog.pos(), place);
        QVERIFY(!onScreen(second.lower).intersects(keyboardArea()));
    }

    void a_dialog_that_ends_lifted_is_forgotten() {
        ContentLift lift;
        {
            Form form;
            lift.keepClear(&form.lower, keyboardArea());
        }
        lift.restore();
        Form form;
        lift.keepClear(&form.lower, keyboardArea());
        QVERIFY(!onScreen(form.lower).intersects(keyboardArea()));
    }

    void the_main_window_stays_and_its_contents_move() {
        QMainWindow window;
        auto* centre = new QWidget;
        auto* layout = new QVBoxLayout(centre);
        auto* label = new QLabel("status");
        layout->addWidget(label);
        layout->addStretch();
        auto* field = new QLineEdit;
        layout->addWidget(field);
        window.setCentralWidget(centre);
        window.addToolBar("tools")->addAction("tool");
        window.statusBar()->addWidget(new QLabel("state"));
        window.setGeometry(QGuiApplication::primaryScreen()->geometry());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QPoint const place = window.pos();
        QRect const before = onScreen(*field);
        QRect const all = centre->geometry();
        ContentLift lift;
        QVERIFY(before.intersects(keyboardArea()));
        lift.keepClear(field, keyboardArea());
        QRect const lifted = onScreen(*field);
        QVERIFY(!lifted.intersects(keyboardArea()));
        QCOMPARE(window.pos(), place);
        QCOMPARE(centre->size(), all.size());
        // What is shown in the window goes on changing and makes the layout place everything anew.
        QSignalSpy spy(label, &QObject::destroyed);
        delete label;
        QCOMPARE(spy.count(), 1);
        QCoreApplication::sendPostedEvents();
        window.statusBar()->addWidget(new QLabel("another"));
        window.layout()->invalidate();
        QCoreApplication::postEvent(&window, new QEvent(QEvent::LayoutRequest));
        QCoreApplication::sendPostedEvents();
        QCOMPARE(onScreen(*field), lifted);
        window.resize(window.width() - 10, window.height());
        QCOMPARE(onScreen(*field).top(), lifted.top());
        window.resize(window.width() + 10, window.height());
        lift.restore();
        QCOMPARE(onScreen(*field), before);
        QCOMPARE(centre->geometry(), all);
    }
};

QTEST_MAIN(TestContentLift)
#include "tst_contentlift.moc"

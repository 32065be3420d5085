// SPDX-License-Identifier: MIT
#include "support/approot.h"
#include "tests/shell/windowcase.h"

#include <QDir>
#include <QKeyEvent>

using namespace tests;

namespace {

/// The key thread takes waiting keys every 10 ms; of so many rounds most see what the presses left.
constexpr int kKeyRounds = 200;

} // namespace

/// Function and direction keys of the main window.
class WindowKeysTest : public QObject, private WindowCase {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void function_keys_without_a_dialog_open_it();
    void function_keys_with_the_dialog_run_it();
    void function_keys_without_response_do_nothing();
    void f6_without_a_document_does_nothing();
    void f6_while_teaching_confirms_the_point_and_starts_nothing();
    void f8_stops_a_run_under_an_alarm_too();
    void f6_under_an_alarm_starts_nothing();
    void a_direction_key_waits_during_a_preview_data();
    void a_direction_key_waits_during_a_preview();
    void direction_keys_without_a_document_do_nothing();
    void two_quick_direction_keys_queue_one();

private:
    /// As a document view hands a key on.
    bool pressByName(int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        return QMetaObject::invokeMethod(&window(), "HandDirEventOnRedView", Qt::DirectConnection,
                                         Q_ARG(QKeyEvent*, &event));
    }
    static QList<int> waiting(QRulerView* view) {
        const QMutexLocker lock(&view->m_DirKeyLock);
        return view->m_DirKeys;
    }
    static QList<int> takeWaiting(QRulerView* view) {
        QList<int> keys;
        const QMutexLocker lock(&view->m_DirKeyLock);
        keys.swap(view->m_DirKeys);
        return keys;
    }
};

void WindowKeysTest::initTestCase() {
    QVERIFY(hasRoot());
}

void WindowKeysTest::init() {
    beginCase();
}

void WindowKeysTest::cleanup() {
    endCase();
}

void WindowKeysTest::function_keys_without_a_dialog_open_it() {
    start();
    m_Window->newDocument();
    for (Qt::Key key : {Qt::Key_F6, Qt::Key_F7, Qt::Key_F8}) {
        QTest::keyClick(&window(), key);
        QCOMPARE(window().MarkWindowIsVisible(), 1);
        QVERIFY(!Form_Marking::Instance()->IsRunning());
        Form_Marking::Instance()->close();
    }
    QTest::keyClick(&window(), Qt::Key_F9);
    QTest::keyClick(&window(), Qt::Key_F5);
    QCOMPARE(window().MarkWindowIsVisible(), 0);
}

void WindowKeysTest::function_keys_with_the_dialog_run_it() {
    start();
    window().setGeometry(0, 0, 1024, 600);
    m_Window->newDocument();
    window().ShowNormalMarkWindow();
    Form_Marking::Instance()->setGeometry(1, 1, 385, 180);
    QTest::keyClick(&window(), Qt::Key_F5);
    QCOMPARE(Form_Marking::Instance()->geometry(), QRect(319, 210, 385, 180));
    machine().setSpeed(0.0001);
    QTest::keyClick(&window(), Qt::Key_F6);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    QCOMPARE(machine().state().type, 0);
    QTest::keyClick(&window(), Qt::Key_F8);
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
    machine().setSpeed(0.0);
    QTest::keyClick(&window(), Qt::Key_F7);
    QCOMPARE(machine().state().type, 1);
    QTRY_COMPARE(window().centralWidget()->isEnabled(), true);
}

void WindowKeysTest::function_keys_without_response_do_nothing() {
    SystemParam::Instance()->m_nResponseShortcut = 0;
    start();
    m_Window->newDocument();
    for (Qt::Key key : {Qt::Key_F5, Qt::Key_F6, Qt::Key_F7, Qt::Key_F8})
        QTest::keyClick(&window(), key);
    QCOMPARE(window().MarkWindowIsVisible(), 0);
}

void WindowKeysTest::f6_without_a_document_does_nothing() {
    start();
    QTest::keyClick(&window(), Qt::Key_F6);
    QCOMPARE(window().MarkWindowIsVisible(), 0);
    QTest::keyClick(&window(), Qt::Key_F7);
    QCOMPARE(window().MarkWindowIsVisible(), 1);
    QTest::keyClick(&window(), Qt::Key_F6);
    QVERIFY(!Form_Marking::Instance()->IsRunning());
}

void WindowKeysTest::f6_while_teaching_confirms_the_point_and_starts_nothing() {
    start();
    QRulerView* view = m_Window->newDocument(0);
    view->SetOperatorOnView(OperatorTeach);
    QWidget* canvas = nullptr;
    for (QWidget* child : view->findChildren<QWidget*>()) {
        if (child->isVisible() && child->size().width() > 100 && child->focusPolicy() != Qt::NoFocus)
            canvas = child;
    }
    QVERIFY(canvas);
    QTest::mouseClick(canvas, Qt::LeftButton, Qt::NoModifier, canvas->rect().center());
    int objects = 0;
    int vertices = 0;
    view->GetDocStatistics(objects, vertices);
    QCOMPARE(objects, 0);
    QTest::keyClick(&window(), Qt::Key_F6);
    view->GetDocStatistics(objects, vertices);
    QCOMPARE(objects, 1);
    QCOMPARE(window().MarkWindowIsVisible(), 0);
    window().ShowNormalMarkWindow();
    QTest::keyClick(&window(), Qt::Key_F6);
    QVERIFY(!Form_Marking::Instance()->IsRunning());
}

void WindowKeysTest::f8_stops_a_run_under_an_alarm_too() {
    start();
    m_Window->newDocument();
    window().ShowNormalMarkWindow();
    machine().setSpeed(0.0001);
    QTest::keyClick(&window(), Qt::Key_F6);
    QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    window().SetSafeAlarm(true, 64);
    QTest::keyClick(&window(), Qt::Key_F8);
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
}

void WindowKeysTest::f6_under_an_alarm_starts_nothing() {
    start();
    m_Window->newDocument();
    window().ShowNormalMarkWindow();
    window().SetSafeAlarm(true, 128);
    QTest::keyClick(&window(), Qt::Key_F6);
    QVERIFY(!Form_Marking::Instance()->IsRunning());
    QCOMPARE(m_Window->statusList()->item(0)->text(), QStringLiteral("急停"));
}

void WindowKeysTest::a_direction_key_waits_during_a_preview_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("preview");
    QTest::addColumn<bool>("waits");
    QTest::newRow("left") << int(Qt::Key_Left) << true << true;
    QTest::newRow("up") << int(Qt::Key_Up) << true << true;
    QTest::newRow("right") << int(Qt::Key_Right) << true << true;
    QTest::newRow("down") << int(Qt::Key_Down) << true << true;
    QTest::newRow("the key before") << int(Qt::Key_Left) - 1 << true << false;
    QTest::newRow("the key behind") << int(Qt::Key_Down) + 1 << true << false;
    QTest::newRow("no preview") << int(Qt::Key_Left) << false << false;
}

void WindowKeysTest::a_direction_key_waits_during_a_preview() {
    QFETCH(int, key);
    QFETCH(bool, preview);
    start(false);
    QRulerView* view = m_Window->newDocument();
    window().SetRedVie(preview);
    bool seen = false;
    for (int round = 0; round < kKeyRounds; ++round) {
        QVERIFY(pressByName(key));
        const QList<int> keys = takeWaiting(view);
        QVERIFY(keys.isEmpty() || keys == QList<int>{key});
        seen = seen || !keys.isEmpty();
    }
    QTEST(seen, "waits");
}

void WindowKeysTest::direction_keys_without_a_document_do_nothing() {
    start(false);
    window().SetRedVie(true);
    QVERIFY(pressByName(Qt::Key_Left));
}

void WindowKeysTest::two_quick_direction_keys_queue_one() {
    start(false);
    QRulerView* view = m_Window->newDocument();
    window().SetRedVie(true);
    bool first = false;
    for (int round = 0; round < kKeyRounds; ++round) {
        QVERIFY(pressByName(Qt::Key_Left));
        QVERIFY(pressByName(Qt::Key_Up));
        const QList<int> keys = takeWaiting(view);
        QVERIFY(keys.size() <= 1);
        first = first || keys == QList<int>{Qt::Key_Left};
    }
    QVERIFY(first);
    QVERIFY(pressByName(Qt::Key_Left));
    QTRY_VERIFY(waiting(view).isEmpty());
}

QTEST_MAIN(WindowKeysTest)
#include "tst_windowkeys.moc"

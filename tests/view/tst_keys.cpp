// SPDX-License-Identifier: MIT
// Keys of the view, and the direction keys that come by way of another thread.
#include "engine/systemparam.h"
#include "support/waitfor.h"
#include "viewfixture.h"

#include <thread>

using namespace sim;
using tests::ViewFixture;

class tst_Keys : public QObject {
    Q_OBJECT

private slots:
    void arrows_move_by_the_key_step_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<QPointF>("by");
        QTest::newRow("left") << int(Qt::Key_Left) << QPointF(-0.5, 0);
        QTest::newRow("right") << int(Qt::Key_Right) << QPointF(0.5, 0);
        QTest::newRow("up") << int(Qt::Key_Up) << QPointF(0, 0.5);
        QTest::newRow("down") << int(Qt::Key_Down) << QPointF(0, -0.5);
    }
    void arrows_move_by_the_key_step() {
        QFETCH(int, key);
        QFETCH(QPointF, by);
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.session().document().select({0});
        f.view.SetKeyMoveDist(0.5);
        QTest::keyClick(&f.canvas(), Qt::Key(key));
        QCOMPARE(QPointF(f.bounds(0).minX, f.bounds(0).minY), by);
    }

    void a_row_of_arrows_is_one_step() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.session().document().select({0});
        f.view.SetKeyMoveDist(1.0);
        for (int i = 0; i < 5; ++i) {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, QString(), i > 0);
            QCoreApplication::sendEvent(&f.canvas(), &event);
        }
        QCOMPARE(f.bounds(0).minX, 5.0);
        f.view.Undo();
        QCOMPARE(f.bounds(0).minX, 0.0);
    }

    void keys_reach_the_view_itself_too() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.session().document().select({0});
        f.view.SetKeyMoveDist(1.0);
        QTest::keyClick(&f.view, Qt::Key_Left);
        QCOMPARE(f.bounds(0).minX, -1.0);
    }

    void delete_undo_and_redo() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.addRect(20, 0, 10, 10);
        f.session().document().select({0});
        QTest::keyClick(&f.canvas(), Qt::Key_Delete);
        QCOMPARE(f.state()->count(), 1);
        QTest::keyClick(&f.canvas(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.state()->count(), 2);
        QTest::keyClick(&f.canvas(), Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(f.state()->count(), 1);
    }

    void select_all_copy_and_paste_with_the_offset() {
        ViewFixture f;
        SystemParam::Instance()->SetPasteOffset(3.0, -2.0);
        f.addRect(0, 0, 10, 10, 4);
        f.addRect(20, 0, 10, 10);
        QTest::keyClick(&f.canvas(), Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(f.view.GetSelectedToolCnt(), 2);
        f.session().document().select({0});
        QTest::keyClick(&f.canvas(), Qt::Key_C, Qt::ControlModifier);
        QTest::keyClick(&f.canvas(), Qt::Key_V, Qt::ControlModifier);
        QTest::keyClick(&f.canvas(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(f.state()->count(), 4);
        QCOMPARE(f.bounds(2).minX, 3.0);
        QCOMPARE(f.bounds(2).minY, -2.0);
        QCOMPARE(f.bounds(3).minX, 6.0);
        QCOMPARE(f.view.GetToolLayer(3), 4);
        QCOMPARE(f.selected(), QList<int>({3}));
    }

    void the_clipboard_reaches_other_documents() {
        ViewFixture f;
        f.addCircle(0, 0, 5);
        f.session().document().select({0});
        QTest::keyClick(&f.canvas(), Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(f.state()->count(), 0);
        QRulerView other(nullptr);
        QTest::keyClick(&other, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(QRulerViewAccess::session(other).state()->count(), 1);
    }

    void read_only_keys_change_nothing() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.session().document().select({0});
        f.view.SetReadOnly(true);
        const auto before = f.state()->objects;
        for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Left})
            QTest::keyClick(&f.canvas(), key);
        QTest::keyClick(&f.canvas(), Qt::Key_X, Qt::ControlModifier);
        QTest::keyClick(&f.canvas(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(f.state()->objects, before);
    }

    void pending_keys_are_passed_on_by_another_thread_and_move_on_the_main_one() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.session().document().select({0});
        f.view.SetKeyMoveDist(2.0);
        {
            const QMutexLocker lock(&f.view.m_DirKeyLock);
            f.view.m_DirKeys << Qt::Key_Up << Qt::Key_Right << Qt::Key_F5;
        }
        std::thread keys([&] { f.view.OnKeyUpDonwEvent(1, true); });
        keys.join();
        QCOMPARE(f.bounds(0).minX, 0.0);
        QVERIFY(tests::waitFor([&] { return f.bounds(0).minX == 2.0 && f.bounds(0).minY == 2.0; }));
        const QMutexLocker lock(&f.view.m_DirKeyLock);
        QVERIFY(f.view.m_DirKeys.isEmpty());
    }

    void a_key_waits_in_the_list_until_the_selection_is_moved() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.session().document().select({0});
        f.view.SetKeyMoveDist(1.0);
        int queued = 0;
        for (int i = 0; i < 50; ++i) {
            {
                const QMutexLocker lock(&f.view.m_DirKeyLock);
                if (f.view.m_DirKeys.isEmpty()) {
                    f.view.m_DirKeys << Qt::Key_Right;
                    ++queued;
                }
            }
            std::thread([&] { f.view.OnKeyUpDonwEvent(1, true); }).join();
        }
        QCOMPARE(queued, 1);
        QCoreApplication::processEvents();
        QCOMPARE(f.bounds(0).minX, 1.0);
        {
            const QMutexLocker lock(&f.view.m_DirKeyLock);
            QVERIFY(f.view.m_DirKeys.isEmpty());
            f.view.m_DirKeys << Qt::Key_Right;
        }
        f.view.OnKeyUpDonwEvent(1, true);
        QCoreApplication::processEvents();
        QCOMPARE(f.bounds(0).minX, 2.0);
    }

    void key_thread_and_main_thread_work_side_by_side() {
        ViewFixture f;
        f.addRect(0, 0, 10, 10);
        f.session().document().select({0});
        f.view.SetKeyMoveDist(1.0);
        std::atomic<bool> run{true};
        std::thread keys([&] {
            while (run)
                f.view.OnKeyUpDonwEvent(0, false);
        });
        constexpr int kKeys = 200;
        for (int i = 0; i < kKeys; ++i) {
            {
                const QMutexLocker lock(&f.view.m_DirKeyLock);
                f.view.m_DirKeys << Qt::Key_Right;
            }
            QCoreApplication::processEvents();
        }
        const bool arrived = tests::waitFor([&] { return f.bounds(0).minX == double(kKeys); });
        run = false;
        keys.join();
        QVERIFY2(arrived, qPrintable(QString::number(f.bounds(0).minX)));
    }

    void a_move_posted_to_a_view_that_is_gone_is_dropped() {
        tests::TemporaryRoot root;
        auto view = std::make_unique<QRulerView>(nullptr);
        view->m_DirKeys << Qt::Key_Left;
        view->OnKeyUpDonwEvent(1, false);
        view.reset();
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(tst_Keys)
#include "tst_keys.moc"

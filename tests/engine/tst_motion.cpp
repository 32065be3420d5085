// SPDX-License-Identifier: MIT
#include "engine/class_cardpara.h"
#include "engine/movecardmanager.h"
#include "engine/vzmovecard.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>
#include <limits>

class TestMotion : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;

private slots:
    void initTestCase() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        MoveCardManager::Instance()->SetMoveCardInstance(new VZMoveCard);
    }
    void cleanupTestCase() {
        MoveCardManager::Instance()->SetMoveCardInstance(nullptr);
        m_root.reset();
    }

    void motion_card_is_the_one_that_was_set() { QVERIFY(MoveCardManager::Instance()->GetMoveCardInstance()); }

    void motion_is_enabled_as_the_parameters_say_whether_open_or_closed() {
        MoveCardManager* const manager = MoveCardManager::Instance();
        bool const before = Class_CardPara::Instance()->EnableMotion;
        manager->CloseMoveCard();
        for (bool on : {true, false, true}) {
            Class_CardPara::Instance()->EnableMotion = on;
            QCOMPARE(manager->IsEnableMoveCard(), on);
            QVERIFY(!manager->IsCardOpened());
        }
        Class_CardPara::Instance()->EnableMotion = before;
    }

    void operations_on_a_closed_motion_card_are_harmless() {
        MoveCardManager* const manager = MoveCardManager::Instance();
        manager->CloseMoveCard();
        QVERIFY(!manager->IsCardOpened());
        for (int axis : {0, 7, -1, 8, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
            QVERIFY(!manager->AxisMove2(axis, 1.0, 10.0, 100.0));
            QVERIFY(!manager->AxisMove2Jog(axis, -10.0, 100.0));
            double position = 0;
            int state = 0;
            QVERIFY(!manager->AxisGetAltPos(axis, position));
            QVERIFY(!manager->AxisGetInfo(axis, position, state));
            QVERIFY(!manager->AxisChangeToT(axis));
            QVERIFY(!manager->SetCurPos(axis, 1.0));
            manager->WaiAxisStop(axis);
        }
        manager->StopAll();
        manager->CloseMoveCard();
    }

    void idle_state_word_tells_no_fault() {
        IMoveCardBase const* card = MoveCardManager::Instance()->GetMoveCardInstance();
        QVERIFY(!card->IsDriverAlarm(0));
        QVERIFY(!card->IsNegtiveLimit(0));
        QVERIFY(!card->IsPositiveLimit(0));
    }
};

QTEST_MAIN(TestMotion)
#include "tst_motion.moc"

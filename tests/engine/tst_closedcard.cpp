// SPDX-License-Identifier: MIT
#include "engine/cardfunctions.h"
#include "engine/iooutputset.h"
#include "engine/layerdata.h"
#include "engine/markcardinstance.h"
#include "engine/vzmarkcard.h"
#include "tests/support/temporaryroot.h"

#include <QtTest>
#include <functional>

namespace {

struct Operation {
    char const* name;
    std::function<void(IMarkCardBase&)> run;
};

/// Every operation of the card, with arguments that would do something on an open one.
QVector<Operation> operations() {
    static LayerParamEx layers;
    static DOT3 points[2] = {{0, 0, 0}, {1, 1, 0}};
    return {
        {"GetInput", [](IMarkCardBase& card) { QCOMPARE(card.GetInput(), 0U); }},
        {"GetOutput", [](IMarkCardBase& card) { QCOMPARE(card.GetOutput(), 0U); }},
        {"GetInputBit", [](IMarkCardBase& card) { QCOMPARE(card.GetInputBit(0), 0); }},
        {"GetOutputBit", [](IMarkCardBase& card) { QCOMPARE(card.GetOutputBit(31), 0); }},
        {"SetOutputBit", [](IMarkCardBase& card) { card.SetOutputBit(3, 1); }},
        {"SetMarkType", [](IMarkCardBase& card) { card.SetMarkType(MarkTypeRedPreview); }},
        {"SetMarkStaus", [](IMarkCardBase& card) { card.SetMarkStaus(MarkStatusRun); }},
        {"GetMarkStatus", [](IMarkCardBase& card) { QCOMPARE(card.GetMarkStatus(), MarkStatusStop); }},
        {"IsMarkStop", [](IMarkCardBase& card) { QVERIFY(card.IsMarkStop()); }},
        {"DownLayerPara", [](IMarkCardBase& card) { card.DownLayerPara(&layers, kLayerCount); }},
        {"BeginList", [](IMarkCardBase& card) { card.BeginList(1); }},
        {"AddList", [](IMarkCardBase& card) { card.AddList(points, 2, 0); }},
        {"AddMarkPoint", [](IMarkCardBase& card) { card.AddMarkPoint(layers, 0, points[1], 1.0); }},
        {"EndList", [](IMarkCardBase& card) { card.EndList(); }},
        {"StopMark", [](IMarkCardBase& card) { card.StopMark(); }},
        {"PauseMark", [](IMarkCardBase& card) { card.PauseMark(); }},
        {"RestartMark", [](IMarkCardBase& card) { card.RestartMark(); }},
        {"MoveMirrorPos", [](IMarkCardBase& card) { card.MoveMirrorPos(1, 1, 1000.0, 0); }},
        {"GetBufferRunTime", [](IMarkCardBase& card) { QCOMPARE(card.GetBufferRunTime(), 0.0); }},
        {"SystemIsAlarm",
         [](IMarkCardBase& card) {
             unsigned int word = 77;
             QVERIFY(!card.SystemIsAlarm(word));
             QCOMPARE(word, 0U);
         }},
        {"ClearAlarm", [](IMarkCardBase& card) { card.ClearAlarm(); }},
        {"GetMarkInfo", [](IMarkCardBase& card) { QCOMPARE(card.GetMarkInfo(), 0U); }},
        {"GetScanState", [](IMarkCardBase& card) { QCOMPARE(card.GetScanState(), 0U); }},
        {"GetWaitInfo", [](IMarkCardBase& card) { QCOMPARE(card.GetWaitInfo(), QString()); }},
        {"GetCardVersion", [](IMarkCardBase& card) { QCOMPARE(card.GetCardVersion(), QString()); }},
        {"HasMotion", [](IMarkCardBase& card) { QVERIFY(!card.HasMotion()); }},
        {"GetStabtadrCalibParam", [](IMarkCardBase& card) { QVERIFY(card.GetStabtadrCalibParam()); }},
        {"SetCalibrationParam", [](IMarkCardBase& card) { card.SetCalibrationParam(); }},
        {"CardCommand",
         [](IMarkCardBase& card) {
             int first = 11;
             int second = 22;
             card.CardCommand(1, 2, 3, &first, &second);
             QCOMPARE(first, 11);
             QCOMPARE(second, 22);
         }},
        {"VZ_GetHdVer",
         [](IMarkCardBase&) {
             unsigned int word = 77;
             VZ_GetHdVer(&word);
             QCOMPARE(word, 0U);
         }},
        {"VZ_GetEncPos",
         [](IMarkCardBase&) {
             int position = 77;
             VZ_GetEncPos(&position);
             QCOMPARE(position, 0);
         }},
        {"ResetCardFlash", [](IMarkCardBase& card) { card.ResetCardFlash(); }},
        {"SetAlarmTime",
         [](IMarkCardBase& card) {
             int const before = card.GetAlarmTime();
             card.SetAlarmTime(before + 1);
             QCOMPARE(card.GetAlarmTime(), before);
         }},
        {"VZ_ResetCardFlash", [](IMarkCardBase&) { VZ_ResetCardFlash(); }},
        {"VZ_SetCardParaFile", [](IMarkCardBase&) { VZ_SetCardParaFile("/nowhere/VZMarkPara.cfg"); }},
        {"VZ_OutputError", [](IMarkCardBase&) { VZ_OutputError(1); }},
        {"VZ_OutputWaveNo", [](IMarkCardBase&) { VZ_OutputWaveNo(5); }},
        {"VZ_TestOssSwitchSpeed", [](IMarkCardBase&) { VZ_TestOssSwitchSpeed(); }},
        {"VZ_SetFlyPara", [](IMarkCardBase&) { VZ_SetFlyPara(); }},
        {"VZ_SetFlyEncInitPos", [](IMarkCardBase&) { VZ_SetFlyEncInitPos(100); }},
        {"VZ_FlashWriteAddr",
         [](IMarkCardBase&) {
             unsigned char const data[4] = {1, 2, 3, 4};
             QVERIFY(VZ_FlashWriteAddr(0, data, 4) != 0);
         }},
        {"IOOutputSet lamps",
         [](IMarkCardBase& card) {
             IOOutputSet::Instance()->SetGreen(&card);
             IOOutputSet::Instance()->SetGreenYellow(&card);
             IOOutputSet::Instance()->SetRed(&card);
             IOOutputSet::Instance()->SetYellow(&card);
         }},
    };
}

} // namespace

class TestClosedCard : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::TemporaryRoot> m_root;

    static void rows() {
        QTest::addColumn<int>("index");
        QVector<Operation> const all = operations();
        for (int i = 0; i < all.size(); ++i)
            QTest::newRow(all.at(i).name) << i;
    }

private slots:
    void initTestCase() {
        m_root = std::make_unique<tests::TemporaryRoot>();
        LayerData::InitLayerData();
    }
    void cleanup() { MarkCardInstance::SetMarkCardInstance(nullptr); }
    void cleanupTestCase() { m_root.reset(); }

    void there_is_no_card_before_one_is_set() { QVERIFY(!MarkCardInstance::Instance()); }

    void instance_is_the_card_that_was_set() {
        auto* first = new VZMarkCard;
        MarkCardInstance::SetMarkCardInstance(first);
        QCOMPARE(MarkCardInstance::Instance(), static_cast<IMarkCardBase*>(first));
        auto* second = new VZMarkCard;
        MarkCardInstance::SetMarkCardInstance(second);
        QCOMPARE(MarkCardInstance::Instance(), static_cast<IMarkCardBase*>(second));
        MarkCardInstance::SetMarkCardInstance(nullptr);
        QVERIFY(!MarkCardInstance::Instance());
    }

    void operation_on_a_card_never_opened_is_harmless_data() { rows(); }
    void operation_on_a_card_never_opened_is_harmless() {
        QFETCH(int, index);
        auto* card = new VZMarkCard;
        MarkCardInstance::SetMarkCardInstance(card);
        QVERIFY(!card->IsCardOpend());
        operations().at(index).run(*card);
        QVERIFY(!card->IsCardOpend());
        QCOMPARE(card->GetMarkStatus(), MarkStatusStop);
    }

    void operation_on_a_card_closed_again_is_harmless_data() { rows(); }
    void operation_on_a_card_closed_again_is_harmless() {
        QFETCH(int, index);
        auto* card = new VZMarkCard;
        MarkCardInstance::SetMarkCardInstance(card);
        card->OpenCard();
        card->CloseCard();
        QVERIFY(!card->IsCardOpend());
        operations().at(index).run(*card);
        QCOMPARE(card->GetOutput(), 0U);
    }

    void what_was_asked_of_a_closed_card_is_not_there_when_it_opens() {
        auto* card = new VZMarkCard;
        MarkCardInstance::SetMarkCardInstance(card);
        card->OpenCard();
        card->SetOutputBit(3, 0);
        VZ_SetFlyEncInitPos(42);
        card->CloseCard();
        for (Operation const& operation : operations())
            operation.run(*card);
        card->OpenCard();
        QCOMPARE(card->GetOutputBit(3), 0);
        QCOMPARE(card->GetMarkStatus(), MarkStatusStop);
        QCOMPARE(card->GetMarkInfo() & 1U, 0U);
        int position = 0;
        VZ_GetEncPos(&position);
        QVERIFY(position != 100);
        card->CloseCard();
    }

    void closing_twice_is_harmless() {
        auto* card = new VZMarkCard;
        MarkCardInstance::SetMarkCardInstance(card);
        card->CloseCard();
        card->OpenCard();
        card->CloseCard();
        card->CloseCard();
        QVERIFY(!card->IsCardOpend());
    }
};

QTEST_MAIN(TestClosedCard)
#include "tst_closedcard.moc"

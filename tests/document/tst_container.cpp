// SPDX-License-Identifier: MIT
#include "drawnplaces.h"
#include "engine/markshapecontainer.h"
#include "engine/marktool.h"
#include "engine/rundatagather.h"
#include "engine/systemparam.h"
#include "engine/vzmarkcard.h"
#include "samples.h"
#include "simengine/card/cardcore.h"
#include "simengine/view/marktoolaccess.h"
#include "support/temporaryroot.h"
#include "support/waitfor.h"

#include <QTest>
#include <atomic>
#include <cmath>
#include <thread>

using namespace sim;

namespace {

bool near(const QPointF& a, const QPointF& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y()) < 1e-9;
}

} // namespace

class ContainerTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void nothing_to_run_is_false_data();
    void nothing_to_run_is_false();
    void pens_reach_the_card_by_their_download_alone();
    void pens_that_use_the_default_take_it_as_it_is_at_the_download();
    void run_marks_what_the_document_holds();
    void selected_objects_only();
    void offset_records_stay_until_cleared();
    void inverted_axes();
    void stop_ends_a_repeating_run();
    void edits_during_a_run_do_not_reach_it();
    void indices_of_the_selection();
    void tools_show_the_objects_at_their_places();

private:
    std::unique_ptr<tests::TemporaryRoot> m_root;
    std::unique_ptr<Document> m_document;
    std::unique_ptr<MarkShapeContainer> m_container;
    std::unique_ptr<VZMarkCard> m_card;
};

void ContainerTest::init() {
    m_root = std::make_unique<tests::TemporaryRoot>();
    QVERIFY(m_root->isValid());
    m_document = std::make_unique<Document>();
    m_container = MarkShapeContainerAccess::make(*m_document);
    LayerData::InitLayerData();
    m_card = std::make_unique<VZMarkCard>();
    CardCore& card = simulatedCard();
    card.setSpeed(0.0);
    QVERIFY(card.open());
    card.setKind(MarkKind::Laser);
    card.setState(RunState::Run);
    m_document->edit([](const DocumentState& s) {
        return edits::add(s, {samples::line({{0, 0}, {2, 0}}), samples::line({{5, 5}, {5, 7}})});
    });
}

void ContainerTest::cleanup() {
    m_card.reset();
    SystemParam::Instance()->SetInvertX(false);
    SystemParam::Instance()->SetInvertY(false);
    SystemParam::Instance()->SetBufLoop(false);
    m_container.reset();
    m_document.reset();
    m_root.reset();
}

void ContainerTest::nothing_to_run_is_false_data() {
    QTest::addColumn<QString>("state");
    for (const char* row : {"no objects", "nothing works", "nothing selected", "card closed", "stopped before"})
        QTest::newRow(row) << row;
}

void ContainerTest::nothing_to_run_is_false() {
    QFETCH(QString, state);
    QVERIFY(m_container->StartMark(false, false, m_document->pens()));
    QVERIFY(RunDataGather::Instance()->GetRunResult());
    m_document->selectAll();
    if (state == "no objects")
        m_document->edit(edits::removeSelected);
    else if (state == "nothing works")
        m_document->edit([](const DocumentState& s) { return edits::setWorkType(s, 0); });
    else if (state == "nothing selected")
        m_document->select({});
    else if (state == "card closed")
        simulatedCard().close();
    else
        simulatedCard().setState(RunState::Stop);
    QVERIFY(!m_container->StartMark(state == "nothing selected", false, m_document->pens()));
    QVERIFY(!RunDataGather::Instance()->GetRunResult());
    QVERIFY(RunDataGather::Instance()->GetLayerList().isEmpty());
}

/// What is changed in the table between download and start is for the next download.
void ContainerTest::pens_reach_the_card_by_their_download_alone() {
    LayerParamEx pens(*m_document->pens());
    const auto setSpeed = [&pens](double speed) {
        for (LayerData& pen : pens.GetLayerData()) {
            pen.UseDefault = false;
            pen.MarkSpeed = speed;
        }
    };
    const auto markMs = [&] {
        return m_container->StartMark(false, false, &pens) ? simulatedCard().lastTime().markMs : -1.0;
    };
    setSpeed(100.0);
    m_card->DownLayerPara(&pens, kLayerCount);
    const double slow = markMs();
    QVERIFY(slow > 0.0);
    setSpeed(400.0);
    const std::uint64_t end = simulatedCard().journal().lastSequence();
    QCOMPARE(markMs(), slow);
    for (const JournalEntry& call : simulatedCard().journal().since(end))
        QVERIFY(call.name != "DownLayerPara");
    m_card->DownLayerPara(&pens, kLayerCount);
    QCOMPARE(markMs(), slow / 4.0);
    QVERIFY(m_container->StartMark(false, false, nullptr));
    QCOMPARE(simulatedCard().lastTime().markMs, slow / 4.0);
}

void ContainerTest::pens_that_use_the_default_take_it_as_it_is_at_the_download() {
    LayerData fast;
    fast.MarkSpeed = 1000.0;
    LayerData::SetDefaultLatyerData(fast);
    LayerParamEx pens(*m_document->pens());
    for (LayerData& pen : pens.GetLayerData()) {
        pen.UseDefault = true;
        pen.MarkSpeed = 1.0;
    }
    m_card->DownLayerPara(&pens, kLayerCount);
    QVERIFY(m_container->StartMark(false, false, &pens));
    const double ms = simulatedCard().lastTime().markMs;
    QCOMPARE(ms, simulatedCard().lastTime().markedMm);
    LayerData slow = fast;
    slow.MarkSpeed = 100.0;
    LayerData::SetDefaultLatyerData(slow);
    QVERIFY(m_container->StartMark(false, false, &pens));
    QCOMPARE(simulatedCard().lastTime().markMs, ms);
    m_card->DownLayerPara(&pens, kLayerCount);
    QVERIFY(m_container->StartMark(false, false, &pens));
    QCOMPARE(simulatedCard().lastTime().markMs, ms * 10.0);
    for (const LayerData& pen : pens.GetLayerData())
        QVERIFY(pen.UseDefault && pen.MarkSpeed == 1.0);
}

void ContainerTest::run_marks_what_the_document_holds() {
    QVERIFY(m_container->StartMark(false, false, m_document->pens()));
    const QVector<QPointF> places = drawn();
    QVERIFY(!places.isEmpty());
    QVERIFY(near(places.first(), {2, 0}));
    QVERIFY(near(places.last(), {5, 7}));
}

void ContainerTest::selected_objects_only() {
    m_document->select({1});
    QVERIFY(m_container->StartMark(true, false, m_document->pens()));
    for (const QPointF& place : drawn())
        QVERIFY(place.x() == 5.0);
}

void ContainerTest::offset_records_stay_until_cleared() {
    CCDBufdata record;
    record.Values = {10, 20, 90, 0, 0, 0, 0};
    m_container->AddCCDBuf(record);
    record.Values = {-1, 0, 0, 0, 0, 0, 0};
    m_container->AddCCDBuf(record);
    for (int run = 0; run < 2; ++run) {
        QVERIFY(m_container->StartMark(false, false, m_document->pens()));
        QVERIFY(near(drawn().first(), {10, 22}));
        QVERIFY(near(drawn().last(), {4, 7}));
    }
    m_container->ClearCCDBuf();
    QVERIFY(m_container->StartMark(false, false, m_document->pens()));
    QVERIFY(near(drawn().first(), {2, 0}));
}

void ContainerTest::inverted_axes() {
    SystemParam::Instance()->SetInvertX(true);
    QVERIFY(m_container->StartMark(false, false, m_document->pens()));
    QVERIFY(near(drawn().last(), {-5, 7}));
    SystemParam::Instance()->SetInvertY(true);
    QVERIFY(m_container->StartMark(false, false, m_document->pens()));
    QVERIFY(near(drawn().last(), {-5, -7}));
}

void ContainerTest::stop_ends_a_repeating_run() {
    SystemParam::Instance()->SetBufLoop(true);
    std::atomic<int> result{-1};
    std::thread worker([&] { result = m_container->StartMark(false, true, m_document->pens()) ? 1 : 0; });
    const std::uint64_t before = simulatedCard().trace().pass();
    const bool repeats = tests::waitFor([&] { return simulatedCard().trace().pass() > before + 3; });
    simulatedCard().setState(RunState::Stop);
    worker.join();
    QVERIFY(repeats);
    QCOMPARE(result.load(), 1);
}

void ContainerTest::edits_during_a_run_do_not_reach_it() {
    SystemParam::Instance()->SetBufLoop(true);
    // The trace of the run before is still there until this one begins.
    const std::uint64_t before = simulatedCard().trace().pass();
    std::thread worker([&] { m_container->StartMark(false, true, m_document->pens()); });
    const bool began = tests::waitFor([&] { return simulatedCard().trace().pass() > before; });
    m_document->selectAll();
    for (int i = 0; i < 50; ++i)
        m_document->edit([](const DocumentState& s) { return edits::move(s, 1, 1); });
    const std::uint64_t pass = simulatedCard().trace().pass();
    const bool repeats = tests::waitFor([&] { return simulatedCard().trace().pass() > pass + 1; });
    simulatedCard().setState(RunState::Stop);
    worker.join();
    QVERIFY(began && repeats);
    for (const QPointF& place : drawn())
        QVERIFY(place.x() <= 5.0 && place.y() <= 7.0);
}

void ContainerTest::indices_of_the_selection() {
    m_document->edit([](const DocumentState& s) { return edits::add(s, {samples::point(0, 0)}); });
    m_document->select({2, 0});
    QCOMPARE(m_container->GetSelectedToolCnt(), 2);
    QCOMPARE(m_container->GetSelectedIndex(), (QList<int>{0, 2}));
    QCOMPARE(m_container->GetFirstSelectedIndex(), 0);
    QCOMPARE(m_container->GetBaseSelectedIndex(), 0);
    m_document->select({1});
    QCOMPARE(m_container->GetFirstSelectedIndex(), 1);
    QCOMPARE(m_container->GetBaseSelectedIndex(), -1);
    m_document->select({});
    QCOMPARE(m_container->GetFirstSelectedIndex(), -1);
}

void ContainerTest::tools_show_the_objects_at_their_places() {
    QCOMPARE(m_container->GetMarkTools().size(), 2);
    QVERIFY(!(*m_container)[2]);
    QVERIFY(!(*m_container)[-1]);
    MarkTool* second = (*m_container)[1];
    QCOMPARE(m_container->GetMarkTools()[1], second);
    QCOMPARE(second->GetTool()->GetToolClassName(), QStringLiteral("MarkToolLine"));
    QVERIFY(second->GetTool()->IsOpenCurve());
    m_document->select({1});
    m_document->edit([](const DocumentState& s) { return edits::setAngle(s, 30); });
    QVERIFY(second->GetTool()->IsAngleChanged());
    second->GetTool()->SetAngleChanged(false);
    QVERIFY(!m_document->state()->at(1)->data().angleChanged);
    HatchSettings hatch;
    hatch.fills[1] = {true, 0.2, 15, 3, 0, 1, 2};
    hatch.markFillFirst = true;
    m_document->edit([&](const DocumentState& s) { return edits::setHatch(s, hatch); });
    bool edge = false;
    bool first = false;
    bool simple = true;
    const QVector<FillParam> fills = second->GetFillParam(edge, first, simple);
    QVERIFY(edge && first && !simple && fills[1].Enable);
    QCOMPARE(fills[1].FillLayer, 3);
    m_document->edit(edits::removeSelected);
    QCOMPARE(m_container->GetMarkTools().size(), 1);
    QCOMPARE(second->GetTool()->GetToolClassName(), QString());
}

QTEST_MAIN(ContainerTest)
#include "tst_container.moc"

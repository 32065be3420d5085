// SPDX-License-Identifier: MIT
// The objects of a document as a run sees them.
#include "engine/markcardinstance.h"
#include "engine/markshapecontainer.h"
#include "engine/marktool.h"
#include "engine/vzmarkcard.h"
#include "simengine/card/cardcore.h"
#include "viewfixture.h"

#include <future>

using namespace sim;
using tests::ViewFixture;

class tst_Marking : public QObject {
    Q_OBJECT

private:
    static IMarkCardBase* card() { return MarkCardInstance::Instance(); }

private slots:
    void init() {
        MarkCardInstance::SetMarkCardInstance(new VZMarkCard());
        simulatedCard().setSpeed(0.0);
    }
    void cleanup() {
        card()->CloseCard();
        MarkCardInstance::SetMarkCardInstance(nullptr);
        simulatedCard().setSpeed(1.0);
    }

    void a_run_marks_the_document() {
        ViewFixture f;
        f.addRect(-10, -5, 20, 10, 3);
        card()->OpenCard();
        card()->SetMarkStaus(MarkStatusRun);
        QVERIFY(f.view.GetMarkTools()->StartMark(false, false, f.view.GetLayerParams()));
        const TraceSnapshot rows = simulatedCard().trace().snapshot();
        int marked = 0;
        for (std::size_t i = 0; i < rows.size(); ++i)
            marked += rows[i].laser && rows[i].pen == 3;
        QCOMPARE(marked, 4);
    }

    void nothing_to_mark_gives_false() {
        ViewFixture f;
        card()->OpenCard();
        card()->SetMarkStaus(MarkStatusRun);
        QVERIFY(!f.view.GetMarkTools()->StartMark(false, false, f.view.GetLayerParams()));
        f.addRect(0, 0, 5, 5);
        QVERIFY(!f.view.GetMarkTools()->StartMark(true, false, f.view.GetLayerParams()));
        card()->CloseCard();
        QVERIFY(!f.view.GetMarkTools()->StartMark(false, false, f.view.GetLayerParams()));
    }

    void a_run_keeps_the_objects_it_began_with() {
        ViewFixture f;
        f.addRect(-10, -5, 20, 10);
        card()->OpenCard();
        simulatedCard().setSpeed(1.0);
        card()->SetMarkStaus(MarkStatusRun);
        MarkShapeContainer* tools = f.view.GetMarkTools();
        LayerParamEx* pens = f.view.GetLayerParams();
        auto run = std::async(std::launch::async, [=] { return tools->StartMark(false, false, pens); });
        QTRY_VERIFY(simulatedCard().head().activity == Activity::Running);
        f.session().document().selectAll();
        f.session().removeSelected();
        simulatedCard().setSpeed(0.0);
        QVERIFY(run.get());
        QVERIFY(simulatedCard().trace().size() >= 5);
    }

    void offset_records_repeat_the_job() {
        ViewFixture f;
        f.addRect(0, 0, 5, 5);
        card()->OpenCard();
        card()->SetMarkStaus(MarkStatusRun);
        CCDBufdata record;
        record.Values[0] = 20.0;
        f.view.GetMarkTools()->AddCCDBuf(record);
        record.Values[0] = -20.0;
        f.view.GetMarkTools()->AddCCDBuf(record);
        const auto marked = [] {
            const TraceSnapshot rows = simulatedCard().trace().snapshot();
            int count = 0;
            for (std::size_t i = 0; i < rows.size(); ++i)
                count += rows[i].laser;
            return count;
        };
        QVERIFY(f.view.GetMarkTools()->StartMark(false, false, f.view.GetLayerParams()));
        QCOMPARE(marked(), 8);
        f.view.GetMarkTools()->ClearCCDBuf();
        QVERIFY(f.view.GetMarkTools()->StartMark(false, false, f.view.GetLayerParams()));
        QCOMPARE(marked(), 4);
    }

    void tools_stand_for_places_in_the_list() {
        ViewFixture f;
        f.addRect(0, 0, 5, 5);
        f.addLine(QPolygonF(QVector<QPointF>{{0, 0}, {9, 9}}));
        MarkShapeContainer* tools = f.view.GetMarkTools();
        QCOMPARE(tools->GetMarkTools().size(), 2);
        MarkTool* first = (*tools)[0];
        MarkTool* second = (*tools)[1];
        QCOMPARE(first->GetTool()->GetToolClassName(), QString("MarkToolRect"));
        QVERIFY(!first->GetTool()->IsOpenCurve());
        QVERIFY(second->GetTool()->IsOpenCurve());
        QVERIFY(!(*tools)[2]);
        QVERIFY(!(*tools)[-1]);
        f.session().document().select({0});
        f.session().removeSelected();
        QCOMPARE(first->GetTool()->GetToolClassName(), QString("MarkToolLine"));
        QCOMPARE(second->GetTool()->GetToolClassName(), QString());
        QVERIFY(!(*tools)[1]);
        QCOMPARE(tools->GetMarkTools(), QVector<MarkTool*>({first}));
    }

    void the_angle_mark_is_no_step_of_undo() {
        ViewFixture f;
        f.addRect(0, 0, 5, 5);
        f.session().document().select({0});
        IMarkToolBase* tool = (*f.view.GetMarkTools())[0]->GetTool();
        f.view.ChangeSelectedObjAngle(30.0);
        QVERIFY(tool->IsAngleChanged());
        tool->SetAngleChanged(false);
        QVERIFY(!tool->IsAngleChanged());
        QCOMPARE(f.undoSteps(), 2);
    }

    void fills_are_given_with_their_switches() {
        ViewFixture f;
        f.addRect(0, 0, 5, 5);
        f.session().document().select({0});
        bool edge = false, first = true, simple = true;
        QCOMPARE((*f.view.GetMarkTools())[0]->GetFillParam(edge, first, simple).size(), kFillCount);
        QVERIFY(edge && !first && !simple);
        QVector<FillParam> fills(kFillCount);
        fills[2].FillAngle = 45.0;
        f.view.FillSelectedObj(fills, false, true, true);
        fills = (*f.view.GetMarkTools())[0]->GetFillParam(edge, first, simple);
        QCOMPARE(fills[2].FillAngle, 45.0);
        QVERIFY(!edge && first && simple);
    }

    void selection_is_told_by_the_container() {
        ViewFixture f;
        for (int i = 0; i < 4; ++i)
            f.addRect(i * 10, 0, 5, 5);
        MarkShapeContainer* tools = f.view.GetMarkTools();
        QCOMPARE(tools->GetFirstSelectedIndex(), -1);
        QCOMPARE(tools->GetBaseSelectedIndex(), -1);
        f.session().document().select({3, 0, 2});
        QCOMPARE(tools->GetSelectedToolCnt(), 3);
        QCOMPARE(tools->GetSelectedIndex(), QList<int>({0, 2, 3}));
        QCOMPARE(tools->GetFirstSelectedIndex(), 0);
        QCOMPARE(tools->GetBaseSelectedIndex(), 2);
    }

    void a_tool_without_object_is_harmless() {
        MarkTool tool(nullptr);
        bool edge = false, first = false, simple = false;
        QCOMPARE(tool.GetFillParam(edge, first, simple).size(), kFillCount);
        QVERIFY(!tool.GetTool());
    }
};

QTEST_MAIN(tst_Marking)
#include "tst_marking.moc"

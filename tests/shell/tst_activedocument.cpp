// SPDX-License-Identifier: MIT
#include "engine/vzlistviewex.h"
#include "tests/shell/documentsfixture.h"

#include <QLabel>
#include <QSignalSpy>
#include <QToolBar>

using namespace tests;

/// What the window shows of the active document and how it follows it.
class ActiveDocumentTest : public QObject, protected DocumentsFixture {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void only_the_active_view_and_its_list_are_visible();
    void selection_enables_its_actions();
    void undo_and_redo_follow_the_document();
    void tools_exclude_one_another();
    void tools_without_a_document_stay_off();
    void pointer_position_is_shown();
    void the_views_callback_is_the_windows();
    void closing_the_last_document_disables_what_needs_one();
    void a_switch_takes_over_the_state_of_the_view();
    void without_rights_a_document_comes_up_locked();
    void only_the_active_view_tells_where_the_pointer_is();
    void a_view_activated_again_is_heard_once();
};

void ActiveDocumentTest::only_the_active_view_and_its_list_are_visible() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    window().OpenFile(file("a"));
    for (QRulerView* view : window().GetDocs()) {
        const bool active = view == window().GetActiveView();
        QCOMPARE(view->isVisible(), active);
        QCOMPARE(view->GetShowObjList()->isVisible(), active);
        QCOMPARE(view->GetObjListView()->window(), static_cast<QWidget*>(&window()));
    }
}

void ActiveDocumentTest::selection_enables_its_actions() {
    window().NewFile(file("a"));
    QRulerView* view = window().GetActiveView();
    emit view->SelectChanged(0, 0, 1, 1, 0, 1, 1);
    QVERIFY(action("actionmirrorTB")->isEnabled());
    QVERIFY(action("actionarrayObj")->isEnabled());
    QVERIFY(!action("actionAlignLeft")->isEnabled());
    QVERIFY(!action("actionComposite")->isEnabled());
    QCOMPARE(m_Window->child<QLabel>("labelSelectCnt")->text(), QStringLiteral("选择对象个数:1"));
    emit view->SelectChanged(0, 0, 1, 1, 0, 2, 1);
    QVERIFY(action("actionAlignLeft")->isEnabled());
    QVERIFY(action("actionsameSize")->isEnabled());
    QVERIFY(action("actionComposite")->isEnabled());
    emit view->SelectChanged(0, 0, 1, 1, 0, 0, -1);
    QVERIFY(!action("actionmirrorLR")->isEnabled());
    QVERIFY(!action("actionAlignTop")->isEnabled());
    // A view that is not active any more is not listened to.
    window().NewFile(file("b"));
    emit view->SelectChanged(0, 0, 1, 1, 0, 5, 1);
    QCOMPARE(m_Window->child<QLabel>("labelSelectCnt")->text(), QStringLiteral("选择对象个数:0"));
}

void ActiveDocumentTest::undo_and_redo_follow_the_document() {
    window().NewFile(file("a"));
    QRulerView* view = window().GetActiveView();
    QVERIFY(!action("actionUnDo")->isEnabled());
    view->AddMarkPoint(QPointF(0, 0));
    QTRY_VERIFY(action("actionUnDo")->isEnabled());
    QVERIFY(!action("actionReDo")->isEnabled());
    action("actionUnDo")->trigger();
    QTRY_VERIFY(action("actionReDo")->isEnabled());
    QVERIFY(!action("actionUnDo")->isEnabled());
    action("actionReDo")->trigger();
    QTRY_VERIFY(action("actionUnDo")->isEnabled());
}

void ActiveDocumentTest::tools_exclude_one_another() {
    window().NewFile(file("a"));
    const QRulerView* view = window().GetActiveView();
    const struct {
        char const* name;
        OperatorOnView op;
    } tools[] = {{"actionAddPoint", OperatorAddPoint},
                 {"actionaddLine", OperatorAddLine},
                 {"actionAddRect", OperatorAddRect},
                 {"actionAddCircle", OperatorAddCircle},
                 {"actionAddText", OperatorAddText},
                 {"actionTeachCircle", OperatorTeachCircle},
                 {"actionTeachArc", OperatorTeachArc},
                 {"actionscaleRegion", OperatorZoomRegion},
                 {"Select", OperatorSelect}};
    for (auto const& tool : tools) {
        action(tool.name)->trigger();
        QCOMPARE(view->GetOperatorOnView(), tool.op);
        for (auto const& other : tools)
            QVERIFY2(action(other.name)->isChecked() == (other.name == tool.name), other.name);
    }
    action("actionAddRect")->trigger();
    action("actionAddRect")->trigger();
    QCOMPARE(view->GetOperatorOnView(), OperatorSelect);
    QVERIFY(action("Select")->isChecked());
    QVERIFY(!action("actionAddRect")->isChecked());
    action("Select")->trigger();
    QVERIFY(action("Select")->isChecked());
}

void ActiveDocumentTest::tools_without_a_document_stay_off() {
    for (char const* name : {"actionTeachCircle", "actionscaleRegion"}) {
        action(name)->trigger();
        QVERIFY2(!action(name)->isChecked(), name);
    }
    for (char const* name : {"actionzoomIn", "actionzoomOut", "actionscaleSelect", "actionscaleReset", "actionSort"})
        action(name)->trigger();
}

void ActiveDocumentTest::pointer_position_is_shown() {
    window().NewFile(file("a"));
    emit window().GetActiveView()->MouseMoveEvent(QPointF(-1.23456, 20), QPoint(3, 4));
    QCOMPARE(m_Window->child<QLabel>("labelMousePos")->text(), QStringLiteral("X:-1.235,Y:20.000"));
}

void ActiveDocumentTest::the_views_callback_is_the_windows() {
    window().NewFile(file("a"));
    QRulerView* view = window().GetActiveView();
    view->SetCallBackMirrorPt(nullptr);
    QCOMPARE(window().GetCurDoc(), view);
    QVERIFY(window().GetActiveView() == window().GetCurDoc());
}

void ActiveDocumentTest::closing_the_last_document_disables_what_needs_one() {
    window().NewFile(file("a"));
    QVERIFY(action("actionSaveFile")->isEnabled());
    QVERIFY(action("actionComposite")->isEnabled());
    for (char const* page : {"MarkToolProperty", "MarkLayerParamForm"})
        QVERIFY2(m_Window->child<QWidget>(page)->isEnabled(), page);
    window().CloseAllFile();
    QVERIFY(!window().GetActiveView());
    for (char const* page : {"MarkToolProperty", "MarkLayerParamForm"})
        QVERIFY2(!m_Window->child<QWidget>(page)->isEnabled(), page);
    for (char const* name : {"actionSaveAll",      "actionSaveFile",      "actionUnDo",           "actionReDo",
                             "actionAlignLeft",    "actionAlignCenterH",  "actionAlignRight",     "actionAlignTop",
                             "actionAlignCenterV", "actionAlignBottom",   "actionsameWidth",      "actionsameHeight",
                             "actionsameSize",     "actionmirrorTB",      "actionmirrorLR",       "actionarrayObj",
                             "actionalienation",   "actionTeaching",      "actionRedLoopPreview", "actionComposite",
                             "actionUnComposite",  "actionCompositeLine", "actionUnCompositeLine"})
        QVERIFY2(!action(name)->isEnabled(), name);
    QVERIFY(!m_Window->child<QToolBar>("toolbar_AddMarkTool")->isEnabled());
    for (char const* name : {"action_NewFile", "actionOpenFlie", "actionSort"})
        QVERIFY2(action(name)->isEnabled(), name);
}

void ActiveDocumentTest::a_switch_takes_over_the_state_of_the_view() {
    window().NewFile(file("a"));
    QRulerView* a = window().GetActiveView();
    a->AddMarkPoint(QPointF(0, 0));
    a->SetOperatorOnView(OperatorAddPoint);
    window().NewFile(file("b"));
    QVERIFY(!action("actionUnDo")->isEnabled());
    QVERIFY(action("Select")->isChecked());
    QVERIFY(!action("actionAddPoint")->isChecked());
    window().SetCurDoc(0);
    QVERIFY(action("actionUnDo")->isEnabled());
    QVERIFY(action("actionAddPoint")->isChecked());
    QVERIFY(!action("Select")->isChecked());
    QVERIFY(action("actionComposite")->isEnabled());
    // Any other tool comes up as selecting.
    a->SetOperatorOnView(OperatorAddRect);
    window().SetCurDoc(1);
    window().SetCurDoc(0);
    QVERIFY(action("Select")->isChecked());
}

void ActiveDocumentTest::without_rights_a_document_comes_up_locked() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    window().GetDocs().at(0)->SetOperatorOnView(OperatorAddPoint);
    SystemParam::Instance()->SetEnableUserManager(true);
    window().SetCurDoc(0);
    for (char const* name : {"action_NewFile", "actionOpenFlie", "actionSaveFile", "actionSaveAll", "actionUnDo",
                             "actionReDo", "actionAlignLeft", "actionsameSize", "actionTeaching"})
        QVERIFY2(!action(name)->isEnabled(), name);
    QVERIFY(!m_Window->child<QToolBar>("toolbar_AddMarkTool")->isEnabled());
    QVERIFY(action("actionSort")->isEnabled());
    QVERIFY(action("Select")->isChecked());
    QCOMPARE(window().GetActiveView()->GetOperatorOnView(), OperatorSelect);
    // What is selected is neither counted nor does it enable anything.
    emit window().GetActiveView()->SelectChanged(0, 0, 1, 1, 0, 2, 1);
    QVERIFY(!action("actionAlignLeft")->isEnabled());
    QVERIFY(!action("actionmirrorTB")->isEnabled());
    QCOMPARE(m_Window->child<QLabel>("labelSelectCnt")->text(), QStringLiteral("选择对象个数:0"));
}

void ActiveDocumentTest::only_the_active_view_tells_where_the_pointer_is() {
    window().NewFile(file("a"));
    QRulerView* a = window().GetActiveView();
    window().NewFile(file("b"));
    emit window().GetActiveView()->MouseMoveEvent(QPointF(1, 2), QPoint());
    emit a->MouseMoveEvent(QPointF(3, 4), QPoint());
    QCOMPARE(m_Window->child<QLabel>("labelMousePos")->text(), QStringLiteral("X:1.000,Y:2.000"));
    action("actionAddRect")->trigger();
    a->SetOperatorOnView(OperatorSelect);
    emit a->ChangeOperatorOnView();
    QVERIFY(action("actionAddRect")->isChecked());
}

void ActiveDocumentTest::a_view_activated_again_is_heard_once() {
    window().NewFile(file("a"));
    window().NewFile(file("b"));
    QSignalSpy changed(&window(), &MainWindow::UserChanged);
    window().SetCurDoc(0);
    QCOMPARE(changed.count(), 1);
    window().SetCurDoc(0);
    QCOMPARE(changed.count(), 1);
    window().SetCurDoc(1);
    QCOMPARE(changed.count(), 2);
}

QTEST_MAIN(ActiveDocumentTest)
#include "tst_activedocument.moc"

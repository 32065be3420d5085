// SPDX-License-Identifier: MIT
#include "engine/externmodules.h"
#include "engine/languagemanager.h"
#include "engine/vzlistviewex.h"
#include "support/approot.h"
#include "tests/shell/actiontable.h"
#include "tests/shell/windowfixture.h"
#include "tests/support/dialoganswerer.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSet>
#include <QToolBar>

using namespace tests;

namespace {

QStringList g_Messages;

void keepMessage(QtMsgType, QMessageLogContext const&, QString const& text) {
    g_Messages.append(text);
}

/// The tools of the modules that come with the machine, in their order: they stand behind the bar's own.
QStringList moduleTools() {
    QStringList names;
    for (IMarkToolModule* module : GetExternModules()) {
        for (MarkToolBaseInfo* info : module->GetToolInfos())
            names.append(info->GetToolClassName());
    }
    return names;
}

/// The slots that QObject tells to be connected to `triggered` of this action by name.
QStringList slotsOf(QAction const* action) {
    g_Messages.clear();
    const QtMessageHandler former = qInstallMessageHandler(keepMessage);
    action->dumpObjectInfo();
    qInstallMessageHandler(former);
    QStringList found;
    bool triggered = false;
    for (QString const& line : qAsConst(g_Messages)) {
        if (line.contains(QStringLiteral("signal: ")))
            triggered = line.contains(QStringLiteral("signal: triggered("));
        else if (triggered && line.contains(QStringLiteral("--> MainWindow::")))
            found.append(line.section(QLatin1Char(' '), -1));
    }
    return found;
}

/// What a document is: its file's bytes, its tool, what can be undone.
struct State {
    QByteArray bytes;
    int op = 0;
    bool redo = false;
    bool undo = false;
    QImage image;

    bool operator==(State const& other) const {
        return bytes == other.bytes && op == other.op && redo == other.redo && undo == other.undo &&
               image == other.image;
    }
};

using Operation = void (*)(QRulerView*);
using ViewFunction = void (QRulerView::*)();

template<ViewFunction F>
void call(QRulerView* view) {
    (view->*F)();
}

} // namespace

Q_DECLARE_METATYPE(Operation)

/// Menus, tool bars and what their actions are, say and reach.
class WindowActionsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void bars_hold_their_actions_in_order_data();
    void bars_hold_their_actions_in_order();
    void every_action_is_in_the_table();
    void an_action_is_as_told_data();
    void an_action_is_as_told();
    void pictures_differ();
    void an_action_does_to_the_document_what_its_slot_does_data();
    void an_action_does_to_the_document_what_its_slot_does();
    void open_curves_alone_are_joined_data();
    void open_curves_alone_are_joined();
    void a_view_action_without_a_document_does_nothing_data();
    void a_view_action_without_a_document_does_nothing();
    void a_view_action_without_a_selection_does_nothing_data();
    void a_view_action_without_a_selection_does_nothing();
    void roughening_is_asked_for_first();
    void tools_exclude_one_another_data();
    void tools_exclude_one_another();
    void save_actions_show_their_box_data();
    void save_actions_show_their_box();

private:
    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
    MainWindow& window() { return **m_Window; }
    QAction* action(QByteArray const& name) { return m_Window->child<QAction>(name.constData()); }
    QRulerView* document();
    State stateOf(QRulerView* view);
};

void WindowActionsTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void WindowActionsTest::init() {
    resetMachine();
    LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
    m_Window = std::make_unique<RunningWindow>();
    window().resize(1024, 600);
}

void WindowActionsTest::cleanup() {
    m_Window.reset();
    LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
    QDir(tessera::rootPath(QStringLiteral("/MarkFile"))).removeRecursively();
}

void WindowActionsTest::bars_hold_their_actions_in_order_data() {
    QTest::addColumn<QString>("content");
    for (BarRow const& row : kBarRows)
        QTest::newRow(row.name) << QString::fromLatin1(row.content);
}

void WindowActionsTest::bars_hold_their_actions_in_order() {
    QFETCH(QString, content);
    QStringList expected = content.split(QLatin1Char(' '));
    if (QByteArray(QTest::currentDataTag()) == "toolbar_AddMarkTool") {
        QVERIFY(!moduleTools().isEmpty());
        expected += moduleTools();
    }
    QStringList names;
    for (QAction* entry : m_Window->child<QWidget>(QTest::currentDataTag())->actions()) {
        if (entry->isSeparator())
            names.append(QStringLiteral("-"));
        else
            names.append(entry->menu() ? entry->menu()->objectName() : entry->objectName());
    }
    QCOMPARE(names, expected);
}

void WindowActionsTest::every_action_is_in_the_table() {
    QSet<QString> told;
    for (ActionRow const& row : kActionRows)
        told.insert(QString::fromLatin1(row.name));
    QCOMPARE(told.size(), int(std::size(kActionRows)));
    QStringList const tools = moduleTools();
    QSet<QString> there;
    for (QAction* entry : window().findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!entry->objectName().isEmpty() && !tools.contains(entry->objectName()))
            there.insert(entry->objectName());
    }
    QCOMPARE(there, told);
    QSet<QString> shown;
    for (BarRow const& bar : kBarRows) {
        for (QString const& name : QString::fromLatin1(bar.content).split(QLatin1Char(' ')))
            shown.insert(name);
    }
    QCOMPARE(told - shown, QSet<QString>{QStringLiteral("actionscaleReset")});
}

void WindowActionsTest::an_action_is_as_told_data() {
    QTest::addColumn<int>("row");
    for (int i = 0; i < int(std::size(kActionRows)); ++i)
        QTest::newRow(kActionRows[i].name) << i;
}

/// A slot that the rule of names finds must be the action's only one; without it nothing is connected.
void WindowActionsTest::an_action_is_as_told() {
    QFETCH(int, row);
    ActionRow const& told = kActionRows[row];
    QAction* there = action(told.name);
    QCOMPARE(there->text(), LanguageManager::GetLanText(told.key));
    // a few keys are Latin; what the operator reads is Chinese all the same
    QVERIFY(QRegularExpression(QStringLiteral("[\\x{3400}-\\x{9fff}]")).match(there->text()).hasMatch());
    QCOMPARE(there->isCheckable(), told.checkable);
    QVERIFY(!there->icon().isNull());
    const bool hasSlot = told.slot[0] && window().metaObject()->indexOfSlot(told.slot) >= 0;
    QCOMPARE(slotsOf(there), hasSlot ? QStringList{QString::fromLatin1(told.slot)} : QStringList());
    LanguageManager::SetCurrentLan(QStringLiteral("en"));
    window().SetUIText();
    QCOMPARE(there->text(), QString::fromLatin1(told.english));
}

void WindowActionsTest::pictures_differ() {
    // Entries of the menu that stand for an action of the tool bar share its picture.
    const QSet<QString> shared{QStringLiteral("actionNew"), QStringLiteral("actionOpen"), QStringLiteral("actionSave")};
    QVector<QImage> seen;
    for (ActionRow const& row : kActionRows) {
        if (shared.contains(QString::fromLatin1(row.name)))
            continue;
        const QImage image = action(row.name)->icon().pixmap(28, 28).toImage();
        QVERIFY2(!image.isNull() && !seen.contains(image), row.name);
        seen.append(image);
    }
}

/// Rectangles of different sizes in an order that is not the shortest way, and two open lines whose ends meet; all of
/// it selected.
QRulerView* WindowActionsTest::document() {
    const QString path = tessera::rootPath(QStringLiteral("/MarkFile/a.mkf"));
    window().CloseFile(path);
    QFile::remove(path);
    window().NewFile(path);
    QRulerView* view = window().GetActiveView();
    const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='40mm' height='40mm' viewBox='0 0 40 40'>"
                               "<rect x='2' y='2' width='6' height='4'/><rect x='20' y='25' width='9' height='11'/>"
                               "<rect x='10' y='12' width='3' height='2'/>"
                               "<polyline fill='none' stroke='black' points='5,30 9,33 12,30'/>"
                               "<polyline fill='none' stroke='black' points='12,30 15,38'/></svg>";
    QString error;
    if (!m_Root.write(QStringLiteral("drawing.svg"), drawing) ||
        !view->ImportVectorFile(m_Root.path(QStringLiteral("drawing.svg")), error))
        qFatal("no drawing: %s", qPrintable(error));
    QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
    if (view->GetSelectedToolCnt() != 5)
        qFatal("not all of the drawing was taken");
    return view;
}

State WindowActionsTest::stateOf(QRulerView* view) {
    State state;
    view->RedoUndoStatus(state.redo, state.undo);
    state.op = view->GetOperatorOnView();
    state.image = view->grab().toImage();
    if (view->SaveDoc())
        state.bytes = m_Root.read(QDir(m_Root.path()).relativeFilePath(view->GetFileName()));
    return state;
}

void WindowActionsTest::an_action_does_to_the_document_what_its_slot_does_data() {
    QTest::addColumn<Operation>("prepare");
    QTest::addColumn<Operation>("operation");
    const Operation none = [](QRulerView*) {};
    const Operation changed = [](QRulerView* view) { view->MoveSelectObjRelative(3, 2); };
    QTest::newRow("actionUnDo") << changed << Operation(call<&QRulerView::Undo>);
    QTest::newRow("actionReDo") << Operation([](QRulerView* view) {
        view->MoveSelectObjRelative(3, 2);
        view->Undo();
    }) << Operation(call<&QRulerView::Redo>);
    QTest::newRow("actionSort") << none << Operation(call<&QRulerView::Sort>);
    QTest::newRow("actionscaleSelect") << none << Operation(call<&QRulerView::ScaleSelectObjRegion>);
    QTest::newRow("actionscaleReset") << Operation([](QRulerView* view) { view->Enlarge(true); })
                                      << Operation(call<&QRulerView::ResetView>);
    QTest::newRow("actionzoomIn") << none << Operation([](QRulerView* view) { view->Enlarge(true); });
    QTest::newRow("actionzoomOut") << none << Operation([](QRulerView* view) { view->Enlarge(false); });
    QTest::newRow("actionComposite") << none << Operation(call<&QRulerView::Combine>);
    QTest::newRow("actionUnComposite") << Operation(call<&QRulerView::Combine>)
                                       << Operation(call<&QRulerView::UnCombine>);
    QTest::newRow("actionCompositeLine") << none << Operation([](QRulerView* view) { view->CombineCurve(); });
    QTest::newRow("actionUnCompositeLine") << none << Operation(call<&QRulerView::UnCombineLine>);
    QTest::newRow("actionAlignLeft") << none << Operation(call<&QRulerView::AlignLeft>);
    QTest::newRow("actionAlignCenterH") << none << Operation(call<&QRulerView::AlignCenterH>);
    QTest::newRow("actionAlignRight") << none << Operation(call<&QRulerView::AlignRight>);
    QTest::newRow("actionAlignTop") << none << Operation(call<&QRulerView::AlignTop>);
    QTest::newRow("actionAlignCenterV") << none << Operation(call<&QRulerView::AlignCenterV>);
    QTest::newRow("actionAlignBottom") << none << Operation(call<&QRulerView::AlignBottom>);
    QTest::newRow("actionsameWidth") << none << Operation(call<&QRulerView::SameSelectedWidth>);
    QTest::newRow("actionsameHeight") << none << Operation(call<&QRulerView::SameSelectedHeight>);
    QTest::newRow("actionsameSize") << none << Operation(call<&QRulerView::SameSelectedSize>);
    QTest::newRow("actionmirrorTB") << none
                                    << Operation([](QRulerView* view) { view->MirrorSelectObj(MirrorTopBottom); });
    QTest::newRow("actionmirrorLR") << none
                                    << Operation([](QRulerView* view) { view->MirrorSelectObj(MirrorLeftRight); });
}

void WindowActionsTest::an_action_does_to_the_document_what_its_slot_does() {
    QFETCH(Operation, prepare);
    QFETCH(Operation, operation);
    QRulerView* view = document();
    prepare(view);
    const State before = stateOf(view);
    action(QTest::currentDataTag())->trigger();
    const State reached = stateOf(view);
    QVERIFY(!(reached == before));

    view = document();
    prepare(view);
    QVERIFY(stateOf(view) == before);
    operation(view);
    QVERIFY(stateOf(view) == reached);
}

void WindowActionsTest::open_curves_alone_are_joined_data() {
    QTest::addColumn<QVector<int>>("rows");
    QTest::addColumn<bool>("joined");
    QTest::newRow("two open lines") << QVector<int>{3, 4} << true;
    QTest::newRow("a rectangle among them") << QVector<int>{0, 3, 4} << false;
}

/// Joined, the two lines are one curve that may run on; side by side they stay two.
void WindowActionsTest::open_curves_alone_are_joined() {
    QFETCH(QVector<int>, rows);
    QFETCH(bool, joined);
    const auto choose = [&rows](QRulerView* view) {
        QListView* list = view->GetObjListView();
        list->clearSelection();
        for (int row : rows)
            list->selectionModel()->select(list->model()->index(row, 0), QItemSelectionModel::Select);
    };
    const auto after = [&](Operation operation) {
        QRulerView* view = document();
        choose(view);
        operation(view);
        return stateOf(view).bytes;
    };
    const QByteArray apart = after([](QRulerView* view) { view->CombineCurve(); });
    const QByteArray closed = after([](QRulerView* view) { view->CombineCurve(true); });
    QRulerView* view = document();
    choose(view);
    QCOMPARE(view->GetSelectedToolCnt(), rows.size());
    QVERIFY(apart != closed);
    QVERIFY(action("actionCompositeLine")->isEnabled());
    action("actionCompositeLine")->trigger();
    QCOMPARE(stateOf(view).bytes, joined ? closed : apart);
}

void WindowActionsTest::a_view_action_without_a_document_does_nothing_data() {
    QTest::addColumn<QByteArray>("name");
    for (char const* name : {"actionSort",          "actionscaleSelect",     "actionscaleReset",
                             "actionzoomIn",        "actionzoomOut",         "actionUnDo",
                             "actionReDo",          "actionComposite",       "actionUnComposite",
                             "actionCompositeLine", "actionUnCompositeLine", "actionAlignLeft",
                             "actionAlignCenterH",  "actionAlignRight",      "actionAlignTop",
                             "actionAlignCenterV",  "actionAlignBottom",     "actionsameWidth",
                             "actionsameHeight",    "actionsameSize",        "actionmirrorTB",
                             "actionmirrorLR",      "actionarrayObj",        "actionalienation",
                             "actionImportCAD",     "actionAddPoint",        "actionaddLine",
                             "actionAddRect",       "actionAddCircle",       "actionAddText",
                             "actionTeachCircle",   "actionTeachArc",        "actionscaleRegion"})
        QTest::newRow(name) << QByteArray(name);
}

/// Enabled all the same, as a key or another program might reach it.
void WindowActionsTest::a_view_action_without_a_document_does_nothing() {
    QFETCH(QByteArray, name);
    action(name)->setEnabled(true);
    DialogAnswerer noDialog;
    action(name)->trigger();
    QVERIFY(!window().GetActiveView());
    QVERIFY(!action(name)->isChecked());
    QVERIFY(action("Select")->isChecked());
}

void WindowActionsTest::a_view_action_without_a_selection_does_nothing_data() {
    QTest::addColumn<QByteArray>("name");
    for (char const* name : {"actionmirrorTB", "actionmirrorLR", "actionarrayObj", "actionalienation"})
        QTest::newRow(name) << QByteArray(name);
}

void WindowActionsTest::a_view_action_without_a_selection_does_nothing() {
    QFETCH(QByteArray, name);
    QRulerView* view = document();
    const QString path = view->GetFileName();
    QVERIFY(view->SaveDoc());
    window().CloseFile(path);
    window().OpenFile(path);
    view = window().GetActiveView();
    QCOMPARE(view->GetSelectedToolCnt(), 0);
    const State before = stateOf(view);
    action(name)->setEnabled(true);
    DialogAnswerer noDialog;
    action(name)->trigger();
    QVERIFY(stateOf(view) == before);
}

void WindowActionsTest::roughening_is_asked_for_first() {
    QRulerView* view = document();
    const QByteArray before = stateOf(view).bytes;
    DialogAnswerer answerer;
    answerer.reject();
    action("actionalienation")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().at(0).className, QStringLiteral("DimitionSet"));
    QCOMPARE(stateOf(view).bytes, before);
    answerer.press(QStringLiteral("确定"));
    action("actionalienation")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QVERIFY(stateOf(view).bytes != before);
}

void WindowActionsTest::tools_exclude_one_another_data() {
    QTest::addColumn<int>("op");
    QTest::newRow("actionAddPoint") << int(OperatorAddPoint);
    QTest::newRow("actionaddLine") << int(OperatorAddLine);
    QTest::newRow("actionAddRect") << int(OperatorAddRect);
    QTest::newRow("actionAddCircle") << int(OperatorAddCircle);
    QTest::newRow("actionAddText") << int(OperatorAddText);
    QTest::newRow("actionTeachCircle") << int(OperatorTeachCircle);
    QTest::newRow("actionTeachArc") << int(OperatorTeachArc);
    QTest::newRow("actionscaleRegion") << int(OperatorZoomRegion);
}

void WindowActionsTest::tools_exclude_one_another() {
    QFETCH(int, op);
    QRulerView* view = document();
    const QByteArray name = QTest::currentDataTag();
    const auto checked = [this] {
        QStringList names;
        for (ActionRow const& row : kActionRows) {
            if (row.checkable && action(row.name)->isChecked() && qstrcmp(row.name, "actionShowDoc") != 0)
                names.append(QString::fromLatin1(row.name));
        }
        return names;
    };
    action(name == "actionAddRect" ? "actionAddCircle" : "actionAddRect")->trigger();
    action(name)->trigger();
    QCOMPARE(int(view->GetOperatorOnView()), op);
    QCOMPARE(checked(), QStringList{QString::fromLatin1(name)});
    action(name)->trigger();
    QCOMPARE(view->GetOperatorOnView(), OperatorSelect);
    QCOMPARE(checked(), QStringList{QStringLiteral("Select")});
    action(name)->trigger();
    action("Select")->trigger();
    QCOMPARE(view->GetOperatorOnView(), OperatorSelect);
    QCOMPARE(checked(), QStringList{QStringLiteral("Select")});
}

void WindowActionsTest::save_actions_show_their_box_data() {
    QTest::addColumn<QByteArray>("name");
    for (char const* name : {"actionSave", "actionSaveFile", "actionSaveAll"})
        QTest::newRow(name) << QByteArray(name);
}

void WindowActionsTest::save_actions_show_their_box() {
    QFETCH(QByteArray, name);
    QRulerView* view = document();
    QVERIFY(QFile::remove(view->GetFileName()));
    DialogAnswerer answerer;
    answerer.press(QMessageBox::Ok);
    action(name)->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().at(0).text, QStringLiteral("保存成功"));
    QVERIFY(QFile::exists(view->GetFileName()));
}

QTEST_MAIN(WindowActionsTest)
#include "tst_windowactions.moc"

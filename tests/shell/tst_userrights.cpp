// SPDX-License-Identifier: MIT
#include "engine/boxspliceparam.h"
#include "simengine/users/session.h"
#include "support/approot.h"
#include "tests/shell/actiontable.h"
#include "tests/shell/windowfixture.h"
#include "tests/support/dialoganswerer.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QToolBar>

using namespace tests;

namespace {

constexpr char kName[] = "worker";
constexpr char kPassword[] = "worker-1";

/// The active document.
enum class Doc { None, Unselected, Selected };

} // namespace

Q_DECLARE_METATYPE(Doc)

/// What the current user's rights switch in the main window.
class UserRightsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void rights_switch_the_actions_data();
    void rights_switch_the_actions();
    void the_right_panel_follows_the_rights_data();
    void the_right_panel_follows_the_rights();
    void a_lost_right_to_add_goes_back_to_selecting();
    void undo_and_redo_are_those_of_the_document();
    void a_document_that_may_not_be_edited_is_read_only();
    void object_actions_stay_as_they_are();
    void the_splice_settings_are_read_anew();
    void user_entries_open_their_dialogs_data();
    void user_entries_open_their_dialogs();
    void a_login_takes_the_user_over();

private:
    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
    MainWindow& window() { return **m_Window; }
    QAction* action(char const* name) { return m_Window->child<QAction>(name); }
    void setRights(unsigned rights) {
        QCOMPARE(sim::userStore().setRights({QString::fromLatin1(kName), false, rights}), sim::UserResult::Done);
        sim::session().refresh();
    }
    void takeOver() { emit window().UserChanged(); }
    QRulerView* document(Doc kind);
};

void UserRightsTest::initTestCase() {
    QVERIFY(m_Root.isValid());
    QVERIFY(QDir().mkpath(m_Root.path(QStringLiteral("ini"))));
    const auto add = [](char const* name, bool administrator) {
        return sim::userStore().add({QString::fromLatin1(name), administrator, 0}, QString::fromLatin1(kPassword));
    };
    QCOMPARE(add("admin", true), sim::UserResult::Done);
    QCOMPARE(add(kName, false), sim::UserResult::Done);
    SystemParam::Instance()->SetEnableUserManager(true);
    QCOMPARE(sim::session().login(QString::fromLatin1(kName), QString::fromLatin1(kPassword)), sim::LoginResult::Done);
}

void UserRightsTest::cleanupTestCase() {
    sim::session().logout();
    SystemParam::Instance()->SetEnableUserManager(false);
}

void UserRightsTest::init() {
    resetMachine();
    setRights(sim::AllRights);
    m_Window = std::make_unique<RunningWindow>();
}

void UserRightsTest::cleanup() {
    m_Window.reset();
    QDir(tessera::rootPath(QStringLiteral("/MarkFile"))).removeRecursively();
}

/// Made and changed while every right is given. Opened anew it has no selection and nothing to undo.
QRulerView* UserRightsTest::document(Doc kind) {
    if (kind == Doc::None)
        return nullptr;
    const QString path = tessera::rootPath(QStringLiteral("/MarkFile/a.mkf"));
    QRulerView* view = m_Window->newDocument(3, path);
    if (kind == Doc::Selected)
        return view;
    view->SaveDoc();
    window().CloseFile(view->GetFileName());
    window().OpenFile(path);
    return window().GetActiveView();
}

void UserRightsTest::rights_switch_the_actions_data() {
    QTest::addColumn<unsigned>("rights");
    QTest::addColumn<Doc>("doc");
    const struct {
        char const* name;
        Doc doc;
    } docs[] = {{"no document", Doc::None}, {"no selection", Doc::Unselected}, {"selection", Doc::Selected}};
    const struct {
        char const* name;
        unsigned rights;
    } sets[] = {{"none", 0},
                {"new", sim::RightNewFile},
                {"open", sim::RightOpenFile},
                {"save", sim::RightSaveFile},
                {"delete", sim::RightDeleteFile},
                {"add", sim::RightAddShape},
                {"edit", sim::RightEditTool},
                {"parameters", sim::RightEditParam},
                {"all", sim::AllRights}};
    for (auto const& doc : docs) {
        for (auto const& set : sets)
            QTest::addRow("%s, %s", set.name, doc.name) << set.rights << doc.doc;
    }
}

/// An object action is in the state in which the document left it.
void UserRightsTest::rights_switch_the_actions() {
    QFETCH(unsigned, rights);
    QFETCH(Doc, doc);
    document(doc);
    QMap<QString, bool> before;
    for (ActionRow const& row : kActionRows)
        before.insert(QString::fromLatin1(row.name), action(row.name)->isEnabled());
    setRights(rights);
    takeOver();
    const bool open = doc != Doc::None;
    const bool edit = open && (rights & sim::RightEditTool);
    for (ActionRow const& row : kActionRows) {
        const bool formerly = before.value(QString::fromLatin1(row.name));
        // An action that the machine's settings hide is off as well.
        const QMap<Gate, bool> expected{{Gate::Always, action(row.name)->isVisible()},
                                        {Gate::NewFile, (rights & sim::RightNewFile) != 0},
                                        {Gate::OpenFile, (rights & sim::RightOpenFile) != 0},
                                        {Gate::SaveFile, open && (rights & sim::RightSaveFile)},
                                        {Gate::AddBar, true},
                                        {Gate::Add, open && (rights & sim::RightAddShape)},
                                        {Gate::EditSelected, edit && doc == Doc::Selected},
                                        {Gate::EditUndo, edit && doc == Doc::Selected},
                                        {Gate::EditRedo, false},
                                        {Gate::Off, false},
                                        {Gate::Selection, formerly}};
        QVERIFY2(action(row.name)->isEnabled() == expected.value(row.gate), row.name);
    }
    QCOMPARE(m_Window->child<QToolBar>("toolbar_AddMarkTool")->isEnabled(), open && (rights & sim::RightAddShape));
}

void UserRightsTest::the_right_panel_follows_the_rights_data() {
    rights_switch_the_actions_data();
}

void UserRightsTest::the_right_panel_follows_the_rights() {
    QFETCH(unsigned, rights);
    QFETCH(Doc, doc);
    auto* tool = new QLabel(QStringLiteral("tool"));
    auto* layer = new QLabel(QStringLiteral("layer"));
    window().SetRightPages(tool, nullptr, layer);
    QVERIFY(!tool->isEnabled());
    QVERIFY(!layer->isEnabled());
    document(doc);
    setRights(rights);
    takeOver();
    QCOMPARE(tool->isEnabled(), doc != Doc::None && (rights & sim::RightEditTool));
    QCOMPARE(layer->isEnabled(), doc != Doc::None && (rights & sim::RightEditParam));
}

void UserRightsTest::a_lost_right_to_add_goes_back_to_selecting() {
    QRulerView* view = document(Doc::Unselected);
    action("actionAddRect")->trigger();
    takeOver();
    QCOMPARE(view->GetOperatorOnView(), OperatorAddRect);
    setRights(sim::AllRights & ~unsigned(sim::RightAddShape));
    takeOver();
    QCOMPARE(view->GetOperatorOnView(), OperatorSelect);
    QVERIFY(action("Select")->isChecked());
}

void UserRightsTest::undo_and_redo_are_those_of_the_document() {
    QRulerView* view = document(Doc::Selected);
    view->Undo();
    takeOver();
    QVERIFY(action("actionUnDo")->isEnabled());
    QVERIFY(action("actionReDo")->isEnabled());
    setRights(0);
    takeOver();
    QVERIFY(!action("actionUnDo")->isEnabled());
    QVERIFY(!action("actionReDo")->isEnabled());
}

void UserRightsTest::a_document_that_may_not_be_edited_is_read_only() {
    QRulerView* view = document(Doc::Selected);
    int objects = 0;
    int vertices = 0;
    view->GetDocStatistics(objects, vertices);
    const int before = objects;
    setRights(sim::RightAddShape);
    takeOver();
    view->AddMarkPoint(QPointF(1, 1));
    view->GetDocStatistics(objects, vertices);
    QCOMPARE(objects, before);
    setRights(sim::RightEditTool);
    takeOver();
    view->AddMarkPoint(QPointF(1, 1));
    view->GetDocStatistics(objects, vertices);
    QCOMPARE(objects, before + 1);
}

void UserRightsTest::object_actions_stay_as_they_are() {
    document(Doc::Selected);
    for (char const* name : {"actionComposite", "actionUnComposite", "actionCompositeLine", "actionUnCompositeLine"}) {
        for (bool on : {true, false}) {
            action(name)->setEnabled(on);
            takeOver();
            QVERIFY2(action(name)->isEnabled() == on, name);
        }
    }
}

void UserRightsTest::the_splice_settings_are_read_anew() {
    BoxSpliceParam::Save(1, 1.5, 2.5, 3.5);
    BoxSpliceParam::m_OffsetX = 99.0;
    takeOver();
    QCOMPARE(double(BoxSpliceParam::m_OffsetX), 1.5);
    BoxSpliceParam::Save(0, 0.0, 0.0, 0.0);
}

void UserRightsTest::user_entries_open_their_dialogs_data() {
    QTest::addColumn<QString>("dialog");
    QTest::newRow("actionChangeUser") << QStringLiteral("LoginDialog");
    QTest::newRow("actionChangePassWord") << QStringLiteral("PasswordDialog");
    QTest::newRow("actionNewUser") << QStringLiteral("msgBox");
    QTest::newRow("actionViewPermission") << QStringLiteral("UserListDialog");
}

/// This user may not make others, and is told so.
void UserRightsTest::user_entries_open_their_dialogs() {
    QSignalSpy taken(&window(), &MainWindow::UserChanged);
    DialogAnswerer answerer;
    answerer.reject();
    action(QTest::currentDataTag())->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QTEST(answerer.seen().at(0).objectName, "dialog");
    QCOMPARE(taken.count(), 0);
}

void UserRightsTest::a_login_takes_the_user_over() {
    QSignalSpy taken(&window(), &MainWindow::UserChanged);
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [](QWidget& dialog) {
            dialog.findChild<QComboBox*>(QStringLiteral("comboBoxUser"))->setCurrentText(QString::fromLatin1(kName));
            for (QLineEdit* line : dialog.findChildren<QLineEdit*>()) {
                if (line->echoMode() == QLineEdit::Password)
                    line->setText(QString::fromLatin1(kPassword));
            }
        },
        QStringLiteral("登录"));
    action("actionChangeUser")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(taken.count(), 1);
}

QTEST_MAIN(UserRightsTest)
#include "tst_userrights.moc"

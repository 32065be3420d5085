// SPDX-License-Identifier: MIT
#include "engine/externmodules.h"
#include "engine/languagemanager.h"
#include "engine/markshapecontainer.h"
#include "support/approot.h"
#include "tests/shell/windowfixture.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenuBar>
#include <QTabWidget>
#include <QToolBar>

using namespace tests;

/// Custom windows out of the folder "/CustomWindow", and the tools of plug-in modules.
class CustomWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void type_none_loads_nothing();
    void empty_or_missing_folder_gives_no_window_data();
    void empty_or_missing_folder_gives_no_window();
    void whole_window_hides_the_editor_until_it_is_asked_for();
    void further_tab_stands_before_the_last();
    void first_library_that_loads_wins_data();
    void first_library_that_loads_wins();
    void an_ownerless_window_goes_with_the_main_window();
    void custom_window_fills_the_client_area_data();
    void custom_window_fills_the_client_area();

    void tools_of_modules_come_behind_the_own_ones();
    void a_module_tool_makes_the_view_add();
    void a_factory_that_makes_nothing_leaves_the_view_adding();
    void a_module_tool_without_a_document_does_nothing();
    void a_module_tool_that_is_taken_back_selects();
    void texts_of_plugins_follow_the_language();

private:
    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
    MainWindow& window() { return **m_Window; }
    void start() { m_Window = std::make_unique<RunningWindow>(); }
    QAction* action(char const* name) { return m_Window->child<QAction>(name); }
    QTabWidget* tabs() { return m_Window->child<QTabWidget>("tabWidgetMian"); }
    void install(QString const& library, QString const& name) {
        QVERIFY(QDir(m_Root.path()).mkpath(QStringLiteral("CustomWindow")));
        QVERIFY(QFile::copy(library, m_Root.path(QStringLiteral("CustomWindow/") + name)));
    }
    /// What the log says about custom windows, from the last report on; the log writes a line end as "\\n".
    QString report() {
        QString text;
        const QDir folder(tessera::rootPath(QStringLiteral("/日志文件")));
        for (QString const& name : folder.entryList(QDir::Files)) {
            if (name != QLatin1String("Debug.txt"))
                text += QString::fromUtf8(m_Root.read(QStringLiteral("/日志文件/") + name));
        }
        const int from = text.lastIndexOf(QStringLiteral("GetCustom: "));
        return from < 0 ? QString() : text.mid(from).replace(QStringLiteral("\\n"), QStringLiteral("\n"));
    }
    void clearLog() { QDir(tessera::rootPath(QStringLiteral("/日志文件"))).removeRecursively(); }
};

void CustomWindowTest::initTestCase() {
    QVERIFY(m_Root.isValid());
}

void CustomWindowTest::init() {
    resetMachine();
    clearLog();
}

void CustomWindowTest::cleanup() {
    m_Window.reset();
    LanguageManager::SetCurrentLan(QStringLiteral("zh_CN"));
    SystemParam::Instance()->m_nCustomUIType = 0;
    for (char const* folder : {"/CustomWindow", "/MarkFile", "/MarkToolModules"})
        QDir(tessera::rootPath(QString::fromLatin1(folder))).removeRecursively();
}

void CustomWindowTest::type_none_loads_nothing() {
    install(QStringLiteral(GOOD_WINDOW), QStringLiteral("good.so"));
    start();
    QVERIFY(!window().findChild<QLabel*>(QStringLiteral("goodWindow")));
    QVERIFY(!action("actionChangeDebug")->isVisible());
    QCOMPARE(tabs()->count(), 2);
    QVERIFY(report().isEmpty());
}

void CustomWindowTest::empty_or_missing_folder_gives_no_window_data() {
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("folder");
    QTest::newRow("missing, whole window") << 1 << false;
    QTest::newRow("empty, whole window") << 1 << true;
    QTest::newRow("missing, tab") << 2 << false;
    QTest::newRow("empty, tab") << 2 << true;
}

void CustomWindowTest::empty_or_missing_folder_gives_no_window() {
    QFETCH(int, type);
    QFETCH(bool, folder);
    SystemParam::Instance()->m_nCustomUIType = type;
    if (folder)
        QVERIFY(QDir(m_Root.path()).mkpath(QStringLiteral("CustomWindow")));
    start();
    QVERIFY(!action("actionChangeDebug")->isVisible());
    QVERIFY(window().centralWidget()->isVisible());
    QVERIFY(m_Window->child<QToolBar>("toolBar_main")->isVisible());
    QCOMPARE(tabs()->count(), 2);
    QCOMPARE(report().trimmed(), QStringLiteral("GetCustom:"));
}

void CustomWindowTest::whole_window_hides_the_editor_until_it_is_asked_for() {
    SystemParam::Instance()->m_nCustomUIType = 1;
    install(QStringLiteral(GOOD_WINDOW), QStringLiteral("good.so"));
    start();
    auto* custom = m_Window->child<QLabel>("goodWindow");
    QVERIFY(custom->isVisible());
    QVERIFY(!window().centralWidget()->isVisible());
    QVERIFY(!m_Window->child<QToolBar>("toolBar")->isVisible());
    QVERIFY(window().menuBar()->isVisible());
    QVERIFY(action("actionChangeDebug")->isVisible());
    action("actionChangeDebug")->trigger();
    QVERIFY(!custom->isVisible());
    QVERIFY(window().centralWidget()->isVisible());
    QCOMPARE(custom->pos(), QPoint(0, 50));
    action("actionChangeDebug")->trigger();
    QVERIFY(custom->isVisible());
    QVERIFY(!window().centralWidget()->isVisible());
    QCOMPARE(custom->pos(), QPoint(0, 50));
    QCOMPARE(report().trimmed(), QStringLiteral("GetCustom:"));
}

void CustomWindowTest::further_tab_stands_before_the_last() {
    SystemParam::Instance()->m_nCustomUIType = 2;
    install(QStringLiteral(GOOD_WINDOW), QStringLiteral("good.so"));
    start();
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(tabs()->tabText(1), QStringLiteral("定制"));
    QCOMPARE(tabs()->widget(1)->objectName(), QStringLiteral("goodWindow"));
    QCOMPARE(tabs()->tabText(2), QStringLiteral("说明书"));
    QVERIFY(!tabs()->isTabVisible(2));
    QVERIFY(tabs()->isTabVisible(1));
    QVERIFY(!action("actionChangeDebug")->isVisible());
    QVERIFY(window().centralWidget()->isVisible());
}

void CustomWindowTest::first_library_that_loads_wins_data() {
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("window");
    QTest::addColumn<QString>("told");
    const QString good = QStringLiteral(GOOD_WINDOW);
    const QString other = QStringLiteral(OTHER_LIBRARY);
    QTest::newRow("text first") << QStringList{QStringLiteral("a-text.so="), QStringLiteral("b.so=") + good} << true
                                << QStringLiteral("^GetCustom: a-text\\.so is load err\\(.+\\);$");
    QTest::newRow("two texts") << QStringList{QStringLiteral("a-text.so="), QStringLiteral("b-text.so=")} << false
                               << QStringLiteral("^GetCustom: a-text\\.so is load err\\(.+\\);\nb-text\\.so is load "
                                                 "err\\(.+\\);$");
    QTest::newRow("other library first, which ends the search")
        << QStringList{QStringLiteral("a-other.so=") + other, QStringLiteral("b.so=") + good} << false
        << QStringLiteral("^GetCustom: a-other\\.so is loadwindow err;$");
    QTest::newRow("window first, the other is not looked at")
        << QStringList{QStringLiteral("a.so=") + good, QStringLiteral("b-other.so=") + other} << true
        << QStringLiteral("^GetCustom:$");
    QTest::newRow("no window, the next is not looked at")
        << QStringList{QStringLiteral("a-none.so=") + QStringLiteral(NO_WINDOW), QStringLiteral("b.so=") + good}
        << false << QStringLiteral("^GetCustom:$");
    QTest::newRow("other names are passed over")
        << QStringList{QStringLiteral("a.so.1=") + good, QStringLiteral("b.txt=") + good} << false
        << QStringLiteral("^GetCustom:$");
}

void CustomWindowTest::first_library_that_loads_wins() {
    QFETCH(QStringList, files);
    QFETCH(bool, window);
    QFETCH(QString, told);
    SystemParam::Instance()->m_nCustomUIType = 1;
    for (QString const& file : files) {
        const QString name = file.section(QLatin1Char('='), 0, 0);
        const QString library = file.section(QLatin1Char('='), 1);
        if (library.isEmpty())
            QVERIFY(m_Root.write(QStringLiteral("CustomWindow/") + name, "no library\n"));
        else
            install(library, name);
    }
    start();
    QCOMPARE(MainWindow::Instance()->findChild<QLabel*>(QStringLiteral("goodWindow")) != nullptr, window);
    QCOMPARE(action("actionChangeDebug")->isVisible(), window);
    QCOMPARE(MainWindow::Instance()->centralWidget()->isVisible(), !window);
    const QString lines = report().trimmed();
    QVERIFY2(QRegularExpression(told, QRegularExpression::DotMatchesEverythingOption).match(lines).hasMatch(),
             qPrintable(lines));
}

void CustomWindowTest::an_ownerless_window_goes_with_the_main_window() {
    SystemParam::Instance()->m_nCustomUIType = 1;
    install(QStringLiteral(OWNERLESS_WINDOW), QStringLiteral("ownerless.so"));
    start();
    QPointer<QWidget> custom;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QLatin1String("ownerlessWindow"))
            custom = widget;
    }
    QVERIFY(custom && custom->isVisible());
    m_Window->close();
    QVERIFY(!custom);
}

void CustomWindowTest::custom_window_fills_the_client_area_data() {
    QTest::addColumn<bool>("menuHidden");
    QTest::newRow("menu shown") << false;
    QTest::newRow("menu hidden") << true;
}

void CustomWindowTest::custom_window_fills_the_client_area() {
    QFETCH(bool, menuHidden);
    SystemParam::Instance()->m_nCustomUIType = 1;
    SystemParam::Instance()->m_nHideMainMenu = menuHidden ? 1 : 0;
    install(QStringLiteral(GOOD_WINDOW), QStringLiteral("good.so"));
    start();
    QCOMPARE(window().menuBar()->isVisible(), !menuHidden);
    auto* custom = m_Window->child<QLabel>("goodWindow");
    for (QSize const& size : {QSize(1280, 720), QSize(1024, 640)}) {
        window().resize(size);
        const int top = menuHidden ? 0 : window().menuBar()->geometry().bottom() + 1;
        const int bottom = size.height() - 1 - (menuHidden ? 0 : 6);
        QTRY_COMPARE(custom->geometry(), QRect(QPoint(0, top), QPoint(size.width() - 1, bottom)));
        QVERIFY(menuHidden || top > 0);
    }
}

void CustomWindowTest::tools_of_modules_come_behind_the_own_ones() {
    QVERIFY(QDir(m_Root.path()).mkpath(QStringLiteral("MarkToolModules")));
    QVERIFY(QFile::copy(QStringLiteral(TOOL_MODULE), m_Root.path(QStringLiteral("MarkToolModules/tool.so"))));
    start();
    const QList<QAction*> bar = m_Window->child<QToolBar>("toolbar_AddMarkTool")->actions();
    QCOMPARE(bar.at(6)->objectName(), QStringLiteral("actionAddText"));
    const QList<QAction*> actions = bar.mid(bar.size() - 2); // behind those that come with the engine
    for (int i = 7; i < bar.size(); ++i)
        QVERIFY(bar.at(i)->isCheckable() && !bar.at(i)->objectName().isEmpty());
    QCOMPARE(actions.at(0)->objectName(), QStringLiteral("TestStar"));
    QCOMPARE(actions.at(0)->toolTip(), QStringLiteral("矩形"));
    QCOMPARE(actions.at(1)->objectName(), QStringLiteral("TestNothing"));
    QCOMPARE(actions.at(1)->toolTip(), QStringLiteral("圆形"));
    for (QAction* tool : {actions.at(0), actions.at(1)}) {
        QVERIFY(tool->isCheckable());
        QVERIFY(!tool->icon().isNull());
    }
}

void CustomWindowTest::a_module_tool_makes_the_view_add() {
    QVERIFY(QDir(m_Root.path()).mkpath(QStringLiteral("MarkToolModules")));
    QVERIFY(QFile::copy(QStringLiteral(TOOL_MODULE), m_Root.path(QStringLiteral("MarkToolModules/tool.so"))));
    start();
    QRulerView* view = m_Window->newDocument();
    action("actionAddRect")->trigger();
    action("TestStar")->trigger();
    QCOMPARE(view->GetOperatorOnView(), OperatorAddPluginTool);
    QVERIFY(action("TestStar")->isChecked());
    for (char const* other : {"Select", "actionAddRect", "TestNothing"})
        QVERIFY2(!action(other)->isChecked(), other);
}

void CustomWindowTest::a_factory_that_makes_nothing_leaves_the_view_adding() {
    QVERIFY(QDir(m_Root.path()).mkpath(QStringLiteral("MarkToolModules")));
    QVERIFY(QFile::copy(QStringLiteral(TOOL_MODULE), m_Root.path(QStringLiteral("MarkToolModules/tool.so"))));
    start();
    QRulerView* view = m_Window->newDocument();
    action("TestNothing")->trigger();
    QCOMPARE(view->GetOperatorOnView(), OperatorAddPluginTool);
    QVERIFY(action("TestNothing")->isChecked());
    QVERIFY(!action("Select")->isChecked());
    const int objects = view->GetMarkTools()->GetMarkTools().size();
    QTest::mouseClick(view, Qt::LeftButton, Qt::NoModifier, view->rect().center());
    QCOMPARE(view->GetMarkTools()->GetMarkTools().size(), objects);
}

void CustomWindowTest::a_module_tool_without_a_document_does_nothing() {
    QVERIFY(QDir(m_Root.path()).mkpath(QStringLiteral("MarkToolModules")));
    QVERIFY(QFile::copy(QStringLiteral(TOOL_MODULE), m_Root.path(QStringLiteral("MarkToolModules/tool.so"))));
    start();
    action("TestStar")->trigger();
    QVERIFY(action("Select")->isChecked());
    QVERIFY(!window().GetActiveView());
}

void CustomWindowTest::a_module_tool_that_is_taken_back_selects() {
    QVERIFY(QDir(m_Root.path()).mkpath(QStringLiteral("MarkToolModules")));
    QVERIFY(QFile::copy(QStringLiteral(TOOL_MODULE), m_Root.path(QStringLiteral("MarkToolModules/tool.so"))));
    start();
    QRulerView* view = m_Window->newDocument();
    action("TestStar")->trigger();
    action("TestStar")->trigger();
    QCOMPARE(view->GetOperatorOnView(), OperatorSelect);
    QVERIFY(action("Select")->isChecked());
    QVERIFY(!action("TestStar")->isChecked());
}

void CustomWindowTest::texts_of_plugins_follow_the_language() {
    SystemParam::Instance()->m_nCustomUIType = 2;
    install(QStringLiteral(GOOD_WINDOW), QStringLiteral("good.so"));
    QVERIFY(QDir(m_Root.path()).mkpath(QStringLiteral("MarkToolModules")));
    QVERIFY(QFile::copy(QStringLiteral(TOOL_MODULE), m_Root.path(QStringLiteral("MarkToolModules/tool.so"))));
    start();
    for (bool english : {true, false}) {
        LanguageManager::SetCurrentLan(english ? QStringLiteral("en") : QStringLiteral("zh_CN"));
        window().SetUIText();
        QCOMPARE(tabs()->tabText(1), english ? QStringLiteral("Custom") : QStringLiteral("定制"));
        QCOMPARE(action("TestStar")->toolTip(), english ? QStringLiteral("Rectangle") : QStringLiteral("矩形"));
    }
}

QTEST_MAIN(CustomWindowTest)
#include "tst_customwindow.moc"

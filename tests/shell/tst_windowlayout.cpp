// SPDX-License-Identifier: MIT
#include "shell/rightpanel.h"
#include "shell/windowgeometry.h"
#include "tests/shell/windowcase.h"

#include <QGridLayout>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>

using namespace tests;

/// Where things stand in the main window, and which optional tools there are.
class WindowLayoutTest : public QObject, private WindowCase {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(hasRoot()); }
    void init() { beginCase(); }
    void cleanup();

    void columns_of_the_centre_data();
    void columns_of_the_centre();
    void status_bar_holds_its_labels_in_order();
    void pages_share_the_right_panel_data();
    void pages_share_the_right_panel();
    void pages_follow_the_panel();
    void labels_follow_the_window_data();
    void labels_follow_the_window();
    void custom_window_place_data();
    void custom_window_place();
    void an_optional_tool_follows_mode_and_switch_data();
    void an_optional_tool_follows_mode_and_switch();
};

void WindowLayoutTest::cleanup() {
    endCase();
    SystemParam* system = SystemParam::Instance();
    system->SetWorkMode(0);
    for (auto set : {&SystemParam::SetEnableCodeTool, &SystemParam::SetEnableSplitLaserSet,
                     &SystemParam::SetEnableFlyMarkTool, &SystemParam::SetEnableCcdTool})
        (system->*set)(false);
}

void WindowLayoutTest::columns_of_the_centre_data() {
    QTest::addColumn<int>("column");
    QTest::newRow("frameObjList") << 0;
    QTest::newRow("toolbar_AddMarkTool") << 1;
    QTest::newRow("tabWidgetMian") << 2;
    QTest::newRow("toolBarAuxiliary") << 3;
    QTest::newRow("widgetRight") << 4;
}

void WindowLayoutTest::columns_of_the_centre() {
    QFETCH(int, column);
    start();
    auto* grid = m_Window->child<QGridLayout>("gridLayout");
    auto* widget = m_Window->child<QWidget>(QTest::currentDataTag());
    int row = -1;
    int there = -1;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(grid->indexOf(widget), &row, &there, &rows, &columns);
    QCOMPARE(row, 0);
    QCOMPARE(there, column);
    if (auto* bar = qobject_cast<QToolBar*>(widget))
        QCOMPARE(bar->orientation(), Qt::Vertical);
    if (auto* tabs = qobject_cast<QTabWidget*>(widget)) {
        QCOMPARE(tabs->widget(0)->objectName(), QStringLiteral("tabFile"));
        QCOMPARE(tabs->widget(1)->objectName(), QStringLiteral("tabDoc"));
        QCOMPARE(tabs->tabText(0), QStringLiteral("文档"));
        QCOMPARE(tabs->tabText(1), QStringLiteral("说明书"));
    }
}

void WindowLayoutTest::status_bar_holds_its_labels_in_order() {
    start();
    window().resize(1920, 1080);
    auto* bar = m_Window->child<QStatusBar>("statusbar");
    int right = -1;
    for (char const* name :
         {"labelSelectCnt", "labelMousePos", "labelBufferTime", "labelSpare", "labelGreenLamp", "labelYellowLamp",
          "labelRedLamp", "alarmLaser", "alarmSafe", "labelCardVersion", "labelSoftVersion", "labelCardStatus"}) {
        auto* widget = m_Window->child<QWidget>(name);
        const int former = right;
        QTRY_VERIFY2(widget->mapTo(bar, QPoint()).x() > former, name);
        right = widget->mapTo(bar, QPoint()).x();
    }
}

void WindowLayoutTest::pages_share_the_right_panel_data() {
    QTest::addColumn<QSize>("panel");
    QTest::addColumn<int>("motion");
    QTest::addColumn<QRect>("motionRect");
    QTest::addColumn<QRect>("layerRect");
    QTest::newRow("without motion") << QSize(245, 500) << -1 << QRect() << QRect(0, 185, 245, 315);
    QTest::newRow("with motion") << QSize(245, 700) << 200 << QRect(0, 185, 245, 200) << QRect(0, 385, 245, 315);
    QTest::newRow("low") << QSize(245, 300) << 100 << QRect(0, 185, 245, 100) << QRect(0, 285, 245, 15);
}

void WindowLayoutTest::pages_share_the_right_panel() {
    QFETCH(QSize, panel);
    QFETCH(int, motion);
    const tessera::RightPageRects rects = tessera::RightPages(panel, motion);
    QCOMPARE(rects.toolProperty, QRect(QPoint(0, 0), QPoint(panel.width() - 1, 184)));
    QTEST(rects.motion, "motionRect");
    QTEST(rects.layerForm, "layerRect");
}

void WindowLayoutTest::pages_follow_the_panel() {
    start();
    auto* panel = m_Window->child<RightPanel>("widgetRight");
    auto* tool = new QLabel(QStringLiteral("tool"));
    auto* motion = new QLabel(QStringLiteral("motion"));
    auto* layer = new QLabel(QStringLiteral("layer"));
    motion->resize(100, 120);
    window().SetRightPages(tool, motion, layer);
    QCOMPARE(layer->parentWidget(), panel);
    for (int height : {900, 700}) {
        window().resize(1280, height);
        QTRY_COMPARE(layer->geometry().bottom(), panel->height() - 1);
        QTRY_COMPARE(panel->height(), window().centralWidget()->height());
        QCOMPARE(tool->geometry(), QRect(QPoint(0, 0), QPoint(244, 184)));
        QCOMPARE(motion->geometry(), QRect(0, 185, 245, 120));
        QCOMPARE(layer->geometry().topLeft(), QPoint(0, 305));
        QVERIFY(tool->isVisible() && motion->isVisible() && layer->isVisible());
    }
}

void WindowLayoutTest::labels_follow_the_window_data() {
    QTest::addColumn<QSize>("size");
    QTest::newRow("1024 x 600") << QSize(1024, 600);
    QTest::newRow("1280 x 800") << QSize(1280, 800);
    QTest::newRow("1920 x 1080") << QSize(1920, 1080);
}

void WindowLayoutTest::labels_follow_the_window() {
    QFETCH(QSize, size);
    start();
    window().resize(size);
    auto* state = label("labelCardState");
    const QRect bar = m_Window->child<QToolBar>("toolBar")->geometry();
    QCOMPARE(state->geometry(), QRect(QPoint(bar.right() - 140, bar.top()), QPoint(bar.right() - 1, bar.bottom())));
    auto* status = m_Window->child<QStatusBar>("statusbar");
    QTRY_COMPARE(label("labelTime")->geometry(),
                 QRect(QPoint(status->width() / 2 - 220, 0), QPoint(status->width() / 2 + 179, status->height() - 1)));
    QVERIFY(state->width() >= state->fontMetrics().horizontalAdvance(state->text()));
}

void WindowLayoutTest::custom_window_place_data() {
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<QRect>("place");
    QTest::newRow("menu shown") << false << QRect(QPoint(0, 42), QPoint(1023, 593));
    QTest::newRow("menu hidden") << true << QRect(0, 0, 1024, 600);
}

void WindowLayoutTest::custom_window_place() {
    QFETCH(bool, hidden);
    QTEST(tessera::CustomWindowRect(QSize(1024, 600), hidden, 41), "place");
}

void WindowLayoutTest::an_optional_tool_follows_mode_and_switch_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("visible");
    for (int mode = 0; mode <= 3; ++mode) {
        for (bool enabled : {false, true})
            QTest::addRow("mode %d, %s", mode, enabled ? "on" : "off")
                << mode << enabled << (mode == 0 || (mode > 1 && enabled));
    }
}

/// The camera's entry is shown by the rule; where the rule hides, the text tool goes instead.
void WindowLayoutTest::an_optional_tool_follows_mode_and_switch() {
    QFETCH(int, mode);
    QFETCH(bool, enabled);
    QFETCH(bool, visible);
    SystemParam* system = SystemParam::Instance();
    start();
    system->SetWorkMode(mode);
    const struct {
        char const* action;
        void (SystemParam::*set)(bool);
        void (MainWindow::*look)();
    } tools[] = {
        {"actionAddText", &SystemParam::SetEnableCodeTool, &MainWindow::onCodeToolVisible},
        {"actionSplitLaserSet", &SystemParam::SetEnableSplitLaserSet, &MainWindow::onSplitLaserSetVisible},
        {"actionFlyMarkingSetting", &SystemParam::SetEnableFlyMarkTool, &MainWindow::onFlyMarkSetteingVisible},
    };
    for (auto const& tool : tools) {
        action(tool.action)->setVisible(!visible);
        (system->*tool.set)(enabled);
        (window().*tool.look)();
        QVERIFY2(action(tool.action)->isVisible() == visible, tool.action);
    }
    for (bool shown : {false, true}) {
        action("actionCCD")->setVisible(shown);
        action("actionAddText")->setVisible(true);
        system->SetEnableCcdTool(enabled);
        window().onCcdToolVisible();
        QCOMPARE(action("actionCCD")->isVisible(), shown || visible);
        QCOMPARE(action("actionAddText")->isVisible(), visible);
    }
}

QTEST_MAIN(WindowLayoutTest)
#include "tst_windowlayout.moc"

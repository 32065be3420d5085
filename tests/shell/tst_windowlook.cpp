// SPDX-License-Identifier: MIT
#include "engine/glassparam.h"
#include "engine/markcardinstance.h"
#include "shell/rightpanel.h"
#include "shell/windowgeometry.h"
#include "support/approot.h"
#include "tests/shell/windowcase.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

using namespace tests;

namespace {

/// The hardware word of a card whose version carries a suffix.
constexpr std::uint32_t kSuffixFamily = 1U << 22;

QStringList g_Warnings;

void keepWarning(QtMsgType, QMessageLogContext const&, QString const& text) {
    g_Warnings.append(text);
}

/// Points of exactly this colour in the picture of a widget.
int pixelsOf(QWidget* widget, QColor const& colour) {
    const QImage image = widget->grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == colour ? 1 : 0;
    }
    return count;
}

} // namespace

/// What the main window shows and hides.
class WindowLookTest : public QObject, private WindowCase {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void window_is_made_as_told();
    void version_comes_from_its_file();
    void card_version_has_its_suffix_data();
    void card_version_has_its_suffix();
    void custom_ui_types_other_than_whole_change_nothing_data();
    void custom_ui_types_other_than_whole_change_nothing();
    void whole_custom_ui_switches_the_editor();
    void a_run_locks_the_editing_part();
    void buffer_time_is_shown_with_three_decimals();
    void start_leaves_no_slot_unconnected();
    void without_a_document_its_actions_are_off_from_the_start();
    void window_is_the_screen_less_a_strip();
    void card_state_keeps_its_colour_during_a_run_data();
    void card_state_keeps_its_colour_during_a_run();
    void right_panel_has_room_once_it_has_a_page();
    void dialogs_have_a_frame_of_one_pixel();
    void menu_entries_follow_their_settings();
};

void WindowLookTest::initTestCase() {
    QVERIFY(hasRoot());
}

void WindowLookTest::init() {
    beginCase();
}

void WindowLookTest::cleanup() {
    endCase();
}

void WindowLookTest::window_is_made_as_told() {
    start();
    QCOMPARE(window().windowTitle(), QStringLiteral("VZ Tessera"));
    QCOMPARE(window().windowFlags() & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint), Qt::WindowFlags());
    QCOMPARE(window().contextMenuPolicy(), Qt::NoContextMenu);
    QCOMPARE(window().minimumSize(), QSize(800, 600));
    const QString sheet = qApp->styleSheet();
    QVERIFY(sheet.contains(QStringLiteral("labelStatus")));
    qApp->setStyleSheet(QString());
    QCOMPARE(qApp->style()->objectName(), QStringLiteral("fusion"));
    qApp->setStyleSheet(sheet);
    QCOMPARE(m_Window->child<QWidget>("widgetRight")->width(), 245);
    for (char const* name : {"labelSelectCnt", "labelMousePos", "labelBufferTime", "labelSpare"})
        QVERIFY2(label(name)->width() >= 200, name);
    QCOMPARE(label("labelMousePos")->text(), QStringLiteral("X:0.000,Y0.000"));
    QCOMPARE(label("labelBufferTime")->text(), QStringLiteral("BT:0.000ms"));
    QCOMPARE(label("labelSelectCnt")->text(), QStringLiteral("选择对象个数:0"));
    QCOMPARE(label("labelCardStatus")->text(), QStringLiteral("卡/振镜状态"));
    QVERIFY(action("Select")->isChecked());
    QVERIFY(!m_Window->child<QToolBar>("toolbar_AddMarkTool")->isEnabled());
    QVERIFY(QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"))
                .match(label("labelTime")->text())
                .hasMatch());
    for (char const* name :
         {"actionscaleRegion", "actionAddPoint", "actionAddText", "Select", "actionAddRect", "actionTeaching",
          "actionaddLine", "actionAddCircle", "actionTeachArc", "actionTeachCircle"})
        QVERIFY2(action(name)->isCheckable(), name);
    const auto* bar = m_Window->child<QToolBar>("toolBar");
    QCOMPARE(label("labelCardState")->geometry(), tessera::CardStateRect(bar->geometry(), 140));
    QCOMPARE(label("labelTime")->geometry(), tessera::TimeRect(m_Window->child<QStatusBar>("statusbar")->size()));
}

void WindowLookTest::version_comes_from_its_file() {
    start(false);
    QCOMPARE(label("labelSoftVersion")->text(), QStringLiteral("软件版本号:1.0.0  "));
    m_Window->close();
    QVERIFY(m_Root.write(QStringLiteral("version.ini"), "3.14.2 试用\r\nsecond line\n"));
    start(false);
    QCOMPARE(label("labelSoftVersion")->text(), QStringLiteral("软件版本号:3.14.2 试用  "));
    QVERIFY(QFile::remove(m_Root.path(QStringLiteral("version.ini"))));
}

void WindowLookTest::card_version_has_its_suffix_data() {
    QTest::addColumn<quint32>("bits");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("none") << quint32(0) << QString();
    QTest::newRow("bit 12 alone") << quint32(1U << 12) << QString();
    QTest::newRow("45") << quint32(kSuffixFamily) << QStringLiteral("-45");
    QTest::newRow("85") << quint32(kSuffixFamily | 1U << 12) << QStringLiteral("-85");
    QTest::newRow("other family") << quint32(3U << 22 | 1U << 12) << QString();
    QTest::newRow("second bit of the family") << quint32(1U << 23) << QString();
}

void WindowLookTest::card_version_has_its_suffix() {
    QFETCH(quint32, bits);
    QFETCH(QString, suffix);
    machine().setHardwareBits(bits);
    start(false);
    QCOMPARE(label("labelCardVersion")->text(),
             QStringLiteral("卡版本号:") + MarkCardInstance::Instance()->GetCardVersion() + suffix);
}

void WindowLookTest::custom_ui_types_other_than_whole_change_nothing_data() {
    QTest::addColumn<int>("type");
    QTest::newRow("none") << 0;
    QTest::newRow("further tab") << 2;
}

void WindowLookTest::custom_ui_types_other_than_whole_change_nothing() {
    QFETCH(int, type);
    SystemParam::Instance()->m_nCustomUIType = type;
    start();
    window().SetUIMode(false);
    QVERIFY(m_Window->child<QWidget>("centralwidget")->isVisible());
    // Had the state been taken over, this would hide the editor once the type is 1.
    window().SetUIMode(true);
    SystemParam::Instance()->m_nCustomUIType = 1;
    action("actionChangeDebug")->trigger();
    QVERIFY(m_Window->child<QWidget>("centralwidget")->isVisible());
    QVERIFY(!action("actionChangeDebug")->isVisible());
}

void WindowLookTest::whole_custom_ui_switches_the_editor() {
    SystemParam::Instance()->m_nCustomUIType = 1;
    start();
    window().setGeometry(0, 0, 1280, 720);
    window().SetUIMode(false);
    for (char const* name : {"centralwidget", "toolBar_main", "toolBar", "statusbar", "labelCardState", "labelTime"})
        QVERIFY2(!m_Window->child<QWidget>(name)->isVisible(), name);
    QVERIFY(window().menuBar()->isVisible());
    SystemParam::Instance()->m_nHideMainMenu = 1;
    window().SetUIMode(false);
    QVERIFY(!window().menuBar()->isVisible());
    window().SetUIMode(true);
    QVERIFY(window().menuBar()->isVisible());
    for (char const* name : {"centralwidget", "toolBar_main", "toolBar", "statusbar", "labelCardState", "labelTime"})
        QVERIFY2(m_Window->child<QWidget>(name)->isVisible(), name);
    QCOMPARE(label("labelCardState")->geometry(),
             tessera::CardStateRect(m_Window->child<QToolBar>("toolBar_main")->geometry(), 120));
}

void WindowLookTest::a_run_locks_the_editing_part() {
    start();
    for (bool run : {true, false}) {
        window().SetMarkStatus(run);
        for (char const* name : {"centralwidget", "toolBar_main", "menuBar"})
            QCOMPARE(m_Window->child<QWidget>(name)->isEnabled(), !run);
        QVERIFY(m_Window->child<QWidget>("toolBar")->isEnabled());
    }
}

void WindowLookTest::buffer_time_is_shown_with_three_decimals() {
    start();
    m_Window->newDocument(3);
    window().ShowNormalMarkWindow();
    machine().setSpeed(0.0);
    window().IOStartRun();
    QTRY_VERIFY(machine().lastJobTime().totalMs > 0.0);
    QTRY_COMPARE(label("labelBufferTime")->text(),
                 QStringLiteral("BT: ") + QString::number(machine().state().runTimeMs, 'f', 3) + QStringLiteral(" ms"));
    QTRY_VERIFY(!Form_Marking::Instance()->IsRunning());
}

void WindowLookTest::start_leaves_no_slot_unconnected() {
    g_Warnings.clear();
    const QtMessageHandler former = qInstallMessageHandler(keepWarning);
    start(false);
    qInstallMessageHandler(former);
    QCOMPARE(g_Warnings.filter(QStringLiteral("connectSlotsByName")), QStringList());
}

void WindowLookTest::without_a_document_its_actions_are_off_from_the_start() {
    start();
    for (char const* name : {"actionSaveFile", "actionSaveAll", "actionUnDo", "actionReDo", "actionComposite",
                             "actionUnComposite", "actionCompositeLine", "actionUnCompositeLine", "actionAlignLeft",
                             "actionsameSize", "actionmirrorTB", "actionarrayObj", "actionTeaching"})
        QVERIFY2(!action(name)->isEnabled(), name);
    QVERIFY(action("actionSort")->isEnabled());
}

void WindowLookTest::window_is_the_screen_less_a_strip() {
    start(false);
    const QRect place = tessera::WindowRect(QGuiApplication::primaryScreen()->geometry());
    QCOMPARE(window().geometry().topLeft(), place.topLeft());
    QCOMPARE(window().size(), place.size().expandedTo(QSize(800, 600)));
}

void WindowLookTest::card_state_keeps_its_colour_during_a_run_data() {
    QTest::addColumn<bool>("opens");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("open") << true << QColor(Qt::blue);
    QTest::newRow("failed") << false << QColor(Qt::red);
}

void WindowLookTest::card_state_keeps_its_colour_during_a_run() {
    QFETCH(bool, opens);
    QFETCH(QColor, colour);
    QVERIFY(machine().setFault("card_open_fails", !opens));
    start();
    QLabel* state = label("labelCardState");
    const int pixels = pixelsOf(state, colour);
    QVERIFY(pixels > 0);
    window().SetMarkStatus(true);
    QCOMPARE(pixelsOf(state, colour), pixels);
    window().SetMarkStatus(false);
    window().setEnabled(false);
    QCOMPARE(pixelsOf(state, colour), pixels);
    window().setEnabled(true);
    QCOMPARE(pixelsOf(state, colour), pixels);
}

void WindowLookTest::right_panel_has_room_once_it_has_a_page() {
    start();
    window().setGeometry(0, 0, 1280, 720);
    auto* panel = m_Window->child<RightPanel>("widgetRight");
    QVERIFY(panel->isVisible());
    QCOMPARE(panel->width(), 245);
    QTRY_COMPARE(panel->geometry().right(), window().centralWidget()->rect().right());
    auto* bar = m_Window->child<QWidget>("toolBarAuxiliary");
    QTRY_COMPARE(bar->geometry().right(), panel->geometry().left() - 1);
    RightPanel empty;
    QVERIFY(!empty.isVisible());
    auto* page = new QLabel(QStringLiteral("page"));
    empty.AddWnd(page);
    QVERIFY(empty.isVisible());
    QVERIFY(page->isVisible());
}

void WindowLookTest::dialogs_have_a_frame_of_one_pixel() {
    start();
    window().ShowNormalMarkWindow();
    QMessageBox box(QMessageBox::Information, QStringLiteral("title"), QStringLiteral("text"), QMessageBox::Ok,
                    &window());
    box.show();
    for (QWidget* dialog : {static_cast<QWidget*>(Form_Marking::Instance()), static_cast<QWidget*>(&box)}) {
        const QImage image = dialog->grab().toImage();
        const QColor frame(0x7d, 0x8b, 0x99);
        for (int x = 0; x < image.width(); ++x) {
            QCOMPARE(image.pixelColor(x, 0), frame);
            QCOMPARE(image.pixelColor(x, image.height() - 1), frame);
        }
        for (int y = 0; y < image.height(); ++y) {
            QCOMPARE(image.pixelColor(0, y), frame);
            QCOMPARE(image.pixelColor(image.width() - 1, y), frame);
        }
        QVERIFY(image.pixelColor(1, 1) != frame);
    }
}

void WindowLookTest::menu_entries_follow_their_settings() {
    SystemParam* system = SystemParam::Instance();
    const bool users = system->IsEnableUserManager();
    const bool layin = system->GetEnableLayLaser();
    const int max = system->EnableLaserHost_MAX();
    for (bool on : {true, false}) {
        system->SetEnableUserManager(on);
        system->SetEnableLayLaser(on);
        system->SetEnableLaserHost_MAX(on ? 2 : 0);
        GlassParam::Instance()->SetShowLaserAlarm(false);
        start();
        QCOMPARE(m_Window->child<QMenu>("menuUserManager")->menuAction()->isVisible(), on);
        QCOMPARE(action("action_LaserHostLayin")->isVisible(), on);
        QCOMPARE(action("action_LaserHostMAX")->isVisible(), on);
        QVERIFY(GlassParam::Instance()->IsShowLaserAlarm());
        QVERIFY(m_Window->child<QWidget>("alarmLaser")->isVisible());
    }
    system->SetEnableUserManager(users);
    system->SetEnableLayLaser(layin);
    system->SetEnableLaserHost_MAX(max);
}

QTEST_MAIN(WindowLookTest)
#include "tst_windowlook.moc"

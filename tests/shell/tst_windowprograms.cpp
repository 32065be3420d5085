// SPDX-License-Identifier: MIT
#include "engine/ccdposset.h"
#include "support/approot.h"
#include "tests/shell/windowfixture.h"
#include "tests/support/dialoganswerer.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>

using namespace tests;

/// Menu entries that ask, start programs of the system, or replace files, on a real X server. The programs are scripts
/// that note how they were called.
class WindowProgramsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void a_program_runs_only_after_yes_data();
    void a_program_runs_only_after_yes();
    void the_terminal_holds_the_program_until_it_ends();
    void display_settings_lose_their_frame_and_are_noted();
    void display_settings_without_output_are_not_noted();
    void display_settings_belong_to_one_board();
    void display_settings_that_are_not_there_hold_up_nothing();
    void a_background_picture_is_replaced();
    void a_background_picture_that_is_not_there_replaces_nothing();
    void the_card_is_reset_after_the_warning_data();
    void the_card_is_reset_after_the_warning();
    void camera_positions_open_once();

private:
    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
    QByteArray m_Path;
    MainWindow& window() { return **m_Window; }
    QAction* action(char const* name) { return m_Window->child<QAction>(name); }
    /// A program of the system whose script notes its name and arguments, and then does `more`.
    void install(QString const& name, QByteArray const& more = QByteArray()) {
        const QString file = m_Root.path(QStringLiteral("bin/") + name);
        QVERIFY(m_Root.write(QStringLiteral("bin/") + name, "#!/bin/sh\necho \"${0##*/} $*\" >> \"" +
                                                                m_Root.path(QStringLiteral("called")).toUtf8() +
                                                                "\"\n" + more));
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    QString called() { return QString::fromUtf8(m_Root.read(QStringLiteral("called"))); }
    QString log() {
        QString text;
        const QDir folder(tessera::rootPath(QStringLiteral("/日志文件")));
        for (QString const& name : folder.entryList(QDir::Files))
            text += QString::fromUtf8(m_Root.read(QStringLiteral("/日志文件/") + name));
        return text;
    }
};

void WindowProgramsTest::initTestCase() {
    QVERIFY(m_Root.isValid());
    m_Path = qgetenv("PATH");
    qputenv("PATH", m_Root.path(QStringLiteral("bin")).toUtf8() + ":" + m_Path);
}

void WindowProgramsTest::cleanupTestCase() {
    qputenv("PATH", m_Path);
    qunsetenv("TESSERA_BOARD");
}

void WindowProgramsTest::init() {
    resetMachine();
    qputenv("TESSERA_BOARD", "0");
    for (char const* name : {"/bin", "/日志文件"})
        QDir(tessera::rootPath(QString::fromUtf8(name))).removeRecursively();
    QFile::remove(m_Root.path(QStringLiteral("called")));
    m_Window = std::make_unique<RunningWindow>();
}

void WindowProgramsTest::cleanup() {
    m_Window.reset();
}

void WindowProgramsTest::a_program_runs_only_after_yes_data() {
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("question");
    QTest::addColumn<bool>("yes");
    QTest::addColumn<QString>("program");
    QTest::newRow("restart") << QByteArray("actionReboot") << QStringLiteral("重启设备")
                             << QStringLiteral("是否重启设备") << true << QStringLiteral("reboot \n");
    QTest::newRow("no restart") << QByteArray("actionReboot") << QStringLiteral("重启设备")
                                << QStringLiteral("是否重启设备") << false << QString();
    QTest::newRow("power off") << QByteArray("actionShutdown") << QStringLiteral("关闭设备")
                               << QStringLiteral("是否关闭设备") << true << QStringLiteral("shutdown -h now\n");
    QTest::newRow("no power off") << QByteArray("actionShutdown") << QStringLiteral("关闭设备")
                                  << QStringLiteral("是否关闭设备") << false << QString();
}

void WindowProgramsTest::a_program_runs_only_after_yes() {
    QFETCH(QByteArray, entry);
    QFETCH(QString, title);
    QFETCH(QString, question);
    QFETCH(bool, yes);
    QFETCH(QString, program);
    install(QStringLiteral("reboot"));
    install(QStringLiteral("shutdown"));
    DialogAnswerer answerer;
    answerer.press(yes ? QMessageBox::Yes : QMessageBox::No);
    action(entry.constData())->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().at(0).title, title);
    QCOMPARE(answerer.seen().at(0).text, question);
    QCOMPARE(called(), program);
}

void WindowProgramsTest::the_terminal_holds_the_program_until_it_ends() {
    install(QStringLiteral("lxterminal"),
            "sleep 0.3\necho ended >> \"" + m_Root.path(QStringLiteral("called")).toUtf8() + "\"\nexit 3\n");
    action("actionOpenTerminal")->trigger();
    QCOMPARE(called(), QStringLiteral("lxterminal \nended\n"));
}

void WindowProgramsTest::display_settings_lose_their_frame_and_are_noted() {
    install(QStringLiteral("xfce4-display-settings"), "exec " DISPLAY_SETTINGS "\n");
    action("action_ResolutionSet")->trigger();
    QCOMPARE(called(), QStringLiteral("xfce4-display-settings \n"));
    QVERIFY2(log().contains(QStringLiteral("分辨率设置结果:frameless")), qPrintable(log()));
}

void WindowProgramsTest::display_settings_without_output_are_not_noted() {
    install(QStringLiteral("xfce4-display-settings"));
    action("action_ResolutionSet")->trigger();
    QCOMPARE(called(), QStringLiteral("xfce4-display-settings \n"));
    QVERIFY(!log().contains(QStringLiteral("分辨率设置结果")));
}

void WindowProgramsTest::display_settings_belong_to_one_board() {
    install(QStringLiteral("xfce4-display-settings"));
    qputenv("TESSERA_BOARD", "1");
    action("action_ResolutionSet")->trigger();
    QVERIFY(called().isEmpty());
}

void WindowProgramsTest::display_settings_that_are_not_there_hold_up_nothing() {
    qputenv("PATH", m_Root.path(QStringLiteral("bin")).toUtf8());
    action("action_ResolutionSet")->trigger();
    qputenv("PATH", m_Root.path(QStringLiteral("bin")).toUtf8() + ":" + m_Path);
    QVERIFY(window().isVisible());
    QVERIFY(!log().contains(QStringLiteral("分辨率设置结果")));
}

void WindowProgramsTest::a_background_picture_is_replaced() {
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(m_Root.path(QStringLiteral("chosen.png"))));
    QVERIFY(m_Root.write(QStringLiteral("Res/background.png"), "former"));
    DialogAnswerer answerer;
    answerer.fillAndPress(
        [this](QWidget& dialog) {
            auto& files = dynamic_cast<QFileDialog&>(dialog);
            QCOMPARE(files.nameFilters(),
                     (QStringList{QStringLiteral("images(*.png *jpeg *bmp)"), QStringLiteral("All files(*.*)")}));
            files.findChild<QLineEdit*>()->setText(m_Root.path(QStringLiteral("chosen.png")));
        },
        QStringLiteral("打开(O)"));
    action("actionSetBackImage")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(m_Root.read(QStringLiteral("Res/background.png")), m_Root.read(QStringLiteral("chosen.png")));
}

void WindowProgramsTest::a_background_picture_that_is_not_there_replaces_nothing() {
    QVERIFY(m_Root.write(QStringLiteral("Res/background.png"), "former"));
    DialogAnswerer answerer;
    answerer.reject();
    action("actionSetBackImage")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(m_Root.read(QStringLiteral("Res/background.png")), QByteArray("former"));
}

void WindowProgramsTest::the_card_is_reset_after_the_warning_data() {
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("open");
    QTest::addColumn<int>("resets");
    QTest::newRow("ok") << int(QMessageBox::Ok) << true << 1;
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << true << 0;
    QTest::newRow("closed with Escape") << int(QMessageBox::NoButton) << true << 0;
    QTest::newRow("card closed") << int(QMessageBox::Ok) << false << 0;
}

void WindowProgramsTest::the_card_is_reset_after_the_warning() {
    QFETCH(int, button);
    QFETCH(bool, open);
    if (!open) {
        m_Window.reset();
        QVERIFY(machine().setFault("card_open_fails", true));
        m_Window = std::make_unique<RunningWindow>();
    }
    machine().setSpeed(0.0);
    machine().clearJournal();
    DialogAnswerer answerer;
    if (button == QMessageBox::NoButton)
        answerer.reject();
    else
        answerer.press(QMessageBox::StandardButton(button));
    action("actionResetVZCard")->trigger();
    QVERIFY(answerer.waitUntilAnswered());
    QCOMPARE(answerer.seen().at(0).title, QStringLiteral("警告"));
    QCOMPARE(answerer.seen().at(0).text, QStringLiteral("注意:卡Flash复位一般为出厂操作,除非必要请不要执行,复位需要几分"
                                                        "钟时间,请保证复位过程中不要断电"));
    QCOMPARE(answerer.seen().at(0).buttons.size(), 2);
    QTEST(machineCalls("ResetCardFlash"), "resets");
}

void WindowProgramsTest::camera_positions_open_once() {
    action("actionCCD")->trigger();
    QVERIFY(CCDPosSet::IsVisible());
    const int windows = QApplication::topLevelWidgets().size();
    action("actionCCD")->trigger();
    QCOMPARE(QApplication::topLevelWidgets().size(), windows);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget != &window())
            widget->close();
    }
    QVERIFY(!CCDPosSet::IsVisible());
}

QTEST_MAIN(WindowProgramsTest)
#include "tst_windowprograms.moc"

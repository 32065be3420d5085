// SPDX-License-Identifier: MIT
// The keyboard on the screen of the real program, on an X server of its own, touched as an operator does.
#include "e2e/tesseraprogram.h"

#include <QDeadlineTimer>
#include <QRect>
#include <QtTest>

namespace {

/// An X server with a screen of one size, which ends with the object.
class Screen {
public:
    explicit Screen(QSize const& size) {
        m_server.setProcessChannelMode(QProcess::SeparateChannels);
        m_server.start("Xvfb", {"-displayfd", "1", "-nolisten", "tcp", "-screen", "0",
                                QString("%1x%2x24").arg(size.width()).arg(size.height())});
        QDeadlineTimer deadline(longWait());
        while (!m_server.canReadLine() && !deadline.hasExpired() && m_server.waitForReadyRead(longWait()))
            ;
        m_display = ':' + QString::fromLatin1(m_server.readLine()).trimmed();
    }
    ~Screen() {
        m_server.terminate();
        m_server.waitForFinished(longWait());
    }
    QString display() const { return m_display; }
    bool isUp() const { return m_display.size() > 1; }

    /// What xdotool tells, empty when it fails.
    QString run(QStringList const& arguments) const {
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", m_display);
        tool.setProcessEnvironment(environment);
        tool.start("xdotool", arguments);
        bool const done = tool.waitForFinished(longWait()) && tool.exitCode() == 0;
        return done ? QString::fromLocal8Bit(tool.readAllStandardOutput()) : QString();
    }
    void touch(QPoint const& at) const {
        run({"mousemove", QString::number(at.x()), QString::number(at.y()), "click", "1"});
    }
    /// Where the keyboard's window is; empty while it is not shown.
    QRect keyboard() const {
        QString const found =
            run({"search", "--onlyvisible", "--name", "^Tessera keyboard$", "getwindowgeometry", "--shell"});
        QMap<QString, int> values;
        for (QString const& line : found.split('\n'))
            values[line.section('=', 0, 0)] = line.section('=', 1).toInt();
        return QRect(values["X"], values["Y"], values["WIDTH"], values["HEIGHT"]);
    }

private:
    QProcess m_server;
    QString m_display;
};

/// Where keys are within the four rows of keys, as shares of their width and height.
const QMap<QString, QPointF> kKeys = {{"n", {0.575, 0.57}},   {"i", {0.666, 0.126}}, {"h", {0.529, 0.348}},
                                      {"a", {0.116, 0.348}},  {"o", {0.749, 0.126}}, {"space", {0.451, 0.785}},
                                      {"hide", {0.89, 0.785}}};
/// The number pad's.
const QMap<QString, QPointF> kPad = {{"7", {0.517, 0.126}}, {"1", {0.517, 0.57}}, {"2", {0.586, 0.57}}};

QRect rectOf(QJsonValue const& value) {
    QJsonObject const geometry = value.toObject();
    return QRect(geometry["x"].toInt(), geometry["y"].toInt(), geometry["width"].toInt(), geometry["height"].toInt());
}

} // namespace

class TestKeyboard : public QObject {
    Q_OBJECT

    /// One program on one screen.
    struct Station {
        Station(QSize const& size, QString const& language, QString const& keyboard)
            : screen(size)
            , program(root) {
            program.setEnvironment("DISPLAY", screen.display());
            program.setEnvironment("QT_QPA_PLATFORM", "xcb");
            up = screen.isUp() && program.startAutomated({"--keyboard", keyboard, "--language", language});
        }
        QRect geometry(QString const& object) { return rectOf(program.get(object, "geometry")); }
        /// Of a widget that stands in its dialog directly.
        QRect onScreen(QString const& dialog, QString const& field) {
            return geometry(dialog + '/' + field).translated(geometry(dialog).topLeft());
        }
        bool waitFor(std::function<bool()> const& condition) {
            QDeadlineTimer deadline(longWait());
            while (!condition()) {
                if (deadline.hasExpired() || !program.isRunning())
                    return false;
            }
            return true;
        }
        bool waitKeyboard(bool shown) {
            return waitFor([&] { return screen.keyboard().isEmpty() != shown; });
        }
        void key(QMap<QString, QPointF> const& keys, QString const& name) {
            QRect const window = screen.keyboard();
            double const height = window.width() * 800.0 / 2560.0;
            QPointF const share = keys.value(name);
            screen.touch(QPoint(window.left() + int(share.x() * window.width()),
                                window.bottom() + 1 - int((1.0 - share.y()) * height)));
        }
        /// Touches the field and waits until the keyboard is there and nothing moves any more.
        bool openOn(QString const& dialog, QString const& field) {
            screen.touch(onScreen(dialog, field).center() - QPoint(40, 0));
            return waitKeyboard(true) &&
                   waitFor([&] { return !onScreen(dialog, field).intersects(screen.keyboard()); });
        }

        Screen screen;
        ProgramRoot root;
        TesseraProgram program;
        bool up = false;
    };

    static void sizesAndLanguages() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("language");
        for (QSize const& size : {QSize(1024, 600), QSize(1920, 1080)}) {
            for (char const* language : {"zh_CN", "en"})
                QTest::addRow("%dx%d %s", size.width(), size.height(), language) << size << language;
        }
    }

private slots:
    void a_covered_field_of_a_modal_dialog_is_typed_into_in_sight_data() { sizesAndLanguages(); }

    void a_covered_field_of_a_modal_dialog_is_typed_into_in_sight() {
        QFETCH(QSize, size);
        QFETCH(QString, language);
        Station station(size, language, "on");
        QVERIFY2(station.up, station.program.errors());
        QString const dialog = "FileManager";
        QString const field = "lineEditAddFileName";
        station.program.call("ui.trigger", {{"action", "action_NewFile"}});
        QVERIFY(station.program.waitProperty(dialog + '/' + field, "visible", true));
        QRect const before = station.geometry(dialog);
        QVERIFY(station.waitKeyboard(false));
        QRect const fieldBefore = station.onScreen(dialog, field);
        QVERIFY(station.openOn(dialog, field));
        QRect const keyboard = station.screen.keyboard();
        QVERIFY(keyboard.height() > 200 && keyboard.bottom() == size.height() - 1);
        QVERIFY(!station.onScreen(dialog, field).intersects(keyboard));
        QVERIFY(station.onScreen(dialog, field).top() >= 0);
        QCOMPARE(station.onScreen(dialog, field).top() < fieldBefore.top(), fieldBefore.intersects(keyboard));
        for (char const* key : {"n", "i", "h", "a", "o"})
            station.key(kKeys, key);
        if (language == "zh_CN")
            station.key(kKeys, "space");
        QVERIFY(station.program.waitProperty(dialog + '/' + field, "text", language == "en" ? "nihao" : "你好"));
        station.key(kKeys, "hide");
        QVERIFY(station.waitKeyboard(false));
        QVERIFY(station.waitFor([&] { return station.geometry(dialog) == before; }));
        station.program.call("app.quit");
        QVERIFY(station.program.waitEnd());
        QCOMPARE(station.program.exitCode(), 0);
    }

    void a_spin_box_gets_the_number_pad_data() { sizesAndLanguages(); }

    void a_spin_box_gets_the_number_pad() {
        QFETCH(QSize, size);
        QFETCH(QString, language);
        Station station(size, language, "on");
        QVERIFY2(station.up, station.program.errors());
        TesseraProgram& program = station.program;
        program.call("ui.trigger", {{"action", "action_NewFile"}});
        QVERIFY(program.waitProperty("FileManager/lineEditAddFileName", "visible", true));
        program.call("ui.set",
                     {{"object", "FileManager/lineEditAddFileName"}, {"property", "text"}, {"value", "plate"}});
        program.call("ui.click", {{"object", "FileManager/pushButtonOK"}});
        QVERIFY(program.waitProperty("actionAddPoint", "enabled", true));
        program.call("ui.trigger", {{"action", "actionAddPoint"}});
        station.screen.touch(QPoint(size.width() / 2, size.height() / 2));
        QVERIFY(program.waitProperty("actionarrayObj", "enabled", true));
        program.call("ui.trigger", {{"action", "actionarrayObj"}});
        QVERIFY(program.waitProperty("ArrayDialog/doubleSpinBoxStepY", "visible", true));
        QVERIFY(station.openOn("ArrayDialog", "doubleSpinBoxStepY"));
        QVERIFY(!station.onScreen("ArrayDialog", "doubleSpinBoxStepY").intersects(station.screen.keyboard()));
        station.screen.run({"key", "ctrl+a"});
        for (char const* key : {"7", "1", "2"})
            station.key(kPad, key);
        QVERIFY(program.waitProperty("ArrayDialog/doubleSpinBoxStepY", "value", 712));
        // Going on to a field that is no longer covered lets the dialog down; a button takes the keyboard away.
        QVERIFY(station.openOn("ArrayDialog", "spinBoxColumns"));
        program.call("ui.click", {{"object", "ArrayDialog/pushButtonCancel"}});
        QVERIFY(station.waitKeyboard(false));
    }

    void off_there_is_no_keyboard() {
        Station station(QSize(1024, 600), "zh_CN", "off");
        QVERIFY2(station.up, station.program.errors());
        station.program.call("ui.trigger", {{"action", "actionNewUser"}});
        QVERIFY(station.program.waitProperty("UserDialog/lineEditName", "visible", true));
        QFile maps(QString("/proc/%1/maps").arg(station.program.processId()));
        QVERIFY(maps.open(QIODevice::ReadOnly));
        QByteArray const loaded = maps.readAll();
        QVERIFY(loaded.contains("libQt5Widgets"));
        for (char const* library : {"libQt5Quick", "libQt5Qml", "libQt5VirtualKeyboard", "googlepinyin"})
            QVERIFY2(!loaded.contains(library), library);
        station.screen.touch(station.onScreen("UserDialog", "lineEditName").center());
        QVERIFY(station.program.waitProperty("UserDialog/lineEditName", "focus", true));
        QVERIFY(station.screen.keyboard().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestKeyboard)
#include "tst_keyboard.moc"

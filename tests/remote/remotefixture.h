// SPDX-License-Identifier: MIT
#pragma once

#include "engine/ccdbufdata.h"
#include "engine/ccsserver.h"
#include "engine/markcardinstance.h"
#include "engine/markshapecontainer.h"
#include "remote/externalresponse.h"
#include "tests/shell/windowfixture.h"

#include <QDir>
#include <QFileInfo>
#include <future>

namespace tests {

/// Slow enough that a job of one point is still under way when the test looks at it.
constexpr double kSlowRun = 0.0001;
constexpr int kTag = 77;

/// The calls of a run at the card, but for the lamps, which the main thread switches in between.
inline QVector<JournalEntry> runJournal() {
    return without(machineJournal(), {QStringLiteral("SetOutputBit")});
}

inline CCDBufdata offsetRecord(double dx, double dy, double angle = 0.0) {
    CCDBufdata record;
    record.Values[0] = dx;
    record.Values[1] = dy;
    record.Values[2] = angle;
    return record;
}

/// The program as a marking station with a command server, with no document open, anew for every test.
class RemoteFixture {
protected:
    void begin() {
        QVERIFY(m_Root.isValid());
        // Any port, so that tests run beside one another.
        QVERIFY(m_Root.write(QStringLiteral("/ini/CommandServer.ini"), "[server]\nport=0\n"));
        QDir(m_Root.path(QStringLiteral("/MarkFile"))).removeRecursively();
        resetMachine();
        SystemParam::Instance()->SetWorkMode(3);
        // Else the input poll takes back the alarms that a test sets.
        SystemParam::Instance()->m_nResponseIO = 0;
        machine().setSpeed(0.0);
        m_Window = std::make_unique<RunningWindow>();
        machine().clearJournal();
    }
    void end() {
        machine().setSpeed(0.0);
        if (m_Window)
            window().SetSafeAlarm(false, ~0U);
        m_Window.reset();
        // What the last run told is not to reach the next test.
        QCoreApplication::processEvents();
        SystemParam::Instance()->SetWorkMode(0);
    }

    MainWindow& window() { return **m_Window; }
    static ExternalResponse& response() { return *ExternalResponse::Instance(); }
    static IMarkCardBase* card() { return MarkCardInstance::Instance(); }
    QString file(QString const& name) { return m_Root.path(QStringLiteral("/MarkFile/%1.mkf").arg(name)); }
    /// Opens a new document of `points` single points; its name is the path of its file.
    QRulerView* open(QString const& name, int points = 1) { return m_Window->newDocument(points, file(name)); }
    /// Stores a document of this name that is not open.
    QString makeFile(QString const& name, int points = 1) {
        QRulerView view(nullptr);
        view.SetFileName(file(name));
        for (int i = 0; i < points; ++i)
            view.AddMarkPoint(QPointF(i, 0.0));
        if (!view.SaveDoc())
            qFatal("a document could not be stored");
        return file(name);
    }
    QStringList openNames() {
        QStringList names;
        for (QRulerView* view : window().GetDocs())
            names.append(QFileInfo(view->GetFileName()).completeBaseName());
        return names;
    }

    static CCSCmd command(QString const& name, std::vector<QString> args = {}) {
        CCSCmd cmd;
        cmd.Id = 11;
        cmd.Name = name;
        cmd.First = 22;
        cmd.Second = 33;
        cmd.Args = std::move(args);
        return cmd;
    }
    /// A command as it comes from the station.
    static void order(QString const& name, std::vector<QString> args = {}, int tag = kTag) {
        emit CCSServer::Instance()->SendSignals(command(name, std::move(args)), tag);
    }
    /// Status and text of each answer so far.
    static QStringList answers() {
        QStringList all;
        for (JournalEntry const& entry : only(machineJournal(), {QStringLiteral("WriteTcpMsg")}))
            all.append(QStringList(entry.arguments.mid(5)).join(QLatin1Char('|')));
        return all;
    }
    static ExpectedCall answer(char const* name, char const* status, char const* text, int tag = kTag) {
        return call("WriteTcpMsg", tag, 11, name, 22, 33, status, text);
    }
    /// A run on the station's order that goes on until it is stopped.
    void startSlowly(QString const& type = QStringLiteral("0"), QString const& option = QStringLiteral("0")) {
        machine().setSpeed(kSlowRun);
        order(QStringLiteral("RunManualStart"), {type, option});
        QTRY_COMPARE(machine().state().activity, sim::SimActivity::Running);
    }
    /// Lets the run end by itself and what it told be handled.
    void letEnd() {
        machine().setSpeed(0.0);
        QTRY_VERIFY(!response().IsRunning());
        QCoreApplication::processEvents();
    }
    bool windowIsFree() { return m_Window->child<QWidget>("centralwidget")->isEnabled(); }
    /// Result and message of an order of the host that is carried out while the main thread handles events.
    template<typename Doc>
    std::pair<bool, QString> hostOrder(Doc doc, QVector<CCDBufdata> const& offsets = {}) {
        std::future<std::pair<bool, QString>> reply = hostOrderLater(doc, offsets);
        [&reply] { QTRY_VERIFY(isReady(reply)); }();
        return isReady(reply) ? reply.get() : std::make_pair(false, QStringLiteral("no reply"));
    }
    /// The same without waiting.
    template<typename Doc>
    static std::future<std::pair<bool, QString>> hostOrderLater(Doc doc, QVector<CCDBufdata> const& offsets = {}) {
        return std::async(std::launch::async, [doc, offsets] {
            QString message;
            const bool ok = response().VZSetOffset(doc, offsets, message);
            return std::make_pair(ok, message);
        });
    }
    template<typename T>
    static bool isReady(std::future<T> const& result) {
        return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    }

    TemporaryRoot m_Root;
    std::unique_ptr<RunningWindow> m_Window;
};

} // namespace tests

// SPDX-License-Identifier: MIT
#pragma once

#include "remote/externalresponse.h"
#include "remote/hostresponsetcp.h"
#include "tests/remote/hostgbk.h"
#include "tests/shell/windowcase.h"
#include "tests/support/logtexts.h"
#include "tests/support/socketclient.h"
#include "tests/support/timeoutscale.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <memory>

namespace tests {

/// Slow enough that a job of one point is still under way when the test looks at it.
constexpr double kSlowJob = 0.0001;

/// The whole program with a plant host connected to it.
class HostCase : protected WindowCase {
protected:
    void beginHost() {
        beginCase();
        SystemParam::Instance()->SetScribePort(0);
        QFile::remove(m_Root.path(QStringLiteral("/ini/HostTcp.ini")));
    }
    void endHost() {
        m_Host.reset();
        machine().setSpeed(0.0);
        if (m_Window)
            ExternalResponse::Instance()->VZMarkStop();
        endCase();
    }
    /// The program with one document of one point, and a host.
    void startWithHost(bool show = true) {
        start(show);
        m_Window->newDocument();
        connectHost();
    }
    /// A host that takes the place of the one before.
    void connectHost() {
        m_Host = std::make_unique<SocketClient>();
        QVERIFY2(m_Host->connectTcp(port()), qPrintable(m_Host->connectError()));
        QVERIFY(waitForClients(++m_Clients));
    }
    static quint16 port() { return HostResponseTcp::Instance()->ServerPort(); }
    SocketClient& host() { return *m_Host; }

    /// Sends a frame and gives its answer.
    QByteArray ask(QByteArray const& frames) {
        if (!host().write(frames))
            return "not sent";
        return answer();
    }
    QByteArray answer() { return host().readUntil(";"); }
    /// Nothing was answered before this question.
    bool isQuiet() { return ask("_VZGetLayerParas(0);") == layerReply(kBadLengthGbk); }

    static QByteArray layerReply(char const* gbk) { return QByteArray("_VZGetLayerParas(1,") + gbk + ");"; }
    static QByteArray runReply(char const* gbk, char const* status = "1") {
        return QByteArray("_VZSetOffset(") + status + ',' + gbk + ");";
    }
    static QByteArray stopReply() { return QByteArray("_VZMarkStop(0,") + kStoppedGbk + ");"; }

    static bool isRunning() { return machine().state().activity == sim::SimActivity::Running; }
    /// A run that does not end by itself, ordered by the host; its answer comes after its end.
    bool startRun() {
        machine().setSpeed(kSlowJob);
        return host().write("_VZSetOffset(0);") && waitFor(isRunning);
    }

    /// Runs the event loop as the program does, without the pauses of waitFor(), for floods of events.
    template<typename Condition>
    static bool runUntil(Condition condition, int milliseconds = 30000) {
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (condition())
                loop.quit();
        });
        look.start(10);
        QTimer::singleShot(scaled(milliseconds), &loop, &QEventLoop::quit);
        loop.exec();
        return condition();
    }

    /// The log of this root, all days.
    static QString log() { return QString::fromUtf8(logBytes()); }
    bool waitForClients(int count) {
        return waitFor([&] { return log().count(QStringLiteral("新客户端---127.0.0.1:")) >= count; });
    }
    void clearLog() {
        const QDir folder(m_Root.path(QStringLiteral("/日志文件")));
        for (QString const& name : folder.entryList({QStringLiteral("*.log")}, QDir::Files))
            QFile::remove(folder.filePath(name));
        m_Clients = 0;
    }

    std::unique_ptr<SocketClient> m_Host;
    int m_Clients = 0; ///< connections that the log has told of
};

} // namespace tests

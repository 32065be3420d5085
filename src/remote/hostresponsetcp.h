// SPDX-License-Identifier: MIT
#pragma once

#include "remote/hostaccess.h"
#include "remote/hostframes.h"
#include "remote/hostlistener.h"
#include "remote/mainthreadcalls.h"
#include "remote/trafficlog.h"
#include "support/loglimit.h"

#include <QAbstractSocket>
#include <QObject>
#include <QString>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>

class QTcpSocket;

namespace tessera {
class HostRuns;
}

/// The port by which a plant host orders runs with offsets, reads layers and stops, in frames that end in a semicolon
/// (docs/protocols.md). One for the process, in every mode of the system; one client at a time, the newest. It lives in
/// the main thread, and so do its sockets; what may be called from others says so.
class HostResponseTcp : public QObject {
    Q_OBJECT
public:
    /// Bytes of answers that may wait for a client; one that lets more pile up is disconnected.
    static constexpr qint64 kLongestBacklog = 4 * 1024 * 1024;
    /// Within this time 20 refused hosts have a log line each; the number of the others follows at its end. What is set
    /// holds from the next InitHostResponseTcp on.
    static std::chrono::milliseconds m_RefusedTime;

    /// Makes the instance, which listens from then on, unless there is one. A port that is taken is not reported: the
    /// instance then never has a client.
    static void InitHostResponseTcp();
    /// Null before InitHostResponseTcp and after EndHostResponseTcp. Any thread.
    static HostResponseTcp* Instance() { return m_pHostTcp; }
    /// Closes the port, stops a run that a host ordered, waits for the tasks of its orders for a bounded time and
    /// deletes the instance. Without one it does nothing.
    static void EndHostResponseTcp();

    ~HostResponseTcp() override;

    /// What has come from the client and nobody has read; empty without a client.
    QByteArray ReadAll();
    /// Sends a text in GBK. True when something was written or there is no client, false when the client takes nothing.
    /// On another thread it returns when the socket's thread has done it; false when that will not come to it.
    bool WriteData(QString text);
    /// The shortest text, of at least one character, between two marks; empty without one. Any thread.
    static QString StrMatch(QString text, QString left, QString right);

    /// Port that is listened on, 0 when none could be had.
    quint16 ServerPort() const { return m_Server.serverPort(); }

signals:
    void CMDTest(QString frame);
    void VZSetOffset(QString frame);
    void VZGetLayerParas(QString frame);
    void VZMarkStop(QString frame);

public slots:
    void NewConnection();
    void MSGError(QAbstractSocket::SocketError error);
    void Response();
    /// Tells the client how a run ended, for a caller that starts one without waiting.
    void OnMarkFinish(bool success, QString message);
    void OnCMDTest(QString frame);
    void OnVZSetOffset(QString frame);
    void OnVZGetLayerParas(QString frame);
    void OnVZMarkStop(QString frame);

private:
    explicit HostResponseTcp(tessera::HostAccess const& access);

    QTcpSocket* Client() const;
    QTcpSocket* ReplaceClient(QTcpSocket* client);
    void LetGo(QTcpSocket* socket);
    void NoteRefused(QString const& sender);
    void NoteRefusalsLeftOut();
    bool WriteHere(QString const& text);
    void Send(QString const& reply);
    void LogTraffic(QString const& title, QString const& text);
    /// Handles frames and reads on until nothing is left or the time is up; then it goes on with the next turn of the
    /// event loop.
    void HandleInput(qint64 limitNs);
    bool TakeRead();
    void HandleFrame(QString const& frame);
    void DropOverlong();
    void RunOffset(QString const& sender, QString const& frame, unsigned int stops);

    static std::atomic<HostResponseTcp*> m_pHostTcp;

    mutable std::mutex m_SocketLock; ///< guards m_pClient
    tessera::HostListener m_Server;
    int m_nPort;
    QString m_LocalAddress;             ///< for a caller that wants to show it
    std::recursive_mutex m_ReceiveLock; ///< held for a receive pass, before m_SocketLock; an order may run events
    QTcpSocket* m_pClient = nullptr;
    tessera::HostFrames m_Frames; ///< an incomplete frame stays when its client goes
    QString m_Sender;             ///< "address:port" of the newest client
    QTimer m_Continue;
    QTimer m_RefusalsLeftOut;
    tessera::HostAccess m_Access;
    tessera::LogLimit m_RefusedLimit;
    tessera::TrafficLog m_Traffic;
    tessera::MainThreadCalls m_Calls{this};
    std::shared_ptr<tessera::HostRuns> m_Runs;
};

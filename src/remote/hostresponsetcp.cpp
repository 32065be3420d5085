// SPDX-License-Identifier: MIT
#include "remote/hostresponsetcp.h"

#include "engine/marklog.h"
#include "engine/systemparam.h"
#include "remote/hostcommand.h"
#include "remote/hostruns.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QNetworkInterface>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTextCodec>
#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

using namespace tessera;

namespace {

/// A receive pass gives way to the rest of the window after this time.
constexpr qint64 kPassNs = 500 * 1000;
/// Log lines of refused hosts: one that tries again and again is not to fill the disk.
constexpr int kRefusedLines = 20;
constexpr qint64 kNoLimit = std::numeric_limits<qint64>::max();

QString const kNewClient = QStringLiteral("新客户端---");
QString const kReceived = QStringLiteral("Tcp接收消息---");
QString const kSent = QStringLiteral("Tcp发送消息---");

QString firstLocalAddress() {
    for (QHostAddress const& address : QNetworkInterface::allAddresses()) {
        if (address.protocol() == QAbstractSocket::IPv4Protocol && !address.isLoopback())
            return address.toString();
    }
    return QStringLiteral("127.0.0.1");
}

/// The codec is set up anew for every text; most have nothing for it to do.
QByteArray inGbk(QString const& text) {
    if (std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; }))
        return text.toLatin1();
    static QTextCodec const* const codec = QTextCodec::codecForName("GBK");
    return codec ? codec->fromUnicode(text) : QByteArray();
}

struct SignalRow {
    HostOrder order;
    void (HostResponseTcp::*signal)(QString frame);
};

constexpr SignalRow kSignals[] = {
    {HostOrder::Test, &HostResponseTcp::CMDTest},
    {HostOrder::SetOffset, &HostResponseTcp::VZSetOffset},
    {HostOrder::GetLayerParas, &HostResponseTcp::VZGetLayerParas},
    {HostOrder::MarkStop, &HostResponseTcp::VZMarkStop},
};

} // namespace

std::chrono::milliseconds HostResponseTcp::m_RefusedTime = std::chrono::minutes(1);
std::atomic<HostResponseTcp*> HostResponseTcp::m_pHostTcp{nullptr};

void HostResponseTcp::InitHostResponseTcp() {
    if (m_pHostTcp)
        return;
    m_pHostTcp = new HostResponseTcp(HostAccess::FromFile());
}

HostResponseTcp::HostResponseTcp(HostAccess const& access)
    : m_nPort(SystemParam::Instance()->GetScribePort())
    , m_LocalAddress(firstLocalAddress())
    , m_Access(access)
    , m_RefusedLimit(kRefusedLines, m_RefusedTime)
    , m_Runs(std::make_shared<HostRuns>()) {
    for (QString const& problem : m_Access.Problems())
        MarkLog::Instance()->ShowNote_Error(problem);
    // Queued: what the client of before has sent by now is read before it is closed.
    connect(&m_Server, &QTcpServer::newConnection, this, &HostResponseTcp::NewConnection, Qt::QueuedConnection);
    connect(this, &HostResponseTcp::CMDTest, this, &HostResponseTcp::OnCMDTest);
    connect(this, &HostResponseTcp::VZSetOffset, this, &HostResponseTcp::OnVZSetOffset);
    connect(this, &HostResponseTcp::VZGetLayerParas, this, &HostResponseTcp::OnVZGetLayerParas);
    connect(this, &HostResponseTcp::VZMarkStop, this, &HostResponseTcp::OnVZMarkStop);
    m_Continue.setSingleShot(true);
    connect(&m_Continue, &QTimer::timeout, this, &HostResponseTcp::Response);
    m_RefusalsLeftOut.setSingleShot(true);
    m_RefusalsLeftOut.setTimerType(Qt::PreciseTimer);
    connect(&m_RefusalsLeftOut, &QTimer::timeout, this, &HostResponseTcp::NoteRefusalsLeftOut);
    if (m_nPort >= 0 && m_nPort <= std::numeric_limits<quint16>::max())
        m_Server.listen(m_Access.Bind(), quint16(m_nPort));
}

HostResponseTcp::~HostResponseTcp() {
    if (QTcpSocket* client = ReplaceClient(nullptr))
        client->disconnect(this);
}

QTcpSocket* HostResponseTcp::Client() const {
    const std::lock_guard<std::mutex> lock(m_SocketLock);
    return m_pClient;
}

QTcpSocket* HostResponseTcp::ReplaceClient(QTcpSocket* client) {
    const std::lock_guard<std::mutex> lock(m_SocketLock);
    return std::exchange(m_pClient, client);
}

void HostResponseTcp::NoteRefused(QString const& sender) {
    NoteRefusalsLeftOut();
    const LogLimit::Time now = LogLimit::Time::clock::now();
    if (m_RefusedLimit.allows(now))
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("host port: refused by HostTcp.ini: ") + sender);
    else
        m_RefusalsLeftOut.start(std::chrono::ceil<std::chrono::milliseconds>(m_RefusedLimit.windowEnd() - now));
}

void HostResponseTcp::NoteRefusalsLeftOut() {
    if (const long long count = m_RefusedLimit.takeLeftOut(LogLimit::Time::clock::now()))
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("host port: %1 more hosts refused").arg(count));
}

/// Nothing that happens to the socket from now on is the client's.
void HostResponseTcp::LetGo(QTcpSocket* socket) {
    socket->disconnect(this);
    socket->close();
    socket->deleteLater();
}

void HostResponseTcp::NewConnection() {
    QTcpSocket* socket = m_Server.nextPendingConnection();
    if (!socket)
        return;
    const QString address = socket->peerAddress().toString();
    const QString sender = address + QLatin1Char(':') + QString::number(socket->peerPort());
    if (!m_Access.Admits(socket->peerAddress())) {
        NoteRefused(sender);
        socket->abort();
        socket->deleteLater();
        return;
    }
    HandleInput(kNoLimit);
    if (QTcpSocket* older = ReplaceClient(socket))
        LetGo(older);
    m_Sender = sender;
    qDebug().noquote().nospace() << "新连接IP: " << address << "Port: " << socket->peerPort();
    LogTraffic(kNewClient, sender);
    connect(socket, &QIODevice::readyRead, this, &HostResponseTcp::Response);
    connect(socket, &QAbstractSocket::errorOccurred, this, &HostResponseTcp::MSGError);
    // What came while the connection waited has told so to nobody.
    if (socket->bytesAvailable() > 0)
        Response();
    if (socket == Client() && socket->state() == QAbstractSocket::UnconnectedState)
        MSGError(socket->error());
}

/// A client that goes away leaves what it has sent to be handled. Any other error leaves the client: it may be one of a
/// single write, and only the next host takes its place.
void HostResponseTcp::MSGError(QAbstractSocket::SocketError) {
    QTcpSocket* client = Client();
    if (!client || client->error() != QAbstractSocket::RemoteHostClosedError)
        return;
    HandleInput(kNoLimit);
    if (client != Client())
        return;
    ReplaceClient(nullptr);
    LetGo(client);
}

QByteArray HostResponseTcp::ReadAll() {
    QTcpSocket* client = Client();
    // One byte more than there is: only so does a socket whose read-ahead was full go on.
    return client ? client->read(client->bytesAvailable() + 1) : QByteArray();
}

void HostResponseTcp::Response() {
    HandleInput(kPassNs);
}

void HostResponseTcp::HandleInput(qint64 limitNs) {
    const std::lock_guard<std::recursive_mutex> lock(m_ReceiveLock);
    QElapsedTimer timer;
    timer.start();
    do {
        QString frame;
        while (m_Frames.Next(frame)) {
            HandleFrame(frame);
            if (timer.nsecsElapsed() > limitNs) {
                m_Continue.start(0);
                return;
            }
        }
        DropOverlong();
    } while (TakeRead());
}

/// False when nothing has come.
bool HostResponseTcp::TakeRead() {
    QTcpSocket const* client = Client();
    if (!client || client->bytesAvailable() == 0)
        return false;
    const QByteArray read = ReadAll();
    const QString text = HostFrames::Text(read);
    LogTraffic(kReceived, text);
    m_Frames.Append(text);
    return true;
}

void HostResponseTcp::HandleFrame(QString const& frame) {
    for (HostOrder order : HostOrders(frame)) {
        for (SignalRow const& row : kSignals) {
            if (row.order == order)
                emit(this->*row.signal)(frame);
        }
    }
}

void HostResponseTcp::DropOverlong() {
    if (int const dropped = m_Frames.DropOverlong())
        MarkLog::Instance()->ShowNote_Error(
            QStringLiteral("host port: %1 characters without a semicolon dropped, last from %2")
                .arg(dropped)
                .arg(m_Sender));
}

bool HostResponseTcp::WriteData(QString text) {
    bool written = false;
    return m_Calls.Run([this, &text, &written] { written = WriteHere(text); }) && written;
}

bool HostResponseTcp::WriteHere(QString const& text) {
    QTcpSocket* client = Client();
    if (!client)
        return true;
    // A host that has reset its connection is told of before the socket leaves its state.
    if (!client->isValid() || client->write(inGbk(text)) < 1)
        return false;
    // The socket may find out here that the host has gone; MSGError deletes it later, not at once.
    const bool flushed = client->flush();
    if (client == Client() && client->bytesToWrite() > kLongestBacklog) {
        MarkLog::Instance()->ShowNote_Error(
            QStringLiteral("host port: %1 does not read its answers, disconnected").arg(m_Sender));
        ReplaceClient(nullptr);
        client->disconnect(this);
        client->abort();
        client->deleteLater();
    }
    return flushed;
}

void HostResponseTcp::Send(QString const& reply) {
    WriteData(reply);
    LogTraffic(kSent, reply);
}

void HostResponseTcp::LogTraffic(QString const& title, QString const& text) {
    m_Traffic.Add(title + text);
}

QString HostResponseTcp::StrMatch(QString text, QString left, QString right) {
    if (text.isEmpty() || left.isEmpty() || right.isEmpty())
        return QString();
    const QRegularExpression pattern(
        QStringLiteral("%1(.+?)%2").arg(QRegularExpression::escape(left), QRegularExpression::escape(right)));
    return pattern.match(text).captured(1);
}

// SPDX-License-Identifier: MIT
#include "ctlclient.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QJsonDocument>
#include <QThread>
#include <algorithm>

namespace {

/// Pause between two calls of --until, ms.
constexpr int kRepeatPause = 20;

qint64 now() {
    return QDeadlineTimer::current(Qt::PreciseTimer).deadline();
}

bool hasMembers(QJsonValue const& result, QVector<QPair<QString, QJsonValue>> const& wanted) {
    QJsonObject const object = result.toObject();
    return std::all_of(wanted.begin(), wanted.end(), [&object](QPair<QString, QJsonValue> const& member) {
        return object.value(member.first) == member.second;
    });
}

} // namespace

CtlClient::CtlClient(int timeoutMs)
    : m_timeout(timeoutMs)
    , m_deadline(now() + timeoutMs) {}

int CtlClient::timeLeft() const {
    return int(std::max<qint64>(0, m_deadline - now()));
}

CtlOutcome CtlClient::connectTo(QString const& socket) {
    // A bare name would be looked for in the temporary folder.
    m_socket.connectToServer(QFileInfo(socket).absoluteFilePath());
    if (m_socket.waitForConnected(m_timeout))
        return CtlOutcome::Done;
    m_problem = m_socket.errorString();
    return CtlOutcome::NoConnection;
}

CtlOutcome CtlClient::readLine(QByteArray& line) {
    while (!m_socket.canReadLine()) {
        if (m_socket.waitForReadyRead(timeLeft()) || m_socket.canReadLine())
            continue;
        if (timeLeft() == 0)
            return CtlOutcome::TimeOut;
        m_problem = m_socket.errorString();
        return CtlOutcome::NoConnection;
    }
    line = m_socket.readLine();
    return CtlOutcome::Done;
}

CtlOutcome CtlClient::call(QString const& method, QJsonValue const& params, QJsonValue& answer) {
    QJsonObject request{{QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
                        {QStringLiteral("id"), ++m_id},
                        {QStringLiteral("method"), method}};
    if (!params.isUndefined())
        request.insert(QStringLiteral("params"), params);
    m_socket.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
    QByteArray line;
    CtlOutcome const outcome = readLine(line);
    if (outcome != CtlOutcome::Done)
        return outcome;
    QJsonObject const object = QJsonDocument::fromJson(line).object();
    if (object.contains(QLatin1String("error"))) {
        answer = object.value(QLatin1String("error"));
        return CtlOutcome::ErrorAnswer;
    }
    answer = object.value(QLatin1String("result"));
    return CtlOutcome::Done;
}

CtlOutcome CtlClient::callUntil(CtlArguments const& arguments, QJsonValue& answer) {
    for (;;) {
        CtlOutcome const outcome = call(arguments.method, arguments.params, answer);
        if (outcome != CtlOutcome::Done || hasMembers(answer, arguments.until))
            return outcome;
        if (timeLeft() == 0)
            return CtlOutcome::TimeOut;
        QThread::msleep(kRepeatPause);
    }
}

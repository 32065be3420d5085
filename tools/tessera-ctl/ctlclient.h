// SPDX-License-Identifier: MIT
#pragma once

#include "ctlarguments.h"

#include <QByteArray>
#include <QJsonObject>
#include <QLocalSocket>

/// How a call ended; the exit codes of the program.
enum class CtlOutcome { Done = 0, ErrorAnswer = 1, WrongArguments = 2, NoConnection = 3, TimeOut = 4 };

/// Calls methods over the automation port. Blocks; any one thread, no event loop needed.
class CtlClient {
public:
    explicit CtlClient(int timeoutMs);
    CtlOutcome connectTo(QString const& socket);
    /// One call. `answer` is the result, or the error object of an error answer.
    CtlOutcome call(QString const& method, QJsonValue const& params, QJsonValue& answer);
    /// Calls again until the result has all the wanted members.
    CtlOutcome callUntil(CtlArguments const& arguments, QJsonValue& answer);
    /// Why there is no connection.
    QString problem() const { return m_problem; }

private:
    CtlOutcome readLine(QByteArray& line);
    int timeLeft() const;

    QLocalSocket m_socket;
    int m_timeout;
    qint64 m_deadline = 0;
    int m_id = 0;
    QString m_problem;
};

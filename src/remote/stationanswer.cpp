// SPDX-License-Identifier: MIT
#include "remote/stationanswer.h"

#include "engine/ccsserver.h"
#include "remote/remoteorderlog.h"

#include <QStringList>

namespace tessera {

QString StationSender() {
    const QString sender = CCSServer::Instance()->CommandSender();
    return sender.isEmpty() ? QStringLiteral("command server") : sender;
}

QString StationOrder(CCSCmd const& cmd) {
    QStringList args;
    for (QString const& arg : cmd.Args)
        args.append(arg);
    return cmd.Name + QLatin1Char('(') + args.join(QLatin1Char(',')) + QLatin1Char(')');
}

void AnswerStation(RemoteOrderLog& log, QString const& sender, CCSCmd received, int tag, bool good,
                   QString const& text) {
    const QString order = StationOrder(received);
    const QString status = good ? QStringLiteral("0") : QStringLiteral("1");
    received.Args = {status, text};
    // Recorded first: what the station orders upon the answer is to stand behind it.
    log.Add(sender, order, status + QLatin1Char(',') + text);
    CCSServer::Instance()->WriteTcpMsg(std::move(received), tag);
}

} // namespace tessera

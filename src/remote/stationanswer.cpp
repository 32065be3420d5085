// SPDX-License-Identifier: MIT
#include "remote/stationanswer.h"

#include "engine/ccsserver.h"
#include "remote/remoteorderlog.h"

#include <QStringList>

namespace tessera {

QString StationAddress(int tag) {
    return QStringLiteral("command server, tag %1").arg(tag);
}

QString StationOrder(CCSCmd const& cmd) {
    QStringList args;
    for (QString const& arg : cmd.Args)
        args.append(arg);
    return cmd.Name + QLatin1Char('(') + args.join(QLatin1Char(',')) + QLatin1Char(')');
}

void AnswerStation(RemoteOrderLog& log, CCSCmd received, int tag, bool good, QString const& text) {
    const QString order = StationOrder(received);
    const QString status = good ? QStringLiteral("0") : QStringLiteral("1");
    received.Args = {status, text};
    CCSServer::Instance()->WriteTcpMsg(std::move(received), tag);
    log.Add(StationAddress(tag), order, status + QLatin1Char(',') + text);
}

} // namespace tessera

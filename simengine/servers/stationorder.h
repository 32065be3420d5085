// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/ccscmd.h"

#include <QByteArray>
#include <QString>

namespace sim {

enum class OrderKind {
    Command, ///< `command` and `tag`
    Put,     ///< `name`, `offset` and `data`
    Drop,    ///< `name`
    Ended    ///< the station's connection has ended
};

/// What a station has sent, or that it has gone, on its way to the main thread.
struct StationOrder {
    OrderKind kind = OrderKind::Command;
    CCSCmd command;
    int tag = 0;
    QString name;
    qint64 offset = 0;
    QByteArray data;
    qint64 line = 0; ///< number of the line in its connection
    QString from;    ///< station and address, for the log
    int bytes = 0;   ///< of the line
};

} // namespace sim

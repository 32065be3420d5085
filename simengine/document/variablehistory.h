// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDateTime>
#include <QStringList>
#include <optional>

namespace sim {

/// The codes that were marked in the last days, in the database "/ini/MarkedCodes.db", so that none is marked twice.
/// Any thread; each call opens the database for itself.
namespace markedcodes {

/// When the first of the codes that were marked since then was marked last, and which it is.
struct Earlier {
    QString code;
    QDateTime time;
};
struct Search {
    std::optional<Earlier> earlier; ///< nothing when none was
    QString fault;                  ///< why it cannot be told whether one was, empty when it can
};
Search findSince(const QStringList& codes, const QDateTime& since);

/// Keeps the codes as marked at that time and forgets those that were marked before `oldest`. False when it cannot be
/// written; otherwise it is on the disk.
bool add(const QStringList& codes, const QDateTime& time, const QDateTime& oldest);

} // namespace markedcodes
} // namespace sim

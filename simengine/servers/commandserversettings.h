// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace sim {

/// Where the command server listens and which file holds its key.
struct CommandServerSettings {
    QString address; ///< numeric
    quint16 port = 0;
    QString keyFile; ///< absolute
};

constexpr int kMinKeyBytes = 32;
constexpr int kMaxKeyBytes = 1024;

/// The settings of "/ini/CommandServer.ini" below the application root, the defaults without it. Nothing and the reason
/// when the file cannot be read or a value is no such value. Main thread.
std::optional<CommandServerSettings> commandServerSettings(QString& error);

/// The key in `file`, which is made with a random one when it is missing or empty. Nothing and the reason when another
/// than its owner may see or change it, when it holds no key or cannot be read or made. Main thread.
std::optional<QByteArray> commandServerKey(QString const& file, QString& error);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace sim {

/// Bounds on the length of a password, characters. The upper one keeps the work of a hash bounded.
constexpr int kPasswordMin = 4;
constexpr int kPasswordMax = 128;

/// Salted argon2id hash of a password as text with its own parameters; empty when the memory for it is not there.
/// Takes some tenths of a second and 64 MiB: that is its purpose. Any thread.
QByteArray hashPassword(QString const& password);
/// The password is the one of the hash. Any thread, as slow.
bool verifyPassword(QByteArray const& hash, QString const& password);

} // namespace sim

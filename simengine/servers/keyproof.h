// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace sim {

/// Digits of a nonce and of a proof.
constexpr int kProofDigits = 64;

/// 64 hexadecimal digits from the system's random source. Any thread.
QByteArray randomDigits();
/// 64 hexadecimal digits in small letters.
bool isProofDigits(QByteArray const& text);

/// What a station that has the key sends for its nonce and its name, and what the server sends back to it.
QByteArray stationProof(QByteArray const& key, QByteArray const& serverNonce, QByteArray const& stationNonce,
                        QString const& station);
QByteArray serverProof(QByteArray const& key, QByteArray const& serverNonce, QByteArray const& stationNonce);

/// Compares two proofs in a time that does not tell where they differ.
bool isSameProof(QByteArray const& a, QByteArray const& b);

} // namespace sim

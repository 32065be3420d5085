// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/keyproof.h"

#include <algorithm>
#include <sodium.h>

namespace sim {

namespace {

static_assert(crypto_auth_hmacsha256_BYTES * 2 == kProofDigits);

void startSodium() {
    static bool const ready = ::sodium_init() >= 0;
    if (!ready)
        qFatal("libsodium does not start");
}

unsigned char const* bytesOf(QByteArray const& bytes) {
    return reinterpret_cast<unsigned char const*>(bytes.constData());
}

QByteArray hmac(QByteArray const& key, QByteArray const& message) {
    startSodium();
    crypto_auth_hmacsha256_state state;
    unsigned char mac[crypto_auth_hmacsha256_BYTES];
    ::crypto_auth_hmacsha256_init(&state, bytesOf(key), static_cast<std::size_t>(key.size()));
    ::crypto_auth_hmacsha256_update(&state, bytesOf(message), static_cast<unsigned long long>(message.size()));
    ::crypto_auth_hmacsha256_final(&state, mac);
    ::sodium_memzero(&state, sizeof state);
    return QByteArray(reinterpret_cast<char const*>(mac), sizeof mac).toHex();
}

} // namespace

QByteArray randomDigits() {
    startSodium();
    QByteArray bytes(kProofDigits / 2, '\0');
    ::randombytes_buf(bytes.data(), static_cast<std::size_t>(bytes.size()));
    return bytes.toHex();
}

bool isProofDigits(QByteArray const& text) {
    return text.size() == kProofDigits && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

// The first line of each message differs, so that a proof of the one side is never one of the other.
QByteArray stationProof(QByteArray const& key, QByteArray const& serverNonce, QByteArray const& stationNonce,
                        QString const& station) {
    return hmac(key, "tessera-station\n" + serverNonce + '\n' + stationNonce + '\n' + station.toUtf8());
}

QByteArray serverProof(QByteArray const& key, QByteArray const& serverNonce, QByteArray const& stationNonce) {
    return hmac(key, "tessera-server\n" + stationNonce + '\n' + serverNonce);
}

bool isSameProof(QByteArray const& a, QByteArray const& b) {
    return a.size() == kProofDigits && b.size() == kProofDigits &&
           ::sodium_memcmp(a.constData(), b.constData(), kProofDigits) == 0;
}

} // namespace sim

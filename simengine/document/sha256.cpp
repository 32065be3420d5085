// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/sha256.h"

#include <nettle/sha2.h>

namespace sim {

QByteArray sha256(const char* data, qint64 size) {
    sha256_ctx hash;
    sha256_init(&hash);
    sha256_update(&hash, static_cast<size_t>(size), reinterpret_cast<const uint8_t*>(data));
    QByteArray digest(SHA256_DIGEST_SIZE, Qt::Uninitialized);
    sha256_digest(&hash, SHA256_DIGEST_SIZE, reinterpret_cast<uint8_t*>(digest.data()));
    return digest;
}

} // namespace sim

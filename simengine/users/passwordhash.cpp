// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/users/passwordhash.h"

#include <sodium.h>

namespace sim {

namespace {

bool sodiumReady() {
    static bool const ready = ::sodium_init() >= 0;
    return ready;
}

/// UTF-8 of a password that does not stay in memory.
class SecretBytes {
public:
    explicit SecretBytes(QString const& text)
        : m_bytes(text.toUtf8()) {}
    ~SecretBytes() { ::sodium_memzero(m_bytes.data(), static_cast<std::size_t>(m_bytes.size())); }
    SecretBytes(SecretBytes const&) = delete;
    SecretBytes& operator=(SecretBytes const&) = delete;
    char const* data() const { return m_bytes.constData(); }
    unsigned long long size() const { return static_cast<unsigned long long>(m_bytes.size()); }

private:
    QByteArray m_bytes;
};

} // namespace

QByteArray hashPassword(QString const& password) {
    SecretBytes const secret(password);
    char hash[crypto_pwhash_STRBYTES] = {};
    if (!sodiumReady() || ::crypto_pwhash_str(hash, secret.data(), secret.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                                              crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
        return {};
    return QByteArray(hash);
}

bool verifyPassword(QByteArray const& hash, QString const& password) {
    SecretBytes const secret(password);
    if (!sodiumReady() || hash.isEmpty() || hash.size() >= static_cast<int>(crypto_pwhash_STRBYTES))
        return false;
    return ::crypto_pwhash_str_verify(hash.constData(), secret.data(), secret.size()) == 0;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>

namespace sim {

/// The SHA-256 of bytes, 32 bytes long, by the processor's own instructions where it has them: a document file of a
/// million vertices is hashed each time that it is saved or opened. Any thread.
QByteArray sha256(const char* data, qint64 size);

} // namespace sim

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace tessera {

/// Appends to `bytes` what the file holds from `offset` on. 0 or an errno value; EFBIG when it does not fit into a
/// QByteArray, EIO when it ends before the length it had at the start. Symbolic links are followed. Internal to
/// src/support.
int readFileFrom(const QByteArray& path, qint64 offset, QByteArray& bytes);

} // namespace tessera

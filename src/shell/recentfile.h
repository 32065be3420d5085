// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace tessera {

/// The paths that a recent file lists: the first line is their number, a path a line follows. Lines beyond that number
/// are left over from a longer list and do not count. The paths come back trimmed and in lower case. Empty without a
/// readable number.
QVector<QString> ReadRecentList(QByteArray const& bytes);

/// The head of a recent file for these paths; what is behind it in the file stays.
QByteArray WriteRecentList(QVector<QString> const& paths);

} // namespace tessera

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace sim {

/// The mount points below `root` that the text of /proc/self/mountinfo names, in its order.
QStringList mountPointsBelow(QByteArray const& mountInfo, QString const& root);

/// Where the USB stick is mounted: the first mount below /media that can be written, else the first at all; empty
/// without one. TESSERA_MEDIA_ROOT names another folder than /media, whose subfolders then stand for mounts.
QString mediaFolder();

} // namespace sim

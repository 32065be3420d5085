// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QDir>
#include <QSet>
#include <QString>
#include <QStringList>

/// Copies a file and replaces an existing target: after a power cut it is the old or the new one. False when the source
/// cannot be read or the target not written.
ENGINE_API bool CopyFile(QString const& source, QString const& target);
/// Names of the files in `dir`, in the order of its own listing; with `withExtension` off they lose their extension.
ENGINE_API QStringList ListFiles(QDir const& dir, bool withExtension);
/// Adds to `names` the names without extension of the files with `extension` (".x") in the folder `path`.
ENGINE_API void GetFileExtInPath(QString const& path, QString const& extension, QSet<QString>& names);

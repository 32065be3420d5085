// SPDX-License-Identifier: MIT
#pragma once

#include "multidoc/trigerdoc.h"

#include <QByteArray>
#include <QVector>

namespace tessera {

/// A count above this is taken for a damaged file.
constexpr int kMaxProjectDocs = 10000;

/// The folder of the projects, with a slash at its end.
QString ProjectFolder();
/// The file of the project of this name.
QString ProjectPath(QString const& name);
/// The file that tells the last project.
QString RecentProjectPath();

/// The text of a project: the number of entries, then file name, value and mask of each, a line each.
QByteArray WriteProject(QVector<TrigerDoc*> const& docs);
/// The entries of such a text. What is behind the counted ones is left alone; where a line is missing the name is empty
/// or the number zero. A count that is no number, negative or above kMaxProjectDocs gives no entries.
QVector<TrigerDoc> ReadProject(QByteArray const& bytes);

/// The text that tells the last project, and its name in such a text.
QByteArray WriteRecentProject(QString const& name);
QString ReadRecentProject(QByteArray const& bytes);

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include "multidoc/trigerdoc.h"

#include <QByteArray>
#include <QVector>

namespace tessera {

/// A text that ends before its count is reached is filled up with empty entries to that count, unless the count is
/// above this and so taken for a damaged number.
constexpr int kMaxFilledDocs = 10000;

/// The folder of the projects, with a slash at its end.
QString ProjectFolder();
/// The file of the project of this name.
QString ProjectPath(QString const& name);
/// The file that tells the last project.
QString RecentProjectPath();

/// The text of a project: the number of entries, then file name, value and mask of each, a line each.
QByteArray WriteProject(QVector<TrigerDoc*> const& docs);
/// The entries of such a text. What is behind the counted ones is left alone; where a line is missing the name is empty
/// or the number zero; entries that are all missing are filled up as kMaxFilledDocs tells. A count that is no number or
/// negative gives no entries. Whatever WriteProject has written comes back, however many entries it has.
QVector<TrigerDoc> ReadProject(QByteArray const& bytes);

/// The text that tells the last project, and its name in such a text.
QByteArray WriteRecentProject(QString const& name);
QString ReadRecentProject(QByteArray const& bytes);

} // namespace tessera

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Looks for a file of exactly this name in a folder and below it, the files of a folder before its subfolders, those
/// in the order of their names. `path` becomes the first that is found and is left alone when there is none. Links to
/// folders are followed, but no folder is looked through twice. Blocks; any thread.
bool SearchFiles(QString folder, QString name, QString& path);

// SPDX-License-Identifier: MIT
#pragma once

#include "support/supportglobal.h"

#include <QString>

namespace tessera {

/// The application root: the directory below which every path written "/ini/...", "/MarkFile/..." and the like lies.
/// In this order: the directory given by setApplicationRoot(), the environment variable TESSERA_ROOT, the directory of
/// the running program. Absolute, cleaned, without a slash at its end (but "/" itself). A relative TESSERA_ROOT is
/// taken from the current directory of the first call that sees it, so a later change of directory does not move the
/// root. May be called from any thread, and before the application object exists.
TESSERA_SUPPORT_EXPORT QString applicationRoot();

/// Makes `directory` the application root. A relative name is taken from the current directory now; an empty one goes
/// back to TESSERA_ROOT or the program's directory. The directory need not exist. Any thread; meant for the launcher
/// before the first window and for test fixtures.
TESSERA_SUPPORT_EXPORT void setApplicationRoot(const QString& directory);

/// The absolute path of `relative` below the application root: rootPath("/ini/Marking.ini"). The slash at the start may
/// be left out; an empty argument gives the root itself. Any thread.
TESSERA_SUPPORT_EXPORT QString rootPath(const QString& relative);

} // namespace tessera

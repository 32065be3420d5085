// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tessera {

/// Puts the texts of the tool kit itself, those of message box buttons and file dialogs, into a language ("zh_CN",
/// "en"). False when the system has no such texts; they are English then. Main thread, needs the application object.
bool SetQtLanguage(QString const& language);

} // namespace tessera

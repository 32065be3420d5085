// SPDX-License-Identifier: MIT
#pragma once

class QToolBar;

namespace tessera {

/// Makes the button behind which a tool bar keeps what has no room large enough for a finger. After the application's
/// style has been set.
void WidenExtension(QToolBar* bar);

} // namespace tessera

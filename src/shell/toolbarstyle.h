// SPDX-License-Identifier: MIT
#pragma once

class QMenu;
class QToolBar;

namespace tessera {

/// Makes the button behind which a tool bar keeps what has no room large enough for a finger. After the application's
/// style has been set.
void WidenExtension(QToolBar* bar);

/// Makes the pictures of a menu's entries large enough to tell them apart. After the application's style has been set.
void EnlargePictures(QMenu* menu);

} // namespace tessera

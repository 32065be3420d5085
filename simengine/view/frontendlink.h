// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

class QKeyEvent;

namespace sim {

/// The two calls that go from the view to the front end. They are looked up by name at run time, so that the engine
/// links without a front end; without one they do nothing. Main thread.

/// Form_Marking::UpdateRedViewData(): the running preview takes over the moved objects.
void renewPreview();
/// MainWindow::HandDirEventOnRedView(QKeyEvent*): a direction key for the running preview. True when there is a main
/// window to take it.
bool handDirectionKey(QKeyEvent& event);

} // namespace sim

// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

/// The first window of the X server, in tree order from the root, that belongs to the process `pid`; 0 when there is
/// none or no server. Main thread.
unsigned long get_win_id_from_pid(int pid);

/// Adds `window` and all windows below it that belong to `pid` to the list of found windows, parents before children.
/// `display` is a Display*, `atom` the property that names the process. Windows that vanish meanwhile are passed over
/// when the caller has seen to it that X errors do not end the program, as get_win_id_from_pid does. Main thread.
void search(unsigned long window, void* display, unsigned long atom, int pid);

namespace tessera {

/// All windows that the last get_win_id_from_pid, and every search since, has found.
std::vector<unsigned long> const& FoundWindows();

} // namespace tessera

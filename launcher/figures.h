// SPDX-License-Identifier: MIT
#pragma once

#include "runreport.h"

namespace tessera {

class MachineControl;

/// What is known of the active document and its last job: all of RunFigures but passes and elapsed time. Main thread,
/// with the main window built.
RunFigures documentFigures(MachineControl const& machine);

} // namespace tessera

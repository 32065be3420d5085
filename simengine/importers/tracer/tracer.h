// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// Traces the bitmap that comes on the standard input and writes the outlines to the standard output, both as
/// tracewire.h tells. Gives the exit code of the program.
int traceBitmap();

} // namespace sim

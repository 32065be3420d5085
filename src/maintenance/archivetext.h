// SPDX-License-Identifier: MIT
#pragma once

#include "support/archive.h"

namespace tessera {

/// Key of the operator's text for an archive that was not written or read; null for success and for a cancelled one,
/// of which the operator knows.
char const* ArchiveFaultKey(ArchiveFault fault);

} // namespace tessera

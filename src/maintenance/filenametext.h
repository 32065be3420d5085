// SPDX-License-Identifier: MIT
#pragma once

#include "support/filename.h"

namespace tessera {

/// Key of the operator's text for a name that cannot be used; null for one that can.
char const* FileNameFaultKey(FileNameFault fault);

} // namespace tessera

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/splice.h"

namespace sim {

/// The manual compensation as it was last saved or loaded. Any thread.
Splice storedSplice();

} // namespace sim

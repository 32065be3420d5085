// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/codemaker.h"

namespace sim {

/// Why a code was refused, as the operator reads it.
QString codeMessage(const MadeCode& made);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/textmaker.h"

namespace sim {

/// Why a text was refused, as the operator reads it; of a usable text what he should know of its font, or nothing.
QString textMessage(const MadeText& made);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"

namespace sim {

/// The code in the size in which it is marked: its own sizes with the scale of its transform.
CodeSpec markedCode(const MarkObject& object);

/// `wanted` in the own sizes of the code object, so that markedCode() gives it back. Sizes that are those of
/// markedCode() keep their exact value.
CodeSpec ownCode(const MarkObject& object, const CodeSpec& wanted);

/// The hatch that a code is placed with: an area is hatched finely enough to be read, lines and dots need none.
HatchSettings usualCodeHatch(const CodeSpec& spec, double module);

namespace edits {

/// Another code in place of that of a code object: it keeps place, turn, pen, hatch and name. Where it is marked in
/// another way, it gets the usual hatch of that. `fault` tells why there can be no such object.
EditResult setCode(const DocumentState& state, int index, const CodeShape& code, const HatchSettings& usualHatch,
                   QString* fault = nullptr);

} // namespace edits
} // namespace sim

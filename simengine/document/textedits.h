// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"

namespace sim {

/// The size in which a text object is marked: its own sizes with the scale of its transform.
TextSpec markedSpec(const MarkObject& object);

/// `wanted` in the own sizes of the text object, so that markedSpec() gives it back. Sizes that are those of
/// markedSpec() keep their exact value.
TextSpec ownSpec(const MarkObject& object, const TextSpec& wanted);

namespace edits {

/// Another text in place of that of a text object: it keeps place, turn, pen, hatch and name. `fault` tells why there
/// can be no such object.
EditResult setText(const DocumentState& state, int index, const TextShape& text, QString* fault = nullptr);

} // namespace edits
} // namespace sim

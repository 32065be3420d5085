// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"

namespace sim {

/// The object's outline as a path in the field; nothing for what has none: points and groups.
std::optional<PathShape> fieldPath(const MarkObject& object);

namespace edits {

/// Other parameters and their outline in place of those of what a module made: it keeps place, turn, pen, hatch and
/// name. `fault` tells why there can be no such object.
EditResult setGenerated(const DocumentState& state, int index, const GeneratedShape& generated,
                        QString* fault = nullptr);

/// Another geometry, given in the field, in place of that of an object: it keeps turn, pen, hatch and name.
EditResult setFieldShape(const DocumentState& state, int index, const Shape& shape);

/// An object gives way to a path of the same outline. Nothing for paths, polylines, points and groups.
EditResult toPath(const DocumentState& state, int index);

} // namespace edits
} // namespace sim

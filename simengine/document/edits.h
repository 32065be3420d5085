// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/marktypes.h"
#include "simengine/document/documentstate.h"

namespace sim {

/// Edits of a document as plain functions from state to state. Each gives nothing when it has no effect, when nothing
/// is selected or when an object would leave the coordinate limit; then nothing at all changes. Lengths in mm, angles
/// in degrees counter-clockwise. Any thread.
namespace edits {

/// Appends the objects and selects them.
EditResult add(const DocumentState& state, const ObjectList& objects);
/// Puts one object in place of another.
EditResult replace(const DocumentState& state, int index, const ObjectPtr& object);
EditResult removeSelected(const DocumentState& state);
/// Appends copies moved by (dx, dy) and selects them.
EditResult paste(const DocumentState& state, const ObjectList& objects, double dx, double dy);

EditResult move(const DocumentState& state, double dx, double dy);
/// Moves the middle of the selection's bounds to `center`.
EditResult moveToCenter(const DocumentState& state, const QPointF& center);
/// Scales about (x, y). A factor of 0 is refused, but for an axis in which the selection has no extent: there it stands
/// for "unchanged". Negative factors mirror.
EditResult scale(const DocumentState& state, double sx, double sy, double x, double y);
/// Turns the selection so that its angle becomes `angle`: objects of one common angle together about the mean of their
/// pivots, objects of different angles each about its own pivot.
EditResult setAngle(const DocumentState& state, double angle);
/// Turns the selection by `degrees` about a place, as one body.
EditResult rotate(const DocumentState& state, double degrees, const QPointF& about);
/// Mirrors about the middle of the selection's bounds; values other than the two of MirrorType are refused.
EditResult mirror(const DocumentState& state, MirrorType type);

/// Groups with all that is in them.
EditResult setPen(const DocumentState& state, int pen);
EditResult setWorkType(const DocumentState& state, int type);
/// Gives the selected objects three fills; groups are passed over, they are filled object by object.
EditResult setHatch(const DocumentState& state, const HatchSettings& hatch);
EditResult setName(const DocumentState& state, int index, const QString& name);
/// The mark "turned after the size was entered" of one object.
EditResult setAngleChanged(const DocumentState& state, int index, bool changed);

/// The selected objects become one group at the place of the first of them.
EditResult group(const DocumentState& state);
/// Selected groups give way to what is in them.
EditResult ungroup(const DocumentState& state);

/// The mean of the pivots of the selected objects.
QPointF selectionPivot(const DocumentState& state);

} // namespace edits
} // namespace sim

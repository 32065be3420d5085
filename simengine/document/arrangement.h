// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"

namespace sim {

/// Edits that put objects in relation to each other: order, alignment, common size, copies in rows. Same rules as the
/// functions of edits.h.
namespace edits {

/// Place in the marking order that the selected objects take; among themselves they keep their order.
enum class OrderMove {
    Up,    ///< one place earlier; a block at the beginning stays
    Down,  ///< one place later
    First, ///< before all others
    Last   ///< behind all others
};
EditResult reorder(const DocumentState& state, OrderMove move);
/// Moves one object to another place of the order.
EditResult moveTo(const DocumentState& state, int from, int to);
/// Orders all objects so that each begins near the end of the one before it, starting at the field centre.
EditResult sortByJumps(const DocumentState& state);

/// Edge or middle line that the selected objects share with the base object, which stays where it is.
enum class Alignment {
    Left,
    CenterH, ///< middles on one vertical line
    Right,
    Top,
    CenterV, ///< middles on one horizontal line
    Bottom
};
EditResult align(const DocumentState& state, Alignment alignment);

/// Scales the selected objects about their middles to the base object's width, height or both. An object without extent
/// in an axis, and an axis in which the base object has none, stay as they are.
EditResult sameSize(const DocumentState& state, bool width, bool height);

/// Copies of the selection in rows and columns, the selection itself being the first cell. `stepX` and `stepY` lead
/// from cell to cell.
EditResult array(const DocumentState& state, int columns, int rows, double stepX, double stepY);

/// Objects that an array may add to a document.
constexpr int kMostArrayObjects = 1000000;

} // namespace edits
} // namespace sim

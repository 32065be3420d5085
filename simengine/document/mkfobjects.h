// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/bytestream.h"
#include "simengine/document/markobject.h"

namespace sim {

/// Appends an object record, groups with all that is in them.
void writeObject(const MarkObject& object, ByteWriter& out);

/// Bytes of the shortest object record.
constexpr qint64 kLeastObjectBytes = 179;

/// Reads one object record; null with the reader's fault set when it is unsound or of an unknown kind.
ObjectPtr readObject(ByteReader& in, int depth = 0);

} // namespace sim

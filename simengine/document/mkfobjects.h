// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/bytestream.h"
#include "simengine/document/markobject.h"

namespace sim {

/// Appends an object record, groups with all that is in them.
void writeObject(const MarkObject& object, ByteWriter& out);

/// Bytes of the shortest object record.
constexpr qint64 kLeastObjectBytes = 179;

/// Versions of the object section: documents without a text, without a code and variables, or without what a module
/// made, stay readable for programs that know none.
constexpr quint32 kPlainObjectsVersion = 1;
constexpr quint32 kTextObjectsVersion = 2;
constexpr quint32 kCodeObjectsVersion = 3;
constexpr quint32 kGeneratedObjectsVersion = 4;
/// The highest one.
constexpr quint32 kNewestObjectsVersion = kGeneratedObjectsVersion;

/// The lowest version that can hold the objects.
quint32 objectsVersion(const ObjectList& objects);

/// Reads one object record of a section of this version; null with the reader's fault set when it is unsound or of an
/// unknown kind.
ObjectPtr readObject(ByteReader& in, quint32 version, int depth = 0);

} // namespace sim

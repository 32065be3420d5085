// SPDX-License-Identifier: MIT
#pragma once

#include "simengine/document/markobject.h"

#include <QRandomGenerator>
#include <array>
#include <variant>

/// Objects of every kind with all their fields at random, and a comparison that does not go by the file.
namespace randomobjects {

struct Kind {
    sim::ObjectKind kind;
    const char* name;
    sim::Shape (*make)(QRandomGenerator& random);
};

/// A row for each alternative of sim::Shape, in its order: a new kind of object without a row does not compile.
using Kinds = std::array<Kind, std::variant_size_v<sim::Shape>>;
const Kinds& kinds();

/// An object of a kind; never null.
sim::ObjectPtr make(const Kind& kind, QRandomGenerator& random);
/// Objects of all kinds mixed.
sim::ObjectList several(int count, QRandomGenerator& random);

/// Every field is the same, numbers bit for bit.
bool equal(const sim::MarkObject& a, const sim::MarkObject& b);
bool equal(const sim::ObjectList& a, const sim::ObjectList& b);

} // namespace randomobjects

// SPDX-License-Identifier: MIT
#pragma once

#include "simengine/document/markobject.h"

#include <vector>

namespace bench {

/// A drawing of a million vertices.
struct Drawing {
    const char* name;
    sim::ObjectList (*make)();
};

/// The drawings measured: few vertices an object, many, and all in one.
const std::vector<Drawing>& drawings();

} // namespace bench

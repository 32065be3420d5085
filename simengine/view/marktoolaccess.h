// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/marktool.h"
#include "simengine/document/document.h"

/// The engine's own way behind MarkTool and MarkShapeContainer.
struct MarkToolAccess {
    /// The object that stands at `index` of the document at the time of each call.
    static std::unique_ptr<MarkTool> make(sim::Document& document, int index);
};

class MarkShapeContainer;

struct MarkShapeContainerAccess {
    static std::unique_ptr<MarkShapeContainer> make(sim::Document& document);
};

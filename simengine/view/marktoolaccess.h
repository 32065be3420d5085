// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/marktool.h"
#include "simengine/card/job.h"
#include "simengine/document/document.h"
#include "simengine/document/jobbuilder.h"

#include <cstdint>
#include <functional>

/// The engine's own way behind MarkTool and MarkShapeContainer.
struct MarkToolAccess {
    /// The object that stands at `index` of the document at the time of each call.
    static std::unique_ptr<MarkTool> make(sim::Document& document, int index);
};

class MarkShapeContainer;

/// Hears of the jobs of a document, on the thread that runs them.
struct JobListener {
    /// A job goes to the card; the trace has come to `pass` before it.
    std::function<void(std::uint64_t pass, sim::MarkKind kind)> begins = [](std::uint64_t, sim::MarkKind) {};
    std::function<void()> ended = [] {};
};

struct MarkShapeContainerAccess {
    static std::unique_ptr<MarkShapeContainer> make(sim::Document& document, JobListener listener = JobListener());
    /// The options of a run that would begin now.
    static sim::JobOptions options(MarkShapeContainer& container, bool selectedOnly);
};

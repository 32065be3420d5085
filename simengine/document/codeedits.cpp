// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/codeedits.h"

#include "simengine/document/edits.h"
#include "simengine/document/objectscale.h"

#include <algorithm>

namespace sim {

namespace {

/// Lines of a hatch in a module, at least, and their largest distance, mm.
constexpr double kHatchLinesPerModule = 4.0;
constexpr double kMostHatchDistance = 0.1;

} // namespace

CodeSpec markedCode(const MarkObject& object) {
    CodeSpec spec = std::get<CodeShape>(object.shape()).spec;
    const ObjectScale scale = scaleOf(object);
    spec.module *= scale.x;
    spec.width *= scale.x;
    spec.barHeight *= scale.y;
    return spec;
}

CodeSpec ownCode(const MarkObject& object, const CodeSpec& wanted) {
    const auto& code = std::get<CodeShape>(object.shape());
    const CodeSpec marked = markedCode(object);
    const ObjectScale scale = scaleOf(object);
    CodeSpec spec = wanted;
    spec.module = ownSize(wanted.module, marked.module, code.spec.module, scale.x);
    spec.width = ownSize(wanted.width, marked.width, code.spec.width, scale.x);
    spec.barHeight = ownSize(wanted.barHeight, marked.barHeight, code.spec.barHeight, scale.y);
    return spec;
}

HatchSettings usualCodeHatch(const CodeSpec& spec, double module) {
    HatchSettings hatch;
    if (spec.marking != CodeMarking::Outline)
        return hatch;
    hatch.fills[0].Enable = true;
    hatch.fills[0].FillDist = std::min(kMostHatchDistance, module / kHatchLinesPerModule);
    return hatch;
}

namespace edits {

EditResult setCode(const DocumentState& state, int index, const CodeShape& code, const HatchSettings& usualHatch,
                   QString* fault) {
    if (index < 0 || index >= state.count() || state.at(index)->kind() != ObjectKind::Code)
        return std::nullopt;
    ObjectData data = state.at(index)->data();
    const CodeSpec& before = std::get<CodeShape>(data.shape).spec;
    if (before == code.spec)
        return std::nullopt;
    if (before.marking != code.spec.marking)
        data.hatch = usualHatch;
    data.shape = code;
    return replace(state, index, MarkObject::make(std::move(data), fault));
}

} // namespace edits
} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/codeedits.h"

#include "simengine/document/edits.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

/// Lines of a hatch in a module, at least, and their largest distance, mm.
constexpr double kHatchLinesPerModule = 4.0;
constexpr double kMostHatchDistance = 0.1;

struct Scale {
    double x = 1.0;
    double y = 1.0;
};

/// A code that was pressed flat is entered in its own size.
Scale scaleOf(const MarkObject& object) {
    const QTransform& t = object.transform();
    const double x = std::hypot(t.m11(), t.m12());
    const double y = std::hypot(t.m21(), t.m22());
    return {x > 0.0 ? x : 1.0, y > 0.0 ? y : 1.0};
}

double own(double wanted, double marked, double before, double scale) {
    return wanted == marked ? before : wanted / scale;
}

} // namespace

CodeSpec markedCode(const MarkObject& object) {
    CodeSpec spec = std::get<CodeShape>(object.shape()).spec;
    const Scale scale = scaleOf(object);
    spec.module *= scale.x;
    spec.width *= scale.x;
    spec.barHeight *= scale.y;
    return spec;
}

CodeSpec ownCode(const MarkObject& object, const CodeSpec& wanted) {
    const auto& code = std::get<CodeShape>(object.shape());
    const CodeSpec marked = markedCode(object);
    const Scale scale = scaleOf(object);
    CodeSpec spec = wanted;
    spec.module = own(wanted.module, marked.module, code.spec.module, scale.x);
    spec.width = own(wanted.width, marked.width, code.spec.width, scale.x);
    spec.barHeight = own(wanted.barHeight, marked.barHeight, code.spec.barHeight, scale.y);
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

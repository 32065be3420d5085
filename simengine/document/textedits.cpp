// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/textedits.h"

#include "simengine/document/edits.h"

#include <cmath>

namespace sim {

namespace {

struct Scale {
    double x = 1.0;
    double y = 1.0;
};

/// A text that was pressed flat is entered in its own size.
Scale scaleOf(const MarkObject& object) {
    const QTransform& t = object.transform();
    const double x = std::hypot(t.m11(), t.m12());
    const double y = std::hypot(t.m21(), t.m22());
    return {x > 0.0 ? x : 1.0, y > 0.0 ? y : 1.0};
}

} // namespace

TextSpec markedSpec(const MarkObject& object) {
    TextSpec spec = std::get<TextShape>(object.shape()).spec;
    const Scale scale = scaleOf(object);
    spec.height *= scale.y;
    spec.letterSpacing *= scale.x;
    return spec;
}

TextSpec ownSpec(const MarkObject& object, const TextSpec& wanted) {
    const TextSpec& own = std::get<TextShape>(object.shape()).spec;
    const TextSpec marked = markedSpec(object);
    const Scale scale = scaleOf(object);
    TextSpec spec = wanted;
    spec.height = wanted.height == marked.height ? own.height : wanted.height / scale.y;
    spec.letterSpacing =
        wanted.letterSpacing == marked.letterSpacing ? own.letterSpacing : wanted.letterSpacing / scale.x;
    return spec;
}

namespace edits {

EditResult setText(const DocumentState& state, int index, const TextShape& text, QString* fault) {
    if (index < 0 || index >= state.count() || state.at(index)->kind() != ObjectKind::Text)
        return std::nullopt;
    ObjectData data = state.at(index)->data();
    if (std::get<TextShape>(data.shape).spec == text.spec)
        return std::nullopt;
    data.shape = text;
    return replace(state, index, MarkObject::make(std::move(data), fault));
}

} // namespace edits
} // namespace sim

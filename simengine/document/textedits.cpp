// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/textedits.h"

#include "simengine/document/edits.h"
#include "simengine/document/objectscale.h"

namespace sim {

TextSpec markedSpec(const MarkObject& object) {
    TextSpec spec = std::get<TextShape>(object.shape()).spec;
    const ObjectScale scale = scaleOf(object);
    spec.height *= scale.y;
    spec.letterSpacing *= scale.x;
    return spec;
}

TextSpec ownSpec(const MarkObject& object, const TextSpec& wanted) {
    const TextSpec& own = std::get<TextShape>(object.shape()).spec;
    const TextSpec marked = markedSpec(object);
    const ObjectScale scale = scaleOf(object);
    TextSpec spec = wanted;
    spec.height = ownSize(wanted.height, marked.height, own.height, scale.y);
    spec.letterSpacing = ownSize(wanted.letterSpacing, marked.letterSpacing, own.letterSpacing, scale.x);
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

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/shapeedits.h"

#include "simengine/document/edits.h"

namespace sim {

namespace {

bool reaches(const DocumentState& state, int index) {
    return index >= 0 && index < state.count();
}

} // namespace

std::optional<PathShape> fieldPath(const MarkObject& object) {
    if (object.kind() == ObjectKind::Point || object.kind() == ObjectKind::Group)
        return std::nullopt;
    return mapPath(shapeToPath(object.shape()), object.transform());
}

namespace edits {

EditResult setGenerated(const DocumentState& state, int index, const GeneratedShape& generated, QString* fault) {
    if (!reaches(state, index))
        return std::nullopt;
    ObjectData data = state.at(index)->data();
    const auto* before = std::get_if<GeneratedShape>(&data.shape);
    if (!before || before->toolClass != generated.toolClass || before->parameters == generated.parameters)
        return std::nullopt;
    data.shape = generated;
    return replace(state, index, MarkObject::make(std::move(data), fault));
}

EditResult setFieldShape(const DocumentState& state, int index, const Shape& shape) {
    if (!reaches(state, index))
        return std::nullopt;
    ObjectData data = state.at(index)->data();
    data.shape = shape;
    data.transform = QTransform();
    return replace(state, index, MarkObject::make(std::move(data)));
}

EditResult toPath(const DocumentState& state, int index) {
    if (!reaches(state, index))
        return std::nullopt;
    const MarkObject& object = *state.at(index);
    const std::optional<PathShape> path = fieldPath(object);
    if (!path || object.kind() == ObjectKind::Path || object.kind() == ObjectKind::Polyline)
        return std::nullopt;
    return setFieldShape(state, index, *path);
}

} // namespace edits
} // namespace sim

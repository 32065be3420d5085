// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/documentstate.h"

#include <cmath>

namespace sim {

namespace {

/// Degrees within which angles count as one: rotations of the same objects to and fro leave rounding behind.
constexpr double kSameAngle = 1.0e-9;

} // namespace

Selection::Selection(const QList<int>& ordered, int objectCount)
    : m_flags(size_t(std::max(0, objectCount)), false) {
    for (int index : ordered) {
        if (index >= 0 && index < objectCount && !m_flags[size_t(index)]) {
            m_flags[size_t(index)] = true;
            m_ordered.append(index);
        }
    }
}

Selection Selection::range(int first, int count) {
    QList<int> indices;
    indices.reserve(count);
    for (int i = 0; i < count; ++i)
        indices.append(first + i);
    return Selection(indices, first + count);
}

QList<int> Selection::ascending() const {
    QList<int> sorted = m_ordered;
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

int Selection::first() const {
    return m_ordered.isEmpty() ? -1 : *std::min_element(m_ordered.begin(), m_ordered.end());
}

Box selectionBounds(const DocumentState& state) {
    Box box;
    for (int index : state.selection.ordered())
        box.add(state.at(index)->bounds());
    return box;
}

std::optional<SelectionPlace> selectionPlace(const DocumentState& state, BasePoint base) {
    if (state.selection.isEmpty())
        return std::nullopt;
    const Box box = selectionBounds(state);
    SelectionPlace place;
    place.base = box.at(base);
    place.width = box.width();
    place.height = box.height();
    place.angle = state.at(state.selection.first())->angle();
    for (int index : state.selection.ordered()) {
        if (std::abs(state.at(index)->angle() - place.angle) > kSameAngle) {
            place.angle = kMixedAngle;
            break;
        }
    }
    return place;
}

int selectionWorkType(const DocumentState& state) {
    int type = -1;
    for (int index : state.selection.ordered()) {
        const int own = state.at(index)->works() ? 1 : 0;
        if (type != -1 && own != type)
            return -1;
        type = own;
    }
    return type;
}

} // namespace sim

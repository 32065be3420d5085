// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/scenecache.h"

#include <algorithm>
#include <unordered_set>

namespace sim {

void SceneCache::setState(const StatePtr& state) {
    const bool sameObjects = m_state->objects == state->objects;
    m_state = state;
    if (sameObjects)
        return;
    std::unordered_set<const MarkObject*> present;
    present.reserve(state->objects->size());
    for (const ObjectPtr& object : *state->objects)
        present.insert(object.get());
    for (auto it = m_items.begin(); it != m_items.end();) {
        if (present.count(it->first)) {
            ++it;
        } else {
            m_vertices -= it->second->vertexCount();
            it = m_items.erase(it);
        }
    }
}

const SceneItem& SceneCache::item(int index, double pixelsPerMm) {
    const ObjectPtr& object = m_state->at(index);
    std::unique_ptr<SceneItem>& item = m_items[object.get()];
    const double tolerance = toleranceAt(pixelsPerMm);
    if (!item || !item->isFineEnough(tolerance)) {
        if (item)
            m_vertices -= item->vertexCount();
        item = std::make_unique<SceneItem>(object, tolerance, m_cancellation);
        m_vertices += item->vertexCount();
    }
    return *item;
}

double SceneCache::toleranceAt(double pixelsPerMm) {
    constexpr double kCoarsest = 0.1;
    const double wanted = 0.3 / pixelsPerMm;
    double tolerance = kCoarsest;
    while (tolerance > wanted && tolerance > kFlatteningTolerance)
        tolerance /= 4.0;
    return std::max(tolerance, kFlatteningTolerance);
}

} // namespace sim

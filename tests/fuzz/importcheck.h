// SPDX-License-Identifier: MIT
#pragma once

#include "simengine/document/limits.h"
#include "simengine/document/markobject.h"
#include "simengine/importers/importbudget.h"
#include "simengine/importers/importresult.h"

#include <cmath>
#include <cstdlib>

/// What holds for whatever came of an import: objects or a reason, never both; objects that lie in the field; counts
/// that fit; entries of the report that say something.
namespace fuzz {

inline void require(bool holds) {
    if (!holds)
        std::abort();
}

inline void checkList(QVector<sim::ImportSkip> const& list) {
    require(list.size() <= 300);
    for (sim::ImportSkip const& entry : list)
        require(!entry.reason.isEmpty() && entry.count > 0 && entry.kind.size() <= 100);
}

inline void checkImport(sim::ImportResult const& result) {
    if (!result.ok()) {
        require(result.objects.empty());
        return;
    }
    int counted = 0;
    for (int count : result.imported)
        counted += count;
    require(counted == int(result.objects.size()));
    require(result.points <= 2 * sim::ImportBudget::kMostPoints);
    for (sim::ObjectPtr const& object : result.objects) {
        sim::Box const& box = object->bounds();
        require(box.isValid() && std::isfinite(box.width()) && std::isfinite(box.height()));
        require(std::abs(box.minX) <= sim::kMaxCoordinate && std::abs(box.maxX) <= sim::kMaxCoordinate);
        require(std::abs(box.minY) <= sim::kMaxCoordinate && std::abs(box.maxY) <= sim::kMaxCoordinate);
        require(object->pen() >= 0 && object->pen() < 20);
    }
    checkList(result.skipped);
    checkList(result.converted);
}

} // namespace fuzz

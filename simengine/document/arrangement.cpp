// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/arrangement.h"

#include "simengine/document/edits.h"
#include "simengine/document/jumpsort.h"
#include "simengine/document/limits.h"

#include <cmath>

namespace sim::edits {

namespace {

/// The state with its objects in another order: place i gets the object `order[i]`. The selection follows its objects.
EditResult reordered(const DocumentState& state, const std::vector<int>& order) {
    std::vector<int> placeOf(order.size());
    ObjectList objects;
    bool same = true;
    for (size_t i = 0; i < order.size(); ++i) {
        objects.push_back(state.at(order[i]));
        placeOf[size_t(order[i])] = int(i);
        same = same && order[i] == int(i);
    }
    if (same)
        return std::nullopt;
    QList<int> selected;
    for (int index : state.selection.ordered())
        selected.append(placeOf[size_t(index)]);
    DocumentState next = state;
    next.selection = Selection(selected, state.count());
    next.objects = std::make_shared<const ObjectList>(std::move(objects));
    return next;
}

std::vector<int> identity(int count) {
    std::vector<int> order(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        order[size_t(i)] = i;
    return order;
}

QPointF alignmentShift(const Box& own, const Box& base, Alignment alignment) {
    switch (alignment) {
    case Alignment::Left:
        return {base.minX - own.minX, 0.0};
    case Alignment::CenterH:
        return {base.center().x() - own.center().x(), 0.0};
    case Alignment::Right:
        return {base.maxX - own.maxX, 0.0};
    case Alignment::Top:
        return {0.0, base.maxY - own.maxY};
    case Alignment::CenterV:
        return {0.0, base.center().y() - own.center().y()};
    case Alignment::Bottom:
        return {0.0, base.minY - own.minY};
    }
    return {};
}

/// Applies a transform of its own to each selected object but the base.
template<class TransformOf>
EditResult relateToBase(const DocumentState& state, TransformOf transformOf) {
    const int base = state.selection.base();
    if (base < 0)
        return std::nullopt;
    const Box target = state.at(base)->bounds();
    ObjectList objects = *state.objects;
    bool any = false;
    for (int index : state.selection.ordered()) {
        const QTransform by = index == base ? QTransform() : transformOf(state.at(index)->bounds(), target);
        if (by.isIdentity())
            continue;
        any = true;
        objects[size_t(index)] = state.at(index)->transformed(by);
        if (!objects[size_t(index)])
            return std::nullopt;
    }
    if (!any)
        return std::nullopt;
    DocumentState next = state;
    next.objects = std::make_shared<const ObjectList>(std::move(objects));
    return next;
}

} // namespace

EditResult reorder(const DocumentState& state, OrderMove move) {
    const Selection& selection = state.selection;
    std::vector<int> order = identity(state.count());
    const auto chosen = [&](int index) { return selection.contains(index); };
    const auto other = [&](int index) { return !selection.contains(index); };
    switch (move) {
    case OrderMove::Up:
        for (size_t i = 1; i < order.size(); ++i) {
            if (chosen(order[i]) && other(order[i - 1]))
                std::swap(order[i], order[i - 1]);
        }
        break;
    case OrderMove::Down:
        for (size_t i = order.size(); i-- > 1;) {
            if (chosen(order[i - 1]) && other(order[i]))
                std::swap(order[i], order[i - 1]);
        }
        break;
    case OrderMove::First:
        std::stable_partition(order.begin(), order.end(), chosen);
        break;
    case OrderMove::Last:
        std::stable_partition(order.begin(), order.end(), other);
        break;
    }
    return reordered(state, order);
}

EditResult moveTo(const DocumentState& state, int from, int to) {
    if (from < 0 || to < 0 || from >= state.count() || to >= state.count())
        return std::nullopt;
    std::vector<int> order = identity(state.count());
    order.erase(order.begin() + from);
    order.insert(order.begin() + to, from);
    return reordered(state, order);
}

EditResult sortByJumps(const DocumentState& state) {
    return reordered(state, jumpOrder(*state.objects, QPointF(0.0, 0.0)));
}

EditResult align(const DocumentState& state, Alignment alignment) {
    return relateToBase(state, [&](const Box& own, const Box& base) {
        const QPointF shift = alignmentShift(own, base, alignment);
        return QTransform::fromTranslate(shift.x(), shift.y());
    });
}

EditResult sameSize(const DocumentState& state, bool width, bool height) {
    return relateToBase(state, [&](const Box& own, const Box& base) {
        const bool scaleX = width && own.width() > kNoExtent && base.width() > kNoExtent;
        const bool scaleY = height && own.height() > kNoExtent && base.height() > kNoExtent;
        const double sx = scaleX ? base.width() / own.width() : 1.0;
        const double sy = scaleY ? base.height() / own.height() : 1.0;
        const QPointF middle = own.center();
        return QTransform(sx, 0.0, 0.0, sy, middle.x() * (1.0 - sx), middle.y() * (1.0 - sy));
    });
}

EditResult array(const DocumentState& state, int columns, int rows, double stepX, double stepY) {
    if (columns < 1 || rows < 1 || (columns == 1 && rows == 1) || state.selection.isEmpty() || !std::isfinite(stepX) ||
        !std::isfinite(stepY))
        return std::nullopt;
    if (qint64(columns) * rows > kMostArrayObjects / state.selection.count())
        return std::nullopt;
    ObjectList copies;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (row == 0 && column == 0)
                continue;
            for (int index : state.selection.ascending()) {
                copies.push_back(state.at(index)->transformed(QTransform::fromTranslate(column * stepX, row * stepY)));
            }
        }
    }
    EditResult next = add(state, copies);
    if (next) {
        // the first cell belongs to the array
        QList<int> selected = state.selection.ascending() + next->selection.ordered();
        next->selection = Selection(selected, next->count());
    }
    return next;
}

} // namespace sim::edits

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/edits.h"

#include "simengine/document/limits.h"

#include <cmath>

namespace sim::edits {

namespace {

DocumentState withObjects(const DocumentState& state, ObjectList objects, const Selection& selection) {
    DocumentState next = state;
    next.objects = std::make_shared<const ObjectList>(std::move(objects));
    next.selection = selection;
    return next;
}

/// Replaces each selected object by what `change` makes of it. Null refuses the whole edit; the same object is no
/// change.
template<class Change>
EditResult changeSelected(const DocumentState& state, Change change) {
    ObjectList objects = *state.objects;
    bool any = false;
    for (int index : state.selection.ordered()) {
        ObjectPtr& object = objects[size_t(index)];
        ObjectPtr changed = change(object);
        if (!changed)
            return std::nullopt;
        any = any || changed != object;
        object = std::move(changed);
    }
    if (!any)
        return std::nullopt;
    return withObjects(state, std::move(objects), state.selection);
}

EditResult transformSelected(const DocumentState& state, const QTransform& by, double turn) {
    return changeSelected(state, [&](const ObjectPtr& object) { return object->transformed(by, turn); });
}

template<class... Values>
bool finite(Values... values) {
    return (std::isfinite(values) && ...);
}

/// Maps p to about + linear (p - about).
QTransform aboutPoint(double m11, double m12, double m21, double m22, const QPointF& about) {
    return QTransform(m11, m12, m21, m22, about.x() - (about.x() * m11 + about.y() * m21),
                      about.y() - (about.x() * m12 + about.y() * m22));
}

QTransform rotation(double degrees, const QPointF& about) {
    double c = 0.0;
    double s = 0.0;
    // quarter turns without rounding
    const double quarters = degrees / 90.0;
    if (quarters == std::floor(quarters) && std::abs(quarters) < 1.0e6) {
        const int turn = ((int(quarters) % 4) + 4) % 4;
        c = turn == 0 ? 1.0 : turn == 2 ? -1.0 : 0.0;
        s = turn == 1 ? 1.0 : turn == 3 ? -1.0 : 0.0;
    } else {
        const double radians = degrees * (M_PI / 180.0);
        c = std::cos(radians);
        s = std::sin(radians);
    }
    return aboutPoint(c, s, -s, c, about);
}

ObjectPtr withPen(const ObjectPtr& object, int pen) {
    ObjectData data = object->data();
    bool same = data.pen == pen;
    data.pen = pen;
    if (auto* group = std::get_if<GroupShape>(&data.shape)) {
        for (ObjectPtr& child : group->children) {
            ObjectPtr changed = withPen(child, pen);
            same = same && changed == child;
            child = std::move(changed);
        }
    }
    return same ? object : MarkObject::make(std::move(data));
}

bool sameFill(const FillParam& a, const FillParam& b) {
    return a.Enable == b.Enable && a.FillDist == b.FillDist && a.FillAngle == b.FillAngle &&
           a.FillLayer == b.FillLayer && a.FillOffset == b.FillOffset && a.EdgeCnt == b.EdgeCnt &&
           a.FillType == b.FillType;
}

bool sameHatch(const HatchSettings& a, const HatchSettings& b) {
    return a.enableEdge == b.enableEdge && a.markFillFirst == b.markFillFirst && a.showSimple == b.showSimple &&
           std::equal(a.fills.begin(), a.fills.end(), b.fills.begin(), b.fills.end(), sameFill);
}

/// What a child of a group is once it stands alone.
ObjectPtr released(const MarkObject& group, const ObjectPtr& child) {
    ObjectData data = child->data();
    data.transform = data.transform * group.transform();
    data.angle = normalizedAngle(data.angle + group.angle());
    data.angleChanged = data.angleChanged || group.data().angleChanged;
    if (!group.works())
        data.work = WorkType::Off;
    return MarkObject::make(std::move(data));
}

} // namespace

EditResult add(const DocumentState& state, const ObjectList& objects) {
    const bool sound =
        std::all_of(objects.begin(), objects.end(), [](const ObjectPtr& object) { return bool(object); });
    if (objects.empty() || !sound)
        return std::nullopt;
    ObjectList all = *state.objects;
    all.insert(all.end(), objects.begin(), objects.end());
    return withObjects(state, std::move(all), Selection::range(state.count(), int(objects.size())));
}

EditResult replace(const DocumentState& state, int index, const ObjectPtr& object) {
    if (index < 0 || index >= state.count() || !object || object == state.at(index))
        return std::nullopt;
    ObjectList all = *state.objects;
    all[size_t(index)] = object;
    return withObjects(state, std::move(all), state.selection);
}

EditResult removeSelected(const DocumentState& state) {
    if (state.selection.isEmpty())
        return std::nullopt;
    ObjectList rest;
    for (int i = 0; i < state.count(); ++i) {
        if (!state.selection.contains(i))
            rest.push_back(state.at(i));
    }
    return withObjects(state, std::move(rest), Selection());
}

EditResult paste(const DocumentState& state, const ObjectList& objects, double dx, double dy) {
    ObjectList copies;
    for (const ObjectPtr& object : objects)
        copies.push_back(object ? object->transformed(QTransform::fromTranslate(dx, dy)) : nullptr);
    return add(state, copies);
}

EditResult move(const DocumentState& state, double dx, double dy) {
    if (!finite(dx, dy) || (dx == 0.0 && dy == 0.0))
        return std::nullopt;
    return transformSelected(state, QTransform::fromTranslate(dx, dy), 0.0);
}

EditResult moveToCenter(const DocumentState& state, const QPointF& center) {
    if (state.selection.isEmpty())
        return std::nullopt;
    const QPointF by = center - selectionBounds(state).center();
    return move(state, by.x(), by.y());
}

EditResult scale(const DocumentState& state, double sx, double sy, double x, double y) {
    if (!finite(sx, sy, x, y) || state.selection.isEmpty())
        return std::nullopt;
    const Box box = selectionBounds(state);
    if (sx == 0.0 && box.width() < kNoExtent)
        sx = 1.0;
    if (sy == 0.0 && box.height() < kNoExtent)
        sy = 1.0;
    if (sx == 0.0 || sy == 0.0 || (sx == 1.0 && sy == 1.0))
        return std::nullopt;
    return transformSelected(state, aboutPoint(sx, 0.0, 0.0, sy, {x, y}), 0.0);
}

EditResult setAngle(const DocumentState& state, double angle) {
    const auto place = selectionPlace(state, BasePointCenter);
    if (!finite(angle) || !place)
        return std::nullopt;
    if (place->angle != kMixedAngle)
        return rotate(state, angle - place->angle, selectionPivot(state));
    return changeSelected(state, [&](const ObjectPtr& object) {
        const double turn = angle - object->angle();
        return turn == 0.0 ? object : object->transformed(rotation(turn, object->pivot()), turn);
    });
}

EditResult rotate(const DocumentState& state, double degrees, const QPointF& about) {
    if (!finite(degrees, about.x(), about.y()) || degrees == 0.0)
        return std::nullopt;
    return transformSelected(state, rotation(degrees, about), degrees);
}

EditResult mirror(const DocumentState& state, MirrorType type) {
    if (state.selection.isEmpty() || (type != MirrorTopBottom && type != MirrorLeftRight))
        return std::nullopt;
    const double sx = type == MirrorLeftRight ? -1.0 : 1.0;
    const QTransform by = aboutPoint(sx, 0.0, 0.0, -sx, selectionBounds(state).center());
    return changeSelected(state, [&](const ObjectPtr& object) {
        ObjectData data = object->data();
        data.transform = data.transform * by;
        // the mirror image of a turned object is the mirrored object turned the other way
        data.angle = normalizedAngle(-data.angle);
        return MarkObject::make(std::move(data));
    });
}

EditResult setPen(const DocumentState& state, int pen) {
    if (pen < 0 || pen >= kLayerCount)
        return std::nullopt;
    return changeSelected(state, [&](const ObjectPtr& object) { return withPen(object, pen); });
}

EditResult setWorkType(const DocumentState& state, int type) {
    if (type != int(WorkType::Off) && type != int(WorkType::On))
        return std::nullopt;
    return changeSelected(state, [&](const ObjectPtr& object) {
        if (object->data().work == WorkType(type))
            return object;
        ObjectData data = object->data();
        data.work = WorkType(type);
        return MarkObject::make(std::move(data));
    });
}

EditResult setHatch(const DocumentState& state, const HatchSettings& hatch) {
    if (!hatch.isSound())
        return std::nullopt;
    return changeSelected(state, [&](const ObjectPtr& object) {
        if (object->kind() == ObjectKind::Group || sameHatch(object->data().hatch, hatch))
            return object;
        ObjectData data = object->data();
        data.hatch = hatch;
        return MarkObject::make(std::move(data));
    });
}

EditResult setName(const DocumentState& state, int index, const QString& name) {
    if (index < 0 || index >= state.count() || state.at(index)->data().name == name)
        return std::nullopt;
    ObjectData data = state.at(index)->data();
    data.name = name;
    return replace(state, index, MarkObject::make(std::move(data)));
}

EditResult setAngleChanged(const DocumentState& state, int index, bool changed) {
    if (index < 0 || index >= state.count() || state.at(index)->data().angleChanged == changed)
        return std::nullopt;
    ObjectData data = state.at(index)->data();
    data.angleChanged = changed;
    return replace(state, index, MarkObject::make(std::move(data)));
}

EditResult group(const DocumentState& state) {
    if (state.selection.count() < 2)
        return std::nullopt;
    GroupShape shape;
    for (int index : state.selection.ascending())
        shape.children.push_back(state.at(index));
    ObjectData data;
    data.pen = shape.children.front()->pen();
    data.shape = std::move(shape);
    const ObjectPtr whole = MarkObject::make(std::move(data));
    if (!whole)
        return std::nullopt;
    const int place = state.selection.first();
    ObjectList objects;
    for (int i = 0; i < state.count(); ++i) {
        if (i == place)
            objects.push_back(whole);
        else if (!state.selection.contains(i))
            objects.push_back(state.at(i));
    }
    return withObjects(state, std::move(objects), Selection::range(place, 1));
}

EditResult ungroup(const DocumentState& state) {
    ObjectList objects;
    QList<int> selected;
    bool any = false;
    for (int i = 0; i < state.count(); ++i) {
        const ObjectPtr& object = state.at(i);
        const auto* shape = std::get_if<GroupShape>(&object->shape());
        if (!state.selection.contains(i) || !shape) {
            if (state.selection.contains(i))
                selected.append(int(objects.size()));
            objects.push_back(object);
            continue;
        }
        any = true;
        for (const ObjectPtr& child : shape->children) {
            selected.append(int(objects.size()));
            objects.push_back(released(*object, child));
            if (!objects.back())
                return std::nullopt;
        }
    }
    if (!any)
        return std::nullopt;
    const int count = int(objects.size());
    return withObjects(state, std::move(objects), Selection(selected, count));
}

QPointF selectionPivot(const DocumentState& state) {
    QPointF sum;
    for (int index : state.selection.ordered())
        sum += state.at(index)->pivot();
    return state.selection.isEmpty() ? sum : sum / state.selection.count();
}

} // namespace sim::edits

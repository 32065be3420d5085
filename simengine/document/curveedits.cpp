// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/curveedits.h"

#include "simengine/document/contour.h"
#include "simengine/document/limits.h"
#include "simengine/document/pattern.h"

#include <cmath>

namespace sim::edits {

namespace {

bool isCurve(const MarkObject& object) {
    if (const auto* code = std::get_if<CodeShape>(&object.shape()))
        return code->dots.isEmpty();
    return object.kind() != ObjectKind::Point && object.kind() != ObjectKind::Group;
}

std::vector<Contour> fieldContours(const MarkObject& object) {
    return contoursOf(mapPath(shapeToPath(object.shape()), object.transform()));
}

/// An object of another geometry, given in the field, that keeps what the operator gave the first one.
ObjectPtr reshaped(const MarkObject& object, Shape shape) {
    ObjectData data = object.data();
    data.shape = std::move(shape);
    data.transform = QTransform();
    data.angle = 0.0;
    data.angleChanged = false;
    return MarkObject::make(std::move(data));
}

QList<int> selectedCurves(const DocumentState& state) {
    QList<int> curves;
    for (int index : state.selection.ascending()) {
        if (isCurve(*state.at(index)))
            curves.append(index);
    }
    return curves;
}

/// A text gives way to one path for each letter, so that its hatch keeps the holes of the letters.
ObjectList lettersOf(const MarkObject& object, const TextShape& text) {
    ObjectList letters;
    for (const PathShape& letter : letterPaths(text))
        letters.push_back(reshaped(object, mapPath(letter, object.transform())));
    return letters;
}

/// A code gives way to its outline, which keeps its holes and its hatch as one path, or to its dots.
ObjectList areaOf(const MarkObject& object, const CodeShape& code) {
    if (code.dots.isEmpty())
        return {reshaped(object, mapPath(code.outline, object.transform()))};
    ObjectList points;
    for (const QPointF& dot : code.dots)
        points.push_back(reshaped(object, PointShape{object.transform().map(dot), -1.0}));
    return points;
}

/// What a selected object gives way to; empty when it cannot be split.
std::vector<Contour> piecesOf(const MarkObject& object) {
    const ObjectKind kind = object.kind();
    if (kind != ObjectKind::Polyline && kind != ObjectKind::Rect && kind != ObjectKind::Path &&
        kind != ObjectKind::Generated)
        return {};
    std::vector<Contour> contours = fieldContours(object);
    if (contours.size() == 1)
        contours = segmentsOf(contours.front());
    return contours.size() > 1 ? contours : std::vector<Contour>();
}

/// The same question without the pieces, which panels ask at every change of the selection.
bool canBeSplit(const MarkObject& object) {
    if (object.kind() == ObjectKind::Text || object.kind() == ObjectKind::Code)
        return true;
    if (const auto* path = std::get_if<PathShape>(&object.shape())) {
        const auto draws = [](PathVerb verb) { return verb == PathVerb::Line || verb == PathVerb::Cubic; };
        if (std::count_if(path->verbs.begin(), path->verbs.end(), draws) > 1)
            return true;
    }
    if (const auto* line = std::get_if<PolylineShape>(&object.shape()))
        return line->points.size() > 2 || !piecesOf(object).empty();
    return !piecesOf(object).empty();
}

/// Puts objects in place of each selected one for which `parts` gives some. Null parts refuse the edit.
template<class Parts>
EditResult replaceSelected(const DocumentState& state, Parts parts) {
    ObjectList objects;
    QList<int> selected;
    bool any = false;
    for (int i = 0; i < state.count(); ++i) {
        ObjectList instead;
        if (state.selection.contains(i))
            instead = parts(*state.at(i));
        any = any || !instead.empty();
        if (instead.empty())
            instead.push_back(state.at(i));
        for (ObjectPtr& object : instead) {
            if (!object)
                return std::nullopt;
            if (state.selection.contains(i))
                selected.append(int(objects.size()));
            objects.push_back(std::move(object));
        }
    }
    if (!any)
        return std::nullopt;
    DocumentState next = state;
    next.selection = Selection(selected, int(objects.size()));
    next.objects = std::make_shared<const ObjectList>(std::move(objects));
    return next;
}

} // namespace

bool canCombineCurves(const DocumentState& state) {
    return selectedCurves(state).size() >= 2;
}

EditResult combineCurves(const DocumentState& state, bool join) {
    const QList<int> curves = selectedCurves(state);
    if (curves.size() < 2)
        return std::nullopt;
    std::vector<Contour> contours;
    for (int index : curves) {
        const std::vector<Contour> own = fieldContours(*state.at(index));
        contours.insert(contours.end(), own.begin(), own.end());
    }
    if (join)
        contours = joinContours(std::move(contours), kJoinTolerance);
    const ObjectPtr whole = reshaped(*state.at(curves.first()), pathOf(contours));
    if (!whole)
        return std::nullopt;
    const Selection combined(curves, state.count());
    ObjectList objects;
    int place = 0;
    for (int i = 0; i < state.count(); ++i) {
        if (i == curves.first()) {
            place = int(objects.size());
            objects.push_back(whole);
        } else if (!combined.contains(i)) {
            objects.push_back(state.at(i));
        }
    }
    DocumentState next = state;
    next.selection = Selection::range(place, 1);
    next.objects = std::make_shared<const ObjectList>(std::move(objects));
    return next;
}

bool canSplitCurves(const DocumentState& state) {
    const QList<int>& selected = state.selection.ordered();
    return std::any_of(selected.begin(), selected.end(), [&](int index) { return canBeSplit(*state.at(index)); });
}

EditResult splitCurves(const DocumentState& state) {
    return replaceSelected(state, [](const MarkObject& object) {
        if (const auto* text = std::get_if<TextShape>(&object.shape()))
            return lettersOf(object, *text);
        if (const auto* code = std::get_if<CodeShape>(&object.shape()))
            return areaOf(object, *code);
        ObjectList parts;
        for (const Contour& piece : piecesOf(object))
            parts.push_back(reshaped(object, simplestShape(pathOf({piece}))));
        return parts;
    });
}

EditResult roughen(const DocumentState& state, const DissimilationParam& param) {
    if (!isUsablePattern(param))
        return std::nullopt;
    qint64 room = kMostPatternPoints;
    return replaceSelected(state, [&](const MarkObject& object) {
        ObjectList instead;
        if (!isCurve(object))
            return instead;
        PathShape path;
        bool any = false;
        for (const FlatLine& line : object.flattened()) {
            QPolygonF points = line.points;
            const qint64 needed = patternPointCount(line, param);
            if (needed > room) {
                instead.push_back(nullptr);
                return instead;
            }
            if (needed > 0) {
                points = patternAlong(line, param);
                any = true;
            }
            room -= points.size();
            addPolyline(path, points, line.closed);
        }
        if (any)
            instead.push_back(reshaped(object, simplestShape(path)));
        return instead;
    });
}

} // namespace sim::edits

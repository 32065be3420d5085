// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/markobject.h"

#include <QList>
#include <optional>

namespace sim {

/// The selected top-level objects, in the order in which they were selected. Each index occurs once.
class Selection {
public:
    Selection() = default;
    /// Indices that repeat or lie outside 0 to `objectCount` - 1 are left out.
    Selection(const QList<int>& ordered, int objectCount);
    static Selection range(int first, int count);

    bool isEmpty() const { return m_ordered.isEmpty(); }
    int count() const { return m_ordered.size(); }
    bool contains(int index) const { return index >= 0 && index < int(m_flags.size()) && m_flags[size_t(index)]; }
    /// In the order of selection.
    const QList<int>& ordered() const { return m_ordered; }
    /// In marking order.
    QList<int> ascending() const;
    /// The lowest index; -1 when nothing is selected.
    int first() const;
    /// The object that the others are aligned to: the one selected last. -1 with fewer than two objects, which leaves
    /// nothing to align.
    int base() const { return m_ordered.size() < 2 ? -1 : m_ordered.last(); }

    bool operator==(const Selection& other) const { return m_ordered == other.m_ordered; }
    bool operator!=(const Selection& other) const { return !(*this == other); }

private:
    QList<int> m_ordered;
    std::vector<bool> m_flags;
};

/// A document's objects and selection at one moment. Never changes once it is in a document; copies share the objects.
struct DocumentState {
    std::shared_ptr<const ObjectList> objects = std::make_shared<const ObjectList>();
    Selection selection;

    int count() const { return int(objects->size()); }
    const ObjectPtr& at(int index) const { return (*objects)[size_t(index)]; }
};

using StatePtr = std::shared_ptr<const DocumentState>;
/// What an edit makes of a state; nothing when the edit has no effect or cannot be carried out.
using EditResult = std::optional<DocumentState>;

/// Bounds of the selected objects.
Box selectionBounds(const DocumentState& state);

/// Position, size and angle of a selection as the operator sees them.
struct SelectionPlace {
    QPointF base; ///< the base point on the bounds
    double width = 0.0;
    double height = 0.0;
    double angle = 0.0; ///< degrees; kMixedAngle when the objects' angles differ
};
constexpr double kMixedAngle = -1000.0;

std::optional<SelectionPlace> selectionPlace(const DocumentState& state, BasePoint base);

/// 0 not marked, 1 marked, -1 mixed or nothing selected.
int selectionWorkType(const DocumentState& state);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/history.h"

namespace sim {

namespace {

/// The two objects share their coordinates, as after a move or a change of pen.
bool shareGeometry(const MarkObject& a, const MarkObject& b) {
    if (const auto* line = std::get_if<PolylineShape>(&a.shape())) {
        const auto* other = std::get_if<PolylineShape>(&b.shape());
        return other && line->points.constData() == other->points.constData();
    }
    if (const auto* path = std::get_if<PathShape>(&a.shape())) {
        const auto* other = std::get_if<PathShape>(&b.shape());
        return other && path->points.constData() == other->points.constData();
    }
    if (const auto* group = std::get_if<GroupShape>(&a.shape())) {
        const auto* other = std::get_if<GroupShape>(&b.shape());
        return other && group->children == other->children;
    }
    return false;
}

/// What the state holds that its neighbour does not, bytes.
qint64 costBeside(const DocumentState& state, const DocumentState& neighbour) {
    if (state.objects == neighbour.objects)
        return qint64(sizeof(DocumentState)) + state.selection.count() * qint64(sizeof(void*));
    const ObjectList& own = *state.objects;
    const ObjectList& other = *neighbour.objects;
    size_t head = 0;
    while (head < own.size() && head < other.size() && own[head] == other[head])
        ++head;
    size_t tail = 0;
    while (tail + head < own.size() && tail + head < other.size() &&
           own[own.size() - 1 - tail] == other[other.size() - 1 - tail])
        ++tail;
    qint64 cost = qint64(sizeof(DocumentState)) + qint64(own.size() * sizeof(ObjectPtr));
    for (size_t i = head; i + tail < own.size(); ++i) {
        if (i < other.size() && own[i] == other[i])
            continue;
        const bool shared = i < other.size() && shareGeometry(*own[i], *other[i]);
        cost += shared ? qint64(sizeof(MarkObject)) : own[i]->memoryCost();
    }
    return cost;
}

} // namespace

History::History(int mostSteps, qint64 mostBytes)
    : m_mostSteps(mostSteps)
    , m_mostBytes(mostBytes) {}

void History::push(std::deque<Step>& steps, const StatePtr& state, const StatePtr& neighbour) {
    const Step step{state, costBeside(*state, *neighbour)};
    m_cost += step.cost;
    steps.push_back(step);
}

void History::dropForth() {
    for (const Step& step : m_redo)
        m_cost -= step.cost;
    m_redo.clear();
}

void History::trim() {
    // the newest step stays, however large: an edit can always be taken back
    while (m_undo.size() > 1 && (int(m_undo.size()) > m_mostSteps || m_cost > m_mostBytes)) {
        m_cost -= m_undo.front().cost;
        m_undo.pop_front();
    }
}

void History::record(const StatePtr& before, const StatePtr& after, bool merge) {
    dropForth();
    if (!merge || m_undo.empty())
        push(m_undo, before, after);
    trim();
}

StatePtr History::step(std::deque<Step>& from, std::deque<Step>& to, const StatePtr& current) {
    if (from.empty())
        return nullptr;
    const Step step = from.back();
    from.pop_back();
    m_cost -= step.cost;
    push(to, current, step.state);
    return step.state;
}

StatePtr History::undo(const StatePtr& current) {
    return step(m_undo, m_redo, current);
}

StatePtr History::redo(const StatePtr& current) {
    return step(m_redo, m_undo, current);
}

void History::clear() {
    m_undo.clear();
    m_redo.clear();
    m_cost = 0;
}

} // namespace sim

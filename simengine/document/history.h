// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"

#include <deque>

namespace sim {

/// The steps back and forth of one document, bounded in number and, for documents of very many
/// vertices, in memory. The oldest steps are given up first.
class History {
public:
    static constexpr int kMostSteps = 2000;
    static constexpr qint64 kMostBytes = qint64(256) << 20;

    explicit History(int mostSteps = kMostSteps, qint64 mostBytes = kMostBytes);

    /// An edit led from `before` to `after`. Steps forth are dropped. With `merge` the edit joins the last step.
    void record(const StatePtr& before, const StatePtr& after, bool merge);
    /// The state before the last step, null when there is none; `current` becomes the next step forth.
    StatePtr undo(const StatePtr& current);
    StatePtr redo(const StatePtr& current);
    void clear();

    bool canUndo() const { return !m_undo.empty(); }
    bool canRedo() const { return !m_redo.empty(); }
    int undoCount() const { return int(m_undo.size()); }
    /// Memory that the steps hold beyond the current state, an upper estimate in bytes.
    qint64 cost() const { return m_cost; }

private:
    struct Step {
        StatePtr state;
        qint64 cost = 0;
    };
    void push(std::deque<Step>& steps, const StatePtr& state, const StatePtr& neighbour);
    StatePtr step(std::deque<Step>& from, std::deque<Step>& to, const StatePtr& current);
    void dropForth();
    void trim();

    std::deque<Step> m_undo;
    std::deque<Step> m_redo;
    int m_mostSteps;
    qint64 m_mostBytes;
    qint64 m_cost = 0;
};

} // namespace sim

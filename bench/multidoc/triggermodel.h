// SPDX-License-Identifier: MIT
#pragma once

#include "multidoc/trigerdoc.h"

#include <QString>
#include <QStringList>
#include <deque>
#include <vector>

namespace bench {

/// The trigger rule once more, bit by bit: which entry a word starts, and what the log is to tell of it.
class TriggerTable {
public:
    explicit TriggerTable(std::vector<TrigerDoc> entries)
        : m_entries(std::move(entries)) {}

    /// The entry that the word starts, -1 for none; the word is the last one from now on.
    int take(unsigned int word);
    unsigned int last() const { return m_last; }
    /// Lines of the log for a change from `last` to `word` that starts `entry`.
    QStringList lines(unsigned int last, unsigned int word, int entry) const;

private:
    std::vector<TrigerDoc> m_entries;
    unsigned int m_last = 0;
};

/// Queue and name being marked as they are told: a document that waits, or that is seen being marked, is not taken
/// again.
class QueueModel {
public:
    /// A trigger of the document; `shown` when the window has heard that one is being marked. False when dropped.
    bool trigger(int document, bool shown);
    /// The oldest one is in hand from now on; -1 when none waits.
    int take();
    void done() { m_current = -1; }
    int current() const { return m_current; }
    std::size_t waiting() const { return m_queue.size(); }

private:
    std::deque<int> m_queue;
    int m_current = -1;
};

/// A trigger while the worker goes on by itself: its document, and how many runs had begun and ended before it and had
/// begun behind it.
struct FreeTrigger {
    int document;
    std::size_t begunBefore;
    std::size_t endedBefore;
    std::size_t begunAfter;
};

/// Whether the runs, in their order, can come of the triggers by the rule of the queue: every trigger was taken or was
/// of a document that waited or was being marked, and every run was demanded, once.
bool canComeOf(std::vector<int> const& runs, std::vector<FreeTrigger> const& triggers);

} // namespace bench

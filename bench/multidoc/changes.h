// SPDX-License-Identifier: MIT
#pragma once

#include "bench/multidoc/runrecorder.h"
#include "bench/multidoc/triggermodel.h"

#include <random>
#include <vector>

namespace bench {

/// Input changes through the window's own poll, as fast as it takes them: only the wait for the contacts is left out.
/// What is marked is compared with the table of the patterns, document by document and in order.
class Changes {
public:
    /// Of a run that is on. `most` changes at the utmost.
    Changes(RunRecorder& recorder, std::vector<TrigerDoc> const& entries, int most);

    /// Each document is marked before the next change comes: every trigger runs, at once.
    bool oneByOne(int changes);
    /// Several changes come while a document is held, so that others wait: compared with a model of the queue.
    bool held(int changes);
    /// The worker goes on by itself, at a pace at which changes overtake it.
    bool free(int changes);

    /// The log has every change and every trigger, in order, and nothing else of them.
    bool logIsRight() const;
    /// Each row of the window tells as many runs of its document as there were.
    bool rowsAreRight() const;

private:
    struct Change {
        unsigned int last;
        unsigned int word;
        int entry;
    };

    int change(bool hear);
    bool take();
    bool letOneEnd();
    void sampleMemory();
    bool runsAre(std::vector<int> const& wanted, std::size_t from) const;

    RunRecorder& m_recorder;
    TriggerTable m_table;
    QueueModel m_queue;
    std::size_t const m_most;
    std::size_t const m_warm; ///< changes after which the memory is the reference
    std::vector<Change> m_changes;
    std::vector<int> m_wanted;
    std::vector<FreeTrigger> m_free;
    bool m_shown = false; ///< the window has heard of the document that is held
    std::size_t m_deepest = 0;
    long m_reference = 0; ///< kB
    std::mt19937 m_random{1};
};

} // namespace bench

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variableresolver.h"

namespace sim {

/// One pass of a run over a document's variables: their values are taken once, before the job is built, and the
/// counters move on after a pass that was marked with the laser to its end. Previews take the values and leave the
/// counters alone. On the thread of the run.
class VariablePass {
public:
    /// Takes the values. `laser` is false of a preview.
    VariablePass(StatePtr state, bool selectedOnly, bool laser);
    /// Ends a pass that was begun and not ended as one that was not marked to its end.
    ~VariablePass();
    VariablePass(const VariablePass&) = delete;
    VariablePass& operator=(const VariablePass&) = delete;

    /// Why nothing may be marked; the operator has not been told yet.
    const VariableProblem& problem() const { return m_problem; }
    /// What is to be marked.
    const StatePtr& state() const { return m_state; }
    /// The document has variables that count, of which the card cannot mark the next ones by itself.
    bool counts() const { return !m_values.used().isEmpty(); }

    /// The laser is about to mark. False, and problem() tells it, when that cannot be written down or the variables are
    /// damaged by now.
    bool begin();
    /// The laser has marked.
    void end(bool toItsEnd);

private:
    void refuseMarkedCodes();

    StatePtr m_state;
    bool m_laser;
    VariableProblem m_problem; ///< before m_values, whose making can set it
    VariableValues m_values;
    QStringList m_codes; ///< that are meant to be marked once
    bool m_begun = false;
};

} // namespace sim

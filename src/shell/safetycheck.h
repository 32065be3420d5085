// SPDX-License-Identifier: MIT
#pragma once

#include "shell/inputedges.h"

#include <QString>
#include <functional>
#include <vector>

namespace tessera {

/// Gives the edge of a named input function in the sample that is being looked at. Asked once a poll at most for each
/// name, since every answer moves the state that the next one is compared with.
using AskInput = std::function<InputEdge(char const* name)>;

/// What a poll does about the safety inputs.
enum class SafetyAct {
    SetBit,   ///< an alarm comes up
    ClearBit, ///< an alarm goes
    Stop,     ///< the job is ended
    Pause,    ///< the job is held
};

struct SafetyStep {
    SafetyAct act;
    unsigned int bit; ///< alarm that the step belongs to

    bool operator==(SafetyStep const& other) const { return act == other.act && bit == other.bit; }
};

enum class StackLight {
    Keep,   ///< left to the run
    Red,    ///< an alarm is active; written anew in every poll, as the end of a run has just made it yellow
    Yellow, ///< the last alarm has gone
};

struct SafetySettings {
    bool runActive = true;   ///< doors and ready act on the job; false with no job when only a job is to be supervised
    bool doorPauses = false; ///< a door or the light curtain holds the job instead of ending it
};

/// The steps of one poll, in their order.
struct SafetyPlan {
    std::vector<SafetyStep> steps;
    unsigned int mask = 0;     ///< alarms after the steps
    bool indicatorRed = false; ///< safety indicator; the laser's alarm has an indicator of its own
    StackLight light = StackLight::Keep;
};

/// Looks at ready, the doors, the light curtain, the emergency stop, the laser and the chiller, in this order, with
/// `before` the alarms so far. A closed door ends its alarm and resumes nothing.
SafetyPlan CheckSafe(AskInput const& ask, SafetySettings const& settings, unsigned int before);

/// Name of the input function behind an alarm in the operator's language; empty for an unknown bit.
QString SafetyInputName(unsigned int bit);

/// What an edge on the operating inputs asks for.
enum class RunOrder {
    Nothing,
    Stop,  ///< at once or delayed, as the record of the stop input says
    Start, ///< starts or resumes the job
    Pause,
    Preview, ///< red-light preview
    OpenDialog,
};

/// Looks at stop, run, pause and preview in this order; the first edge ends the poll's chain, and the inputs behind it
/// keep their state until the next poll. `visible` is the run dialog on the screen: 0 none, 1 of one document, 2 of
/// several. `checkAlarms` is asked when a start is wanted; false refuses it.
RunOrder CheckRunStop(AskInput const& ask, int visible, std::function<bool()> const& checkAlarms);

/// The two inputs of the mode switch: they are followed, so that their state is known, and nothing hangs on them.
void CheckAutoManual(AskInput const& ask);

} // namespace tessera

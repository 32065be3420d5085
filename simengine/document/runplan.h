// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/jobtimeline.h"
#include "simengine/document/jobbuilder.h"
#include "simengine/io/endsignal.h"

namespace sim {

/// All that decides how long a laser pass of a document takes, taken at one moment. Copies share the objects.
struct RunPlan {
    StatePtr state;
    JobOptions options;
    PenTable pens{};
    PlanSettings plan;
    Point start; ///< where the head stands, mm on the machine
    EndSignalSettings endSignal;

    /// A pass of both takes the same time and marks the same.
    bool sameAs(const RunPlan& other) const;
    /// The same whatever the objects are.
    bool sameSettings(const RunPlan& other) const;
};

/// The options of a run as the machine is set now. Any thread.
JobOptions currentOptions(bool selectedOnly, const QVector<CCDBufdata>& offsets);

/// The plan of a run that would begin now: with the settings of the machine and from where the head stands; with the
/// card closed from the middle of the field. Any thread.
RunPlan currentPlan(StatePtr state, JobOptions options, const PenTable& pens);

/// The job that a run with this plan brings to the card. What was cancelled is not whole. Any thread.
TimelineJob timelineJob(const RunPlan& plan, const Cancellation* cancellation = nullptr);

/// How long the end signal keeps a pass from ending after the card is done.
struct EndSignalWait {
    double ms = 0.0;          ///< that are known beforehand
    bool acknowledge = false; ///< and until the plant acknowledges, at most mostMs
    double mostMs = 0.0;
};
EndSignalWait endSignalWait(const EndSignalSettings& settings);

} // namespace sim

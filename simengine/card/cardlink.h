// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/layerdata.h"
#include "engine/layerparamex.h"
#include "simengine/card/cardcore.h"

#include <QPointF>
#include <QString>
#include <optional>

namespace sim {

/// What the card executes of a pen, without its waveform. Any thread.
PenParams penParams(LayerData const& data);

/// The pens of a table as the card takes them: a record with UseDefault is replaced by the shared default. Records past
/// `count`, or past the card's pens, are left out; missing ones keep what `before` holds. Each pen gets the stored
/// waveform of its number.
PenTable penTable(LayerParamEx const& layers, int count, PenTable const& before);

/// A document's job on its way to the card. Made at the very beginning of MarkShapeContainer::StartMark, before the
/// document is looked at: a stop from then on ends the job, also while it is still being built. Any thread.
///
///     sim::CardRun run(selectedOnly, loop);
///     return run.start(buildJob(...));
class CardRun {
public:
    /// Records the call "StartMark" with its two arguments.
    CardRun(bool selectedOnly, bool loop);

    /// False when it is known already that nothing can be run, so that the job need not be built.
    bool isAccepted() const { return !m_ticket.refused; }
    /// That of the last SetMarkType before the run was ordered.
    MarkKind kind() const { return m_ticket.kind; }

    /// Runs the job and returns when it has ended. Buffer loop, loop delay and pen
    /// change delay are those that SystemParam holds now.
    RunResult start(Job job);

private:
    bool m_loop;
    JobRunner::Ticket m_ticket;
};

/// A place of the document as the head is sent there, and back: an inverted axis counts the other way. Jobs and single
/// moves agree on it, so that a taught place is where it will be marked. Any thread.
Point onMachine(Point place);

/// Where the pilot beam's spot is in the document, mm; nothing with the card closed. Any thread.
std::optional<QPointF> pilotSpot();
/// Where the mirrors were steered to, in the document, mm: the spot is there or on its way. Nothing with the card
/// closed or while a job moves it. Any thread.
std::optional<QPointF> steeredSpot();

/// Tells the log when wobble was too long to be traced in the job that took the given time. Any thread.
void logCentreLines(JobTime const& time);

/// A message of the card library: to the function given to VZ_SetFuncMessageDisp, or into the log without one.
/// kind: 0 information, 1 error. Any thread.
void showCardMessage(QString const& text, int kind);

} // namespace sim

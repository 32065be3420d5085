// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/runningjob.h"

#include "simengine/card/cardcore.h"

namespace sim {

bool jobRuns() {
    return simulatedCard().state() != RunState::Stop;
}

bool previewRuns() {
    const CardCore& card = simulatedCard();
    return card.kind() != MarkKind::Laser && card.state() == RunState::Run;
}

} // namespace sim

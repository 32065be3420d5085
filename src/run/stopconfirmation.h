// SPDX-License-Identifier: MIT
#pragma once

#include "engine/marktypes.h"

#include <cstdint>

namespace tessera {

/// How far a commanded stop has come.
enum class StopState {
    None,        ///< none is under way
    Stopping,    ///< commanded, and the card does not report yet that it stands
    Unconfirmed, ///< the card has not reported it in time
};

/// What the machine tells at one moment.
struct StopLook {
    bool open = true;                   ///< the card answers at all
    MarkStatus status = MarkStatusStop; ///< run state as it was set
    unsigned int info = 0;              ///< the card's own status word of the run
    bool outputsAtRest = true;          ///< the outputs of the stack light read back as they were last written
    bool goingOn = false;               ///< a new run has begun since
};

/// Whether the machine stands: the run state is stop, the card itself neither marks nor holds nor waits, and the
/// outputs are as written. The laser line is the card's: it is off when the card reports no run. A closed card has
/// none.
bool Stands(StopLook const& look);

/// Follows a stop from the command until the machine reports that it stands. Commands nothing. A plain value; times are
/// ms of a clock that never goes back.
class StopConfirmation {
public:
    /// Longest time between the command and the report, ms: a card stands within milliseconds.
    static constexpr std::int64_t kLimitMs = 2000;

    StopState State() const { return m_State; }
    /// A stop has been commanded. One that comes while another is under way changes nothing: the time runs from the
    /// first, and what is unconfirmed stays so.
    StopState Order(std::int64_t nowMs);
    /// Takes what the machine tells now. A late report confirms too.
    StopState Look(StopLook const& look, std::int64_t nowMs);

private:
    StopState m_State = StopState::None;
    std::int64_t m_nOrderedMs = 0;
};

} // namespace tessera

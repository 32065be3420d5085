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

/// What is seen at one moment.
struct StopLook {
    bool open = true;                   ///< the card answers at all
    MarkStatus status = MarkStatusStop; ///< run state as it was set
    unsigned int info = 0;              ///< the card's own status word of the run
    bool runEnded = true;               ///< the program has taken in the end of the run and set the outputs for rest
    bool outputsAtRest = true;          ///< they read back so
    bool goingOn = false;               ///< a new run has begun since
};

/// Whether the card stands: the run state is stop, and the card itself neither marks nor holds nor waits. The laser
/// line is the card's: it is off when the card reports no run.
bool Stands(StopLook const& look);

/// Follows a stop from the command until the card reports that it stands and the outputs are at rest. Commands nothing.
/// A plain value; times are ms of a clock that never goes back.
class StopConfirmation {
public:
    /// Longest time for the card to stand after the command, and for the outputs after the end of the run, ms. Either
    /// takes milliseconds; between the two the plant may be given an end signal that lasts longer.
    static constexpr std::int64_t kLimitMs = 2000;

    StopState State() const { return m_State; }
    /// A stop has been commanded. One that comes while another is under way changes nothing: the time runs from the
    /// first, and what is unconfirmed stays so.
    StopState Order(std::int64_t nowMs);
    /// Takes what is seen now. A late report confirms too. A closed card has nothing more to report.
    StopState Look(StopLook const& look, std::int64_t nowMs);

private:
    StopState m_State = StopState::None;
    std::int64_t m_nSinceMs = 0; ///< when the wait under way began
};

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "run/stopconfirmation.h"

namespace tessera {

namespace {

/// Bits of the card's status word that tell a job on the card: running, what it waits for, paused.
constexpr unsigned int kRunning = 1U << 0;
constexpr unsigned int kWaits = 0xFU << 20;
constexpr unsigned int kPaused = 1U << 24;

} // namespace

bool Stands(StopLook const& look) {
    return look.status == MarkStatusStop && (look.info & (kRunning | kWaits | kPaused)) == 0;
}

StopState StopConfirmation::Order(std::int64_t nowMs) {
    if (m_State == StopState::None) {
        m_State = StopState::Stopping;
        m_nSinceMs = nowMs;
    }
    return m_State;
}

StopState StopConfirmation::Look(StopLook const& look, std::int64_t nowMs) {
    if (m_State == StopState::None)
        return m_State;
    // A start does not answer for the machine that was not seen to stand.
    if (look.open && look.goingOn && m_State == StopState::Unconfirmed)
        return m_State;
    const bool stands = Stands(look);
    if (!look.open || look.goingOn || (stands && look.runEnded && look.outputsAtRest)) {
        m_State = StopState::None;
    } else if (stands && !look.runEnded) {
        m_State = StopState::Stopping;
        m_nSinceMs = nowMs;
    } else if (nowMs - m_nSinceMs >= kLimitMs) {
        m_State = StopState::Unconfirmed;
    }
    return m_State;
}

} // namespace tessera

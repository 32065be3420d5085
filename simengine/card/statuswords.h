// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdint>

namespace sim {

/// Mark information word of the card.
namespace markinfo {
constexpr std::uint32_t kRunning = 1u << 0;
constexpr std::uint32_t kSuccess = 1u << 8; ///< the last job ended by itself
constexpr std::uint32_t kStopped = 1u << 9; ///< the last job was stopped
constexpr std::uint32_t kUnderrun = 1u << 10;
constexpr std::uint32_t kPaused = 1u << 24;
constexpr std::uint32_t kTimeOut = 1u << 25;
constexpr int kWaitShift = 20; ///< what the card waits for, four bits
constexpr std::uint32_t kWaitMask = 0xFu << kWaitShift;
constexpr std::uint32_t kWaitInput = 1u << kWaitShift;
constexpr std::uint32_t kWaitMotion = 2u << kWaitShift;
constexpr std::uint32_t kWaitEncoder = 3u << kWaitShift;
constexpr std::uint32_t kWaitMirror = 4u << kWaitShift;
} // namespace markinfo

/// Scan head state word. The two lowest bits are the loop state: 0 not known, 2 disturbed, 3 good.
namespace scanstate {
constexpr std::uint32_t kLoopMask = 3u;
constexpr std::uint32_t kLoopBad = 2u;
constexpr std::uint32_t kLoopGood = 3u;
constexpr std::uint32_t kFeedbackX = 0x4u;
constexpr std::uint32_t kFeedbackY = 0x8u;
constexpr std::uint32_t kAlarmX = 0x10u;
constexpr std::uint32_t kAlarmY = 0x20u;
constexpr std::uint32_t kNoFeedbackX = 0x40u;
constexpr std::uint32_t kNoFeedbackY = 0x80u;
constexpr std::uint32_t kClosedLoop = 0x100u;
constexpr std::uint32_t kInitialising = 0x200u;
constexpr std::uint32_t kOvercurrent = 0x400u;
constexpr std::uint32_t kPower = 0x800u;
constexpr std::uint32_t kPositionX = 0x1000u;
constexpr std::uint32_t kPositionY = 0x2000u;
constexpr std::uint32_t kLink = 0x4000u;
} // namespace scanstate

/// System alarm word.
namespace alarmword {
constexpr std::uint32_t kLaser = 1u << 0;
} // namespace alarmword

} // namespace sim

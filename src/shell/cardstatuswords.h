// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>
#include <cstdint>

namespace tessera {

/// Lamps of the card status window.
enum class CardLamp {
    Running,
    Paused,
    IOTimeOut,
    WaitInput,
    WaitExMotion,
    WaitEncoder,
    WaitMirror,
    DataCutOff,
    Stopped,
    Succeeded,
};

/// A lamp is on when the bits of `mask` in the card's mark information word read `value`.
struct CardLampRule {
    CardLamp lamp;
    std::uint32_t mask;
    std::uint32_t value;
};

/// What the card waits for is a number in four bits, so at most one of the four wait lamps is on.
constexpr std::uint32_t kCardWaitMask = 0xFu << 20;

constexpr std::array<CardLampRule, 10> kCardLampRules{{
    {CardLamp::Running, 1u << 0, 1u << 0},
    {CardLamp::Paused, 1u << 24, 1u << 24},
    {CardLamp::IOTimeOut, 1u << 25, 1u << 25},
    {CardLamp::WaitInput, kCardWaitMask, 1u << 20},
    {CardLamp::WaitExMotion, kCardWaitMask, 2u << 20},
    {CardLamp::WaitEncoder, kCardWaitMask, 3u << 20},
    {CardLamp::WaitMirror, kCardWaitMask, 4u << 20},
    {CardLamp::DataCutOff, 1u << 10, 1u << 10},
    {CardLamp::Stopped, 1u << 9, 1u << 9},
    {CardLamp::Succeeded, 1u << 8, 1u << 8},
}};

/// Whether the rule's lamp is on with this mark information word.
constexpr bool CardLampIsOn(CardLampRule const& rule, std::uint32_t word) {
    return (word & rule.mask) == rule.value;
}

/// The scan head's state word in the operator's language: the state of the loop, then a line for the kind of head and
/// for each alarm, from the highest bit down. A line begins with "\r\n"; the state of the loop may be empty. Main
/// thread.
QString ScanStateText(std::uint32_t word);

} // namespace tessera

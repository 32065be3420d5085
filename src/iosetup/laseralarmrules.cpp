// SPDX-License-Identifier: MIT
#include "iosetup/laseralarmrules.h"

#include "engine/marktypes.h"

namespace tessera {

namespace {

constexpr std::array<int, kLaserAlarmChannels> kFibreInputs = {22, 23, 24, 25};
constexpr std::array<int, kLaserAlarmChannels> kOtherInputs = {27, 3, 4, 5};

bool level(unsigned int input, int bit) {
    return (input >> bit & 1U) != 0;
}

} // namespace

std::array<int, kLaserAlarmChannels> laserAlarmInputs(int cardType) {
    return cardType == MarkCardFilber ? kFibreInputs : kOtherInputs;
}

LaserAlarmResult detectLaserAlarm(LaserAlarmRule const& rule, int cardType, unsigned int input, bool alarm) {
    const std::array<int, kLaserAlarmChannels> bits = laserAlarmInputs(cardType);
    if (rule.laserType == kLaserTypeCustom) {
        for (std::size_t i = 0; i < bits.size(); ++i)
            alarm = alarm || (rule.enabled[i] && level(input, bits[i]) == rule.level[i]);
        return {alarm, alarm ? "激光器报警(与配置IO状态不匹配)" : ""};
    }
    if (rule.laserType != kLaserTypeCoded)
        return {alarm, ""};
    if (level(input, bits[1]) != rule.inverted)
        return {false, ""};
    return {true, level(input, bits[0]) == rule.inverted ? "温度超标" : "PD报警"};
}

} // namespace tessera

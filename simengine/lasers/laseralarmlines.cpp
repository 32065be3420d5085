// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/lasers/laseralarmlines.h"

#include <cstddef>

namespace sim {

namespace {

using Inputs = std::array<int, LaserAlarmWiring::kChannels>;

constexpr Inputs kFibreInputs{22, 23, 24, 25};
constexpr Inputs kGeneralInputs{27, 3, 4, 5};

std::uint32_t line(const Inputs& inputs, std::size_t channel) {
    return 1u << inputs[channel];
}

LaserAlarmLines codedLines(const Inputs& inputs, bool level) {
    const std::uint32_t first = line(inputs, 0);
    const std::uint32_t second = line(inputs, 1);
    if (level)
        return {0, first | second, second};
    return {first | second, 0, first};
}

LaserAlarmLines customLines(const Inputs& inputs, const LaserAlarmWiring& wiring) {
    LaserAlarmLines lines;
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    for (std::size_t channel = 0; channel < inputs.size(); ++channel) {
        if (!wiring.wired[channel])
            continue;
        last = line(inputs, channel);
        first = first != 0 ? first : last;
        if (!wiring.level[channel])
            lines.good |= last;
    }
    lines.temperature = lines.good ^ first;
    lines.photodiode = lines.good ^ last;
    return lines;
}

} // namespace

LaserAlarmLines LaserAlarmLines::of(const LaserAlarmWiring& wiring) {
    const Inputs& inputs = wiring.fibre ? kFibreInputs : kGeneralInputs;
    if (wiring.used && wiring.type == LaserAlarmWiring::kCoded)
        return codedLines(inputs, wiring.codedLevel);
    if (wiring.used && wiring.type == LaserAlarmWiring::kCustom)
        return customLines(inputs, wiring);
    return {};
}

} // namespace sim

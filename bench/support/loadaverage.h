// SPDX-License-Identifier: MIT
#pragma once

#include <fstream>
#include <string>

namespace bench {

/// Load of the machine as the kernel tells it: the last 1, 5 and 15 minutes.
inline std::string loadAverage() {
    std::ifstream file("/proc/loadavg");
    std::string one;
    std::string five;
    std::string fifteen;
    file >> one >> five >> fifteen;
    return one + ' ' + five + ' ' + fifteen;
}

} // namespace bench

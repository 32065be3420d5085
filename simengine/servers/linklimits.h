// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <chrono>
#include <cstddef>

namespace sim {

/// Bounds of the command server's connections. The defaults are those of the machine; tests shorten the times.
struct LinkLimits {
    std::size_t connections = 32;                 ///< that wait to prove themselves, and as many that are refused
    std::chrono::milliseconds proofTime{10'000};  ///< until a connection has proved itself
    std::chrono::milliseconds closingTime{1'000}; ///< for a refused one to take the reason
    int wrongProofs = 5;                          ///< of one address within guardTime
    std::chrono::milliseconds guardTime{60'000};  ///< how long a wrong proof counts
    int badLines = 16;                            ///< of one connection
    std::size_t orders = 64;                      ///< that wait for the main thread; then nothing more is read
    std::size_t orderBytes = std::size_t{4} * 1024 * 1024;  ///< of their lines
    std::size_t answerBytes = std::size_t{4} * 1024 * 1024; ///< that wait for the station
    int logLines = 60;                                      ///< within logTime
    std::chrono::milliseconds logTime{10'000};
};

} // namespace sim

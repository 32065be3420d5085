// SPDX-License-Identifier: MIT
#pragma once

#include "bench/host/wire.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

constexpr char kQuestion[] = "_VZGetLayerParas(0,0);";

/// What a storm is told and what it tells.
struct StormTask {
    std::uint16_t port = 0;
    std::string answer; ///< to kQuestion
    int size = 0;       ///< how much of it
    std::atomic<bool>* end = nullptr;
};

/// One kind of host that misbehaves. Each runs on its own thread until it has done its size or is told to end, and
/// comes back 5 ms after another host took its place. It gives false when an answer was wrong.
struct StormKind {
    char const* title;
    bool (*run)(StormTask const& task);
    int size;        ///< of the full bench
    int shortSize;   ///< of the short form
    bool keepsHosts; ///< runs to its end with no other host between
};

std::vector<StormKind> const& stormKinds();

} // namespace bench

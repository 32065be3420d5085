// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace tests {

/// While it lives, the program has no memory for blocks of `least` bytes and more: operator new throws, on any thread.
/// Programs that have scarcememory.cpp among their sources.
class ScarceMemory {
public:
    explicit ScarceMemory(std::size_t least);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;

    /// Blocks that were refused since it was made.
    int refused() const;
};

} // namespace tests

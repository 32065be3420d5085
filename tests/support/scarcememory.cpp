// SPDX-License-Identifier: MIT
#include "scarcememory.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

std::atomic<std::size_t> g_least{std::numeric_limits<std::size_t>::max()};
std::atomic<int> g_refused{0};

} // namespace

namespace tests {

ScarceMemory::ScarceMemory(std::size_t least) {
    g_refused = 0;
    g_least = least;
}

ScarceMemory::~ScarceMemory() {
    g_least = std::numeric_limits<std::size_t>::max();
}

int ScarceMemory::refused() const {
    return g_refused;
}

} // namespace tests

void* operator new(std::size_t size) {
    if (size >= g_least) {
        ++g_refused;
        throw std::bad_alloc();
    }
    if (void* block = std::malloc(size > 0 ? size : 1))
        return block;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (size < g_least)
        return std::malloc(size > 0 ? size : 1);
    ++g_refused;
    return nullptr;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

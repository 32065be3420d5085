// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/tracer/streams.h"

#include <cstdio>

namespace sim {

bool readAll(void* data, std::size_t size) {
    return size == 0 || std::fread(data, 1, size, stdin) == size;
}

bool writeAll(const void* data, std::size_t size) {
    return size == 0 || std::fwrite(data, 1, size, stdout) == size;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstddef>

namespace sim {

/// Reads exactly `size` bytes from the standard input; false when there are fewer.
bool readAll(void* data, std::size_t size);
/// Writes all bytes to the standard output; false when nobody takes them.
bool writeAll(const void* data, std::size_t size);

template<typename Record>
bool readRecord(Record& record) {
    return readAll(&record, sizeof(record));
}

template<typename Record>
bool writeRecord(const Record& record) {
    return writeAll(&record, sizeof(record));
}

} // namespace sim

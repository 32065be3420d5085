// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace tests {

constexpr int defaultWait = 5000; ///< ms, before the time-out scale

/// Waits until `condition` holds, at most `milliseconds` times the time-out scale; false when it never did. On the
/// application's thread events are handled meanwhile, deferred deletions too; elsewhere, or without an application, the
/// thread just looks again every millisecond.
bool waitFor(const std::function<bool()>& condition, int milliseconds = defaultWait);

} // namespace tests

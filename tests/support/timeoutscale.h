// SPDX-License-Identifier: MIT
#pragma once

namespace tests {

/// The one factor on every time-out of a test: the environment variable TESSERA_TIMEOUT_SCALE (CTest sets it), else 1,
/// or more in a sanitized build, which runs slower. Always above 0. Any thread.
double timeoutScale();

/// `milliseconds` times the scale, at least 1.
int scaled(int milliseconds);

} // namespace tests

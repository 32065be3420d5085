// SPDX-License-Identifier: MIT
#pragma once

namespace tessera {

/// The program's version as "major.minor.patch"; a static string, any thread.
const char* version();

} // namespace tessera

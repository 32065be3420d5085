// SPDX-License-Identifier: MIT
#pragma once

namespace bench {

/// Edges of an input at any moment between two polls, in real time: tells how long it takes to the first vector of the
/// document, with its parts. False when one is without a vector or the median is above 80 ms.
bool measureEdges(int edges);

} // namespace bench

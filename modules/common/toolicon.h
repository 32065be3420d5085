// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <functional>

class QPainter;

namespace toolmodules {

/// An icon in the style of the tool bars: lines of one width on a square of 24 units. `draw` is called with pen and
/// hints set, once for each size.
QIcon toolIcon(const std::function<void(QPainter&)>& draw);

} // namespace toolmodules

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QIcon>

namespace sim {

/// Pictures of the node bar; the first ten are those of NodeCommand in its order.
enum class NodeIcon {
    Insert,
    Remove,
    Corner,
    Smooth,
    Symmetric,
    Line,
    Curve,
    Break,
    Close,
    Open,
    Adds,
    Done,
    Edit,
    ToPath
};

QIcon nodeIcon(NodeIcon icon);

} // namespace sim

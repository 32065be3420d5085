// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QIcon>

namespace sim {

enum class ViewBarIcon { Snap, Menu, Ratio, Axis, Playback };

/// The picture of a switch of the view bar, drawn in lines; `size` in device-independent pixels.
QIcon viewBarIcon(ViewBarIcon icon, int size);

} // namespace sim

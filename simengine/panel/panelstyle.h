// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

namespace sim {

/// Style sheet of the simulator's own window.
QString panelStyle();

} // namespace sim

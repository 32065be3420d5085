// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// Puts the laser that the parameter files tell beside the card: what kind of lines answer is decided by the laser type
/// and, of the YLR types, by "bYLS". Called when the card opens and when it rereads its parameters. Any thread.
void fitLaser();

} // namespace sim

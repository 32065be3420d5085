// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

namespace sim {

/// The simulated machine's own file of where its carriages stand, which no power failure moves.
constexpr char kCarriageFile[] = "/ini/SimAxes.ini";

/// Writes the places of all carriages and what their counters show there. A failure is a line in the log: the carriages
/// then stand where the file had them before. Any thread.
void storeCarriages();

/// Puts the carriages to where the file has them, counters at 0; one that is not in it stays.
void restoreCarriages();

/// Lets the counter of a motor's axis begin at `counter`. When the file tells what the counter showed at a place, the
/// carriage is put to the place that belongs to `counter` then: the counter is written more often than the file.
void restoreCounter(int motor, double counter);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/simcontrol.h"

#include <QString>
#include <string>
#include <vector>

namespace sim {

/// What the card keeps of the beam splitter; it outlasts the program, as the card's own memory does.
constexpr char kSplitterFile[] = "/ini/SimSplitter.ini";

/// Gives encoder and beam splitter the values that the machine is set up with. When the card opens.
void fitDevices();
/// The encoder alone, when the card rereads its fly marking values.
void fitEncoder();
/// A command to the device that the machine has on the card's channel; false when it has none that answers.
bool commandDevice(int code, int a, int b, int& out1, int& out2);
/// The splitter's times from path to path, for the log.
QString switchTimes();

/// The values of encoder, belt, splitter and flash that a person at the machine sees or turns.
std::vector<SimDevice> machineDevices();
SimOutcome setMachineDevice(std::string const& name, double value, std::string& error);
/// Writes a part of the card's flash as a file; with `size` 0 all that was ever written, from the first to the last
/// byte.
SimOutcome writeFlashImage(std::string const& file, std::uint32_t address, std::uint32_t size, std::string& error);

} // namespace sim

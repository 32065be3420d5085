// SPDX-License-Identifier: MIT
#pragma once

#include "operatortexts.h"

class MainWindow;

/// What the operator is told about the machine. A warning is an alarm that does not refuse a start.
enum class RunState { NoDocument, Ready, Running, Paused, Alarm, Warning };

/// The state as the main window, the run dialog and the card tell it. Main thread.
RunState ReadRunState(MainWindow const& window);

/// How a state looks, and which of the buttons it allows.
struct RunStateLook {
    RunState state;
    OperatorText text;
    char const* colour;
    bool start;
    bool pause;
    bool stop;
};

RunStateLook const& LookOf(RunState state);

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// How an order ended; the exit codes of the program.
enum class HostOutcome { Done = 0, Refused = 1, WrongArguments = 2, NoConnection = 3, TimeOut = 4 };

/// What the machine answered, or why it did not.
struct HostResult {
    HostOutcome outcome = HostOutcome::Done;
    QString text;
};

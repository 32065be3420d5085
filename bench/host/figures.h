// SPDX-License-Identifier: MIT
#pragma once

#include "bench/host/wire.h"

#include <QObject>
#include <memory>
#include <string>
#include <vector>

namespace bench {

/// "median 0.05  99 % 0.31  longest 1.20 ms (1000)"
std::string summary(std::vector<double> const& ms);
/// Resident memory of this program, MiB.
double residentMiB();
/// Open sockets of this program.
int openSockets();

/// How far each beat of the input poll is from 30 ms after the one before, where the window handles it.
class PollWatch {
public:
    PollWatch();
    ~PollWatch();
    /// The deviations since the last call, ms. Any thread.
    std::vector<double> take();

private:
    struct State;

    std::shared_ptr<State> m_state; ///< a queued beat may come after the end of this object
    QMetaObject::Connection m_connection;
};

} // namespace bench

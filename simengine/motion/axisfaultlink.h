// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/faults.h"
#include "simengine/motion/axisgroup.h"

namespace sim {

/// A fault of an axis, by the second half of its name: "axis1_driver" is that of motor 1.
struct AxisFaultRow {
    const char* name;
    bool AxisFaults::*fault;
};

constexpr AxisFaultRow kAxisFaultRows[] = {
    {"driver", &AxisFaults::driver},
    {"positive_limit", &AxisFaults::positiveLimit},
    {"negative_limit", &AxisFaults::negativeLimit},
    {"home_stuck", &AxisFaults::homeStuck},
    {"home_dead", &AxisFaults::homeDead},
    {"slip", &AxisFaults::slip},
};

/// Declares the faults of all axes in the machine's bank and lets them act when they are switched. Bank and axes
/// outlive it.
class AxisFaultLink {
public:
    AxisFaultLink(FaultBank& bank, AxisGroup& axes);
    ~AxisFaultLink();
    AxisFaultLink(AxisFaultLink const&) = delete;
    AxisFaultLink& operator=(AxisFaultLink const&) = delete;

    /// Takes the bank's present state over. Any thread.
    void apply();

private:
    FaultBank& m_bank;
    AxisGroup& m_axes;
    int m_observer;
};

} // namespace sim

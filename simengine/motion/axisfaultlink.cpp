// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/motion/axisfaultlink.h"

#include <string>

namespace sim {

namespace {

std::string nameOf(int axis, AxisFaultRow const& row) {
    return "axis" + std::to_string(axis + 1) + '_' + row.name;
}

} // namespace

AxisFaultLink::AxisFaultLink(FaultBank& bank, AxisGroup& axes)
    : m_bank(bank)
    , m_axes(axes) {
    for (int axis = 0; axis < kAxisCount; ++axis) {
        for (AxisFaultRow const& row : kAxisFaultRows)
            bank.declare(nameOf(axis, row));
    }
    m_observer = bank.observe([this] { apply(); });
}

AxisFaultLink::~AxisFaultLink() {
    m_bank.forgetObserver(m_observer);
}

void AxisFaultLink::apply() {
    for (int axis = 0; axis < kAxisCount; ++axis) {
        AxisFaults faults;
        for (AxisFaultRow const& row : kAxisFaultRows)
            faults.*row.fault = m_bank.isOn(nameOf(axis, row));
        m_axes.setFaults(axis, faults);
    }
}

} // namespace sim

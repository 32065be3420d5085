// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sim {
class SimControl;
}

namespace tessera {

/// The simulated machine behind the linked engine, if it is one. Main thread.
class MachineControl {
public:
    /// Looks for the machine among the loaded libraries.
    MachineControl();

    bool isSimulated() const { return m_sim; }
    /// Null when the engine is not a simulated machine.
    sim::SimControl* sim() const { return m_sim; }

    // Without a simulated machine these do nothing and fail.
    bool setSpeed(double factor);
    /// Switches a fault on. With another name the error tells those that there are.
    bool setFault(QString const& name, QString& error);
    /// Whether the machine writes down the calls that reach it.
    void setJournal(bool on);
    bool showPanel(QString& error);
    bool writeTrace(QString const& file, QString& error) const;

    /// How long `machineTime` (ms) takes by the wall clock; 0 when it takes no time.
    double wallTime(double machineTime) const;

private:
    sim::SimControl* m_sim = nullptr;
};

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "machinecontrol.h"

#include "simengine/simcontrol.h"

#include <QStringList>
#include <dlfcn.h>

namespace tessera {

namespace {

QString noSimulator() {
    return QStringLiteral("The engine is not a simulated machine.");
}

} // namespace

MachineControl::MachineControl() {
    auto* find = reinterpret_cast<sim::SimControlFunction>(::dlsym(RTLD_DEFAULT, sim::kSimControlSymbol));
    m_sim = find ? find() : nullptr;
    if (m_sim && m_sim->version() != sim::kSimControlVersion)
        m_sim = nullptr;
}

bool MachineControl::setSpeed(double factor) {
    return m_sim && m_sim->setSpeed(factor);
}

bool MachineControl::setFault(QString const& name, QString& error) {
    if (!m_sim) {
        error = noSimulator();
        return false;
    }
    if (m_sim->setFault(name.toStdString(), true))
        return true;
    QStringList names;
    for (std::string const& known : m_sim->faultNames())
        names.append(QString::fromStdString(known));
    error = QStringLiteral("The machine has no fault \"%1\"; it has %2.").arg(name, names.join(QStringLiteral(", ")));
    return false;
}

void MachineControl::setJournal(bool on) {
    if (m_sim)
        m_sim->setJournalEnabled(on);
}

bool MachineControl::showPanel(QString& error) {
    if (!m_sim) {
        error = noSimulator();
        return false;
    }
    std::string reason;
    bool const shown = m_sim->showPanel(true, reason);
    error = QString::fromStdString(reason);
    return shown;
}

bool MachineControl::writeTrace(QString const& file, QString& error) const {
    if (!m_sim) {
        error = noSimulator();
        return false;
    }
    std::string reason;
    bool const written = m_sim->writeTrace(file.toStdString(), reason) == sim::SimOutcome::Done;
    error = QString::fromStdString(reason);
    return written;
}

double MachineControl::wallTime(double machineTime) const {
    double const speed = m_sim ? m_sim->state().speed : 1.0;
    return speed > 0 ? machineTime / speed : 0.0;
}

} // namespace tessera

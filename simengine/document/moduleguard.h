// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <exception>

namespace sim {

/// Tells in the log what is wrong with a tool module. `who` is its file or the class of its tool.
void noteModuleFault(const QString& who, const QString& what);

/// Carries out a call into a tool module and gives what it threw, of whatever type and with or without words of its
/// own; empty only when it threw nothing.
template<class Call>
QString thrownBy(Call call) {
    QString told;
    try {
        call();
        return told;
    } catch (const std::exception& thrown) {
        told = QString::fromLocal8Bit(thrown.what());
    } catch (...) { // foreign code may throw anything
    }
    return told.isEmpty() ? QStringLiteral("threw something unknown") : told;
}

/// Carries out a call into a tool module. What it throws ends here: told in the log, and the call counts as not carried
/// out.
template<class Call>
bool guarded(const QString& who, Call call) {
    const QString thrown = thrownBy(call);
    if (!thrown.isEmpty())
        noteModuleFault(who, thrown);
    return thrown.isEmpty();
}

} // namespace sim

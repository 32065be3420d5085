// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>
#include <exception>

namespace sim {

/// Tells in the log what is wrong with a tool module. `who` is its file or the class of its tool.
void noteModuleFault(const QString& who, const QString& what);

/// Carries out a call into a tool module. What it throws, of whatever type, ends here: told in the log, and the call
/// counts as not carried out.
template<class Call>
bool guarded(const QString& who, Call call) {
    try {
        call();
        return true;
    } catch (const std::exception& thrown) {
        noteModuleFault(who, QString::fromLocal8Bit(thrown.what()));
    } catch (...) { // foreign code may throw anything
        noteModuleFault(who, QStringLiteral("threw something unknown"));
    }
    return false;
}

} // namespace sim

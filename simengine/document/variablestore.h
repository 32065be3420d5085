// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/variablevalues.h"
#include "simengine/params/inifile.h"

#include <QObject>
#include <memory>
#include <mutex>

namespace sim {

/// The variables of the machine, in "/ini/Variables.ini". The file is the only copy: every question reads what is on
/// the disk, every change is on the disk when the call returns. Any thread.
class VariableStore : public QObject {
    Q_OBJECT
public:
    /// What becomes of a damaged file: it stays in place, or a copy of it stays beside what is put in its place.
    enum class Damaged { Stays, IsReplaced };

    static VariableStore& instance();

    /// All variables; none when the file is damaged, which `problem` then tells.
    VariableSet set(VariableProblem* problem = nullptr) const;
    /// Puts `wanted` in place of what was `opened`. Counters that are the same in both go on from where they stand by
    /// now, so that an edit does not set back what a job has counted meanwhile. False, and why in `problem`, when the
    /// set is not sound, when it cannot be written, and when the file is damaged: that is replaced only when it is
    /// meant, and kept as "Variables.ini.damaged-YYYYMMDD-hhmmss", which the log tells.
    bool save(const VariableSet& wanted, const VariableSet& opened, Damaged damaged = Damaged::Stays,
              VariableProblem* problem = nullptr);

    /// A pass is about to be marked. False, and why in `problem`, when that cannot be written and when the file is
    /// damaged: that is never written by a pass.
    bool beginPass(VariableProblem* problem = nullptr);
    /// The pass has ended. `marked`: to its end, then the counters move on, but for those that the operator has changed
    /// meanwhile.
    bool endPass(const UsedVariables& used, bool marked);
    /// A pass was begun and the machine was switched off before it ended: the last part may be marked in part or in
    /// whole, and the next pass marks its values again. Until the next pass ends.
    bool wasInterrupted() const;

signals:
    /// A definition or a counter is different. On the thread that changed it.
    void changed();

private:
    VariableStore() = default;
    IniFile& file() const;
    bool isPassOpen() const;
    VariableSet read(VariableProblem& problem) const;
    bool keepDamaged() const;
    VariableProblem replace(const VariableSet& wanted, const VariableSet& opened, Damaged damaged);
    bool write(const VariableSet& set, bool passOpen);

    mutable std::mutex m_mutex; ///< guards the two below; one change at a time
    mutable std::unique_ptr<IniFile> m_file;
    bool m_passOpen = false; ///< of this process, so that its own pass is not an interrupted one
};

/// What a template comes to now, with the variables of the machine. Any thread.
QString variableText(const QString& pattern, VariableProblem& problem);

} // namespace sim

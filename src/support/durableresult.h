// SPDX-License-Identifier: MIT
#pragma once

#include "support/supportglobal.h"

#include <QString>

namespace tessera {

/// The step of a durable save that failed, in the order in which the steps are taken.
enum class DurableStep {
    None,            ///< nothing failed
    ResolveTarget,   ///< the path is empty, a directory, a device, or a loop of symbolic links
    LockFile,        ///< settings only: another writer holds the file
    ReadOld,         ///< the present content could not be read
    ReadSource,      ///< copies only: the file to be copied could not be read, or is none
    PrepareText,     ///< settings only: the new ini text could not be produced
    ProveText,       ///< settings only: the new ini text does not give the values back
    MakeDirectory,   ///< a missing parent directory could not be made or synced
    OpenDirectory,   ///< the parent directory could not be opened
    CreateTemporary, ///< no temporary file beside the target
    SetAttributes,   ///< the old file's mode or a new time stamp could not be set
    Write,           ///< the bytes could not all be written
    VerifyLength,    ///< the temporary file has not the length written
    SyncFile,        ///< the content did not reach the disk
    CloseFile,       ///< closing reported a lost write
    Rename,          ///< the temporary file could not take the target's place
    SyncDirectory,   ///< after the rename: the new name may not survive a power cut
    CloseDirectory,  ///< after the rename and its sync: closing the directory reported an error
};

/// What came of a durable save. A plain value.
/// On failure up to and including the step Rename the old file is there, byte for byte, and no temporary is left. On
/// failure at SyncDirectory or CloseDirectory the new file stands whole in its place now, but a power cut may still
/// bring the old one back, so the save counts as failed.
class TESSERA_SUPPORT_EXPORT DurableResult {
public:
    /// Success.
    DurableResult() = default;

    /// A failure of `step` on `path`. `error` is an errno value, or 0 with `detail` saying what was wrong instead.
    static DurableResult failure(DurableStep step, int error, const QString& path, const QString& detail = QString());

    bool ok() const { return m_step == DurableStep::None; }
    explicit operator bool() const { return ok(); }

    DurableStep step() const { return m_step; }
    /// The errno value of the failing call; 0 on success or when no system call failed.
    int error() const { return m_error; }
    /// The file or directory on which the step failed.
    const QString& path() const { return m_path; }
    /// One English line for the log: step, path and reason. Empty on success.
    const QString& message() const { return m_message; }

private:
    DurableStep m_step = DurableStep::None;
    int m_error = 0;
    QString m_path;
    QString m_message;
};

/// The step in words, as in a message: "sync the file".
TESSERA_SUPPORT_EXPORT QString durableStepText(DurableStep step);

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "support/durableresult.h"

#include <system_error>

namespace tessera {
namespace {

struct StepText {
    DurableStep step;
    const char* text;
};

constexpr StepText stepTexts[] = {
    {DurableStep::None, "nothing"},
    {DurableStep::ResolveTarget, "find the file to replace"},
    {DurableStep::LockFile, "lock the file"},
    {DurableStep::ReadOld, "read the present content"},
    {DurableStep::ReadSource, "read the file to be copied"},
    {DurableStep::PrepareText, "produce the settings text"},
    {DurableStep::ProveText, "prove the settings text"},
    {DurableStep::MakeDirectory, "make the directory"},
    {DurableStep::OpenDirectory, "open the directory"},
    {DurableStep::CreateTemporary, "create the temporary file"},
    {DurableStep::SetAttributes, "set the attributes of the temporary file"},
    {DurableStep::Write, "write"},
    {DurableStep::VerifyLength, "verify the length written"},
    {DurableStep::SyncFile, "sync the file"},
    {DurableStep::CloseFile, "close the file"},
    {DurableStep::Rename, "put the new file in place"},
    {DurableStep::SyncDirectory, "sync the directory"},
    {DurableStep::CloseDirectory, "close the directory"},
};

} // namespace

DurableResult DurableResult::failure(DurableStep step, int error, const QString& path, const QString& detail) {
    DurableResult result;
    result.m_step = step;
    result.m_error = error;
    result.m_path = path;
    QString reason = detail;
    if (error != 0) {
        const QString system = QString::fromStdString(std::generic_category().message(error));
        reason = detail.isEmpty() ? system : detail + QStringLiteral(": ") + system;
    }
    result.m_message =
        QStringLiteral("cannot save: %1 failed for \"%2\" (%3)").arg(durableStepText(step), path, reason);
    return result;
}

QString durableStepText(DurableStep step) {
    for (const StepText& entry : stepTexts) {
        if (entry.step == step)
            return QString::fromLatin1(entry.text);
    }
    return QStringLiteral("step %1").arg(static_cast<int>(step));
}

} // namespace tessera

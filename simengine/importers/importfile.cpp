// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/importfile.h"

#include <QFile>
#include <exception>
#include <new>

namespace sim {

ImportResult failedImport(const QString& error) {
    ImportResult result;
    result.error = error;
    return result;
}

ImportResult checkedImport(ImportResult result, const ImportBudget& budget) {
    return budget.ok() ? std::move(result) : failedImport(noteText(budget.note()));
}

ImportResult importFile(const QString& path, const ImportOptions& options,
                        ImportResult (*read)(const QByteArray&, const ImportOptions&)) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failedImport(QStringLiteral("%1: %2").arg(path, file.errorString()));
    if (file.size() > ImportBudget::kMostBytes)
        return failedImport(QStringLiteral("%1: %2").arg(path, noteText(Note::FileTooLarge)));
    // a file of the system's own that never ends tells no size
    const QByteArray bytes = file.read(ImportBudget::kMostBytes + 1);
    if (bytes.size() > ImportBudget::kMostBytes)
        return failedImport(QStringLiteral("%1: %2").arg(path, noteText(Note::FileTooLarge)));
    ImportResult result;
    try {
        result = read(bytes, options);
    } catch (const std::bad_alloc&) {
        result = failedImport(noteText(Note::NoMemory));
    } catch (const std::exception&) {
        // the libraries below throw what they are made of; the operator has no use for their words
        result = failedImport(noteText(Note::Unreadable));
    }
    if (!result.ok())
        result.error = QStringLiteral("%1: %2").arg(path, result.error);
    return result;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/pltimport.h"

#include "simengine/importers/importfile.h"
#include "simengine/importers/pltplotter.h"

namespace sim {

ImportResult importPlt(const QString& path, const ImportOptions& options) {
    return importFile(path, options, importPltData);
}

ImportResult importPltData(const QByteArray& bytes, const ImportOptions& options) {
    ImportResult result;
    result.unit = QStringLiteral("0.025 mm");
    ImportBudget budget(options.mostSeconds);
    PltPlotter plotter(bytes, result, budget);
    plotter.run();
    if (plotter.commandCount() == 0)
        return failedImport(noteText(Note::NotPlt));
    if (budget.ok())
        plotter.builder.finish(options, QPointF());
    return checkedImport(std::move(result), budget);
}

} // namespace sim

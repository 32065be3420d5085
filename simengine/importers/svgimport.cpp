// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgimport.h"

#include "simengine/importers/importfile.h"
#include "simengine/importers/svgparser.h"
#include "simengine/importers/svgrender.h"
#include "simengine/importers/svgxml.h"

namespace sim {

ImportResult importSvg(const QString& path, const ImportOptions& options) {
    return importFile(path, options, importSvgData);
}

ImportResult importSvgData(const QByteArray& bytes, const ImportOptions& options) {
    if (bytes.size() > kMostSvgBytes)
        return failedImport(noteText(Note::FileTooLarge));
    if (!areSvgTagsBounded(bytes))
        return failedImport(noteText(Note::ManyAttributes));
    ImportResult result;
    ImportBudget budget(options.mostSeconds);
    SvgTree tree;
    QString error;
    if (!SvgParser(bytes, tree, result, budget).run(error))
        return failedImport(error.isEmpty() ? noteText(budget.note()) : error);
    result.pageSize = tree.pageSize;
    DrawingBuilder builder(result, budget);
    SvgRender(tree, builder, result, budget).run();
    const QPointF middle(tree.pageSize.width() / 2.0, -tree.pageSize.height() / 2.0);
    tree = SvgTree();
    if (budget.ok())
        builder.finish(options, middle);
    return checkedImport(std::move(result), budget);
}

} // namespace sim

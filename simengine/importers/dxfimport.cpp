// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/dxfimport.h"

#include "simengine/importers/dxffeed.h"
#include "simengine/importers/dxfreader.h"
#include "simengine/importers/importfile.h"

#include <dxflib/dl_dxf.h>
#include <istream>

namespace sim {

ImportResult importDxf(const QString& path, const ImportOptions& options) {
    return importFile(path, options, importDxfData);
}

ImportResult importDxfData(const QByteArray& bytes, const ImportOptions& options) {
    if (bytes.startsWith("AutoCAD Binary DXF"))
        return failedImport(noteText(Note::BinaryDxf));
    ImportResult result;
    ImportBudget budget(options.mostSeconds);
    DxfScene scene(result, budget);
    DxfReader reader(scene, result, budget);
    DxfFeed feed(bytes, result, budget,
                 [&](int code, const char* value, int size) { return reader.notePair(code, value, size); });
    std::istream stream(&feed);
    DL_Dxf library;
    library.in(stream, &reader);
    if (!budget.ok())
        return failedImport(
            noteText(budget.note() == Note::XmlFault && reader.sectionCount() == 0 ? Note::NotDxf : budget.note()));
    if (reader.sectionCount() == 0)
        return failedImport(noteText(Note::NotDxf));
    if (feed.isCutOff() || !feed.hasEnd())
        return failedImport(noteText(Note::CutOff));
    reader.finish();
    result.unit = reader.unitText();
    scene.finish(options);
    return checkedImport(std::move(result), budget);
}

} // namespace sim

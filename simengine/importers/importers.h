// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importresult.h"

#include <QStringList>
#include <vector>

namespace sim {

/// One kind of file that can be imported.
struct Importer {
    const char* kind;     ///< "SVG", as the file dialog shows it
    const char* suffixes; ///< lower case, without the dot, parted by blanks
    ImportResult (*read)(const QString& path, const ImportOptions& options);
};

/// All kinds, in the order of the file dialog. A new importer is one more line of the table.
const std::vector<Importer>& importers();

/// The importer of a file's suffix, whatever its case; null for one that nothing reads.
const Importer* importerFor(const QString& path);

/// Imports a file of any kind. Main thread: texts need the fonts of the application.
ImportResult importDrawing(const QString& path, const ImportOptions& options = {});

/// "All (*.svg *.dxf ...);;SVG (*.svg)..." for a file dialog; `all` is what the first entry is called.
QString importFilter(const QString& all);

} // namespace sim

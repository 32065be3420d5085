// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/importers.h"

#include "simengine/importers/dxfimport.h"
#include "simengine/importers/imageimport.h"
#include "simengine/importers/importfile.h"
#include "simengine/importers/pltimport.h"
#include "simengine/importers/svgimport.h"

#include <QFileInfo>

namespace sim {

namespace {

/// "*.svg *.SVG": the dialog compares letter by letter.
QStringList patternsOf(const Importer& importer) {
    QStringList patterns;
    for (const QString& suffix : QString::fromLatin1(importer.suffixes).split(QLatin1Char(' ')))
        patterns << QStringLiteral("*.") + suffix << QStringLiteral("*.") + suffix.toUpper();
    return patterns;
}

} // namespace

const std::vector<Importer>& importers() {
    static const std::vector<Importer> all = {
        {"SVG", "svg", importSvg},
        {"DXF", "dxf", importDxf},
        {"PLT", "plt hpgl hpg hgl", importPlt},
        {"PNG, JPEG, BMP", kImageSuffixes, importImage},
    };
    return all;
}

const Importer* importerFor(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    for (const Importer& importer : importers()) {
        if (QString::fromLatin1(importer.suffixes).split(QLatin1Char(' ')).contains(suffix))
            return &importer;
    }
    return nullptr;
}

ImportResult importDrawing(const QString& path, const ImportOptions& options) {
    if (const Importer* importer = importerFor(path))
        return importer->read(path, options);
    return failedImport(QStringLiteral("%1: %2").arg(path, noteText(Note::UnknownKind)));
}

QString importFilter(const QString& all) {
    QStringList every;
    QStringList filters;
    for (const Importer& importer : importers()) {
        const QStringList patterns = patternsOf(importer);
        every << patterns;
        filters << QStringLiteral("%1 (%2)").arg(QString::fromLatin1(importer.kind), patterns.join(QLatin1Char(' ')));
    }
    filters.prepend(QStringLiteral("%1 (%2)").arg(all, every.join(QLatin1Char(' '))));
    return filters.join(QStringLiteral(";;"));
}

} // namespace sim

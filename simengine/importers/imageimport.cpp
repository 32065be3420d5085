// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/imageimport.h"

#include "engine/languagemanager.h"
#include "simengine/document/contained.h"
#include "simengine/document/markobject.h"
#include "simengine/importers/importfile.h"
#include "simengine/importers/importnotes.h"
#include "simengine/importers/svglength.h"

#include <QFileInfo>

namespace sim {

namespace {

PathShape united(const std::vector<PathShape>& outlines) {
    PathShape all;
    for (const PathShape& outline : outlines) {
        all.verbs += outline.verbs;
        all.points += outline.points;
    }
    return all;
}

QPointF middleOf(const TracedImage& traced, ImportPlacement placement) {
    if (placement == ImportPlacement::CenterPage)
        return {traced.sizeMm.width() / 2.0, traced.sizeMm.height() / 2.0};
    Box box;
    for (const PathShape& outline : traced.outlines)
        box.add(shapeBounds(Shape(outline), QTransform()));
    return box.center();
}

void addObject(PathShape path, const QPointF& by, int pen, ImportResult& result) {
    for (QPointF& point : path.points)
        point += by;
    ObjectData data;
    data.shape = std::move(path);
    data.pen = pen;
    QString fault;
    const ObjectPtr object = MarkObject::make(std::move(data), &fault);
    if (!object) {
        result.skip(QStringLiteral("path"), fault);
        return;
    }
    ++result.imported[object->className()];
    result.points += object->pointCount();
    result.objects.push_back(object);
}

} // namespace

bool isImage(const QString& path) {
    return QString::fromLatin1(kImageSuffixes).split(QLatin1Char(' ')).contains(QFileInfo(path).suffix().toLower());
}

ImportResult placedOutlines(const TracedImage& traced, const ImportOptions& options, bool oneObject) {
    if (!traced.ok())
        return failedImport(traced.error);
    ImportResult result;
    result.pageSize = traced.sizeMm;
    const QPointF by = options.center - middleOf(traced, options.placement);
    if (oneObject || traced.outlines.size() > std::size_t(kMostTracedObjects)) {
        if (!oneObject)
            result.convert(QStringLiteral("path"), noteText(Note::Gathered), int(traced.outlines.size()));
        addObject(united(traced.outlines), by, options.pen, result);
        return result;
    }
    for (const PathShape& outline : traced.outlines)
        addObject(outline, by, options.pen, result);
    return result;
}

void tellDensity(const ImageSource& image, ImportResult& result) {
    const QSizeF size = image.sizeMm();
    result.unit = QStringLiteral("%1 x %2 dpi")
                      .arg(image.width / size.width() * kMmPerInch, 0, 'f', 1)
                      .arg(image.height / size.height() * kMmPerInch, 0, 'f', 1);
    if (image.dotsPerMm.isEmpty())
        result.convert(QStringLiteral("dpi"), LanguageManager::GetLanText("文件没有给出分辨率"));
}

namespace {

ImportResult imported(const QString& path, const ImportOptions& options) {
    TracerLimit limit;
    const ImageRead read = readImage(path, limit);
    limit.seconds -= read.seconds; // for both together
    if (!read.image)
        return failedImport(read.error);
    ImportResult result = placedOutlines(traceImage(*read.image, {}, limit), options);
    if (result.ok())
        tellDensity(*read.image, result);
    return result;
}

} // namespace

ImportResult importImage(const QString& path, const ImportOptions& options) {
    ImportResult result;
    QString fault;
    if (!contained(fault, [&] { result = imported(path, options); }))
        result = failedImport(fault);
    if (!result.ok())
        result.error = QStringLiteral("%1: %2").arg(path, result.error);
    return result;
}

} // namespace sim

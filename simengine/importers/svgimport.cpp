// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgimport.h"

#include "engine/marktypes.h"
#include "simengine/document/contour.h"
#include "simengine/document/glyphunion.h"
#include "simengine/document/markobject.h"
#include "simengine/document/painterpath.h"
#include "simengine/importers/pathrecorder.h"
#include "simengine/importers/svgsource.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace sim {

namespace {

bool paint(const SvgSource& source, PathRecorder& recorder) {
    QSvgRenderer renderer;
    if (!renderer.load(source.xml))
        return false;
    QPainter painter(&recorder);
    renderer.render(&painter, source.viewBox);
    return true;
}

/// Tells the outlines of texts from all others: they are missing when the drawing is painted without its texts.
void markLetters(const QByteArray& bytes, std::vector<RecordedShape>& shapes) {
    const SvgSource source = readSvgSource(bytes, SvgTexts::LeaveOut);
    PathRecorder recorder(source.viewBox.size());
    if (!paint(source, recorder))
        return;
    auto other = recorder.shapes().begin();
    for (RecordedShape& shape : shapes) {
        shape.letters = other == recorder.shapes().end() || !shape.sameOutline(*other);
        if (!shape.letters)
            ++other;
    }
}

/// Letters are filled by winding, a hatch odd-even: parts that lie over each other must not become holes.
PathShape lettersPath(const PathShape& path) {
    /// How far united letters may be off, in parts of the text's height.
    constexpr double kTolerance = 2.0e-5;
    const double height = shapeBounds(Shape(path), QTransform()).height();
    if (path.verbs.isEmpty() || !(height > 0.0))
        return path;
    return unitedGlyphs({{std::make_shared<const PathShape>(path), QPointF()}}, kTolerance * height).front();
}

ObjectData toObject(const RecordedShape& recorded, const QTransform& toField) {
    ObjectData data;
    const QTransform transform = recorded.transform * toField;
    const QRectF& rect = recorded.rect;
    if (recorded.kind == RecordedShape::Rect) {
        data.shape = RectShape{rect};
        data.transform = transform;
    } else if (recorded.kind == RecordedShape::Ellipse) {
        // a unit circle stretched to the rectangle
        CircleShape circle;
        circle.radius = 1.0;
        const QPointF center = rect.center();
        data.shape = circle;
        data.transform = QTransform(rect.width() / 2, 0, 0, rect.height() / 2, center.x(), center.y()) * transform;
    } else {
        const PathShape path = pathFromPainter(recorded.path, transform);
        data.shape = path.verbs.isEmpty() ? Shape(path) : simplestShape(recorded.letters ? lettersPath(path) : path);
    }
    return data;
}

/// The pen of a colour: the place of its first occurrence, the last pen when there are more colours than pens.
int penOf(const QColor& color, QVector<QColor>& pens) {
    const QColor opaque(color.red(), color.green(), color.blue());
    const int known = pens.indexOf(opaque);
    if (known >= 0)
        return known;
    if (pens.size() < kLayerCount)
        pens.append(opaque);
    return pens.size() - 1;
}

void collectObjects(const std::vector<RecordedShape>& shapes, const QTransform& toField, ImportResult& result) {
    bool shared = false;
    QVector<QColor> extra;
    for (const RecordedShape& recorded : shapes) {
        ObjectData data = toObject(recorded, toField);
        const QColor color = recorded.stroked ? recorded.strokeColor : recorded.fillColor;
        data.pen = penOf(color, result.penColors);
        const QColor opaque(color.red(), color.green(), color.blue());
        if (!result.penColors.contains(opaque) && !extra.contains(opaque)) {
            extra.append(opaque);
            shared = true;
        }
        QString fault;
        const ObjectPtr object = MarkObject::make(std::move(data), &fault);
        if (object)
            result.objects.push_back(object);
        else
            result.skip(QStringLiteral("path"), fault);
    }
    if (shared)
        result.skip(QStringLiteral("colour"),
                    QStringLiteral("there are more colours than pens, they share the last pen"), extra.size());
}

void place(const ImportOptions& options, ImportResult& result) {
    QPointF middle(result.pageSize.width() / 2.0, -result.pageSize.height() / 2.0);
    if (options.placement == ImportPlacement::CenterDrawing) {
        Box box;
        for (const ObjectPtr& object : result.objects)
            box.add(object->bounds());
        middle = box.center();
    }
    const QPointF by = options.center - middle;
    ObjectList placed;
    for (const ObjectPtr& object : result.objects) {
        ObjectData data = object->data();
        if (auto* line = std::get_if<PolylineShape>(&data.shape)) {
            line->points.translate(by);
        } else if (auto* path = std::get_if<PathShape>(&data.shape)) {
            for (QPointF& p : path->points)
                p += by;
        } else {
            data.transform = data.transform * QTransform::fromTranslate(by.x(), by.y());
        }
        QString fault;
        if (const ObjectPtr moved = MarkObject::make(std::move(data), &fault))
            placed.push_back(moved);
        else
            result.skip(QStringLiteral("path"), fault);
    }
    result.objects = placed;
}

ImportResult failed(const QString& error) {
    ImportResult result;
    result.error = error;
    return result;
}

} // namespace

ImportResult importSvg(const QString& path, const ImportOptions& options) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failed(QStringLiteral("%1: %2").arg(path, file.errorString()));
    if (file.size() > kMaxSvgBytes)
        return failed(QStringLiteral("%1: the file is too large").arg(path));
    ImportResult result = importSvgData(file.readAll(), options);
    if (!result.ok())
        result.error = QStringLiteral("%1: %2").arg(path, result.error);
    return result;
}

ImportResult importSvgData(const QByteArray& bytes, const ImportOptions& options) {
    const SvgSource source = readSvgSource(bytes);
    if (!source.error.isEmpty())
        return failed(source.error);
    PathRecorder recorder(source.viewBox.size());
    if (!paint(source, recorder))
        return failed(QStringLiteral("the drawing cannot be read"));
    std::vector<RecordedShape> shapes = recorder.shapes();
    if (source.texts > 0)
        markLetters(bytes, shapes);

    ImportResult result;
    result.skipped = source.skipped;
    result.pageSize = source.pageSize;
    if (recorder.invisibleCount() > 0)
        result.skip(QStringLiteral("path"), QStringLiteral("it has neither line nor area"), recorder.invisibleCount());
    collectObjects(shapes, source.toPage * QTransform::fromScale(1.0, -1.0), result);
    place(options, result);
    for (const ObjectPtr& object : result.objects) {
        ++result.imported[object->className()];
        result.points += object->pointCount();
    }
    return result;
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/scenepainter.h"

#include "simengine/view/devicelines.h"
#include "simengine/view/draftraster.h"
#include "simengine/view/viewtheme.h"

#include <QPainter>
#include <map>
#include <optional>

namespace sim {

namespace {

constexpr double kMargin = 8.0;  ///< px around the viewport that pens and marks reach
constexpr int kMostMarks = 4000; ///< mark points drawn with a ring; more are drawn as dots

/// What is drawn with one pen, in pixels.
struct Bucket {
    Bucket(const QTransform& toPixel, const QRectF& bounds)
        : lines(toPixel, bounds) {}
    DeviceLines lines;
    QVector<QPointF> places; ///< mark points
    QVector<QPointF> specks; ///< objects below a pixel
};

/// The lines of several objects, brought to the screen and sorted by pen; objects that are not marked go by themselves.
class Collector {
public:
    Collector(SceneCache& cache, const ViewTransform& transform, const QTransform& moved)
        : m_cache(cache)
        , m_scale(transform.scale())
        , m_matrix(moved * transform.matrix())
        , m_bounds(QRectF(QPointF(0, 0), transform.viewport()).adjusted(-kMargin, -kMargin, kMargin, kMargin)) {}

    void add(int index) {
        const Box& box = m_cache.state()->at(index)->bounds();
        if (!box.isValid())
            return;
        // Not QRectF::intersects: a line along an axis has no area.
        const QRectF pixels = m_matrix.mapRect(QRectF(box.minX, box.minY, box.width(), box.height()));
        if (pixels.left() > m_bounds.right() || pixels.right() < m_bounds.left() || pixels.top() > m_bounds.bottom() ||
            pixels.bottom() < m_bounds.top())
            return;
        const bool whole = m_bounds.contains(pixels.topLeft()) && m_bounds.contains(pixels.bottomRight());
        const bool speck = pixels.width() < 1.0 && pixels.height() < 1.0;
        if (!speck && addStraight(*m_cache.state()->at(index), whole))
            return;
        for (const SceneLeaf& leaf : m_cache.item(index, m_scale).leaves())
            addLeaf(leaf, whole, speck ? std::optional(pixels.center()) : std::nullopt);
    }

    qint64 vertices() const {
        qint64 sum = 0;
        for (const auto& entry : m_buckets)
            sum += entry.second.lines.vertexCount() + entry.second.places.size() + entry.second.specks.size();
        return sum;
    }
    bool fits(const ScenePainter::Budget& budget) const {
        double effort = 0.0;
        for (const auto& entry : m_buckets)
            effort += entry.second.lines.effort();
        return vertices() <= budget.vertices && effort <= budget.effort;
    }
    /// Pen, with kLayerCount added for objects that are not marked.
    const std::map<int, Bucket>& buckets() const { return m_buckets; }

private:
    /// Lines and rectangles without a hatch are drawn from the document's own points: large drawings consist of them,
    /// and a second set of points would double their memory. False for all others.
    bool addStraight(const MarkObject& object, bool whole) {
        if (object.data().hatch.anyEnabled())
            return false;
        if (const auto* line = std::get_if<PolylineShape>(&object.shape())) {
            if (line->points.size() < 2)
                return false;
            bucketOf(object).addPlaced(line->points.constData(), line->points.size(), line->closed, object.transform(),
                                       whole);
            return true;
        }
        if (const auto* rect = std::get_if<RectShape>(&object.shape())) {
            const QRectF& r = rect->rect;
            const QPointF corners[] = {{r.x(), r.y()},
                                       {r.x() + r.width(), r.y()},
                                       {r.x() + r.width(), r.y() + r.height()},
                                       {r.x(), r.y() + r.height()}};
            bucketOf(object).addPlaced(corners, 4, true, object.transform(), whole);
            return true;
        }
        return false;
    }

    DeviceLines& bucketOf(const MarkObject& object) {
        const bool works = object.works() && object.data().hatch.enableEdge;
        return m_buckets.try_emplace(works ? object.pen() : object.pen() + kLayerCount, m_matrix, m_bounds)
            .first->second.lines;
    }

    void addLeaf(const SceneLeaf& leaf, bool whole, const std::optional<QPointF>& speck) {
        const int key = leaf.works ? leaf.pen : leaf.pen + kLayerCount;
        Bucket& bucket = m_buckets.try_emplace(key, m_matrix, m_bounds).first->second;
        for (const QPointF& place : leaf.places)
            bucket.places.append(m_matrix.map(place));
        if (speck) {
            if (leaf.places.empty())
                bucket.specks.append(*speck);
            return;
        }
        if (leaf.hatch)
            addHatch(*leaf.hatch, leaf.hatchStep, whole, bucket.lines);
        for (const FlatLine& line : leaf.lines) {
            if (whole)
                bucket.lines.addWhole(line.points);
            else
                bucket.lines.add(line.points);
        }
    }

    void addHatch(const PackedLines& hatch, std::size_t step, bool whole, DeviceLines& lines) const {
        for (std::size_t i = 0; i < hatch.count() && goesOn(m_cache.cancellation()); i += step) {
            const int count = static_cast<int>(hatch.end(i) - hatch.begin(i));
            if (whole)
                lines.addWhole(hatch.begin(i), count);
            else
                lines.add(hatch.begin(i), count);
        }
    }

    SceneCache& m_cache;
    double m_scale;
    QTransform m_matrix;
    QRectF m_bounds;
    std::map<int, Bucket> m_buckets;
};

// A pen of one pixel has the painter's quick way; anything wider costs ten times as much.
QPen linePen(const QColor& color, double width = 1.0) {
    QPen pen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pen.setCosmetic(true);
    return pen;
}

void paintPlaces(QPainter& painter, const QVector<QPointF>& places, const QColor& color, double ring) {
    if (places.size() > kMostMarks) {
        painter.setPen(linePen(color, 3.0));
        painter.drawPoints(places.constData(), places.size());
        return;
    }
    painter.setPen(linePen(color));
    for (const QPointF& place : places) {
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(place, ring, ring);
        painter.setBrush(color);
        painter.drawEllipse(place, 1.5, 1.5);
    }
    painter.setBrush(Qt::NoBrush);
}

void paintLines(QPainter& painter, const Bucket& bucket, const QPen& pen) {
    painter.setPen(pen);
    bucket.lines.paint(painter);
    painter.setPen(linePen(pen.color()));
    painter.drawPoints(bucket.specks.constData(), bucket.specks.size());
}

template<typename ColorOf>
void paintDraft(QPainter& painter, const ViewTransform& transform, const std::map<int, Bucket>& buckets,
                ColorOf color) {
    DraftRaster raster(transform.viewport(), painter.device()->devicePixelRatioF());
    for (const auto& [key, bucket] : buckets) {
        raster.setColor(color(key));
        bucket.lines.paint(raster);
        for (const QPointF& speck : bucket.specks)
            raster.dot(speck);
    }
    painter.drawImage(QPointF(0, 0), raster.image());
}

} // namespace

ScenePainter::ScenePainter(SceneCache& cache, const ViewTransform& transform, const PenColors& colors)
    : m_cache(cache)
    , m_transform(transform)
    , m_colors(colors) {}

QColor ScenePainter::colorOf(int key) const {
    return key < kLayerCount ? theme::onCanvas(m_colors[static_cast<std::size_t>(key)]) : QColor(theme::kNotWorking);
}

qint64 ScenePainter::paint(QPainter& painter, Part part) const {
    const DocumentState& state = *m_cache.state();
    Collector collector(m_cache, m_transform, QTransform());
    for (int i = 0; i < state.count() && goesOn(m_cache.cancellation()); ++i) {
        if (part == Part::All || !state.selection.contains(i))
            collector.add(i);
    }
    const qint64 vertices = collector.vertices();
    const bool smooth = collector.fits(kSmooth);
    if (isCancelled(m_cache.cancellation()))
        return vertices;
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing, smooth);
    if (!smooth)
        paintDraft(painter, m_transform, collector.buckets(), [this](int key) { return colorOf(key); });
    for (const auto& [key, bucket] : collector.buckets()) {
        QPen pen = linePen(colorOf(key));
        if (key >= kLayerCount)
            pen.setDashPattern({5.0, 4.0});
        if (smooth)
            paintLines(painter, bucket, pen);
        paintPlaces(painter, bucket.places, pen.color(), 4.5);
    }
    painter.restore();
    return vertices;
}

qint64 ScenePainter::paintSelection(QPainter& painter, const QTransform& moved) const {
    const DocumentState& state = *m_cache.state();
    Collector collector(m_cache, m_transform, moved);
    for (const int index : state.selection.ordered())
        collector.add(index);
    const qint64 vertices = collector.vertices();
    const bool halo = collector.fits(kHalo);
    const bool smooth = collector.fits(kSmooth);
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing, smooth);
    const QPen wide = linePen(QColor::fromRgba(theme::kAccentHalo), 5.0);
    // Many lines have no halo; the accent colour marks them instead.
    const auto color = [&](int key) { return halo ? colorOf(key) : QColor(theme::kAccent); };
    if (!smooth)
        paintDraft(painter, m_transform, collector.buckets(), color);
    for (const auto& [key, bucket] : collector.buckets()) {
        if (halo) {
            paintLines(painter, bucket, wide);
            paintPlaces(painter, bucket.places, wide.color(), 6.5);
        }
    }
    for (const auto& [key, bucket] : collector.buckets()) {
        QPen pen = linePen(color(key));
        if (key >= kLayerCount && halo)
            pen.setDashPattern({5.0, 4.0});
        if (smooth)
            paintLines(painter, bucket, pen);
        paintPlaces(painter, bucket.places, pen.color(), 4.5);
    }
    painter.restore();
    return vertices;
}

void ScenePainter::paintOutline(QPainter& painter, int index, const QColor& color, double width) const {
    if (index < 0 || index >= m_cache.state()->count())
        return;
    Collector collector(m_cache, m_transform, QTransform());
    collector.add(index);
    painter.save();
    painter.setBrush(Qt::NoBrush);
    const bool light = collector.fits(kHalo);
    const bool draft = !collector.fits(kSmooth);
    painter.setRenderHint(QPainter::Antialiasing, light);
    if (draft)
        paintDraft(painter, m_transform, collector.buckets(), [&color](int) { return color; });
    for (const auto& entry : collector.buckets()) {
        if (!draft)
            paintLines(painter, entry.second, linePen(color, light ? width : 1.0));
        paintPlaces(painter, entry.second.places, color, 5.5);
    }
    painter.restore();
}

} // namespace sim

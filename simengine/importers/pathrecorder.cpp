// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/pathrecorder.h"

#include "simengine/importers/svglength.h"

#include <QPaintEngine>
#include <QPen>
#include <QtMath>

namespace sim {

namespace {

/// Colour of a brush; of a gradient its first one. Invalid when the brush paints nothing.
QColor colorOf(const QBrush& brush) {
    if (brush.style() == Qt::NoBrush)
        return QColor();
    QColor color = brush.color();
    if (const QGradient* gradient = brush.gradient()) {
        if (gradient->stops().isEmpty())
            return QColor();
        color = gradient->stops().first().second;
    }
    return color.alpha() == 0 ? QColor() : color;
}

QPainterPath polygonPath(const QPointF* points, int count, bool closed) {
    QPainterPath path;
    path.addPolygon(QPolygonF(QVector<QPointF>(points, points + count)));
    if (closed)
        path.closeSubpath();
    return path;
}

} // namespace

bool RecordedShape::sameOutline(const RecordedShape& other) const {
    return kind == other.kind && rect == other.rect && transform == other.transform && path == other.path;
}

class PathRecorder::Engine : public QPaintEngine {
public:
    Engine()
        : QPaintEngine(QPaintEngine::AllFeatures) {}

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }

    void updateState(const QPaintEngineState& now) override {
        if (now.state() & DirtyPen)
            m_pen = now.pen();
        if (now.state() & DirtyBrush)
            m_brush = now.brush();
        if (now.state() & DirtyTransform)
            m_transform = now.transform();
        if (now.state() & DirtyOpacity)
            m_opacity = now.opacity();
    }

    void drawPath(const QPainterPath& path) override {
        RecordedShape shape;
        shape.path = path;
        record(shape);
    }
    void drawRects(const QRectF* rects, int count) override {
        for (int i = 0; i < count; ++i) {
            RecordedShape shape;
            shape.kind = RecordedShape::Rect;
            shape.rect = rects[i].normalized();
            record(shape);
        }
    }
    void drawEllipse(const QRectF& rect) override {
        RecordedShape shape;
        shape.kind = RecordedShape::Ellipse;
        shape.rect = rect.normalized();
        record(shape);
    }
    void drawLines(const QLineF* lines, int count) override {
        for (int i = 0; i < count; ++i) {
            RecordedShape shape;
            shape.path.moveTo(lines[i].p1());
            shape.path.lineTo(lines[i].p2());
            record(shape, Lines);
        }
    }
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        RecordedShape shape;
        shape.path = polygonPath(points, count, mode != PolylineMode);
        record(shape, mode == PolylineMode ? Lines : Areas);
    }
    /// Pictures have no outline; drawings are freed of them before they are painted.
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}

    std::vector<RecordedShape> shapes;
    int invisible = 0;

private:
    enum Extent { Areas, Lines };

    void record(RecordedShape shape, Extent extent = Areas) {
        const bool visible = m_opacity > 0.0;
        shape.transform = m_transform;
        if (visible && m_pen.style() != Qt::NoPen)
            shape.strokeColor = colorOf(m_pen.brush());
        if (visible && extent == Areas)
            shape.fillColor = colorOf(m_brush);
        shape.stroked = shape.strokeColor.isValid();
        shape.filled = shape.fillColor.isValid();
        if (joinsFill(shape, extent))
            return;
        if (shape.stroked || shape.filled) {
            // an outline without an area is painted twice: first its area, which is not seen, then its line
            if (m_lastWasCounted && repeatsLast(shape, extent))
                --invisible;
            m_lastWasCounted = false;
            shapes.push_back(shape);
        } else if (m_last.stroked || m_last.filled || !repeatsLast(shape, extent)) {
            ++invisible;
            m_lastWasCounted = true;
        }
        m_last = shape;
        m_lastWasArea = extent == Areas;
    }

    /// The outline painted last comes once more; the area of an open line was painted closed.
    bool repeatsLast(const RecordedShape& shape, Extent extent) const {
        if (m_last.sameOutline(shape))
            return true;
        if (extent != Lines || !m_lastWasArea)
            return false;
        QPainterPath closed = shape.path;
        closed.closeSubpath();
        return m_last.transform == shape.transform && m_last.path == closed;
    }

    /// The second pass over an outline: its line after its area.
    bool joinsFill(const RecordedShape& shape, Extent extent) {
        if (shapes.empty() || !m_last.filled || m_last.stroked || !m_lastWasArea || shape.filled)
            return false;
        RecordedShape area = m_last;
        if (extent == Lines) {
            // the area of an open line was painted closed
            QPainterPath closed = shape.path;
            closed.closeSubpath();
            if (area.transform != shape.transform || area.path != closed)
                return false;
            area.path = shape.path;
        }
        if (!area.sameOutline(shape))
            return false;
        if (shape.stroked) {
            area.stroked = true;
            area.strokeColor = shape.strokeColor;
            shapes.back() = area;
        }
        m_last = RecordedShape();
        return true;
    }

    QPen m_pen{Qt::NoPen};
    QBrush m_brush;
    QTransform m_transform;
    double m_opacity = 1.0;
    RecordedShape m_last;
    bool m_lastWasArea = false;
    bool m_lastWasCounted = false; ///< the outline painted last is among the invisible ones
};

PathRecorder::PathRecorder(const QSizeF& size)
    : m_engine(std::make_unique<Engine>())
    , m_size(size) {}

PathRecorder::~PathRecorder() = default;

QPaintEngine* PathRecorder::paintEngine() const {
    return m_engine.get();
}

const std::vector<RecordedShape>& PathRecorder::shapes() const {
    return m_engine->shapes;
}

int PathRecorder::invisibleCount() const {
    return m_engine->invisible;
}

int PathRecorder::metric(PaintDeviceMetric metric) const {
    switch (metric) {
    case PdmWidth:
        return qMax(1, qCeil(m_size.width()));
    case PdmHeight:
        return qMax(1, qCeil(m_size.height()));
    case PdmWidthMM:
        return qMax(1, qCeil(m_size.width() * kMmPerSvgPixel));
    case PdmHeightMM:
        return qMax(1, qCeil(m_size.height() * kMmPerSvgPixel));
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return int(kSvgPixelsPerInch);
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return int(devicePixelRatioFScale());
    case PdmDepth:
        return 32;
    case PdmNumColors:
        return 1 << 24;
    default:
        return QPaintDevice::metric(metric);
    }
}

} // namespace sim

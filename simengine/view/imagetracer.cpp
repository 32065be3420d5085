// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/imagetracer.h"

#include "simengine/document/contained.h"
#include "simengine/view/viewtheme.h"

#include <QPainter>
#include <QPainterPath>

namespace sim {

namespace {

/// Points of outlines that the preview fills; beyond them the outlines alone are drawn.
constexpr qint64 kMostFilled = 100000;

void addPath(const PathShape& path, QPainterPath& shown) {
    int point = 0;
    for (const PathVerb verb : path.verbs) {
        switch (verb) {
        case PathVerb::Move:
            shown.moveTo(path.points[point++]);
            break;
        case PathVerb::Line:
            shown.lineTo(path.points[point++]);
            break;
        case PathVerb::Cubic:
            shown.cubicTo(path.points[point], path.points[point + 1], path.points[point + 2]);
            point += 3;
            break;
        case PathVerb::Close:
            shown.closeSubpath();
            break;
        }
    }
}

/// The picture itself, as pale as it must be to see lines on it.
QImage palePicture(const ImageSource& image, const QSize& size) {
    QImage pale(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(pale.scanLine(y));
        const auto row = std::size_t(qint64(y) * image.height / size.height()) * std::size_t(image.width);
        for (int x = 0; x < size.width(); ++x) {
            const int grey = 190 + image.value(row + std::size_t(qint64(x) * image.width / size.width()), false) / 4;
            line[x] = qRgb(grey, grey, grey);
        }
    }
    return pale;
}

} // namespace

QImage drawPreview(const ImageSource& image, const TracedImage& traced, const QSize& most,
                   const std::atomic<bool>* cancelled) {
    const QSizeF mm = traced.sizeMm.isValid() && !traced.sizeMm.isEmpty() ? traced.sizeMm : image.sizeMm();
    const QSize size = mm.scaled(most, Qt::KeepAspectRatio).toSize().expandedTo(QSize(1, 1));
    QImage preview = palePicture(image, size);
    QPainter painter(&preview);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(
        QTransform(size.width() / mm.width(), 0, 0, -size.height() / mm.height(), 0, double(size.height())));
    QPen line(QColor(theme::kAccent), 1.2);
    line.setCosmetic(true);
    painter.setPen(line);
    if (traced.points <= kMostFilled)
        painter.setBrush(QColor::fromRgba(theme::kAccentHalo));
    for (const PathShape& outline : traced.outlines) {
        if (cancelled && cancelled->load())
            break;
        QPainterPath shown;
        addPath(outline, shown);
        painter.drawPath(shown);
    }
    return preview;
}

ImageTracer::ImageTracer(QObject* parent)
    : QObject(parent)
    , m_cancelled(std::make_shared<std::atomic<bool>>(false)) {
    m_pool.setMaxThreadCount(1);
}

ImageTracer::~ImageTracer() {
    m_cancelled->store(true);
    m_pool.waitForDone();
}

std::shared_ptr<std::atomic<bool>> ImageTracer::begin() {
    m_cancelled->store(true);
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    m_busy = true;
    return m_cancelled;
}

void ImageTracer::read(const QString& path) {
    const auto cancelled = begin();
    m_pool.start([this, path, cancelled] {
        TracerLimit limit;
        limit.cancelled = cancelled.get();
        ImageRead read;
        QString fault;
        if (!contained(fault, [&] { read = readImage(path, limit); })) {
            read.image.reset();
            read.error = fault;
        }
        QMetaObject::invokeMethod(
            this,
            [this, read, cancelled] {
                if (cancelled != m_cancelled)
                    return;
                m_busy = false;
                m_image = read.image;
                emit imageRead(read.error);
            },
            Qt::QueuedConnection);
    });
}

void ImageTracer::trace(const TraceSettings& settings, const QSize& preview) {
    if (!m_image)
        return;
    const auto cancelled = begin();
    m_pool.start([this, settings, preview, cancelled, image = m_image] {
        TracerLimit limit;
        limit.cancelled = cancelled.get();
        TracePreview result;
        QString fault;
        const bool done = contained(fault, [&] {
            if (!limit.isCancelled())
                result.traced = traceImage(*image, settings, limit);
            if (!limit.isCancelled())
                result.image = drawPreview(*image, result.traced, preview, cancelled.get());
        });
        if (!done) {
            result = TracePreview();
            result.traced.error = fault;
        }
        QMetaObject::invokeMethod(
            this,
            [this, result, cancelled] {
                if (cancelled != m_cancelled)
                    return;
                m_busy = false;
                emit traced(result);
            },
            Qt::QueuedConnection);
    });
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/imagetrace.h"

#include <QImage>
#include <QObject>
#include <QThreadPool>

namespace sim {

/// The outlines of a picture with the settings that gave them, and how they look on it.
struct TracePreview {
    TracedImage traced;
    QImage image;
};

/// Reads a picture and traces it again with each change of the settings, beside the main thread; what goes on is given
/// up when the settings change. Main thread.
class ImageTracer : public QObject {
    Q_OBJECT
public:
    explicit ImageTracer(QObject* parent);
    /// Ends what goes on and waits for it.
    ~ImageTracer() override;

    void read(const QString& path);
    const std::shared_ptr<const ImageSource>& image() const { return m_image; }
    /// Traces the picture that was read; `preview` is the most that the preview's picture may measure.
    void trace(const TraceSettings& settings, const QSize& preview);
    bool isBusy() const { return m_busy; }

signals:
    /// The picture is there, or why it is not.
    void imageRead(const QString& error);
    void traced(const sim::TracePreview& preview);

private:
    std::shared_ptr<std::atomic<bool>> begin();

    QThreadPool m_pool;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
    std::shared_ptr<const ImageSource> m_image;
    bool m_busy = false;
};

/// The outlines as they will be filled, over the pale picture; not all of them when it was cancelled. Any thread.
QImage drawPreview(const ImageSource& image, const TracedImage& traced, const QSize& most,
                   const std::atomic<bool>* cancelled = nullptr);

} // namespace sim

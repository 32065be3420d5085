// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QColor>
#include <QPaintDevice>
#include <QPainterPath>
#include <QTransform>
#include <memory>
#include <vector>

namespace sim {

/// One outline as it was painted, in its own coordinates.
struct RecordedShape {
    enum Kind { Rect, Ellipse, Path };
    Kind kind = Path;
    QRectF rect; ///< of a Rect and an Ellipse
    QPainterPath path;
    QTransform transform;
    bool stroked = false;
    bool filled = false;
    QColor strokeColor;
    QColor fillColor;
    bool letters = false; ///< of a text; set by who knows

    bool sameOutline(const RecordedShape& other) const;
};

/// A paint device that keeps what is painted on it as outlines with their transforms. An outline that is painted twice
/// in a row, filled and then stroked, is kept once.
class PathRecorder : public QPaintDevice {
public:
    explicit PathRecorder(const QSizeF& size);
    ~PathRecorder() override;
    QPaintEngine* paintEngine() const override;

    const std::vector<RecordedShape>& shapes() const;
    /// Outlines painted without any visible colour.
    int invisibleCount() const;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    class Engine;
    std::unique_ptr<Engine> m_engine;
    QSizeF m_size;
};

} // namespace sim

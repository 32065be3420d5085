// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/canvastool.h"

#include <QTimer>
#include <optional>

namespace sim {

/// A press sends the pilot beam to its place. The place is confirmed by F6: a point at once, a circle or an arc with
/// the third place. The beam's spot is shown where it is, also when something else steers it.
class TeachTool : public CanvasTool {
public:
    explicit TeachTool(CanvasWidget& canvas);
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint&) override {}
    void release(const CanvasPoint&) override {}
    bool cancel() override { return false; }
    void paint(QPainter& painter) const override;
    QCursor cursor() const override { return Qt::CrossCursor; }
    /// Place of the spot as it is shown, mm; nothing with the card closed.
    std::optional<QPointF> shownSpot() const { return m_spot; }

private:
    void follow();
    void paintSpot(QPainter& painter, const QPointF& at) const;

    QTimer m_follow;
    std::optional<QPointF> m_spot;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/canvastool.h"

#include <QTimer>
#include <optional>

namespace sim {

/// A press sends the pilot beam to its place. F6 confirms where the spot was steered to, by a press or by other means:
/// a point at once, a circle or an arc with the third place. A cross shows that place, a dot with its coordinates where
/// the spot is now.
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
    std::optional<QPointF> m_place; ///< that F6 would confirm
};

} // namespace sim

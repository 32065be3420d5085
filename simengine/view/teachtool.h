// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/view/canvastool.h"

namespace sim {

/// A press sends the pilot beam to its place. The place is confirmed by F6: a point at once, a circle or an arc with
/// the third place.
class TeachTool : public CanvasTool {
public:
    using CanvasTool::CanvasTool;
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint&) override {}
    void release(const CanvasPoint&) override {}
    bool cancel() override { return false; }
    void paint(QPainter& painter) const override;
    QCursor cursor() const override { return Qt::CrossCursor; }
};

} // namespace sim

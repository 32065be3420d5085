// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/markobject.h"
#include "simengine/view/canvastool.h"

#include <optional>

namespace sim {

/// A press asks for a text and puts the beginning of its first base line there; the right button goes back to
/// selecting.
class TextTool : public CanvasTool {
public:
    using CanvasTool::CanvasTool;
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint&) override {}
    void release(const CanvasPoint& point) override;
    bool cancel() override;
    bool snaps() const override { return true; }
    QCursor cursor() const override { return Qt::IBeamCursor; }

private:
    std::optional<QPointF> m_place; ///< mm, while the button is down
};

/// Asks for another text in place of that of an object. Does nothing in a read-only document.
void editText(CanvasWidget& canvas, const ObjectPtr& object);

} // namespace sim

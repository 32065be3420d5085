// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/documentstate.h"
#include "simengine/view/canvastool.h"

#include <optional>

namespace sim {

/// A press asks for a code and puts the lower left corner of its modules there; the right button goes back to
/// selecting.
class CodeTool : public CanvasTool {
public:
    using CanvasTool::CanvasTool;
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint&) override {}
    void release(const CanvasPoint& point) override;
    bool cancel() override;
    QCursor cursor() const override { return Qt::CrossCursor; }

private:
    std::optional<QPointF> m_place; ///< mm, while the button is down
};

/// Asks for another code in place of that of an object. Does nothing in a read-only document.
void editCode(CanvasWidget& canvas, const ObjectPtr& object);

/// Where the object now stands in the document: itself, or the one that shows other values of its variables in its
/// place. -1 when it was removed or edited meanwhile.
int presentIndex(const DocumentState& state, const ObjectPtr& object, int formerIndex);

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/markobject.h"
#include "simengine/view/askingtool.h"

namespace sim {

/// A press asks for a code and puts the lower left corner of its modules there.
class CodeTool : public AskingTool {
public:
    using AskingTool::AskingTool;

protected:
    bool isOpen() const override;
    void ask(const QPointF& place) override;
};

/// Asks for another code in place of that of an object. Does nothing in a read-only document.
void editCode(CanvasWidget& canvas, const ObjectPtr& object);

} // namespace sim

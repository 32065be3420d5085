// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/markobject.h"
#include "simengine/view/askingtool.h"

namespace sim {

/// A press asks for a text and puts the beginning of its first base line there.
class TextTool : public AskingTool {
public:
    using AskingTool::AskingTool;
    QCursor cursor() const override { return Qt::IBeamCursor; }

protected:
    bool isOpen() const override;
    void ask(const QPointF& place) override;
};

/// Asks for another text in place of that of an object. Does nothing in a read-only document.
void editText(CanvasWidget& canvas, const ObjectPtr& object);

} // namespace sim

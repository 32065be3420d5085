// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/toolfactory.h"

#include "simengine/view/placetools.h"
#include "simengine/view/polylinetool.h"
#include "simengine/view/selecttool.h"
#include "simengine/view/teachtool.h"
#include "simengine/view/texttool.h"

namespace sim {

std::unique_ptr<CanvasTool> makeCanvasTool(OperatorOnView op, CanvasWidget& canvas) {
    switch (op) {
    case OperatorAddPoint:
        return std::make_unique<PointTool>(canvas);
    case OperatorAddRect:
        return std::make_unique<BoxTool>(canvas, BoxTool::Makes::Rect);
    case OperatorAddCircle:
        return std::make_unique<BoxTool>(canvas, BoxTool::Makes::Circle);
    case OperatorZoomRegion:
        return std::make_unique<BoxTool>(canvas, BoxTool::Makes::Zoom);
    case OperatorAddLine:
        return std::make_unique<PolylineTool>(canvas);
    case OperatorTeach:
    case OperatorTeachCircle:
    case OperatorTeachArc:
        return std::make_unique<TeachTool>(canvas);
    case OperatorAddText:
        return std::make_unique<TextTool>(canvas);
    case OperatorAddPluginTool:
        return std::make_unique<RefusedTool>(canvas);
    case OperatorSelect:
        break;
    }
    return std::make_unique<SelectTool>(canvas);
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/toolfactory.h"

#include "engine/marktool.h"
#include "simengine/view/canvaswidget.h"
#include "simengine/view/codetool.h"
#include "simengine/view/generatedplacetool.h"
#include "simengine/view/pathtool.h"
#include "simengine/view/placetools.h"
#include "simengine/view/polylinetool.h"
#include "simengine/view/selecttool.h"
#include "simengine/view/teachtool.h"
#include "simengine/view/texttool.h"
#include "simengine/view/viewsession.h"

namespace sim {

namespace {

/// The tool of what a module made for the view; one that refuses when there is nothing that a document has an object
/// for.
std::unique_ptr<CanvasTool> makePluginTool(CanvasWidget& canvas) {
    const MarkTool* added = canvas.session().addMarkTool();
    QString className;
    if (added && added->GetTool())
        className = added->GetTool()->GetToolClassName();
    if (className == classNameOf(ObjectKind::Path))
        return std::make_unique<PathTool>(canvas);
    if (className == classNameOf(ObjectKind::Code))
        return std::make_unique<CodeTool>(canvas);
    if (std::shared_ptr<GeneratedTool> tool = GeneratedTool::ofClass(className))
        return std::make_unique<GeneratedPlaceTool>(canvas, std::move(tool));
    return std::make_unique<RefusedTool>(canvas);
}

} // namespace

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
        return makePluginTool(canvas);
    case OperatorSelect:
        break;
    }
    return std::make_unique<SelectTool>(canvas);
}

} // namespace sim

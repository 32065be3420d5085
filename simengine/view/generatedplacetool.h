// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/document/generatedtool.h"
#include "simengine/document/markobject.h"
#include "simengine/view/canvastool.h"

#include <optional>

namespace sim {

/// Places what a module's tool makes: a press gives the middle and a drag the size, with the other parameters as they
/// were last; a press without a drag asks for all of them. The right button goes back to selecting.
class GeneratedPlaceTool : public CanvasTool {
public:
    GeneratedPlaceTool(CanvasWidget& canvas, std::shared_ptr<GeneratedTool> tool);
    void press(const CanvasPoint& point) override;
    void move(const CanvasPoint& point) override;
    void release(const CanvasPoint& point) override;
    bool cancel() override;
    void paint(QPainter& painter) const override;
    bool snaps() const override { return true; }
    QCursor cursor() const override { return Qt::CrossCursor; }
    QString readout() const override;

private:
    QVector<double> lastValues() const;
    void shape(const CanvasPoint& point);
    void ask(const QPointF& place);

    std::shared_ptr<GeneratedTool> m_tool;
    std::optional<CanvasPoint> m_from;
    bool m_dragged = false;
    QVector<double> m_values;
    std::optional<GeneratedShape> m_shape; ///< of m_values, while dragging
};

/// Asks for other parameters of what a module made. Does nothing in a read-only document; where the module is missing,
/// the log tells so.
void editGenerated(CanvasWidget& canvas, const ObjectPtr& object);

/// How much larger than the tool made it an object is marked; 1 when it was not scaled alike in both directions.
double generatedScale(const QTransform& transform);

} // namespace sim

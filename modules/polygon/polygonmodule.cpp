// SPDX-License-Identifier: MIT
#include "common/toolicon.h"
#include "common/toolinfo.h"
#include "engine/externmodules.h"
#include "polygon/polygontool.h"

#include <QPainter>
#include <QPolygonF>
#include <QtMath>

namespace {

using namespace toolmodules;

QPolygonF ring(int corners, double outer, double inner) {
    QPolygonF points;
    for (int i = 0; i < corners; ++i) {
        const double radius = i % 2 ? inner : outer;
        const double angle = 2.0 * M_PI * i / corners - M_PI / 2.0;
        points << QPointF(12.0 + radius * std::cos(angle), 12.0 + radius * std::sin(angle));
    }
    return points;
}

class PolygonModule : public IMarkToolModule {
public:
    QVector<MarkToolBaseInfo*> GetToolInfos() const override { return {&m_polygon, &m_star}; }
    IMarkToolBase* CreateTool(QString const& className) override {
        if (className == QLatin1String(PolygonTool::kClass))
            return new PolygonTool;
        return className == QLatin1String(StarTool::kClass) ? new StarTool : nullptr;
    }

private:
    mutable ToolInfo m_polygon{PolygonTool::kClass, "多边形",
                               toolIcon([](QPainter& painter) { painter.drawPolygon(ring(6, 9.0, 9.0)); })};
    mutable ToolInfo m_star{StarTool::kClass, "星形",
                            toolIcon([](QPainter& painter) { painter.drawPolygon(ring(10, 9.5, 4.0)); })};
};

} // namespace

extern "C" ENGINE_API IMarkToolModule* CreateMarkToolModule() {
    return new PolygonModule;
}

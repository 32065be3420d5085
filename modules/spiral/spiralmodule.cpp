// SPDX-License-Identifier: MIT
#include "common/toolicon.h"
#include "common/toolinfo.h"
#include "engine/externmodules.h"
#include "spiral/spiraltool.h"

#include <QPainter>
#include <QPolygonF>
#include <QtMath>

namespace {

using namespace toolmodules;

void drawSpiral(QPainter& painter) {
    QPolygonF line;
    for (int i = 0; i <= 60; ++i) {
        const double turn = 2.5 * i / 60.0;
        line << QPointF(12.0, 12.0) + 3.8 * turn * QPointF(std::cos(2.0 * M_PI * turn), std::sin(2.0 * M_PI * turn));
    }
    painter.drawPolyline(line);
}

class SpiralModule : public IMarkToolModule {
public:
    QVector<MarkToolBaseInfo*> GetToolInfos() const override { return {&m_spiral}; }
    IMarkToolBase* CreateTool(QString const& className) override {
        return className == QLatin1String(SpiralTool::kClass) ? new SpiralTool : nullptr;
    }

private:
    mutable ToolInfo m_spiral{SpiralTool::kClass, "螺旋线", toolIcon(drawSpiral)};
};

} // namespace

extern "C" ENGINE_API IMarkToolModule* CreateMarkToolModule() {
    return new SpiralModule;
}

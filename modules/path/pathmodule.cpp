// SPDX-License-Identifier: MIT
#include "common/owntool.h"
#include "common/toolicon.h"
#include "common/toolinfo.h"
#include "engine/externmodules.h"

#include <QPainter>
#include <QPainterPath>

namespace {

using namespace toolmodules;

constexpr char kClass[] = "MarkToolPath";

void drawCurve(QPainter& painter) {
    QPainterPath path(QPointF(4, 18));
    path.cubicTo(QPointF(4, 6), QPointF(12, 18), QPointF(20, 7));
    painter.drawPath(path);
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(2, 16, 4, 4));
    painter.drawRect(QRectF(18, 5, 4, 4));
}

/// Paths of Bezier curves.
class PathModule : public IMarkToolModule {
public:
    QVector<MarkToolBaseInfo*> GetToolInfos() const override { return {&m_path}; }
    IMarkToolBase* CreateTool(QString const& className) override {
        return className == QLatin1String(kClass) ? new OwnTool(className, true) : nullptr;
    }

private:
    mutable ToolInfo m_path{kClass, "贝塞尔曲线", toolIcon(drawCurve)};
};

} // namespace

extern "C" ENGINE_API IMarkToolModule* CreateMarkToolModule() {
    return new PathModule;
}

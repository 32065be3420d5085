// SPDX-License-Identifier: MIT
#include "common/owntool.h"
#include "common/toolicon.h"
#include "common/toolinfo.h"
#include "engine/externmodules.h"
#include "engine/systemparam.h"

#include <QPainter>

namespace {

using namespace toolmodules;

constexpr char kClass[] = "MarkToolCode";
constexpr int kMarkingMode = 0;
constexpr int kWeldingMode = 1;

/// Finder pattern of a matrix code, and some of its modules.
void drawCode(QPainter& painter) {
    painter.setPen(Qt::NoPen);
    for (const QPointF& corner : {QPointF(3, 3), QPointF(14, 3), QPointF(3, 14)}) {
        painter.fillRect(QRectF(corner, QSizeF(7, 7)), QColor(0x31, 0x44, 0x5a));
        painter.fillRect(QRectF(corner + QPointF(1.4, 1.4), QSizeF(4.2, 4.2)), Qt::white);
        painter.fillRect(QRectF(corner + QPointF(2.4, 2.4), QSizeF(2.2, 2.2)), QColor(0x31, 0x44, 0x5a));
    }
    for (const QPointF& module :
         {QPointF(14, 14), QPointF(18.5, 14), QPointF(16.2, 16.2), QPointF(14, 18.5), QPointF(18.5, 18.5)})
        painter.fillRect(QRectF(module, QSizeF(2.3, 2.3)), QColor(0x31, 0x44, 0x5a));
}

/// The rule by which the optional tools for codes and texts are shown.
bool isOffered() {
    const SystemParam* system = SystemParam::Instance();
    const int mode = system->GetWorkMode();
    return mode == kMarkingMode || (mode > kWeldingMode && system->EnableCodeTool());
}

/// Bar and matrix codes, where the station has them.
class CodeModule : public IMarkToolModule {
public:
    QVector<MarkToolBaseInfo*> GetToolInfos() const override {
        return isOffered() ? QVector<MarkToolBaseInfo*>{&m_code} : QVector<MarkToolBaseInfo*>();
    }
    IMarkToolBase* CreateTool(QString const& className) override {
        return className == QLatin1String(kClass) ? new OwnTool(className, false) : nullptr;
    }

private:
    mutable ToolInfo m_code{kClass, "条码", toolIcon(drawCode)};
};

} // namespace

extern "C" ENGINE_API IMarkToolModule* CreateMarkToolModule() {
    return new CodeModule;
}

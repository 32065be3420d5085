// SPDX-License-Identifier: MIT
#include "engine/externmodules.h"

namespace {

class Star : public IMarkToolBase {
public:
    QString GetToolClassName() const override { return QStringLiteral("SampleStar"); }
    void SetAngleChanged(bool changed) override { m_changed = changed; }
    bool IsAngleChanged() const override { return m_changed; }
    bool IsOpenCurve() const override { return false; }

private:
    bool m_changed = false;
};

class StarInfo : public MarkToolBaseInfo {
public:
    QIcon GetIcon() const override { return QIcon(); }
    QString GetToolClassName() const override { return QStringLiteral("SampleStar"); }
    QString GetToolName() const override { return QStringLiteral("星形"); }
};

class SampleModule : public IMarkToolModule {
public:
    QVector<MarkToolBaseInfo*> GetToolInfos() const override { return {&m_info}; }
    IMarkToolBase* CreateTool(QString const& className) override {
        return className == m_info.GetToolClassName() ? new Star : nullptr;
    }

private:
    mutable StarInfo m_info;
};

} // namespace

extern "C" ENGINE_API IMarkToolModule* CreateMarkToolModule() {
    return new SampleModule;
}

// SPDX-License-Identifier: MIT
#include "engine/externmodules.h"

#include <QPixmap>
#include <array>

namespace {

class Tool : public IMarkToolBase {
public:
    QString GetToolClassName() const override { return QStringLiteral("TestStar"); }
    void SetAngleChanged(bool changed) override { m_changed = changed; }
    bool IsAngleChanged() const override { return m_changed; }
    bool IsOpenCurve() const override { return false; }

private:
    bool m_changed = false;
};

class Info : public MarkToolBaseInfo {
public:
    Info(char const* className, char const* name)
        : m_class(QString::fromLatin1(className))
        , m_name(QString::fromUtf8(name)) {}
    QIcon GetIcon() const override {
        QPixmap picture(24, 24);
        picture.fill(Qt::darkCyan);
        return QIcon(picture);
    }
    QString GetToolClassName() const override { return m_class; }
    QString GetToolName() const override { return m_name; }

private:
    QString m_class;
    QString m_name;
};

/// Two tools, of which the module can make only the first.
class Module : public IMarkToolModule {
public:
    QVector<MarkToolBaseInfo*> GetToolInfos() const override { return {&m_Infos[0], &m_Infos[1]}; }
    IMarkToolBase* CreateTool(QString const& className) override {
        return className == QLatin1String("TestStar") ? new Tool : nullptr;
    }

private:
    mutable std::array<Info, 2> m_Infos{Info{"TestStar", "矩形"}, Info{"TestNothing", "圆形"}};
};

} // namespace

extern "C" ENGINE_API IMarkToolModule* CreateMarkToolModule() {
    return new Module;
}

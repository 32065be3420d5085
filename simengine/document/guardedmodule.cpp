// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/guardedmodule.h"

#include "engine/marklog.h"
#include "simengine/document/limits.h"
#include "simengine/document/moduleguard.h"

namespace sim {

void noteModuleFault(const QString& who, const QString& what) {
    MarkLog::Instance()->ShowNote_Error(QStringLiteral("MarkToolModules/%1: %2").arg(who, what));
}

/// A copy of what the module told, so that nobody asks the module again.
class GuardedModule::Info : public MarkToolBaseInfo {
public:
    explicit Info(const MarkToolBaseInfo& told)
        : m_class(told.GetToolClassName())
        , m_name(told.GetToolName())
        , m_icon(told.GetIcon()) {}
    QIcon GetIcon() const override { return m_icon; }
    QString GetToolClassName() const override { return m_class; }
    QString GetToolName() const override { return m_name; }

private:
    QString m_class;
    QString m_name;
    QIcon m_icon;
};

namespace {

/// A module's tool from which no exception comes, and which keeps its module.
class GuardedTool : public IMarkToolBase {
public:
    GuardedTool(QString file, std::shared_ptr<LoadedLibrary> loaded, IMarkToolBase* tool)
        : m_file(std::move(file))
        , m_loaded(std::move(loaded))
        , m_tool(tool) {}
    QString GetToolClassName() const override {
        QString name;
        guarded(m_file, [&] { name = m_tool->GetToolClassName(); });
        return name;
    }
    void SetAngleChanged(bool changed) override {
        guarded(m_file, [&] { m_tool->SetAngleChanged(changed); });
    }
    bool IsAngleChanged() const override {
        bool changed = false;
        guarded(m_file, [&] { changed = m_tool->IsAngleChanged(); });
        return changed;
    }
    bool IsOpenCurve() const override {
        bool open = false;
        guarded(m_file, [&] { open = m_tool->IsOpenCurve(); });
        return open;
    }
    const IMarkToolBase* tool() const { return m_tool.get(); }

private:
    QString m_file;
    std::shared_ptr<LoadedLibrary> m_loaded; ///< before the tool, which may use its module
    std::unique_ptr<IMarkToolBase> m_tool;
};

bool offeredBy(const QVector<IMarkToolModule*>& modules, const QString& className) {
    return std::any_of(modules.begin(), modules.end(), [&](const IMarkToolModule* module) {
        const auto* guarded = dynamic_cast<const GuardedModule*>(module);
        return guarded && guarded->offers(className);
    });
}

} // namespace

LoadedLibrary::LoadedLibrary(const QString& path)
    : library(path) {
    // A symbol that is nowhere stops the load and not, at its first call, the program. The code stays to the end of the
    // process: a text that the module gave as a literal lies in it, and so does what draws an icon.
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
}

GuardedModule::GuardedModule(QString file, std::shared_ptr<LoadedLibrary> loaded,
                             const QVector<IMarkToolModule*>& before)
    : m_file(std::move(file))
    , m_loaded(std::move(loaded)) {
    QVector<MarkToolBaseInfo*> told;
    guarded(m_file, [&] { told = m_loaded->module->GetToolInfos(); });
    for (const MarkToolBaseInfo* info : qAsConst(told)) {
        if (info)
            take(*info, before);
    }
}

GuardedModule::~GuardedModule() = default;

void GuardedModule::take(const MarkToolBaseInfo& info, const QVector<IMarkToolModule*>& before) {
    std::unique_ptr<Info> copy;
    if (!guarded(m_file, [&] { copy = std::make_unique<Info>(info); }))
        return;
    const QString className = copy->GetToolClassName();
    if (className.isEmpty() || className.size() > kMaxToolClassLength)
        noteModuleFault(m_file, QStringLiteral("a tool has no usable class name"));
    else if (offers(className) || offeredBy(before, className))
        noteModuleFault(m_file, QStringLiteral("the tool %1 was there before").arg(className));
    else
        m_infos.push_back(std::move(copy));
}

QVector<MarkToolBaseInfo*> GuardedModule::GetToolInfos() const {
    QVector<MarkToolBaseInfo*> infos;
    for (const std::unique_ptr<Info>& info : m_infos)
        infos.append(info.get());
    return infos;
}

IMarkToolBase* GuardedModule::CreateTool(QString const& className) {
    IMarkToolBase* tool = nullptr;
    guarded(m_file, [&] { tool = m_loaded->module->CreateTool(className); });
    return tool ? new GuardedTool(m_file, m_loaded, tool) : nullptr;
}

bool GuardedModule::offers(const QString& className) const {
    return std::any_of(m_infos.begin(), m_infos.end(),
                       [&](const std::unique_ptr<Info>& info) { return info->GetToolClassName() == className; });
}

std::unique_ptr<IMarkToolBase> makeModuleTool(const QString& className) {
    for (IMarkToolModule* module : GetExternModules()) {
        if (offeredBy({module}, className))
            return std::unique_ptr<IMarkToolBase>(module->CreateTool(className));
    }
    return nullptr;
}

const IMarkToolBase* unguarded(const IMarkToolBase* tool) {
    const auto* guard = dynamic_cast<const GuardedTool*>(tool);
    return guard ? guard->tool() : tool;
}

QString moduleToolName(const QString& className) {
    for (const IMarkToolModule* module : GetExternModules()) {
        for (const MarkToolBaseInfo* info : module->GetToolInfos()) {
            if (info->GetToolClassName() == className)
                return info->GetToolName();
        }
    }
    return QString();
}

} // namespace sim

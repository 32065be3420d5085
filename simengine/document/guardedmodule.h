// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/externmodules.h"

#include <QLibrary>
#include <memory>
#include <vector>

namespace sim {

/// A module's library and the one object that it exports. The object goes when nobody holds it any more, so that a tool
/// which outlives FreeExternModules() still has it; the library is never unloaded, as documents, the clipboard and the
/// last placed objects keep texts that lie in it.
struct LoadedLibrary {
    explicit LoadedLibrary(const QString& path);
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    QLibrary library;
    std::unique_ptr<IMarkToolModule> module;
};

/// A tool module as the rest of the program meets it: what it offers was asked for once, and no exception comes out of
/// it.
class GuardedModule : public IMarkToolModule {
public:
    /// `file` names the module in the log. Takes what `module` offers; tools without a class name, and those whose
    /// class one of `before` offers, are left out and told.
    GuardedModule(QString file, std::shared_ptr<LoadedLibrary> loaded, const QVector<IMarkToolModule*>& before);
    ~GuardedModule() override;

    QVector<MarkToolBaseInfo*> GetToolInfos() const override;
    /// The tool behind a guard of its own.
    IMarkToolBase* CreateTool(QString const& className) override;
    bool offers(const QString& className) const;

private:
    class Info;
    void take(const MarkToolBaseInfo& info, const QVector<IMarkToolModule*>& before);

    QString m_file;
    std::shared_ptr<LoadedLibrary> m_loaded;
    std::vector<std::unique_ptr<Info>> m_infos;
};

/// A tool of this class from the module that offers it; null without one.
std::unique_ptr<IMarkToolBase> makeModuleTool(const QString& className);

/// The module's own tool behind a guard; `tool` itself when it has none.
const IMarkToolBase* unguarded(const IMarkToolBase* tool);

/// Chinese key of the name of the tools of this class; empty when no module offers it.
QString moduleToolName(const QString& className);

} // namespace sim

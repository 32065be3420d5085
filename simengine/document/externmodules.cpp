// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/externmodules.h"

#include "engine/igeneratedtool.h"
#include "simengine/document/guardedmodule.h"
#include "simengine/document/moduleguard.h"
#include "support/approot.h"

#include <QDir>
#include <dlfcn.h>
#include <memory>
#include <vector>

IMarkToolModule::~IMarkToolModule() = default;
IGeneratedTool::~IGeneratedTool() = default;

namespace {

/// What a module's library exports: makes the one module object, which the engine deletes.
using CreateModule = IMarkToolModule* (*)();
constexpr char kCreateModule[] = "CreateMarkToolModule";
constexpr char kFolder[] = "/MarkToolModules";

std::vector<std::unique_ptr<sim::GuardedModule>>& loadedModules() {
    static std::vector<std::unique_ptr<sim::GuardedModule>> modules;
    return modules;
}

/// Adds the library's module; what is wrong with it is told in the log.
void addModule(const QFileInfo& file) {
    const QString name = file.fileName();
    auto loaded = std::make_shared<sim::LoadedLibrary>(file.filePath());
    if (!loaded->library.load()) {
        sim::noteModuleFault(name, loaded->library.errorString());
        return;
    }
    const auto create = reinterpret_cast<CreateModule>(loaded->library.resolve(kCreateModule));
    if (!create) {
        sim::noteModuleFault(name, QStringLiteral("%1 is not exported").arg(kCreateModule));
        return;
    }
    if (!sim::guarded(name, [&] { loaded->module.reset(create()); }))
        return;
    if (!loaded->module) {
        sim::noteModuleFault(name, QStringLiteral("%1 gave no module").arg(kCreateModule));
        return;
    }
    loadedModules().push_back(std::make_unique<sim::GuardedModule>(name, std::move(loaded), GetExternModules()));
}

void addFolder(const QString& path) {
    const QDir folder(path);
    for (const QFileInfo& file : folder.entryInfoList({QStringLiteral("*.so")}, QDir::Files, QDir::Name))
        addModule(file);
}

/// The folder of the modules that come with this engine; empty when the library's place is not known.
QString shippedFolder() {
    Dl_info library;
    if (dladdr(reinterpret_cast<void*>(&LoadExternToolModules), &library) == 0 || !library.dli_fname)
        return QString();
    return QFileInfo(QFile::decodeName(library.dli_fname)).absolutePath() + QLatin1String(kFolder);
}

} // namespace

void LoadExternToolModules() {
    if (!loadedModules().empty())
        return;
    const QString shipped = shippedFolder();
    const QString own = tessera::rootPath(QLatin1String(kFolder));
    if (!shipped.isEmpty())
        addFolder(shipped);
    if (QFileInfo(own).canonicalFilePath() != QFileInfo(shipped).canonicalFilePath())
        addFolder(own);
}

QVector<IMarkToolModule*> GetExternModules() {
    QVector<IMarkToolModule*> modules;
    for (const std::unique_ptr<sim::GuardedModule>& loaded : loadedModules())
        modules.append(loaded.get());
    return modules;
}

void FreeExternModules() {
    while (!loadedModules().empty())
        loadedModules().pop_back();
}

// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/externmodules.h"

#include "engine/marklog.h"
#include "support/approot.h"

#include <QDir>
#include <QLibrary>
#include <memory>
#include <vector>

IMarkToolModule::~IMarkToolModule() = default;

namespace {

/// What a module's library exports: makes the one module object, which the engine deletes before it unloads the
/// library.
using CreateModule = IMarkToolModule* (*)();
constexpr char kCreateModule[] = "CreateMarkToolModule";

struct LoadedModule {
    std::unique_ptr<QLibrary> library;
    std::unique_ptr<IMarkToolModule> module;
};

std::vector<LoadedModule>& loadedModules() {
    static std::vector<LoadedModule> modules;
    return modules;
}

/// Why the library gives no module; empty when it was added.
QString addModule(const QString& path) {
    LoadedModule loaded;
    loaded.library = std::make_unique<QLibrary>(path);
    if (!loaded.library->load())
        return loaded.library->errorString();
    const auto create = reinterpret_cast<CreateModule>(loaded.library->resolve(kCreateModule));
    if (create)
        loaded.module.reset(create());
    if (!loaded.module) {
        loaded.library->unload();
        return create ? QStringLiteral("%1 gave no module").arg(kCreateModule)
                      : QStringLiteral("%1 is not exported").arg(kCreateModule);
    }
    loadedModules().push_back(std::move(loaded));
    return QString();
}

} // namespace

void LoadExternToolModules() {
    if (!loadedModules().empty())
        return;
    const QDir folder(tessera::rootPath(QStringLiteral("/MarkToolModules")));
    for (const QString& name : folder.entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Name)) {
        const QString fault = addModule(folder.filePath(name));
        if (!fault.isEmpty())
            MarkLog::Instance()->ShowNote_Error(QStringLiteral("MarkToolModules/%1: %2").arg(name, fault));
    }
}

QVector<IMarkToolModule*> GetExternModules() {
    QVector<IMarkToolModule*> modules;
    for (const LoadedModule& loaded : loadedModules())
        modules.append(loaded.module.get());
    return modules;
}

void FreeExternModules() {
    while (!loadedModules().empty()) {
        loadedModules().back().module.reset();
        loadedModules().back().library->unload();
        loadedModules().pop_back();
    }
}

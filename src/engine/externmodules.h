// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/imarktoolbase.h"
#include "engine/marktoolbaseinfo.h"

#include <QString>
#include <QVector>

/// A plug-in module of object kinds.
class ENGINE_API IMarkToolModule {
public:
    virtual ~IMarkToolModule();
    virtual QVector<MarkToolBaseInfo*> GetToolInfos() const = 0;
    /// Makes an object of the class; null for an unknown name. The caller owns it.
    virtual IMarkToolBase* CreateTool(QString const& className) = 0;
};

/// Loads the tool modules; once before any view or tool is used. Main thread. A module is a library "*.so" in the
/// folder "/MarkToolModules" that exports `extern "C" IMarkToolModule* CreateMarkToolModule()`; the engine deletes what
/// it gives before it unloads the library. What cannot be loaded is told in the log.
ENGINE_API void LoadExternToolModules();
ENGINE_API QVector<IMarkToolModule*> GetExternModules();
/// Unloads them; last at exit.
ENGINE_API void FreeExternModules();

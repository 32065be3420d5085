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

/// Loads the tool modules; once before any view or tool is used. Main thread. A module is a library "*.so" that exports
/// `extern "C" IMarkToolModule* CreateMarkToolModule()`. First come those of the folder "MarkToolModules" beside the
/// engine's own library, then those of the folder "/MarkToolModules" of the application root, each in the order of
/// their names. The engine deletes what the function gives before it unloads the library. What cannot be loaded, and a
/// tool whose class name was there before, is told in the log.
///
/// A tool of an own class of the engine ("MarkToolPath", "MarkToolCode") lets the operator draw such an object; a tool
/// that is an IGeneratedTool too lets him place an object of numbers.
ENGINE_API void LoadExternToolModules();
/// The modules, each behind a guard of the engine: what they throw ends there and is told in the log. Their infos are
/// those that were given when they were loaded.
ENGINE_API QVector<IMarkToolModule*> GetExternModules();
/// Forgets them; last at exit. The library of a tool that is still there is unloaded after that tool.
ENGINE_API void FreeExternModules();

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/marktypes.h"

#include <QString>
#include <memory>

/// The debug window. AddShowText from any thread, the rest on the main thread. The first Instance() creates the window
/// object and belongs to the main thread.
class ENGINE_API ShowDebugInfo {
public:
    static ShowDebugInfo* Instance();
    void AddShowText(QString const& text, DebugInfoType type);
    void ShowWindow();

private:
    ShowDebugInfo();
    ~ShowDebugInfo();
    struct Private;
    std::unique_ptr<Private> d;
};

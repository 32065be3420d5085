// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/fillparam.h"
#include "engine/imarktoolbase.h"

#include <QVector>
#include <memory>

/// A document's object together with its hatch fills.
class ENGINE_API MarkTool {
public:
    /// Takes ownership; null gives a tool without an object.
    explicit MarkTool(IMarkToolBase* tool);
    ~MarkTool();
    IMarkToolBase* GetTool() const;
    /// The fills, and whether the outline is marked, whether the hatch comes first, whether it is drawn in the simple
    /// way.
    QVector<FillParam> GetFillParam(bool& edge, bool& fillFirst, bool& simple) const;

private:
    friend struct MarkToolAccess;
    struct Private;
    std::unique_ptr<Private> d;
};

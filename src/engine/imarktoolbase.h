// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QString>

/// One object of a document as a tool module makes it.
class ENGINE_API IMarkToolBase {
public:
    virtual ~IMarkToolBase();
    /// Class name, such as "MarkToolRect"; groups are "MarkToolCombine".
    virtual QString GetToolClassName() const = 0;
    /// The object's angle was set by the operator and is kept when its size changes.
    virtual void SetAngleChanged(bool changed) = 0;
    virtual bool IsAngleChanged() const = 0;
    /// The object is an open curve whose ends may be joined with others into a closed one.
    virtual bool IsOpenCurve() const = 0;
};

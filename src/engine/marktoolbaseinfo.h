// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QIcon>
#include <QString>

/// Description of one kind of object that a tool module offers.
class ENGINE_API MarkToolBaseInfo {
public:
    virtual ~MarkToolBaseInfo();
    virtual QIcon GetIcon() const = 0;
    virtual QString GetToolClassName() const = 0;
    /// Chinese key of the name shown.
    virtual QString GetToolName() const = 0;
};

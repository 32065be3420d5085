// SPDX-License-Identifier: MIT
#pragma once

#include "engine/marktoolbaseinfo.h"

namespace toolmodules {

/// What a module tells of one of its tools.
class ToolInfo : public MarkToolBaseInfo {
public:
    ToolInfo(const char* className, const char* nameKey, QIcon icon);
    QIcon GetIcon() const override { return m_icon; }
    QString GetToolClassName() const override { return m_class; }
    QString GetToolName() const override { return m_name; }

private:
    QString m_class;
    QString m_name;
    QIcon m_icon;
};

} // namespace toolmodules

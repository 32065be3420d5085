// SPDX-License-Identifier: MIT
#include "common/toolinfo.h"

namespace toolmodules {

ToolInfo::ToolInfo(const char* className, const char* nameKey, QIcon icon)
    : m_class(QString::fromLatin1(className))
    , m_name(QString::fromUtf8(nameKey))
    , m_icon(std::move(icon)) {}

} // namespace toolmodules

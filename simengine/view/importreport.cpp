// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/importreport.h"

#include "engine/languagemanager.h"
#include "simengine/document/markobject.h"
#include "simengine/view/objectlistmodel.h"

#include <QStringList>

namespace sim {

QString importReport(const ImportResult& drawing) {
    QStringList lines;
    lines << QStringLiteral("%1: %2").arg(LanguageManager::GetLanText("导入对象")).arg(drawing.objects.size());
    for (int kind = static_cast<int>(ObjectKind::Point); kind <= static_cast<int>(ObjectKind::Text); ++kind) {
        const auto value = static_cast<ObjectKind>(kind);
        const int count = drawing.imported.value(classNameOf(value));
        if (count > 0)
            lines << QStringLiteral("    %1: %2").arg(LanguageManager::GetLanText(kindKey(value))).arg(count);
    }
    lines << QStringLiteral("%1: %2 × %3 mm")
                 .arg(LanguageManager::GetLanText("页面"))
                 .arg(drawing.pageSize.width(), 0, 'f', 3)
                 .arg(drawing.pageSize.height(), 0, 'f', 3);
    for (const ImportSkip& skip : drawing.skipped) {
        lines << QStringLiteral("%1: %2 × %3 (%4)")
                     .arg(LanguageManager::GetLanText("未导入"))
                     .arg(skip.count)
                     .arg(skip.kind, skip.reason);
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/view/importreport.h"

#include "engine/languagemanager.h"
#include "simengine/document/markobject.h"
#include "simengine/view/objectlistmodel.h"

#include <QStringList>

namespace sim {

namespace {

void addList(QStringList& lines, const QString& title, const QVector<ImportSkip>& entries) {
    for (const ImportSkip& entry : entries)
        lines << QStringLiteral("%1: %2 × %3 (%4)").arg(title).arg(entry.count).arg(entry.kind, entry.reason);
}

} // namespace

QString importReport(const ImportResult& drawing) {
    QStringList lines;
    lines << QStringLiteral("%1: %2").arg(LanguageManager::GetLanText("导入对象")).arg(drawing.objects.size());
    for (int kind = static_cast<int>(ObjectKind::Point); kind <= static_cast<int>(ObjectKind::Code); ++kind) {
        const auto value = static_cast<ObjectKind>(kind);
        const int count = drawing.imported.value(classNameOf(value));
        if (count > 0)
            lines << QStringLiteral("    %1: %2").arg(LanguageManager::GetLanText(kindKey(value))).arg(count);
    }
    lines << QStringLiteral("%1: %2 × %3 mm")
                 .arg(LanguageManager::GetLanText("页面"))
                 .arg(drawing.pageSize.width(), 0, 'f', 3)
                 .arg(drawing.pageSize.height(), 0, 'f', 3);
    if (!drawing.unit.isEmpty())
        lines << QStringLiteral("%1: %2").arg(LanguageManager::GetLanText("文件单位"), drawing.unit);
    for (int pen = 0; pen < drawing.penNames.size(); ++pen) {
        // the panels count the pens from 01
        if (!drawing.penNames[pen].isEmpty())
            lines << QStringLiteral("%1 %2: %3 %4")
                         .arg(LanguageManager::GetLanText("图层"), drawing.penNames[pen],
                              LanguageManager::GetLanText("笔号"))
                         .arg(pen + 1, 2, 10, QLatin1Char('0'));
    }
    addList(lines, LanguageManager::GetLanText("已转换"), drawing.converted);
    addList(lines, LanguageManager::GetLanText("未导入"), drawing.skipped);
    return lines.join(QLatin1Char('\n'));
}

QString shownReport(const QString& report) {
    /// Lines of a dialog on a screen of 600 pixels.
    constexpr int kMostLines = 16;
    QStringList lines = report.split(QLatin1Char('\n'));
    if (lines.size() <= kMostLines)
        return report;
    const int more = lines.size() - kMostLines + 1;
    lines = lines.mid(0, kMostLines - 1);
    lines << QStringLiteral("… +%1 (%2)").arg(more).arg(LanguageManager::GetLanText("详见日志"));
    return lines.join(QLatin1Char('\n'));
}

} // namespace sim

// SPDX-License-Identifier: MIT
#include "shell/alarmhistorycsv.h"

#include "engine/languagemanager.h"
#include "shell/alarmsources.h"

#include <QDateTime>
#include <QStringList>

namespace tessera {

namespace {

constexpr char const* kTitles[AlarmColumnCount] = {"状态",     "首发",     "触发时间", "报警内容",
                                                   "清除时间", "确认时间", "确认人"};
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

} // namespace

QString AlarmStateText(AlarmEntry const& entry) {
    switch (entry.end) {
    case AlarmEnd::Active:
        return LanguageManager::GetLanText("报警中");
    case AlarmEnd::Cleared:
        return LanguageManager::GetLanText("已清除");
    case AlarmEnd::ProgramEnd:
        return LanguageManager::GetLanText("程序退出");
    case AlarmEnd::Crash:
        break;
    }
    return LanguageManager::GetLanText("程序中断");
}

QString AlarmTimeText(qint64 ms) {
    return ms == 0 ? QString() : QDateTime::fromMSecsSinceEpoch(ms).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
}

QString AlarmUserText(AlarmEntry const& entry) {
    if (!entry.IsAcknowledged())
        return QString();
    return entry.acknowledgedBy.isEmpty() ? LanguageManager::GetLanText("未登录") : entry.acknowledgedBy;
}

QString AlarmColumnTitle(int column) {
    return column >= 0 && column < AlarmColumnCount ? LanguageManager::GetLanText(kTitles[column]) : QString();
}

QString AlarmCellText(AlarmEntry const& entry, int column) {
    switch (column) {
    case AlarmColumnState:
        return AlarmStateText(entry);
    case AlarmColumnFirstOut:
        return entry.firstOut ? AlarmColumnTitle(AlarmColumnFirstOut) : QString();
    case AlarmColumnRaised:
        return AlarmTimeText(entry.raisedMs);
    case AlarmColumnText:
        return AlarmText(entry.code, entry.text);
    case AlarmColumnCleared:
        return AlarmTimeText(entry.clearedMs);
    case AlarmColumnAcknowledged:
        return AlarmTimeText(entry.acknowledgedMs);
    case AlarmColumnUser:
        return AlarmUserText(entry);
    default:
        return QString();
    }
}

QString CsvField(QString const& text) {
    const auto special = [](QChar c) {
        return c == QLatin1Char(',') || c == QLatin1Char('"') || c == QLatin1Char('\r') || c == QLatin1Char('\n');
    };
    if (std::none_of(text.begin(), text.end(), special))
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QByteArray AlarmCsv(QVector<AlarmEntry> const& entries) {
    QStringList fields;
    for (int column = 0; column < AlarmColumnCount; ++column)
        fields.append(CsvField(AlarmColumnTitle(column)));
    QString table = fields.join(QLatin1Char(',')) + QLatin1String("\r\n");
    for (AlarmEntry const& entry : entries) {
        fields.clear();
        for (int column = 0; column < AlarmColumnCount; ++column)
            fields.append(CsvField(AlarmCellText(entry, column)));
        table += fields.join(QLatin1Char(',')) + QLatin1String("\r\n");
    }
    return kByteOrderMark + table.toUtf8();
}

} // namespace tessera

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/variableproblem.h"

#include "engine/languagemanager.h"

namespace sim {

namespace {

const char* faultKey(VariableFault fault) {
    switch (fault) {
    case VariableFault::None:
        break;
    case VariableFault::BadTemplate:
        return "变量格式错误";
    case VariableFault::NoSerial:
        return "没有该序列号";
    case VariableFault::SerialEnded:
        return "序列号已用完";
    case VariableFault::NoSource:
        return "没有该CSV数据";
    case VariableFault::SourceEnded:
        return "CSV数据已用完";
    case VariableFault::NoFile:
        return "CSV文件不可用";
    case VariableFault::BadFile:
        return "CSV文件内容错误";
    case VariableFault::NoColumn:
        return "CSV文件没有该列";
    case VariableFault::NoShift:
        return "没有定义班次";
    case VariableFault::BadDefinitions:
        return "变量定义文件损坏";
    case VariableFault::NotWritten:
        return "变量当前值不能保存";
    case VariableFault::NotText:
        return "变量内容不能作为文字";
    case VariableFault::NotCode:
        return "变量内容不能作为条码";
    case VariableFault::MarkedBefore:
        return "条码内容重复";
    case VariableFault::NotLookedUp:
        return "不能检查条码内容是否重复";
    }
    return "";
}

} // namespace

QString variableMessage(const VariableProblem& problem) {
    if (problem.ok())
        return QString();
    const QString text = LanguageManager::GetLanText(faultKey(problem.fault));
    return problem.detail.isEmpty() ? text : QStringLiteral("%1: %2").arg(text, problem.detail);
}

} // namespace sim

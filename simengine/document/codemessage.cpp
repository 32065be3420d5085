// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/codemessage.h"

#include "engine/languagemanager.h"

namespace sim {

namespace {

const char* faultKey(CodeFault fault) {
    switch (fault) {
    case CodeFault::None:
        break;
    case CodeFault::Empty:
        return "条码内容为空";
    case CodeFault::TooLong:
        return "条码内容过长";
    case CodeFault::BadCharacter:
        return "条码不能编码这些字符";
    case CodeFault::BadLength:
        return "EAN位数错误";
    case CodeFault::CheckDigit:
        return "EAN校验位错误";
    case CodeFault::BadSize:
        return "条码尺寸超出范围";
    case CodeFault::BadOption:
        return "条码选项不可用";
    case CodeFault::Encoder:
        return "条码编码失败";
    }
    return "";
}

} // namespace

QString codeMessage(const MadeCode& made) {
    if (made.ok())
        return QString();
    const QString text = LanguageManager::GetLanText(faultKey(made.fault));
    return made.detail.isEmpty() ? text : QStringLiteral("%1: %2").arg(text, made.detail);
}

} // namespace sim

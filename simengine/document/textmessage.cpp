// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/textmessage.h"

#include "engine/languagemanager.h"

#include <QStringList>

namespace sim {

namespace {

/// Characters that a message names; more are counted.
constexpr int kMostNamed = 20;

const char* faultKey(TextFault fault) {
    switch (fault) {
    case TextFault::None:
        break;
    case TextFault::Empty:
        return "文字内容为空";
    case TextFault::TooLong:
        return "文字超过10000个字符";
    case TextFault::ControlCharacter:
        return "文字含有控制字符";
    case TextFault::BadSize:
        return "文字尺寸超出范围";
    case TextFault::BadFont:
        return "字体不可用";
    case TextFault::NoStrokeFont:
        return "没有该单线字体";
    case TextFault::MissingCharacters:
        return "字体中没有这些字符";
    case TextFault::NothingDrawn:
        return "文字没有可打标的内容";
    }
    return "";
}

QString named(const QString& characters) {
    const QVector<uint> all = characters.toUcs4();
    if (all.size() <= kMostNamed)
        return characters;
    return QString::fromUcs4(all.constData(), kMostNamed) + QStringLiteral("... (%1)").arg(all.size());
}

} // namespace

QString textMessage(const MadeText& made) {
    if (!made.ok()) {
        const QString text = LanguageManager::GetLanText(faultKey(made.fault));
        return made.characters.isEmpty() ? text : QStringLiteral("%1: %2").arg(text, named(made.characters));
    }
    QStringList notes;
    if (!made.usedFamily.isEmpty())
        notes << QStringLiteral("%1: %2").arg(LanguageManager::GetLanText("字体未安装,改用"), made.usedFamily);
    if (!made.borrowed.isEmpty())
        notes << QStringLiteral("%1: %2").arg(LanguageManager::GetLanText("取自其他字体的字符"), named(made.borrowed));
    return notes.join(QStringLiteral("; "));
}

} // namespace sim

// SPDX-License-Identifier: MIT
#include "shell/cardstatuswords.h"

#include "engine/languagemanager.h"

namespace tessera {

namespace {

constexpr std::uint32_t kLoopMask = 3;
/// State of the loop by its number. The head never tells 1 while its state is settled, so it has no text.
constexpr char const* kLoopTexts[] = {"开环未知", nullptr, "闭环异常", "闭环正常"};

/// What one bit of the word tells.
struct ScanStateLine {
    std::uint32_t bit;
    char const* axis;  ///< letter in front of the text
    char const* set;   ///< text with the bit set
    char const* clear; ///< text with the bit clear, null for none
};

constexpr ScanStateLine kScanStateLines[] = {
    {0x4000, "", "通迅校验异常", nullptr}, {0x2000, "Y", "位置异常", nullptr}, {0x1000, "X", "位置异常", nullptr},
    {0x800, "", "电源异常", nullptr},      {0x400, "", "过流", nullptr},       {0x200, "", "初始化中", nullptr},
    {0x100, "", "闭环振镜", "开环振镜"},   {0x80, "Y", "无反馈", nullptr},     {0x40, "X", "无反馈", nullptr},
    {0x20, "Y", "振镜报警", nullptr},      {0x10, "X", "振镜报警", nullptr},   {0x8, "Y", "反馈位置异常", nullptr},
    {0x4, "X", "反馈位置异常", nullptr},
};

QString shown(char const* key) {
    return key ? LanguageManager::GetLanText(key) : QString();
}

} // namespace

QString ScanStateText(std::uint32_t word) {
    QString text = shown(kLoopTexts[word & kLoopMask]);
    for (ScanStateLine const& line : kScanStateLines) {
        char const* key = word & line.bit ? line.set : line.clear;
        if (key)
            text += QStringLiteral("\r\n") + QLatin1String(line.axis) + shown(key);
    }
    return text;
}

} // namespace tessera

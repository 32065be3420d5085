// SPDX-License-Identifier: MIT
#include "iosetup/ionametable.h"

#include "engine/languagemanager.h"
#include "engine/marktypes.h"

namespace tessera {

namespace {

constexpr unsigned kFilber = 1U << MarkCardFilber;
constexpr unsigned kYlr = 1U << MarkCardYLR | 1U << MarkCardYLM;
constexpr unsigned kYag = 1U << MarkCardYAG;
constexpr unsigned kSpi = 1U << MarkCardSPI;
constexpr unsigned kEp = 1U << MarkCardEP;
constexpr unsigned kKnown = kFilber | kYlr | kYag | kSpi | kEp;
constexpr int kCardTypes = 6;

/// A line that the card names: on cards whose type bit is set.
struct LineName {
    unsigned cards;
    int line;
    char const* key;
};

constexpr LineName kEveryOutput[] = {
    {kKnown, 0, "运行状态专用"}, {kKnown, 1, "激光状态专用"}, {kKnown, 2, "卡报警专用"}};

constexpr LineName kOutputs[] = {
    {kFilber | kSpi | kEp, 19, "RED"},
    {kFilber | kEp, 20, "Booster_Gate"},
    {kSpi, 20, "EnGate"},
    {kFilber, 21, "MO-Enable"},
    {kSpi, 21, "Enable"},
    {kKnown, 22, "激光触发"},
    {kFilber | kSpi, 23, "D0"},
    {kFilber | kSpi, 24, "D1"},
    {kFilber | kSpi, 25, "D2"},
    {kFilber | kSpi, 26, "D3"},
    {kFilber | kSpi, 27, "D4"},
    {kFilber | kSpi, 28, "D5"},
    {kFilber, 29, "D6"},
    {kFilber, 30, "D7"},
    {kFilber | kEp, 31, "Latch"},
    {kYlr, 23, "激光器使能"},
    {kYlr, 24, "激光器复位"},
    {kYlr, 25, "MO"},
    {kYlr, 26, "激光器远程开关"},
    {kYlr | kYag, 28, "红光"},
    {kYlr, 29, "激光器模式选择"},
    {kYag, 23, "波形1"},
    {kYag, 24, "波形2"},
    {kYag, 25, "波形4"},
    {kYag, 26, "波形8"},
    {kYag, 27, "波形16"},
    {kYag, 29, "波形锁"},
    {kYag, 30, "申请光路"},
    {kSpi, 29, "PULSE"},
    {kEp, 26, "首脉冲抑制"},
};

constexpr LineName kInputs[] = {
    {kFilber, 22, "Sta0"},    {kFilber, 23, "Sta1"},      {kFilber, 24, "Sta2"},
    {kFilber, 25, "Sta3"},    {kYlr, 22, "Ready"},        {kYlr, 23, "出光中"},
    {kYlr, 27, "激光器报警"}, {kSpi, 22, "SYSTEM_FAULT"}, {kSpi, 23, "LASER_IS_ON"},
};

template<std::size_t N>
void nameLines(std::array<QString, kIOLines>& names, LineName const (&table)[N], unsigned card) {
    for (LineName const& row : table) {
        if (row.cards & card)
            names[static_cast<std::size_t>(row.line)] = LanguageManager::GetLanText(row.key);
    }
}

} // namespace

QString inputKey(int line) {
    return QStringLiteral("In") + QString::number(line);
}

QString outputKey(int line) {
    return QStringLiteral("Out") + QString::number(line);
}

IONameTable cardLineNames(int cardType) {
    IONameTable names;
    for (int i = 0; i < kIOLines; ++i) {
        names.inputs[static_cast<std::size_t>(i)] = inputKey(i);
        names.outputs[static_cast<std::size_t>(i)] = outputKey(i);
    }
    nameLines(names.outputs, kEveryOutput, kKnown);
    if (cardType < 0 || cardType >= kCardTypes)
        return names;
    const unsigned card = 1U << cardType;
    nameLines(names.outputs, kOutputs, card);
    nameLines(names.inputs, kInputs, card);
    return names;
}

int redLightOutput(int cardType) {
    switch (cardType) {
    case MarkCardFilber:
    case MarkCardSPI:
        return 19;
    case MarkCardYLR:
    case MarkCardYAG:
    case MarkCardYLM:
        return 28;
    default:
        return -1;
    }
}

} // namespace tessera

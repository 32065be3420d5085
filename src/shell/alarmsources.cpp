// SPDX-License-Identifier: MIT
#include "shell/alarmsources.h"

#include "engine/languagemanager.h"
#include "shell/alarmmask.h"

namespace tessera {

namespace {

constexpr char kLaserCode[] = "laser";

enum class Word { Mask, System, Scan, Run };

/// An alarm that is one bit, and the words of its text, which are translated one by one.
struct BitSource {
    Word word;
    unsigned int bit;
    char const* code;
    char const* words[3];
};

/// Those of the inputs in the order in which the poll looks at them. That the head initialises, and what the card waits
/// for, is no alarm.
constexpr BitSource kBits[] = {
    {Word::Mask, AlarmReady, "ready", {"机台就绪"}},
    {Word::Mask, AlarmDoor1, "door1", {"安全门", "1", "报警"}},
    {Word::Mask, AlarmDoor2, "door2", {"安全门", "2", "报警"}},
    {Word::Mask, AlarmDoor3, "door3", {"安全门", "3", "报警"}},
    {Word::Mask, AlarmDoor4, "door4", {"安全门", "4", "报警"}},
    {Word::Mask, AlarmDoor5, "door5", {"安全门", "5", "报警"}},
    {Word::Mask, AlarmCurtain, "curtain", {"安全光幕触发"}},
    {Word::Mask, AlarmEmergencyStop, "emergency", {"急停"}},
    {Word::Mask, AlarmLaser, "laserinput", {"激光器报警"}},
    {Word::Mask, AlarmChiller, "chiller", {"水冷机报警"}},
    {Word::System, 1U << 0, "card", {"板卡系统报警"}},
    {Word::Scan, 1U << 2, "scan2", {"X反馈异常"}},
    {Word::Scan, 1U << 3, "scan3", {"Y反馈异常"}},
    {Word::Scan, 1U << 4, "scan4", {"X振镜报警"}},
    {Word::Scan, 1U << 5, "scan5", {"Y振镜报警"}},
    {Word::Scan, 1U << 6, "scan6", {"X无反馈"}},
    {Word::Scan, 1U << 7, "scan7", {"Y无反馈"}},
    {Word::Scan, 1U << 10, "scan10", {"振镜过流"}},
    {Word::Scan, 1U << 11, "scan11", {"振镜电源异常"}},
    {Word::Scan, 1U << 12, "scan12", {"X位置超差"}},
    {Word::Scan, 1U << 13, "scan13", {"Y位置超差"}},
    {Word::Scan, 1U << 14, "scan14", {"振镜通信断开"}},
    {Word::Run, 1U << 10, "run10", {"数据断流"}},
    {Word::Run, 1U << 25, "run25", {"IO超时"}},
};

/// An alarm that is more than a bit.
struct PlainSource {
    char const* code;
    char const* key;
};
constexpr PlainSource kFibre{"fibre", "光纤激光器报警已锁定"};
constexpr PlainSource kScanLoop{"scan0", "振镜闭环异常"};
constexpr PlainSource kStop{"stop", "停止未确认"};

constexpr unsigned int kScanLoopMask = 3;
constexpr unsigned int kScanLoopBad = 2;

QString text(BitSource const& source) {
    QString all;
    for (char const* word : source.words) {
        if (word)
            all += LanguageManager::GetLanText(word);
    }
    return all;
}

void append(QVector<ActiveAlarm>& active, PlainSource const& source) {
    active.append({QString::fromLatin1(source.code), LanguageManager::GetLanText(source.key)});
}

unsigned int wordOf(AlarmSnapshot const& snapshot, Word word) {
    switch (word) {
    case Word::Mask:
        return snapshot.mask;
    case Word::System:
        return snapshot.system;
    case Word::Scan:
        return snapshot.scan;
    case Word::Run:
        break;
    }
    return snapshot.run;
}

} // namespace

bool AlarmSnapshot::operator==(AlarmSnapshot const& other) const {
    return mask == other.mask && laser == other.laser && laserText == other.laserText &&
           fibreLatch == other.fibreLatch && system == other.system && scan == other.scan && run == other.run &&
           stopUnconfirmed == other.stopUnconfirmed;
}

/// The cause of a laser's alarm is part of its source: another cause is another alarm.
QVector<ActiveAlarm> ActiveAlarms(AlarmSnapshot const& snapshot) {
    QVector<ActiveAlarm> active;
    if (snapshot.laser) {
        const QString cause =
            snapshot.laserText.isEmpty() ? LanguageManager::GetLanText("激光器报警") : snapshot.laserText;
        active.append({QLatin1String(kLaserCode) + QLatin1Char(':') + cause, cause});
    }
    for (BitSource const& source : kBits) {
        if (wordOf(snapshot, source.word) & source.bit)
            active.append({QString::fromLatin1(source.code), text(source)});
    }
    if ((snapshot.scan & kScanLoopMask) == kScanLoopBad)
        append(active, kScanLoop);
    if (snapshot.fibreLatch)
        append(active, kFibre);
    if (snapshot.stopUnconfirmed)
        append(active, kStop);
    return active;
}

QString AlarmText(QString const& code, QString const& stored) {
    for (BitSource const& source : kBits) {
        if (code == QLatin1String(source.code))
            return text(source);
    }
    for (PlainSource const& source : {kFibre, kScanLoop, kStop}) {
        if (code == QLatin1String(source.code))
            return LanguageManager::GetLanText(source.key);
    }
    return LanguageManager::GetLanText(stored);
}

} // namespace tessera

// SPDX-License-Identifier: MIT
#include "shell/alarmmask.h"

#include "engine/languagemanager.h"

namespace tessera {

namespace {

struct AlarmText {
    unsigned int bit;
    std::initializer_list<char const*> words;
};

/// The words are translated one by one.
const AlarmText kAlarmTexts[] = {
    {AlarmDoor1, {"安全门", "1", "报警"}}, {AlarmDoor2, {"安全门", "2", "报警"}}, {AlarmDoor3, {"安全门", "3", "报警"}},
    {AlarmDoor4, {"安全门", "4", "报警"}}, {AlarmCurtain, {"安全光幕触发"}},      {AlarmEmergencyStop, {"急停"}},
    {AlarmLaser, {"激光器报警"}},          {AlarmChiller, {"水冷机报警"}},
};

} // namespace

void AlarmMask::LoadTexts() {
    const std::lock_guard<std::mutex> lock(m_AlarmLock);
    m_AlarmBits.clear();
    m_AlarmTexts.clear();
    for (AlarmText const& alarm : kAlarmTexts) {
        QString text;
        for (char const* word : alarm.words)
            text += LanguageManager::GetLanText(word);
        m_AlarmBits.append(alarm.bit);
        m_AlarmTexts.insert(alarm.bit, text);
    }
}

void AlarmMask::Set(bool on, unsigned int bits) {
    const std::lock_guard<std::mutex> lock(m_AlarmLock);
    m_SafeAlarm = on ? m_SafeAlarm | bits : m_SafeAlarm & ~bits;
}

bool AlarmMask::IsSet(unsigned int bits) const {
    const std::lock_guard<std::mutex> lock(m_AlarmLock);
    return (m_SafeAlarm & bits) != 0;
}

unsigned int AlarmMask::Mask() const {
    const std::lock_guard<std::mutex> lock(m_AlarmLock);
    return m_SafeAlarm;
}

QVector<QString> AlarmMask::ActiveTexts() const {
    const std::lock_guard<std::mutex> lock(m_AlarmLock);
    QVector<QString> texts;
    for (unsigned int bit : m_AlarmBits) {
        if (m_SafeAlarm & bit)
            texts.append(m_AlarmTexts.value(bit, LanguageManager::GetLanText("未知错误")));
    }
    return texts;
}

} // namespace tessera

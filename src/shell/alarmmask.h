// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QString>
#include <QVector>
#include <mutex>

namespace tessera {

/// Bits of the alarm mask.
enum AlarmBit : unsigned int {
    AlarmReady = 1,
    AlarmDoor1 = 2,
    AlarmDoor2 = 4,
    AlarmDoor3 = 8,
    AlarmDoor4 = 16,
    AlarmDoor5 = 32,
    AlarmCurtain = 64,
    AlarmEmergencyStop = 128,
    AlarmLaser = 256,
    AlarmChiller = 512
};

/// The active safety alarms and the texts shown for them. Ready and door 5 stop a run like the others but have no text:
/// they do not refuse a new start. Any thread, but for LoadTexts.
class AlarmMask {
public:
    /// Takes the texts in the operator's language; main thread, before ActiveTexts is asked.
    void LoadTexts();
    /// Sets or clears all bits of `bits`.
    void Set(bool on, unsigned int bits);
    /// Any of `bits` is set.
    bool IsSet(unsigned int bits) const;
    unsigned int Mask() const;
    /// Texts of the active alarms that have one, in the order of the bits.
    QVector<QString> ActiveTexts() const;

private:
    mutable std::mutex m_AlarmLock;
    unsigned int m_SafeAlarm = 0;
    QVector<unsigned int> m_AlarmBits;
    QMap<unsigned int, QString> m_AlarmTexts;
};

} // namespace tessera

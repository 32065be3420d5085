// SPDX-License-Identifier: MIT
#pragma once

#include "iosetup/laseralarmrules.h"

#include <QString>

/// Settings of the laser's fault lines in "/ini/UserINI.ini", and their detection. Main thread.
class LaserAlarmPara {
public:
    /// The first call reads the file.
    static LaserAlarmPara* Instance();

    /// Missing keys give the settings as delivered: off, custom type, no reset output.
    void ReadPara();
    void SavePara();

    /// Reads the input word once and decides from what `alarm` was; drives the card's error output with the outcome.
    /// The text is empty or tells the cause in the operator's language.
    QString DetectAlarm(bool& alarm);

    /// While it is held, as by the dialog on the screen, a custom fault that was seen stays in m_Alarm and on the error
    /// output until ResetAlarm(), though other looks with a flag of their own go on following the input.
    void Hold(bool on) { m_bHeld = on; }

    /// Clears the alarm and pulses the reset output for 200 ms. The event loop runs meanwhile, so a detection may raise
    /// the alarm anew before this returns.
    void ResetAlarm();

    bool m_EnableLaserAlarm = false;
    int m_LaserType = tessera::kLaserTypeCustom; ///< 0 to 5
    bool m_CheckIn[tessera::kLaserAlarmChannels] = {};
    bool m_CheckMask[tessera::kLaserAlarmChannels] = {}; ///< input level that counts as a fault
    int m_ResetOut = tessera::kNoOutput;                 ///< output number, -1 for none
    bool m_CheckNeg = false;
    bool m_Alarm = false; ///< not stored

private:
    LaserAlarmPara();

    bool m_bHeld = false;
};

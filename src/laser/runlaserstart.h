// SPDX-License-Identifier: MIT
#pragma once

#include "laser/laserstep.h"

#include <memory>

namespace tessera {
class LaserPort;
}

/// Settings of the machine's laser, and the operations that switch it on and off by its digital lines. The fields are
/// those of the parameter files; the pages of the laser write them and call SaveParam(). All on the main thread; the
/// sequences block it while they wait.
class RunLaserStart {
public:
    static RunLaserStart* Instance();

    int nOssType = 0;               ///< beam splitting
    int nMarkEndResetDaToZero = 0;  ///< the analogue output goes to 0 when a document ends
    int bLockLaserAllow = 0;        ///< the light is locked by a line
    int nLockLaserSwitchIO = 0;     ///< number of that output
    int nOutb07 = 0;                ///< 1: the remote start is pulsed at the start
    int bYLS = 0;                   ///< kind of a YLR laser: 0 YLR or YLM, 1 YLS, 2 SN, 3 and 4 without lines
    int nYlrSoftwareEnable = 0;     ///< 1: the shutter is enabled while the program runs; any other value: it is not
    int nYlrReadyAfterEnableMs = 0; ///< ms from the enable to light
    int nYlrLaserType = 0;          ///< 0 CW, 1 QCW
    int nWaveNoLock = 0;            ///< YAG: the waveform is locked
    int nFiberAlarm = 0;            ///< fibre: the alarm of the laser counts
    int nFiberSoftwareEnable = 0;   ///< fibre, any value but 0: its enable is on while the program runs
    int nPrrBeforeMoPaUs = 0;       ///< fibre: switching time of the D frequency, µs

    /// Switches the laser on by the sequence of its family; nothing with the card closed.
    void RunLaser_Start();
    /// Switches it off likewise.
    void RunLaser_End();

    void RunLaserYLR();
    void RunLaserYLS();
    void RunLaserSN();
    /// Such a laser is switched on by hand: no line is driven.
    void RunLaserYAG();
    void RunLaserEndYLR();
    void RunLaserEndYLS();
    void RunLaserEndSN();
    /// Changes between CW (0) and QCW (1) on the running machine and leaves the shutter enabled; nothing with the card
    /// closed.
    void ChangeYLRLaserType(int type);

    void InitCommonParam();
    void InitFilberParam();
    void InitYAGParam();
    void InitYLRParam();
    // These leave the software enable alone, which the two families share; SaveParam() writes it.
    void SaveCommonParam();
    void SaveFilberParam();
    void SaveYAGParam();
    void SaveYLRParam();
    /// Writes everything, the shared software enable by the laser type, and has it on the disk when it returns.
    void SaveParam();

    /// Lines, time and notices that the sequences work with; null goes back to those of the machine. Not owned.
    void SetPort(tessera::LaserPort* port);

private:
    RunLaserStart();
    ~RunLaserStart();
    void Run(tessera::LaserSequence const& sequence);
    tessera::LaserChoices Choices() const;

    std::unique_ptr<tessera::LaserPort> m_Machine;
    tessera::LaserPort* m_pPort;
};

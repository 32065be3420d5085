// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

/// The serial laser as the engine sees it: the front end's laser form implements it and registers itself in
/// `m_hInstance`; the engine sets waveform parameters per pen through it during a run. Null while there is none.
/// It is registered on the main thread while no job runs, and the destructor takes itself back. The slot order is part
/// of the boundary.
///
/// With SystemParam::GetEnableLayLaser() the engine calls the operations during jobs that mark with the laser, direct
/// ones too, on the thread that runs the job: before the first stroke of a pen, and again where the pen changes. They
/// may take as long as the link does; the job waits and is stopped and paused all the same. A call that is under way
/// when its job is stopped is let end, then StartMark or EndList returns. Previews call nothing.
class ENGINE_API IModbusLaser {
public:
    /// Pulse width of the selected waveform, us.
    virtual double QCWWPulse() = 0;
    virtual bool IsConnected() = 0;
    /// Frequency and duty are derived from the waveform instead of the pen.
    virtual bool IsAutoCalcPWM() = 0;
    /// Gives that frequency in Hz and duty in percent, of the waveform as last read from the laser. A frequency that is
    /// not finite or not above 0 leaves the pen its own.
    virtual void AutoCalcPWM(double& freq, double& duty) = 0;
    /// Peak in W, pulse in ms, of a QCW waveform `model` (0 to 15), for who has no more than these. During jobs the
    /// engine calls the other form.
    virtual void SetQCWParam(int model, double peak, double pulse) = 0;
    /// The whole waveform: `mode` 0 QCW, else PWM; peaks in W, `qcwPulse` in ms, `pwmFreq` in Hz, `pwmDuty` in percent,
    /// the two delays in ms.
    virtual void SetQCWParam(int mode, int model, double qcwPeak, double qcwPulse, double pwmPeak, double pwmFreq,
                             double pwmDuty, double blowDelay, double shutterDelay) = 0;
    virtual ~IModbusLaser();

    /// What is registered, null without a serial laser.
    static IModbusLaser* Instance();
    static IModbusLaser* m_hInstance;
};

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/lasers/seriallaser.h"

#include "engine/glassparam.h"
#include "engine/imodbuslaser.h"
#include "engine/markingmparam_vz.h"
#include "engine/marklog.h"
#include "engine/systemparam.h"
#include "simengine/card/cardcore.h"
#include "simengine/lasers/serialpulses.h"

#include <memory>
#include <optional>
#include <set>
#include <utility>

namespace sim {

namespace {

/// Serves the pens of one job.
class SerialLaser {
public:
    explicit SerialLaser(IModbusLaser& laser)
        : m_laser(laser) {}

    void serve(int number, const PenParams& pen) {
        if (!m_laser.IsConnected()) {
            m_last.reset(); // it may come back with another waveform
            return;
        }
        if (pen.laserWave)
            setWave(pen.waveNumber, *pen.laserWave);
        else if (m_toldWaves.insert(number).second)
            tell(QStringLiteral("pen %1 has no waveform, its number is %2").arg(number).arg(pen.waveNumber));
        givePulses(number, pen);
    }

private:
    void setWave(int model, const LaserWave& wave) {
        const auto wanted = std::make_pair(model, wave);
        if (m_last && *m_last == wanted)
            return;
        m_last = wanted;
        simulatedCard().journal().add("SetQCWParam",
                                      journalArgs(wave.mode, model, wave.peak, wave.pulse, wave.pwmPeak, wave.pwmFreq,
                                                  wave.pwmDuty, wave.gasDelay, wave.eyeDelay));
        m_laser.SetQCWParam(wave.mode, model, wave.peak, wave.pulse, wave.pwmPeak, wave.pwmFreq, wave.pwmDuty,
                            wave.gasDelay, wave.eyeDelay);
    }

    /// Asked for each pen anew: the laser answers from what it read of its controller last.
    void givePulses(int number, const PenParams& pen) {
        if (!m_laser.IsAutoCalcPWM())
            return;
        SerialPulses told;
        told.qcw = !pen.laserWave || pen.laserWave->mode == 0;
        m_laser.AutoCalcPWM(told.frequency, told.duty);
        told.pulse = m_laser.QCWWPulse();
        const MarkCardType type = MarkingMParam_VZ::Instance()->GetMarkCardType();
        const bool pulseWidth = GlassParam::Instance()->QPulseWidthType() != 0;
        const std::optional<PenPulses> pulses = penPulses(told, type, pulseWidth, pen.pwm);
        if (pulses)
            simulatedCard().journal().add("LaserPulses", journalArgs(number, pulses->frequency, pulses->pwm));
        else if (m_toldPulses.insert(number).second)
            tell(QStringLiteral("no frequency for pen %1, it keeps its own").arg(number));
    }
    static void tell(QString const& text) {
        MarkLog::Instance()->ShowNote_Error(QStringLiteral("serial laser: ") + text);
    }

    IModbusLaser& m_laser;
    std::optional<std::pair<int, LaserWave>> m_last; ///< waveform that the laser has, with its number
    std::set<int> m_toldWaves;                       ///< pens of which the log has been told
    std::set<int> m_toldPulses;
};

} // namespace

PenService serialLaserService() {
    IModbusLaser* laser = IModbusLaser::Instance();
    if (!laser || !SystemParam::Instance()->GetEnableLayLaser())
        return nullptr;
    auto service = std::make_shared<SerialLaser>(*laser);
    return [service](int number, const PenParams& pen) { service->serve(number, pen); };
}

} // namespace sim

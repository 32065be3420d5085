// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/deviceclock.h"
#include "simengine/card/faults.h"
#include "simengine/card/iobank.h"
#include "simengine/lasers/laseralarmlines.h"

#include <cstdint>
#include <mutex>

namespace sim {

/// Lasers that answer alike.
enum class LaserKind {
    Silent, ///< answers on no line
    Yls,    ///< input 22: Ready
    Sn      ///< input 23: RDY_23, input 22: EMISS_22
};

/// The digital lines of the laser beside the card. It follows its enables on outputs 23 (shutter) and 26 (remote start)
/// and answers on inputs 22 and 23, which it holds high until it is ready: both are active low. Times are those of the
/// simulated clock. The faults "laser_no_ready" and "laser_no_emission" keep the one line or the other high for as long
/// as they are on, the laser behind it goes on working.
///
/// Lasers of every family tell over-temperature and a dark photodiode on the fault lines with which they are wired, by
/// the faults "laser_temperature" and "laser_pd", of which the first goes before the second; a rising edge of the reset
/// output switches both off. All calls from any thread.
class LaserLines final : public InputDevice {
public:
    // Simulated time from the last enable that a line needs to its answer, ms.
    static constexpr double kYlsReadyMs = 2500.0;
    static constexpr double kSnReadyMs = 1500.0;
    static constexpr double kSnEmissionMs = 500.0; ///< not before it is ready

    /// Hangs on the lines of `io` until it goes.
    LaserLines(IoBank& io, FaultBank& faults, const DeviceClock& clock);
    ~LaserLines();
    LaserLines(const LaserLines&) = delete;
    LaserLines& operator=(const LaserLines&) = delete;

    /// Puts another laser in place; one of the same kind stays as it is. Enables that are on count from now.
    void fit(LaserKind kind);
    LaserKind kind() const;
    /// Wires the fault lines.
    void wireAlarm(const LaserAlarmWiring& wiring);

    std::uint32_t drivenInputs() const override;

private:
    /// An enable and since when it is on, simulated ms.
    struct Enable {
        bool on = false;
        double since = 0.0;
    };

    void follow(int bit, bool on);
    bool resets(int bit, bool on);
    static void switchTo(Enable& enable, bool on, double now);
    double now() const { return m_clock.now(); }
    std::uint32_t answers() const;
    std::uint32_t alarms() const;
    std::uint32_t ylsLines(double now) const;
    std::uint32_t snLines(double now) const;

    IoBank& m_io;
    FaultBank& m_faults;
    const DeviceClock& m_clock;
    mutable std::mutex m_mutex; ///< guards all below
    LaserKind m_kind = LaserKind::Silent;
    Enable m_shutter;
    Enable m_remote;
    LaserAlarmLines m_alarm;
    int m_resetOutput = -1;
    bool m_resetOn = false;
    int m_listener = 0;
};

} // namespace sim

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/card/deviceclock.h"
#include "simengine/card/faults.h"
#include "simengine/card/flymotion.h"

#include <cstdint>
#include <mutex>

namespace sim {

/// Marking on the fly as it is set up.
struct FlySettings {
    bool enabled = false;        ///< jobs follow the product
    bool outer = false;          ///< counts the encoder at the belt, else the card's own pulses
    bool innerEnabled = false;   ///< the card makes pulses
    double innerPeriodUs = 1000; ///< between two of them
    bool innerReverse = false;   ///< count downwards
    bool outerReverse = false;
    bool rangeEnabled = false; ///< the count begins anew after rangeMm
    double rangeMm = 10000;
    double pulsesPerMm = 1000; ///< by which the range is counted
    double pulsesPerMmX = 100; ///< of the product's way along X, below 0 against it; 0: X does not follow
    double pulsesPerMmY = 0;
};

/// The encoder of marking on the fly, and the belt to which it belongs. The belt moves along X of the field; its
/// encoder gives its own number of pulses a millimetre. Times are those of the simulated clock; without limit nothing
/// moves, as a belt that has to be looked at needs a time. The fault "encoder_stopped" holds the count. All calls from
/// any thread.
class FlyEncoder {
public:
    FlyEncoder(const DeviceClock& clock, const FaultBank& faults)
        : m_clock(clock)
        , m_faults(faults) {}

    void set(const FlySettings& settings);
    FlySettings settings() const;
    /// Speed in mm/s along X, below 0 backwards; false when it is not finite or beyond 10 000.
    bool setBeltSpeed(double mmPerSecond);
    double beltSpeed() const;
    /// Pulses that the encoder at the belt gives a millimetre; false when it is not finite or beyond 100 000.
    bool setBeltPulses(double perMm);
    double beltPulses() const;

    void setCount(int count);
    /// From 0 up to the range, or all that 32 bits with a sign hold; a range of 2^31 pulses and more shows its upper
    /// part below 0.
    int count() const;
    /// Pulses a millisecond now, with their direction.
    double pulsesPerMs() const;
    /// For a job that begins now; a change of the belt's speed acts on later ones.
    FlyMotion motion() const;

private:
    void settle() const;
    double rate() const;
    double wrapped(double count) const;

    const DeviceClock& m_clock;
    const FaultBank& m_faults;
    mutable std::mutex m_mutex; ///< guards all below
    FlySettings m_settings;
    double m_beltMmPerMs = 0.0;
    double m_beltPulses = 100.0;
    mutable double m_base = 0.0;
    mutable double m_since = 0.0;
    mutable bool m_stopped = false;
};

} // namespace sim

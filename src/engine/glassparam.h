// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"
#include "engine/marktypes.h"

#include <memory>

/// Settings of supervision and display. Getters from any thread, setters and SaveParam() on the main thread.
class ENGINE_API GlassParam {
public:
    static GlassParam* Instance();
    /// False when the file could not be written.
    bool SaveParam();

    /// Doors and the ready input act only on a running job.
    bool IsCheckeSafeInRun() const;
    void SetCheckSafeInRun(bool value);
    SafeTrigerType GetSafeTrigerType() const;
    void SetSafeTrigerType(SafeTrigerType value);
    bool IsShowLaserAlarm() const;
    void SetShowLaserAlarm(bool value);
    /// Non-zero: `LayerData::PWM` is a pulse width in us.
    int QPulseWidthType() const;

private:
    GlassParam();
    ~GlassParam();
    struct Private;
    std::unique_ptr<Private> d;
};

// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/glassparam.h"

#include "simengine/params/smalltables.h"

using namespace sim;

struct GlassParam::Private {
    ParamStore store{QLatin1String(kGlassParamFile), kGlassParams, GlassRowCount};
};

GlassParam::GlassParam()
    : d(std::make_unique<Private>()) {}

GlassParam::~GlassParam() = default;

GlassParam* GlassParam::Instance() {
    static GlassParam instance;
    return &instance;
}

bool GlassParam::SaveParam() {
    return d->store.save();
}

bool GlassParam::IsCheckeSafeInRun() const {
    return d->store.flag(CheckSafeInRunRow);
}

void GlassParam::SetCheckSafeInRun(bool value) {
    d->store.setFlag(CheckSafeInRunRow, value);
}

SafeTrigerType GlassParam::GetSafeTrigerType() const {
    return d->store.integer(SafeTrigerTypeRow) == SafeTrigerStop ? SafeTrigerStop : SafeTrigerPause;
}

void GlassParam::SetSafeTrigerType(SafeTrigerType value) {
    d->store.setInteger(SafeTrigerTypeRow, value);
}

bool GlassParam::IsShowLaserAlarm() const {
    return d->store.flag(ShowLaserAlarmRow);
}

void GlassParam::SetShowLaserAlarm(bool value) {
    d->store.setFlag(ShowLaserAlarmRow, value);
}

int GlassParam::QPulseWidthType() const {
    return d->store.integer(PulseWidthTypeRow);
}

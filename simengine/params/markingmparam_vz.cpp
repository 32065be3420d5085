// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/markingmparam_vz.h"

#include "simengine/params/smalltables.h"

using namespace sim;

namespace {

/// A file may hold a number that no type has; such a machine is taken as a fibre laser of the first kind.
int within(int value, int last) {
    return value >= 0 && value <= last ? value : 0;
}

} // namespace

struct MarkingMParam_VZ::Private {
    ParamStore store{QLatin1String(kMarkingParamFile), kMarkingParams, MarkingRowCount};
};

MarkingMParam_VZ::MarkingMParam_VZ()
    : d(std::make_unique<Private>()) {}

MarkingMParam_VZ::~MarkingMParam_VZ() = default;

MarkingMParam_VZ* MarkingMParam_VZ::Instance() {
    static MarkingMParam_VZ instance;
    return &instance;
}

MarkCardType MarkingMParam_VZ::GetMarkCardType() const {
    return static_cast<MarkCardType>(within(d->store.integer(MarkCardTypeRow), MarkCardYLM));
}

void MarkingMParam_VZ::SetMarkCardType(MarkCardType type) {
    d->store.setInteger(MarkCardTypeRow, type);
}

bool MarkingMParam_VZ::IsAutoSetCardType() const {
    return d->store.flag(AutoSetCardTypeRow);
}

void MarkingMParam_VZ::SetAutoSetCardType(bool automatic) {
    d->store.setFlag(AutoSetCardTypeRow, automatic);
}

FilberLaserType MarkingMParam_VZ::GetIPG100WType() const {
    return static_cast<FilberLaserType>(within(d->store.integer(FilberTypeRow), FilberAPD));
}

void MarkingMParam_VZ::SetIPG100WType(FilberLaserType type) {
    d->store.setInteger(FilberTypeRow, type);
}

bool MarkingMParam_VZ::SaveParaData() {
    return d->store.save();
}

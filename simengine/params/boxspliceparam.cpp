// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/boxspliceparam.h"

#include "simengine/params/smalltables.h"

#include <cmath>

using namespace sim;

int BoxSpliceParam::m_EnableSplice = 0;
double BoxSpliceParam::m_OffsetX = 0.0;
double BoxSpliceParam::m_OffsetY = 0.0;
double BoxSpliceParam::m_OffsetA = 0.0;

namespace {

constexpr double kRadPerDegree = 3.14159265358979323846 / 180.0;

ParamStore& store() {
    static ParamStore values(QLatin1String(kBoxSpliceFile), kBoxSpliceParams, BoxSpliceRowCount);
    return values;
}

} // namespace

void BoxSpliceParam::Read() {
    std::lock_guard<std::mutex> guard(store().groupLock());
    store().load();
    m_EnableSplice = store().integer(SpliceEnableRow);
    m_OffsetX = store().real(SpliceXRow);
    m_OffsetY = store().real(SpliceYRow);
    m_OffsetA = store().real(SpliceAngleRow);
}

bool BoxSpliceParam::Save(int enable, double offsetX, double offsetY, double offsetA) {
    std::lock_guard<std::mutex> guard(store().groupLock());
    store().setInteger(SpliceEnableRow, enable);
    store().setReal(SpliceXRow, offsetX);
    store().setReal(SpliceYRow, offsetY);
    store().setReal(SpliceAngleRow, offsetA);
    return store().save();
}

// Works on the stored values, not on the members: it runs on marking threads while a dialog changes the members, and
// an order from outside stores values without touching them.
void BoxSpliceParam::ChangeManualBox(DOT3* points, int count) {
    bool enabled = false;
    double x = 0.0;
    double y = 0.0;
    double angle = 0.0;
    {
        std::lock_guard<std::mutex> guard(store().groupLock());
        enabled = store().integer(SpliceEnableRow) != 0;
        x = store().real(SpliceXRow);
        y = store().real(SpliceYRow);
        angle = store().real(SpliceAngleRow) * kRadPerDegree;
    }
    if (!enabled || !points)
        return;
    double const cosine = std::cos(angle);
    double const sine = std::sin(angle);
    for (int i = 0; i < count; ++i) {
        DOT3 const from = points[i];
        points[i].X = from.X * cosine - from.Y * sine + x;
        points[i].Y = from.X * sine + from.Y * cosine + y;
    }
}

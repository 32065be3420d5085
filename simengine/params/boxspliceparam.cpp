// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/boxspliceparam.h"

#include "simengine/params/smalltables.h"
#include "simengine/params/storedsplice.h"

using namespace sim;

int BoxSpliceParam::m_EnableSplice = 0;
double BoxSpliceParam::m_OffsetX = 0.0;
double BoxSpliceParam::m_OffsetY = 0.0;
double BoxSpliceParam::m_OffsetA = 0.0;

namespace {

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

Splice sim::storedSplice() {
    std::lock_guard<std::mutex> guard(store().groupLock());
    return {store().integer(SpliceEnableRow) != 0, store().real(SpliceXRow), store().real(SpliceYRow),
            store().real(SpliceAngleRow)};
}

// Works on the stored values, not on the members: it runs on marking threads while a dialog changes the members, and
// an order from outside stores values without touching them.
void BoxSpliceParam::ChangeManualBox(DOT3* points, int count) {
    Splice const splice = storedSplice();
    if (!splice.on || !points)
        return;
    for (int i = 0; i < count; ++i) {
        Point const to = splice.applied({points[i].X, points[i].Y});
        points[i].X = to.x;
        points[i].Y = to.y;
    }
}

// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "engine/rundatagather.h"

/// How the run tells its figures to RunDataGather. Any thread.
struct RunDataGatherAccess {
    /// The figures of a run that has ended: whether it was not stopped, its time in ms, and the pens it marked with in
    /// the order of their first use.
    static void setRun(bool result, qint64 timeMs, QVector<LayerData> const& layers);
};

// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/servers/runrecord.h"

#include "simengine/log/logfile.h"
#include "simengine/servers/rundatagatheraccess.h"

namespace sim {

RunRecord::RunRecord(Job const& job, LayerParamEx const* layers)
    : m_strokes(job.strokes.size()) {
    if (!layers)
        return;
    bool used[kLayerCount] = {};
    for (Stroke const& stroke : job.strokes) {
        int const pen = stroke.pen >= 0 && stroke.pen < kLayerCount ? stroke.pen : 0;
        if (used[pen])
            continue;
        used[pen] = true;
        LayerData data;
        layers->GetLayerData(pen, data);
        m_layers.append(data.UseDefault ? LayerData::GetDefaultLayerData() : data);
    }
}

void RunRecord::ended(bool whole) const {
    qint64 const ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - m_start).count();
    RunDataGatherAccess::setRun(whole, ms, m_layers);
    writeLog(LogKind::MarkData, QStringLiteral("%1: %2 strokes in %3 ms")
                                    .arg(whole ? QStringLiteral("done") : QStringLiteral("stopped"))
                                    .arg(m_strokes)
                                    .arg(ms));
}

bool RunRecord::refused() {
    RunDataGatherAccess::setRun(false, 0, {});
    return false;
}

} // namespace sim

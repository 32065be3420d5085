// SPDX-License-Identifier: MIT
#pragma once

#include "simengine/card/cardcore.h"

#include <QPointF>
#include <QVector>

/// The places that the card's last pass drew, each vertex once, in mm.
inline QVector<QPointF> drawn() {
    const sim::TraceSnapshot trace = sim::simulatedCard().trace().snapshot();
    QVector<QPointF> places;
    for (size_t i = 0; i < trace.size(); ++i) {
        if (trace[i].laser)
            places.append({trace[i].at.x, trace[i].at.y});
    }
    return places;
}

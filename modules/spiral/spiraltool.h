// SPDX-License-Identifier: MIT
#pragma once

#include "common/numbertool.h"

namespace toolmodules {

/// An Archimedean spiral about (0, 0) from the inner radius outwards: the radius grows by the pitch with each turn.
class SpiralTool : public NumberTool {
public:
    static constexpr char kClass[] = "ToolSpiral";
    /// The way back, by the value of its parameter.
    enum Back {
        NoBack,   ///< the stroke ends outside
        SameWay,  ///< it goes back along itself
        TurningOn ///< it goes back inwards between its turns, without a change of direction
    };
    SpiralTool();
    QVector<ToolContour> MakeOutline(QVector<double> const& values) const override;
    void Place(QPointF const& drag, QVector<double>& values) const override;
};

} // namespace toolmodules

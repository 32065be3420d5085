// SPDX-License-Identifier: MIT
#pragma once

/// One motion or homing request, ordered by `Order` alone.
struct AxisMoveStruct {
    int AxisNo = 0;   ///< axis index from 0
    double Pos = 0.0; ///< target position, axis unit; 0 when homing
    double Acc = 0.0; ///< acceleration, axis unit/s^2; 0 when homing
    double Vel = 0.0; ///< speed, axis unit/s; 0 when homing
    bool Home = true; ///< homing request
    bool Wait = true; ///< the request blocks until the axis has finished
    int Order = 0;    ///< position in the sequence

    bool operator<(AxisMoveStruct const& other) const { return Order < other.Order; }
};

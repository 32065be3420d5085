// SPDX-License-Identifier: MIT
#pragma once

#include "engine/dot3.h"
#include "engine/engineapi.h"

/// Manual compensation of the box: offset and turn of everything marked, so that pieces of a large field meet.
/// Main thread, except ChangeManualBox.
class ENGINE_API BoxSpliceParam {
public:
    static int m_EnableSplice; ///< 0 off
    static double m_OffsetX;   ///< mm
    static double m_OffsetY;   ///< mm
    static double m_OffsetA;   ///< degrees, counter-clockwise about the field centre

    /// Loads the stored values.
    static void Read();
    /// Stores the values given; the members stay as they are. False when the file could not be written.
    static bool Save(int enable, double offsetX, double offsetY, double offsetA);
    /// Turns and shifts `count` points in place when the compensation is on.
    static void ChangeManualBox(DOT3* points, int count);
};

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/dot3.h"
#include "engine/engineapi.h"

/// Manual compensation of the box: offset and turn of everything marked, so that pieces of a large field meet.
/// Main thread, except ChangeManualBox, which marking threads call. The members are the dialog's working values, filled
/// by Read(); only what was saved acts on the machine: on documents' jobs and single mirror moves by the engine, on the
/// points of direct jobs by ChangeManualBox.
class ENGINE_API BoxSpliceParam {
public:
    static int m_EnableSplice; ///< 0 off, else on
    static double m_OffsetX;   ///< mm
    static double m_OffsetY;   ///< mm
    static double m_OffsetA;   ///< degrees, counter-clockwise about the field centre

    /// Loads the stored values.
    static void Read();
    /// Stores the values given; the members stay as they are. False when the file could not be written.
    static bool Save(int enable, double offsetX, double offsetY, double offsetA);
    /// Turns and then shifts `count` points in place by the values last saved or loaded, when these are on. The third
    /// values stay.
    static void ChangeManualBox(DOT3* points, int count);
};

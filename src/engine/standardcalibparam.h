// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QString>

/// Analogue correction of one mirror.
struct MirrorCorrection {
    double Scale = 1.0;
    double Barrel = 0.0;
    double Parallelogram = 0.0;
    double Trapezoid = 0.0;
    double LightScale = 1.0;  ///< red light, X for the first mirror and Y for the second, whichever drives X
    double LightOffset = 0.0; ///< mm, likewise
};

/// The box calibration record that lives in the card object. Lengths in mm. Edited in place on the main thread.
struct ENGINE_API StandardCalibParam {
    double MaxArea = 110.0; ///< largest usable field edge
    double TestSize = 50.0; ///< edge of the test rectangle
    double OffsetX = 0.0;   ///< centre offset
    double OffsetY = 0.0;
    double Angle = 0.0;     ///< degrees
    bool Mirror1IsX = true; ///< mirror 1 drives X, else mirror 2
    bool Mirror1Reverse = false;
    bool Mirror2Reverse = false;
    MirrorCorrection Mirror1;
    MirrorCorrection Mirror2;
    QString FileName; ///< name of the record's file below /ini/, set by the engine

    /// Writes the record to its file: one value a line with six significant digits, 20 lines. The order is that of the
    /// fields as far as Mirror2Reverse, then scale, barrel, parallelogram and trapezoid of mirror 1 and of mirror 2,
    /// then light scale and offset of mirror 1 and of mirror 2. The file is not cut: what stands behind these lines
    /// stays. False when it could not be written; the old file is then whole.
    bool Save() const;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QPointF>
#include <array>

/// Points of a power curve.
constexpr int kWavePointCount = 20;

/// The parameters of one pen. A plain value; the order of the fields is part of the boundary.
/// `Fre` is in kHz for the laser types 0, 3 and 4 and in Hz for the others.
struct ENGINE_API LayerData {
    int ColorR = 0; ///< display colour, 0 to 255 each
    int ColorG = 0;
    int ColorB = 0;
    int MarkCnt = 1;                                  ///< how often each object of the pen is marked in one pass
    double MarkSpeed = 500.0;                         ///< mm/s
    double RedSpeed = 2000.0;                         ///< mm/s, speed of both previews
    double Power = 50.0;                              ///< percent
    int WaveNumber = 0;                               ///< stored waveform, or pulse width code of one laser variant
    double Fre = 20.0;                                ///< kHz or Hz by laser type
    double PWM = 50.0;                                ///< percent, or us when the pulse-width mode is on
    int OpenLaserDelay = 100;                         ///< us, may be negative
    int CloseLaserDelay = 100;                        ///< us, may be negative
    int EndDelay = 300;                               ///< us, may be negative
    int TurnDelay = 50;                               ///< us at each corner, may be negative
    double JumpSpeed = 3000.0;                        ///< mm/s
    int MaxJumpDelay = 500;                           ///< us, at and beyond MaxJumpDelayDist
    int MarkDelay = 100;                              ///< us after each stroke
    int MinJumpDelay = 200;                           ///< us, for the shortest jump
    int PointTime = 1000;                             ///< us on a single point
    int LineWaveFlag = 0;                             ///< second switch of the line curve, 0 or 1
    int PointWaveEnable = 0;                          ///< the single-point power curve is in use, 0 or 1
    int LineWaveEnable = 0;                           ///< the line power curve is in use, 0 or 1
    std::array<QPointF, kWavePointCount> PointWave{}; ///< power over time of a single point
    std::array<QPointF, kWavePointCount> LineWave{};  ///< power over the length of a line
    double MinJumpDelayDist = 0.0;                    ///< mm, jumps up to this length get MinJumpDelay
    double MaxJumpDelayDist = 10.0;                   ///< mm, jumps from this length on get MaxJumpDelay
    bool WobbleEnable = false;
    double WobbleDiameter = 0.2; ///< mm
    double WobbleSpacing = 0.1;  ///< mm
    bool UseDefault = false;     ///< mark with the shared default record instead of this one

    LayerData() = default;
    LayerData(LayerData const& other) = default;
    LayerData& operator=(LayerData const& other) = default;

    /// Loads the shared default record. Once at program start, main thread, before any other call.
    static void InitLayerData();
    /// A copy of the shared default record. Any thread.
    static LayerData GetDefaultLayerData();
    /// Replaces the shared default record and persists it. Main thread.
    static void SetDefaultLatyerData(LayerData const& data);
};

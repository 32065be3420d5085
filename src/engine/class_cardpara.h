// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QString>
#include <array>

/// Axes that the parameter block has room for.
constexpr int kAxisSlots = 8;

/// Parameters of one axis. Positions in mm for a linear axis (mode 0) and degrees for a rotary one (mode 1).
struct AxisPara {
    QString Name;
    int MotorNo = 1;      ///< from 1
    int AxisMode = 0;     ///< 0 linear, 1 rotary
    int FeedbackMode = 0; ///< 0 internal pulse count, 1 external encoder
    int PulsePerRev = 10000;
    double Screw = 10.0;  ///< mm a turn
    double Radius = 10.0; ///< mm, rotary axes
    double Reduce = 1.0;  ///< gear ratio
    int HomeType = 1;     ///< 0 to 7: positive limit, negative limit, home switch forwards, backwards, index forwards,
                          ///< backwards, positive limit then index, negative limit then index
    double HomeHighSpeed = 20.0; ///< axis unit/s
    double HomeHighAcc = 200.0;  ///< axis unit/s^2
    double HomeLowSpeed = 5.0;   ///< likewise
    double HomeLowAcc = 100.0;
    int HomeCount = 1;          ///< repeated approaches
    double HomeBackDist = 5.0;  ///< axis unit that it backs off between two approaches
    int LimitEnable = 1;        ///< 0 or 1, like the five that follow
    int LimitReverse = 0;       ///< the limit lines are inverted
    int PulseReverse = 0;       ///< the pulse direction is inverted
    int DriverAlarmEnable = 0;  ///< the driver's alarm line is obeyed
    int DriverReverse = 0;      ///< that line is inverted
    int JogReverse = 0;         ///< the jog direction is inverted
    double JogHighSpeed = 50.0; ///< axis unit/s
    double JogHighAcc = 500.0;  ///< axis unit/s^2
    double JogLowSpeed = 10.0;
    double JogLowAcc = 100.0;
    int SoftLimitEnable = 0;   ///< 0 or 1
    double SoftLimitMin = 0.0; ///< axis unit
    double SoftLimitMax = 200.0;
};

/// Part of one axis in the homing of all axes.
struct AxisHomePlan {
    bool Enable = false; ///< takes part in homing all and in start-up homing
    bool Wait = true;    ///< the request blocks until the axis has finished
    int Order = 0;       ///< position in the sequence
};

/// Motion-card parameters: one shared object and any number of copies. Main thread, except that `Instance()` may be
/// read on worker threads while no dialog saves.
class ENGINE_API Class_CardPara {
public:
    bool EnableMotion = false;
    int AxisCount = 3;       ///< axes in use, the first of `Axis`
    double MaxSpeed = 500.0; ///< axis unit/s
    double MaxAcc = 5000.0;  ///< axis unit/s^2
    std::array<AxisPara, kAxisSlots> Axis;
    double DefaultSpeed = 50.0; ///< axis unit/s
    double DefaultAcc = 500.0;  ///< axis unit/s^2
    int DefaultDelay = 50;      ///< ms that an axis is given to settle
    std::array<AxisHomePlan, kAxisSlots> Home;
    bool HomeDoneSignal = false; ///< an output tells that homing has ended
    int HomeDoneBit = 0;         ///< that output
    int HomeDoneTime = 100;      ///< ms that it stays
    bool HomeDoneHigh = true;    ///< it tells by the level 1
    bool HomeAtStart = false;    ///< the axes with `Home[i].Enable` are homed at program start

    Class_CardPara();

    /// The shared object, loaded from its file on first use.
    static Class_CardPara* Instance();
    /// Persists this object as the machine's parameters. False when the file could not be written.
    bool SaveParaData() const;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/dot3.h"
#include "engine/engineapi.h"
#include "engine/layerparamex.h"
#include "engine/marktypes.h"
#include "engine/standardcalibparam.h"

#include <QString>
#include <memory>

/// The marking card. Every operation may be called from any thread, also while a job runs on another, and takes effect
/// during the running job. With the card closed an operation does nothing and gives the value named below.
class ENGINE_API IMarkCardBase {
public:
    // Virtual operations; their slot order is part of the boundary.

    /// Opens a direct job: AddList and AddMarkPoint calls follow. `mode` is 1 for a job of this program.
    virtual void BeginList(int mode) = 0;
    /// Closes the direct job, runs it on the calling thread and returns when it has ended. It runs whatever the run
    /// state was before, MarkStatusStop included; a stop from BeginList on ends it.
    virtual void EndList() = 0;
    /// Stops the card at once. When it has returned nothing more is marked.
    virtual void StopMark() = 0;
    /// Pauses output within 2 ms, in the middle of a vector too.
    virtual void PauseMark() = 0;
    /// Continues after PauseMark at the exact point.
    virtual void RestartMark() = 0;
    /// Factory reset of the card's flash; takes minutes and blocks.
    virtual void ResetCardFlash() = 0;
    /// Buffer run time of the last job in ms; 0 before the first and with the card closed.
    virtual double GetBufferRunTime() = 0;
    /// Alarm time setting, ms, kept over the program's end. It can be read with the card closed, but not set.
    virtual int GetAlarmTime() = 0;
    virtual void SetAlarmTime(int ms) = 0;
    /// General command channel of attached devices; the outputs, which may be null, stay unchanged when nothing
    /// answers.
    virtual void CardCommand(int code, int a, int b, int* out1, int* out2) = 0;
    virtual ~IMarkCardBase();

    /// Opens the hardware. Its success is told by IsCardOpend().
    void OpenCard();
    /// Stops a running job, whose caller then gets its result.
    void CloseCard();
    bool IsCardOpend() const;
    /// A motion module is fitted; false when closed.
    bool HasMotion() const;
    /// Text of the card's version, empty when closed.
    QString GetCardVersion() const;

    /// Input word, bit n is input n; 0 when closed.
    unsigned int GetInput() const;
    /// Output word as last written; 0 when closed.
    unsigned int GetOutput() const;
    /// State of one bit, 0 or 1; 0 outside 0 to 31 and when closed.
    int GetInputBit(int bit) const;
    int GetOutputBit(int bit) const;
    /// Writes one output, bit 0 to 31; any `value` other than 0 switches it on. A bit outside is ignored.
    void SetOutputBit(int bit, int value);

    /// Kind of the next job.
    void SetMarkType(MarkType type);
    /// Run state that the card's worker and MarkShapeContainer::StartMark obey: stop ends the running job, pause holds
    /// it, run lets it go on.
    void SetMarkStaus(MarkStatus status);
    /// State last set; MarkStatusStop when closed.
    MarkStatus GetMarkStatus() const;
    /// Blocks until the card has settled after a stop; true then. False when it did not settle within a second.
    bool IsMarkStop();
    /// Loads the pen table into the card. `count` is always 20.
    void DownLayerPara(LayerParamEx* layers, int count);

    /// Queues one polyline of `count` points for pen `layer`, 0 to 19, into the open direct job; without one it opens
    /// one. The points are copied.
    void AddList(DOT3* points, int count, int layer);
    /// Queues one point with a dwell time in ms for pen `layer`, 0 to 19, likewise; below 0 the pen's own. The pens are
    /// those downloaded, `layers` is not looked at.
    void AddMarkPoint(LayerParamEx const& layers, int layer, DOT3 point, double dwell);
    /// Moves the mirrors without laser to (x, y) mm at `speed` mm/s. `mode` is 0.
    void MoveMirrorPos(double x, double y, double speed, int mode);

    /// Fills the system alarm word (bit 0: fibre-laser alarm) and tells whether any bit is set; 0 when closed.
    bool SystemIsAlarm(unsigned int& word);
    void ClearAlarm();
    /// Status word of the run: bit 0 running, 8 run succeeded, 9 motion stopped, 10 data underrun, 20 to 23 what the
    /// card waits for (0 nothing, 1 input, 2 extended motion module, 3 encoder, 4 closed-loop head), 24 paused, 25
    /// time-out. 0 when closed.
    unsigned int GetMarkInfo() const;
    /// Status word of the scan head: bits 0 and 1 the loop (0 unknown, 2 faulty, 3 good), 2 and 3 feedback position
    /// wrong in X and Y, 4 and 5 head alarm X and Y, 6 and 7 no feedback X and Y, 8 closed-loop head, 9 initialising,
    /// 10 overcurrent, 11 supply, 12 and 13 position wrong in X and Y, 14 transfer check failed. 0 when closed.
    unsigned int GetScanState() const;
    /// Text of what the card waits for, in the operator's language; empty when it waits for nothing.
    QString GetWaitInfo() const;

    /// The box calibration record of the card, edited in place on the main thread while no calibration runs. Never
    /// null, with the card closed too.
    StandardCalibParam* GetStabtadrCalibParam();
    /// The card takes over that record as it is now.
    void SetCalibrationParam();

protected:
    IMarkCardBase();
    struct Private;
    std::unique_ptr<Private> d;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "engine/engineapi.h"

#include <QRectF>
#include <QString>
#include <memory>

/// The machine's settings: get and set pairs, and Save() which persists all. The getters and LoopMarkDelay() may be
/// called from any thread; setters, Save() and the public members belong to the main thread.
class ENGINE_API SystemParam {
public:
    static SystemParam* Instance();
    /// Persists all values; false when the file could not be written, which then is the old one.
    bool Save();

    // Mode
    /// remote console without a card
    bool GetSysMode() const;
    void SetSysMode(bool value);
    /// 0 "打标模式", 1 "焊接模式", 2 "自定义模式", 3 "中控模式"
    int GetWorkMode() const;
    void SetWorkMode(int value);
    /// dialog opened at start: 0 none, 1 single-document, 2 multi-document
    int GetStartUpMark() const;
    void SetStartUpMark(int value);
    /// the run dialog shows the axis buttons
    bool GetMarkDebugMode() const;
    void SetMarkDebugMode(bool value);
    /// users and their rights are in force
    bool IsEnableUserManager() const;
    void SetEnableUserManager(bool value);

    // Run
    /// the card repeats a looped job by itself
    bool UsedBufLoop() const;
    void SetBufLoop(bool value);
    /// a run may be triggered out of a looping red-light preview
    bool EnableTriggerWhenRedLoop() const;
    void SetEnableTriggerWhenRedLoop(bool value);
    /// the ready line is driven by software
    bool EnableSoftReady() const;
    void SetEnableSoftReady(bool value);
    /// ms between strokes of different pens
    int GetChangeLayerDelay() const;
    void SetChaneLayerDelay(int value);
    /// axis of the run dialog's axis buttons, from 1
    int GetZAxisnum() const;
    void SetZAxisnum(int value);
    /// the field's x axis is mirrored
    bool InvertX() const;
    void SetInvertX(bool value);
    /// the field's y axis is mirrored
    bool InvertY() const;
    void SetInvertY(bool value);
    /// V, largest analogue power voltage
    double GetMaxDA() const;
    void SetMaxDA(double value);
    /// Gives the card its loop delay in milliseconds for the jobs that follow; not persisted. Run workers call it.
    void LoopMarkDelay(double ms);
    double GetLoopMarkDelay() const;
    /// Drawing area in mm, y upwards.
    QRectF GetCanvasRect() const;
    /// Size and centre in mm.
    void SetCanvas(double width, double height, double centerX, double centerY);
    /// mm by which pasted objects are shifted
    void GetPasteOffSet(double& x, double& y) const;
    void SetPasteOffset(double x, double y);

    // First point, head and buffers
    bool EnableFirstPointDelay() const;
    void SetEnableFirstPointDelay(bool value);
    /// ms before the first stroke of a job
    int GetFirstPointDelay() const;
    void SetFirstPointDelay(int value);
    /// closed-loop scan head
    bool EnableCloseLoop() const;
    void SetEnableCloseLoop(bool value);
    /// where the mirrors rest after a job: 0 origin, 1 last point
    int GetEndType() const;
    void SetEndType(int value);
    /// us, shortest time between two emissions
    int GetLaserDist() const;
    void SetLaserDist(int value);
    /// vectors buffered in the host
    int GetPCBuf() const;
    void SetPCBuf(int value);
    /// ms of output buffered on the card
    double GetCardBuf() const;
    void SetCardBuf(double value);
    /// ms of output prepared by the download thread
    double GetThreadBuf() const;
    void SetThreadBuf(double value);
    /// ms of missing data that count as an underrun
    double GetCutOff() const;
    void SetCutOff(double value);
    /// the card records what it puts out
    bool IsCollectData() const;
    void SetCollectData(bool value);
    /// argument of BeginList for jobs ordered from outside
    int GetListMode() const;
    void SetListMode(int value);

    // Tools
    bool EnableCodeTool() const;
    void SetEnableCodeTool(bool value);
    bool EnableWaveForm() const;
    void SetEnableWaveForm(bool value);
    bool EnableFlyMarkTool() const;
    void SetEnableFlyMarkTool(bool value);
    bool EnableCcdTool() const;
    void SetEnableCcdTool(bool value);
    bool EnableSplitLaserSet() const;
    void SetEnableSplitLaserSet(bool value);
    /// non-zero: the MAX laser host is in use
    int EnableLaserHost_MAX() const;
    void SetEnableLaserHost_MAX(int value);
    /// the serial laser is in use
    bool GetEnableLayLaser() const;
    void SetEnableLayLaser(bool value);
    /// LayLaserType of the serial laser
    int GetLayLaserType() const;
    void SetLayLaserType(int value);

    // Code texts, camera, network, card name
    /// days for which a code text may not repeat
    int CheckCodeTextDays() const;
    void SetCheckCodeTextDays(int value);
    /// the check against repeated code texts is compulsory
    bool ForceCheckCodeText() const;
    void SetForceCheckCodeText(bool value);
    /// ms
    int GetCCDTimeOut() const;
    void SetCCDTimeOut(int value);
    /// resolution of circles, dots an inch
    int GetCCDCircleDPI() const;
    void SetCCDCircleDPI(int value);
    /// address of the camera link
    QString GetStaticIP() const;
    void SetStaticIP(QString const& value);
    /// TCP port for the plant host
    int GetScribePort() const;
    void SetScribePort(int value);
    /// name shown in front of the card's state
    QString GetCardName() const;
    void SetCardName(QString const& value);
    /// days that log files are kept
    int GetLogDays() const;
    void SetLogDays(int value);
    /// Mount point of the USB stick; false when there is none.
    bool GetUsbPath(QString& path) const;

    // What is logged
    bool GetSaveOpenCard() const;
    void SetSaveOpenCard(bool value);
    bool GetSaveCloseCard() const;
    void SetSaveCloseCard(bool value);
    bool GetSaveMarkData() const;
    void SetSaveMarkData(bool value);
    bool GetSaveDebug() const;
    void SetSaveDebug(bool value);
    bool GetSaveChangeParam() const;
    void SetSaveChangeParam(bool value);
    bool GetSaveOperator() const;
    void SetSaveOperator(bool value);
    bool GetSaveTriger() const;
    void SetSaveTriger(bool value);
    bool GetSaveRunningLog() const;
    void SetSaveRunningLog(bool value);

    // Fly marking
    /// the outer encoder tracks the product
    bool FlyMarkIsUsedExEnc() const;
    void FlyMarkSetUsedExEnc(bool value);
    /// the inner encoder runs
    bool FlyMarkIsEnInnerEnc() const;
    void FlyMarkSetEnInnerEnc(bool value);
    /// pulse interval of the inner encoder
    int FlyMarkGetInnerEncPeriod() const;
    void FlyMarkSetInnerEncPeriod(int value);
    /// 0 forward, 1 opposite
    int FlyMarkGetInnerEncDir() const;
    void FlyMarkSetInnerEncDir(int value);
    /// 0 forward, 1 opposite
    int FlyMarkGetOuterEncDir() const;
    void FlyMarkSetOuterEncDir(int value);
    /// the encoder's range is limited to FlyMarkGetEncRange()
    bool FlyMarkIsEncRangeEn() const;
    void FlyMarkSetEncRangeEn(bool value);
    /// encoder pulses
    int FlyMarkGetEncRange() const;
    void FlyMarkSetEncRange(int value);
    /// encoder pulses a mm
    int FlyMarkGetEncPPM() const;
    void FlyMarkSetEncPPM(int value);
    /// encoder pulses a mm in x and y
    void FlyMarkGetPluseQua(double& x, double& y) const;
    void FlyMarkSetPluseQua(double x, double y);

    int m_nCustomUIType = 0;     ///< 0 "无定制界面", 1 "全局定制界面", 2 "嵌入振镜界面"
    int m_nHideMainMenu = 0;     ///< "隐藏主菜单"
    int m_nResponseShortcut = 1; ///< "响应快捷键"
    int m_nResponseIO = 1;       ///< "响应IO"

private:
    SystemParam();
    ~SystemParam();
    struct Private;
    std::unique_ptr<Private> d;
};

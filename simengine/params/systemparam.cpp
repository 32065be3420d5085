// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/systemparam.h"

#include "simengine/params/mediafolder.h"
#include "simengine/params/systemparamtable.h"

#include <atomic>

using namespace sim;

struct SystemParam::Private {
    ParamStore store{QLatin1String(kSystemParamFile), kSystemParams, SystemRowCount};
    std::atomic<double> loopMarkDelay{0.0}; ///< ms
};

SystemParam::SystemParam()
    : d(std::make_unique<Private>()) {
    m_nCustomUIType = d->store.integer(CustomUITypeRow);
    m_nHideMainMenu = d->store.integer(HideMainMenuRow);
    m_nResponseShortcut = d->store.integer(ResponseShortcutRow);
    m_nResponseIO = d->store.integer(ResponseIORow);
}

SystemParam::~SystemParam() = default;

SystemParam* SystemParam::Instance() {
    static SystemParam instance;
    return &instance;
}

bool SystemParam::Save() {
    d->store.setInteger(CustomUITypeRow, m_nCustomUIType);
    d->store.setInteger(HideMainMenuRow, m_nHideMainMenu);
    d->store.setInteger(ResponseShortcutRow, m_nResponseShortcut);
    d->store.setInteger(ResponseIORow, m_nResponseIO);
    return d->store.save();
}

void SystemParam::LoopMarkDelay(double ms) {
    d->loopMarkDelay.store(ms);
}

double SystemParam::GetLoopMarkDelay() const {
    return d->loopMarkDelay.load();
}

QRectF SystemParam::GetCanvasRect() const {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    double const width = d->store.real(CanvasWidthRow);
    double const height = d->store.real(CanvasHeightRow);
    return {d->store.real(CanvasCenterXRow) - width / 2.0, d->store.real(CanvasCenterYRow) - height / 2.0, width,
            height};
}

void SystemParam::SetCanvas(double width, double height, double centerX, double centerY) {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    d->store.setReal(CanvasWidthRow, width);
    d->store.setReal(CanvasHeightRow, height);
    d->store.setReal(CanvasCenterXRow, centerX);
    d->store.setReal(CanvasCenterYRow, centerY);
}

void SystemParam::GetPasteOffSet(double& x, double& y) const {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    x = d->store.real(PasteOffsetXRow);
    y = d->store.real(PasteOffsetYRow);
}

void SystemParam::SetPasteOffset(double x, double y) {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    d->store.setReal(PasteOffsetXRow, x);
    d->store.setReal(PasteOffsetYRow, y);
}

void SystemParam::FlyMarkGetPluseQua(double& x, double& y) const {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    x = d->store.real(FlyPulseXRow);
    y = d->store.real(FlyPulseYRow);
}

void SystemParam::FlyMarkSetPluseQua(double x, double y) {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    d->store.setReal(FlyPulseXRow, x);
    d->store.setReal(FlyPulseYRow, y);
}

bool SystemParam::GetUsbPath(QString& path) const {
    QString const found = mediaFolder();
    if (found.isEmpty())
        return false;
    path = found;
    return true;
}

// The plain pairs: each reads and writes one row of the table.
#define FLAG_PAIR(getter, setter, row)                                                                                 \
    bool SystemParam::getter() const {                                                                                 \
        return d->store.flag(row);                                                                                     \
    }                                                                                                                  \
    void SystemParam::setter(bool value) {                                                                             \
        d->store.setFlag(row, value);                                                                                  \
    }
#define INT_PAIR(getter, setter, row)                                                                                  \
    int SystemParam::getter() const {                                                                                  \
        return d->store.integer(row);                                                                                  \
    }                                                                                                                  \
    void SystemParam::setter(int value) {                                                                              \
        d->store.setInteger(row, value);                                                                               \
    }
#define REAL_PAIR(getter, setter, row)                                                                                 \
    double SystemParam::getter() const {                                                                               \
        return d->store.real(row);                                                                                     \
    }                                                                                                                  \
    void SystemParam::setter(double value) {                                                                           \
        d->store.setReal(row, value);                                                                                  \
    }
#define TEXT_PAIR(getter, setter, row)                                                                                 \
    QString SystemParam::getter() const {                                                                              \
        return d->store.text(row);                                                                                     \
    }                                                                                                                  \
    void SystemParam::setter(QString const& value) {                                                                   \
        d->store.setText(row, value);                                                                                  \
    }

FLAG_PAIR(GetSysMode, SetSysMode, SysModeRow)
INT_PAIR(GetWorkMode, SetWorkMode, WorkModeRow)
INT_PAIR(GetStartUpMark, SetStartUpMark, StartUpMarkRow)
FLAG_PAIR(GetMarkDebugMode, SetMarkDebugMode, MarkDebugModeRow)
FLAG_PAIR(IsEnableUserManager, SetEnableUserManager, UserManagerRow)
FLAG_PAIR(UsedBufLoop, SetBufLoop, BufLoopRow)
FLAG_PAIR(EnableTriggerWhenRedLoop, SetEnableTriggerWhenRedLoop, TriggerWhenRedLoopRow)
FLAG_PAIR(EnableSoftReady, SetEnableSoftReady, SoftReadyRow)
INT_PAIR(GetChangeLayerDelay, SetChaneLayerDelay, ChangeLayerDelayRow)
INT_PAIR(GetZAxisnum, SetZAxisnum, ZAxisnumRow)
FLAG_PAIR(InvertX, SetInvertX, InvertXRow)
FLAG_PAIR(InvertY, SetInvertY, InvertYRow)
REAL_PAIR(GetMaxDA, SetMaxDA, MaxDARow)
FLAG_PAIR(EnableFirstPointDelay, SetEnableFirstPointDelay, FirstPointDelayEnableRow)
INT_PAIR(GetFirstPointDelay, SetFirstPointDelay, FirstPointDelayRow)
FLAG_PAIR(EnableCloseLoop, SetEnableCloseLoop, CloseLoopRow)
INT_PAIR(GetEndType, SetEndType, EndTypeRow)
INT_PAIR(GetLaserDist, SetLaserDist, LaserDistRow)
INT_PAIR(GetPCBuf, SetPCBuf, PCBufRow)
REAL_PAIR(GetCardBuf, SetCardBuf, CardBufRow)
REAL_PAIR(GetThreadBuf, SetThreadBuf, ThreadBufRow)
REAL_PAIR(GetCutOff, SetCutOff, CutOffRow)
FLAG_PAIR(IsCollectData, SetCollectData, CollectDataRow)
INT_PAIR(GetListMode, SetListMode, ListModeRow)
FLAG_PAIR(EnableCodeTool, SetEnableCodeTool, CodeToolRow)
FLAG_PAIR(EnableWaveForm, SetEnableWaveForm, WaveFormRow)
FLAG_PAIR(EnableFlyMarkTool, SetEnableFlyMarkTool, FlyMarkToolRow)
FLAG_PAIR(EnableCcdTool, SetEnableCcdTool, CcdToolRow)
FLAG_PAIR(EnableSplitLaserSet, SetEnableSplitLaserSet, SplitLaserSetRow)
INT_PAIR(EnableLaserHost_MAX, SetEnableLaserHost_MAX, LaserHostMaxRow)
FLAG_PAIR(GetEnableLayLaser, SetEnableLayLaser, LayLaserRow)
INT_PAIR(GetLayLaserType, SetLayLaserType, LayLaserTypeRow)
INT_PAIR(CheckCodeTextDays, SetCheckCodeTextDays, CheckCodeTextDaysRow)
FLAG_PAIR(ForceCheckCodeText, SetForceCheckCodeText, ForceCheckCodeTextRow)
INT_PAIR(GetCCDTimeOut, SetCCDTimeOut, CCDTimeOutRow)
INT_PAIR(GetCCDCircleDPI, SetCCDCircleDPI, CCDCircleDPIRow)
TEXT_PAIR(GetStaticIP, SetStaticIP, StaticIPRow)
INT_PAIR(GetScribePort, SetScribePort, ScribePortRow)
TEXT_PAIR(GetCardName, SetCardName, CardNameRow)
INT_PAIR(GetLogDays, SetLogDays, LogDaysRow)
FLAG_PAIR(GetSaveOpenCard, SetSaveOpenCard, SaveOpenCardRow)
FLAG_PAIR(GetSaveCloseCard, SetSaveCloseCard, SaveCloseCardRow)
FLAG_PAIR(GetSaveMarkData, SetSaveMarkData, SaveMarkDataRow)
FLAG_PAIR(GetSaveDebug, SetSaveDebug, SaveDebugRow)
FLAG_PAIR(GetSaveChangeParam, SetSaveChangeParam, SaveChangeParamRow)
FLAG_PAIR(GetSaveOperator, SetSaveOperator, SaveOperatorRow)
FLAG_PAIR(GetSaveTriger, SetSaveTriger, SaveTrigerRow)
FLAG_PAIR(GetSaveRunningLog, SetSaveRunningLog, SaveRunningLogRow)
FLAG_PAIR(FlyMarkIsUsedExEnc, FlyMarkSetUsedExEnc, FlyUsedExEncRow)
FLAG_PAIR(FlyMarkIsEnInnerEnc, FlyMarkSetEnInnerEnc, FlyEnInnerEncRow)
INT_PAIR(FlyMarkGetInnerEncPeriod, FlyMarkSetInnerEncPeriod, FlyInnerEncPeriodRow)
INT_PAIR(FlyMarkGetInnerEncDir, FlyMarkSetInnerEncDir, FlyInnerEncDirRow)
INT_PAIR(FlyMarkGetOuterEncDir, FlyMarkSetOuterEncDir, FlyOuterEncDirRow)
FLAG_PAIR(FlyMarkIsEncRangeEn, FlyMarkSetEncRangeEn, FlyEncRangeEnRow)
INT_PAIR(FlyMarkGetEncRange, FlyMarkSetEncRange, FlyEncRangeRow)
INT_PAIR(FlyMarkGetEncPPM, FlyMarkSetEncPPM, FlyEncPPMRow)

#undef FLAG_PAIR
#undef INT_PAIR
#undef REAL_PAIR
#undef TEXT_PAIR

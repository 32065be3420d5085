// SPDX-License-Identifier: MIT
#pragma once

#include "engine/systemparam.h"
#include "simengine/params/systemparamtable.h"

#include <QString>

/// A getter of SystemParam, its setter and the row of the settings table that both stand for.
template<typename Value, typename Argument = Value>
struct ParamPair {
    sim::SystemRow row;
    Value (SystemParam::*get)() const;
    void (SystemParam::*set)(Argument);
};

constexpr ParamPair<bool> kFlagPairs[] = {
    {sim::SysModeRow, &SystemParam::GetSysMode, &SystemParam::SetSysMode},
    {sim::MarkDebugModeRow, &SystemParam::GetMarkDebugMode, &SystemParam::SetMarkDebugMode},
    {sim::UserManagerRow, &SystemParam::IsEnableUserManager, &SystemParam::SetEnableUserManager},
    {sim::BufLoopRow, &SystemParam::UsedBufLoop, &SystemParam::SetBufLoop},
    {sim::TriggerWhenRedLoopRow, &SystemParam::EnableTriggerWhenRedLoop, &SystemParam::SetEnableTriggerWhenRedLoop},
    {sim::SoftReadyRow, &SystemParam::EnableSoftReady, &SystemParam::SetEnableSoftReady},
    {sim::InvertXRow, &SystemParam::InvertX, &SystemParam::SetInvertX},
    {sim::InvertYRow, &SystemParam::InvertY, &SystemParam::SetInvertY},
    {sim::FirstPointDelayEnableRow, &SystemParam::EnableFirstPointDelay, &SystemParam::SetEnableFirstPointDelay},
    {sim::CloseLoopRow, &SystemParam::EnableCloseLoop, &SystemParam::SetEnableCloseLoop},
    {sim::CollectDataRow, &SystemParam::IsCollectData, &SystemParam::SetCollectData},
    {sim::CodeToolRow, &SystemParam::EnableCodeTool, &SystemParam::SetEnableCodeTool},
    {sim::WaveFormRow, &SystemParam::EnableWaveForm, &SystemParam::SetEnableWaveForm},
    {sim::FlyMarkToolRow, &SystemParam::EnableFlyMarkTool, &SystemParam::SetEnableFlyMarkTool},
    {sim::CcdToolRow, &SystemParam::EnableCcdTool, &SystemParam::SetEnableCcdTool},
    {sim::SplitLaserSetRow, &SystemParam::EnableSplitLaserSet, &SystemParam::SetEnableSplitLaserSet},
    {sim::LayLaserRow, &SystemParam::GetEnableLayLaser, &SystemParam::SetEnableLayLaser},
    {sim::ForceCheckCodeTextRow, &SystemParam::ForceCheckCodeText, &SystemParam::SetForceCheckCodeText},
    {sim::SaveOpenCardRow, &SystemParam::GetSaveOpenCard, &SystemParam::SetSaveOpenCard},
    {sim::SaveCloseCardRow, &SystemParam::GetSaveCloseCard, &SystemParam::SetSaveCloseCard},
    {sim::SaveMarkDataRow, &SystemParam::GetSaveMarkData, &SystemParam::SetSaveMarkData},
    {sim::SaveDebugRow, &SystemParam::GetSaveDebug, &SystemParam::SetSaveDebug},
    {sim::SaveChangeParamRow, &SystemParam::GetSaveChangeParam, &SystemParam::SetSaveChangeParam},
    {sim::SaveOperatorRow, &SystemParam::GetSaveOperator, &SystemParam::SetSaveOperator},
    {sim::SaveTrigerRow, &SystemParam::GetSaveTriger, &SystemParam::SetSaveTriger},
    {sim::SaveRunningLogRow, &SystemParam::GetSaveRunningLog, &SystemParam::SetSaveRunningLog},
    {sim::FlyUsedExEncRow, &SystemParam::FlyMarkIsUsedExEnc, &SystemParam::FlyMarkSetUsedExEnc},
    {sim::FlyEnInnerEncRow, &SystemParam::FlyMarkIsEnInnerEnc, &SystemParam::FlyMarkSetEnInnerEnc},
    {sim::FlyEncRangeEnRow, &SystemParam::FlyMarkIsEncRangeEn, &SystemParam::FlyMarkSetEncRangeEn},
};

constexpr ParamPair<int> kIntPairs[] = {
    {sim::WorkModeRow, &SystemParam::GetWorkMode, &SystemParam::SetWorkMode},
    {sim::StartUpMarkRow, &SystemParam::GetStartUpMark, &SystemParam::SetStartUpMark},
    {sim::ChangeLayerDelayRow, &SystemParam::GetChangeLayerDelay, &SystemParam::SetChaneLayerDelay},
    {sim::ZAxisnumRow, &SystemParam::GetZAxisnum, &SystemParam::SetZAxisnum},
    {sim::FirstPointDelayRow, &SystemParam::GetFirstPointDelay, &SystemParam::SetFirstPointDelay},
    {sim::EndTypeRow, &SystemParam::GetEndType, &SystemParam::SetEndType},
    {sim::LaserDistRow, &SystemParam::GetLaserDist, &SystemParam::SetLaserDist},
    {sim::PCBufRow, &SystemParam::GetPCBuf, &SystemParam::SetPCBuf},
    {sim::ListModeRow, &SystemParam::GetListMode, &SystemParam::SetListMode},
    {sim::LaserHostMaxRow, &SystemParam::EnableLaserHost_MAX, &SystemParam::SetEnableLaserHost_MAX},
    {sim::LayLaserTypeRow, &SystemParam::GetLayLaserType, &SystemParam::SetLayLaserType},
    {sim::CheckCodeTextDaysRow, &SystemParam::CheckCodeTextDays, &SystemParam::SetCheckCodeTextDays},
    {sim::CCDTimeOutRow, &SystemParam::GetCCDTimeOut, &SystemParam::SetCCDTimeOut},
    {sim::CCDCircleDPIRow, &SystemParam::GetCCDCircleDPI, &SystemParam::SetCCDCircleDPI},
    {sim::ScribePortRow, &SystemParam::GetScribePort, &SystemParam::SetScribePort},
    {sim::LogDaysRow, &SystemParam::GetLogDays, &SystemParam::SetLogDays},
    {sim::FlyInnerEncPeriodRow, &SystemParam::FlyMarkGetInnerEncPeriod, &SystemParam::FlyMarkSetInnerEncPeriod},
    {sim::FlyInnerEncDirRow, &SystemParam::FlyMarkGetInnerEncDir, &SystemParam::FlyMarkSetInnerEncDir},
    {sim::FlyOuterEncDirRow, &SystemParam::FlyMarkGetOuterEncDir, &SystemParam::FlyMarkSetOuterEncDir},
    {sim::FlyEncRangeRow, &SystemParam::FlyMarkGetEncRange, &SystemParam::FlyMarkSetEncRange},
    {sim::FlyEncPPMRow, &SystemParam::FlyMarkGetEncPPM, &SystemParam::FlyMarkSetEncPPM},
};

constexpr ParamPair<double> kRealPairs[] = {
    {sim::MaxDARow, &SystemParam::GetMaxDA, &SystemParam::SetMaxDA},
    {sim::CardBufRow, &SystemParam::GetCardBuf, &SystemParam::SetCardBuf},
    {sim::ThreadBufRow, &SystemParam::GetThreadBuf, &SystemParam::SetThreadBuf},
    {sim::CutOffRow, &SystemParam::GetCutOff, &SystemParam::SetCutOff},
};

constexpr ParamPair<QString, QString const&> kTextPairs[] = {
    {sim::StaticIPRow, &SystemParam::GetStaticIP, &SystemParam::SetStaticIP},
    {sim::CardNameRow, &SystemParam::GetCardName, &SystemParam::SetCardName},
};

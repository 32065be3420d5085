// SPDX-License-Identifier: MIT
#include "laser/runlaserstart.h"

#include "engine/markingmparam_vz.h"
#include "engine/profinifile.h"
#include "laser/lasersequence.h"
#include "laser/machinelaserport.h"

#include <unistd.h>

namespace {

constexpr char kLaser[] = "LASER";
constexpr char kMain[] = "Main";
constexpr char kYlrSection[] = "LaserS_YLR";
/// One key for two families: each field is loaded from it, and the one of the fitted laser is written.
constexpr char kSoftwareEnable[] = "TopSoftWareControlYlrEnable";

using File = ProfIniFile* (*)();
constexpr File kCardFile = &XProfIniFile_CardCfg::Instance;
constexpr File kDemarcateFile = &XProfIniFile_VZBOXINI::Instance;

/// Where a field is kept.
struct LaserKey {
    int RunLaserStart::*field;
    File file;
    char const* section;
    char const* key;
    int defaultValue;
};

constexpr LaserKey kCommonKeys[] = {
    {&RunLaserStart::nOssType, kCardFile, kLaser, "OSS_TYPE", 0},
    {&RunLaserStart::nMarkEndResetDaToZero, kCardFile, kMain, "MarkEndResetDaToZero", 1},
    {&RunLaserStart::bLockLaserAllow, kCardFile, kLaser, "bLockLaserAllow", 0},
    {&RunLaserStart::nLockLaserSwitchIO, kCardFile, kLaser, "nLockLaserSwitchIO", 7},
};

constexpr LaserKey kYlrKeys[] = {
    {&RunLaserStart::nOutb07, kDemarcateFile, kYlrSection, "OUTB_07", 0},
    {&RunLaserStart::nYlrLaserType, kDemarcateFile, kYlrSection, "LaserType", 0},
    {&RunLaserStart::bYLS, kCardFile, kLaser, "bYLS", 0},
    {&RunLaserStart::nYlrReadyAfterEnableMs, kCardFile, kLaser, "YLRReadyAfterEnableMS", 20},
};

constexpr LaserKey kYagKeys[] = {
    {&RunLaserStart::nWaveNoLock, kCardFile, kLaser, "WaveNoLock", 1},
};

constexpr LaserKey kFilberKeys[] = {
    {&RunLaserStart::nFiberAlarm, kDemarcateFile, kLaser, "Fiber_Alarm", 0},
    {&RunLaserStart::nPrrBeforeMoPaUs, kCardFile, kLaser, "nPrrBeforeMoPaUS", 8000},
};

constexpr LaserKey kYlrEnableKey = {&RunLaserStart::nYlrSoftwareEnable, kCardFile, kLaser, kSoftwareEnable, 0};
constexpr LaserKey kFilberEnableKey = {&RunLaserStart::nFiberSoftwareEnable, kCardFile, kLaser, kSoftwareEnable, 0};

void load(RunLaserStart& laser, LaserKey const& key) {
    laser.*key.field = key.file()->ReadInt(QLatin1String(key.section), QLatin1String(key.key), key.defaultValue);
}

template<std::size_t N>
void load(RunLaserStart& laser, LaserKey const (&keys)[N]) {
    for (LaserKey const& key : keys)
        load(laser, key);
}

/// A file that cannot be written is not told: the page shows the values, and the next start the old ones.
void store(RunLaserStart const& laser, LaserKey const& key) {
    key.file()->WriteInt(QLatin1String(key.section), QLatin1String(key.key), laser.*key.field);
}

template<std::size_t N>
void store(RunLaserStart const& laser, LaserKey const (&keys)[N]) {
    for (LaserKey const& key : keys)
        store(laser, key);
}

int cardType() {
    return MarkingMParam_VZ::Instance()->GetMarkCardType();
}

} // namespace

RunLaserStart* RunLaserStart::Instance() {
    static RunLaserStart instance;
    return &instance;
}

RunLaserStart::RunLaserStart()
    : m_Machine(std::make_unique<tessera::MachineLaserPort>())
    , m_pPort(m_Machine.get()) {
    InitYLRParam();
    InitYAGParam();
    InitFilberParam();
    InitCommonParam();
}

RunLaserStart::~RunLaserStart() = default;

void RunLaserStart::SetPort(tessera::LaserPort* port) {
    m_pPort = port ? port : m_Machine.get();
}

void RunLaserStart::RunLaser_Start() {
    if (!m_pPort->IsOpen())
        return;
    switch (tessera::LaserFamilyOf(cardType(), bYLS)) {
    case tessera::LaserFamily::Ylr:
        RunLaserYLR();
        break;
    case tessera::LaserFamily::Yls:
        RunLaserYLS();
        break;
    case tessera::LaserFamily::Sn:
        RunLaserSN();
        break;
    case tessera::LaserFamily::Yag:
        RunLaserYAG();
        break;
    case tessera::LaserFamily::Fibre:
        Run(tessera::kFibreStart);
        break;
    case tessera::LaserFamily::None:
        break;
    }
}

void RunLaserStart::RunLaser_End() {
    if (!m_pPort->IsOpen())
        return;
    switch (tessera::LaserFamilyOf(cardType(), bYLS)) {
    case tessera::LaserFamily::Ylr:
        RunLaserEndYLR();
        break;
    case tessera::LaserFamily::Yls:
        RunLaserEndYLS();
        break;
    case tessera::LaserFamily::Sn:
        RunLaserEndSN();
        break;
    case tessera::LaserFamily::Fibre:
        Run(tessera::kFibreEnd);
        break;
    case tessera::LaserFamily::Yag:
    case tessera::LaserFamily::None:
        break;
    }
}

void RunLaserStart::RunLaserYLR() {
    Run(tessera::kYlrStart);
}

void RunLaserStart::RunLaserYLS() {
    Run(tessera::kYlsStart);
}

void RunLaserStart::RunLaserSN() {
    Run(tessera::kSnStart);
}

void RunLaserStart::RunLaserYAG() {
    Run(tessera::kYagStart);
}

void RunLaserStart::RunLaserEndYLR() {
    Run(tessera::kYlrEnd);
}

void RunLaserStart::RunLaserEndYLS() {
    Run(tessera::kYlsSnEnd);
}

void RunLaserStart::RunLaserEndSN() {
    Run(tessera::kYlsSnEnd);
}

void RunLaserStart::ChangeYLRLaserType(int type) {
    if (!m_pPort->IsOpen())
        return;
    tessera::LaserChoices choices = Choices();
    choices.laserType = type;
    tessera::RunLaserSequence(tessera::kTypeChange, choices, *m_pPort);
}

void RunLaserStart::Run(tessera::LaserSequence const& sequence) {
    tessera::RunLaserSequence(sequence, Choices(), *m_pPort);
}

/// The two enables are read differently on purpose: a value above 1 is off for one family and on for the other.
tessera::LaserChoices RunLaserStart::Choices() const {
    tessera::LaserChoices choices;
    choices.shutterBySoftware = nYlrSoftwareEnable == 1;
    choices.remotePulse = nOutb07 == 1;
    choices.fibreEnable = nFiberSoftwareEnable != 0;
    choices.laserType = nYlrLaserType;
    return choices;
}

void RunLaserStart::InitCommonParam() {
    load(*this, kCommonKeys);
}

void RunLaserStart::InitFilberParam() {
    load(*this, kFilberKeys);
    load(*this, kFilberEnableKey);
}

void RunLaserStart::InitYAGParam() {
    load(*this, kYagKeys);
}

void RunLaserStart::InitYLRParam() {
    load(*this, kYlrKeys);
    load(*this, kYlrEnableKey);
}

void RunLaserStart::SaveCommonParam() {
    store(*this, kCommonKeys);
}

void RunLaserStart::SaveFilberParam() {
    store(*this, kFilberKeys);
}

void RunLaserStart::SaveYAGParam() {
    store(*this, kYagKeys);
}

void RunLaserStart::SaveYLRParam() {
    store(*this, kYlrKeys);
}

void RunLaserStart::SaveParam() {
    SaveYLRParam();
    SaveYAGParam();
    SaveFilberParam();
    SaveCommonParam();
    const int type = cardType();
    if (type == MarkCardFilber)
        store(*this, kFilberEnableKey);
    else if (tessera::IsYlrType(type))
        store(*this, kYlrEnableKey);
    ::sync();
}

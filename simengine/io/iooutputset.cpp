// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/iooutputset.h"

#include "simengine/io/iooutputtable.h"

using namespace sim;

struct IOOutputSet::Private {
    ParamStore store{QLatin1String(kOutputSetFile), kOutputParams, OutputRowCount};
    std::mutex lampLock; ///< one stack light at a time: threads must not mix their lamps
    std::atomic<bool> red{false};
    std::atomic<bool> green{false};
    std::atomic<bool> yellow{false};

    void writeLamp(IMarkCardBase* card, std::size_t row, bool on) const;
    void setLamps(IMarkCardBase* card, bool redOn, bool greenOn, bool yellowOn);
    void writeSwitch(IMarkCardBase* card, std::size_t row, bool on) const;
    bool readSwitch(IMarkCardBase* card, std::size_t row) const;
};

void IOOutputSet::Private::writeLamp(IMarkCardBase* card, std::size_t row, bool on) const {
    int const bit = store.integer(row);
    if (card && bit >= 0)
        card->SetOutputBit(bit, on != store.flag(OutputInvRow) ? 1 : 0);
}

void IOOutputSet::Private::setLamps(IMarkCardBase* card, bool redOn, bool greenOn, bool yellowOn) {
    std::lock_guard<std::mutex> guard(lampLock);
    red = redOn;
    green = greenOn;
    yellow = yellowOn;
    writeLamp(card, LightRedRow, redOn);
    writeLamp(card, LightGreenRow, greenOn);
    writeLamp(card, LightYellowRow, yellowOn);
    writeLamp(card, BuzzerRow, redOn);
}

void IOOutputSet::Private::writeSwitch(IMarkCardBase* card, std::size_t row, bool on) const {
    int const bit = store.integer(row);
    if (card && bit >= 0)
        card->SetOutputBit(bit, on ? 1 : 0);
}

bool IOOutputSet::Private::readSwitch(IMarkCardBase* card, std::size_t row) const {
    int const bit = store.integer(row);
    return card && bit >= 0 && card->GetOutputBit(bit) != 0;
}

IOOutputSet::IOOutputSet()
    : d(std::make_unique<Private>()) {
    m_bStopHasEndSig = d->store.flag(StopHasEndSigRow);
}

IOOutputSet::~IOOutputSet() = default;

IOOutputSet* IOOutputSet::Instance() {
    static IOOutputSet instance;
    return &instance;
}

bool IOOutputSet::Save() {
    d->store.setFlag(StopHasEndSigRow, m_bStopHasEndSig);
    return d->store.save();
}

void IOOutputSet::SetGreen(IMarkCardBase* card) {
    d->setLamps(card, false, true, false);
}

void IOOutputSet::SetYellow(IMarkCardBase* card) {
    d->setLamps(card, false, false, true);
}

void IOOutputSet::SetRed(IMarkCardBase* card) {
    d->setLamps(card, true, false, false);
}

void IOOutputSet::SetGreenYellow(IMarkCardBase* card) {
    d->setLamps(card, false, true, true);
}

void IOOutputSet::GetLight(int& red, int& green, int& yellow, int& buzzer) const {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    red = d->store.integer(LightRedRow);
    green = d->store.integer(LightGreenRow);
    yellow = d->store.integer(LightYellowRow);
    buzzer = d->store.integer(BuzzerRow);
}

void IOOutputSet::SetLight(int red, int green, int yellow, int buzzer) {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    d->store.setInteger(LightRedRow, red);
    d->store.setInteger(LightGreenRow, green);
    d->store.setInteger(LightYellowRow, yellow);
    d->store.setInteger(BuzzerRow, buzzer);
}

void IOOutputSet::GetLightStatus(bool& red, bool& green, bool& yellow) const {
    std::lock_guard<std::mutex> guard(d->lampLock);
    red = d->red;
    green = d->green;
    yellow = d->yellow;
}

int IOOutputSet::GetReadyOut() const {
    return d->store.integer(ReadyOutRow);
}

void IOOutputSet::SetReadyOut(int bit) {
    d->store.setInteger(ReadyOutRow, bit);
}

bool IOOutputSet::EnableReadyOut() const {
    return d->store.flag(ReadyOutEnableRow);
}

void IOOutputSet::SetEnableReadyOut(bool enable) {
    d->store.setFlag(ReadyOutEnableRow, enable);
}

bool IOOutputSet::IsOutputInv() const {
    return d->store.flag(OutputInvRow);
}

void IOOutputSet::SetOutputInv(bool invert) {
    d->store.setFlag(OutputInvRow, invert);
}

void IOOutputSet::GetRedLight(int& bit, QString& name) const {
    bit = d->store.integer(RedLightRow);
    name = d->store.text(RedLightNameRow);
}

void IOOutputSet::SetRedLight(int& bit, QString const& name) {
    d->store.setInteger(RedLightRow, bit);
    d->store.setText(RedLightNameRow, name);
}

void IOOutputSet::SetRedLight(IMarkCardBase* card, bool on) {
    d->writeSwitch(card, RedLightRow, on);
}

bool IOOutputSet::RedLightEnabled(IMarkCardBase* card) const {
    return d->readSwitch(card, RedLightRow);
}

void IOOutputSet::GetProtectGas(int& bit, double& delay, QString& name) const {
    bit = d->store.integer(GasRow);
    delay = d->store.real(GasDelayRow);
    name = d->store.text(GasNameRow);
}

void IOOutputSet::SetProtectGas(int& bit, double& delay, QString const& name) {
    d->store.setInteger(GasRow, bit);
    d->store.setReal(GasDelayRow, delay);
    d->store.setText(GasNameRow, name);
}

void IOOutputSet::SetProtectGas(IMarkCardBase* card, bool on) {
    d->writeSwitch(card, GasRow, on);
}

bool IOOutputSet::ProtectGasEnabled(IMarkCardBase* card) const {
    return d->readSwitch(card, GasRow);
}

void IOOutputSet::GetEndSignal(bool& enable, int& output, int& level, int& clearType, int& duration, int& ackInput,
                               int& ackLevel, int& ackTimeout, bool& selfCheck) const {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    enable = d->store.flag(EndEnableRow);
    output = d->store.integer(EndOutputRow);
    level = d->store.integer(EndLevelRow);
    clearType = d->store.integer(EndClearTypeRow);
    duration = d->store.integer(EndDurationRow);
    ackInput = d->store.integer(EndAckInputRow);
    ackLevel = d->store.integer(EndAckLevelRow);
    ackTimeout = d->store.integer(EndAckTimeoutRow);
    selfCheck = d->store.flag(EndSelfCheckRow);
}

void IOOutputSet::SetEndSignal(bool enable, int output, int level, int clearType, int duration, int ackInput,
                               int ackLevel, int ackTimeout, bool selfCheck) {
    std::lock_guard<std::mutex> guard(d->store.groupLock());
    d->store.setFlag(EndEnableRow, enable);
    d->store.setInteger(EndOutputRow, output);
    d->store.setInteger(EndLevelRow, level);
    d->store.setInteger(EndClearTypeRow, clearType);
    d->store.setInteger(EndDurationRow, duration);
    d->store.setInteger(EndAckInputRow, ackInput);
    d->store.setInteger(EndAckLevelRow, ackLevel);
    d->store.setInteger(EndAckTimeoutRow, ackTimeout);
    d->store.setFlag(EndSelfCheckRow, selfCheck);
}

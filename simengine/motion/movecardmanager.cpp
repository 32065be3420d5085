// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/movecardmanager.h"

#include "engine/class_cardpara.h"
#include "simengine/card/cardcore.h"
#include "simengine/motion/axisstate.h"
#include "simengine/motion/cardaxes.h"
#include "simengine/motion/carriagefile.h"
#include "simengine/params/inifile.h"
#include "support/approot.h"

#include <atomic>
#include <cmath>
#include <mutex>

using namespace sim;

namespace {

constexpr char kPositionFile[] = "/ini/MovePos.ini"; ///< the jog panel keeps the positions there

void record(char const* name, std::vector<JournalValue> args = {}) {
    simulatedCard().journal().add(name, std::move(args));
}

bool hasAxis(int axis) {
    return axis >= 0 && axis < qMin(Class_CardPara::Instance()->AxisCount, kAxisSlots);
}

AxisPara const& axisPara(int axis) {
    return Class_CardPara::Instance()->Axis[static_cast<std::size_t>(axis)];
}

int motorOf(int axis) {
    return sim::motorOf(*Class_CardPara::Instance(), axis);
}

/// The counters go on where the last run of the program has left them, and the carriages stand where they belong to
/// that. Slots behind the axes in use keep values of earlier machines, and may name the same motors.
void restorePositions() {
    IniFile const file(tessera::rootPath(QLatin1String(kPositionFile)));
    for (int axis = 0; hasAxis(axis); ++axis) {
        std::optional<double> const stored =
            iniDouble(file.value(QStringLiteral("AxisPos"), QStringLiteral("Axis%1").arg(axis)).value_or(QString()));
        if (stored)
            restoreCounter(motorOf(axis), *stored);
    }
}

} // namespace

struct MoveCardManager::Private {
    std::unique_ptr<IMoveCardBase> card;
    std::atomic<bool> open{false};

    bool usable(int axis) const { return open && hasAxis(axis); }
};

MoveCardManager::MoveCardManager()
    : d(std::make_unique<Private>()) {
    simulatedAxes(); // made before the manager and so destroyed after it
}

/// At the end of the process, too late for files.
MoveCardManager::~MoveCardManager() {
    if (d->open.exchange(false))
        simulatedAxes().resetAll();
}

MoveCardManager* MoveCardManager::Instance() {
    static MoveCardManager instance;
    return &instance;
}

void MoveCardManager::SetMoveCardInstance(IMoveCardBase* card) {
    d->card.reset(card);
}

IMoveCardBase* MoveCardManager::GetMoveCardInstance() const {
    return d->card.get();
}

void MoveCardManager::InitMoveCard() {
    record("InitMoveCard");
    if (!d->card || d->open)
        return;
    AxisGroup& axes = simulatedAxes();
    axes.resetAll();
    for (int axis = 0; hasAxis(axis); ++axis)
        axes.configure(motorOf(axis), axisConfig(*Class_CardPara::Instance(), axis));
    restoreCarriages();
    restorePositions();
    applyAxisFaults();
    d->open = true;
}

void MoveCardManager::CloseMoveCard() {
    if (!d->open.exchange(false))
        return;
    record("CloseMoveCard");
    simulatedAxes().haltAll();
    storeCarriages();
    simulatedAxes().resetAll();
}

bool MoveCardManager::IsCardOpened() const {
    return d->open;
}

bool MoveCardManager::IsEnableMoveCard() const {
    return Class_CardPara::Instance()->EnableMotion;
}

bool MoveCardManager::AxisMove2(int axis, double pos, double speed, double acc) {
    record("AxisMove2", journalArgs(axis, pos, speed, acc));
    if (!d->usable(axis))
        return false;
    Class_CardPara const& para = *Class_CardPara::Instance();
    simulatedAxes().configure(motorOf(axis), axisConfig(para, axis));
    return simulatedAxes().move(motorOf(axis), pos, capped(speed, para.MaxSpeed), capped(acc, para.MaxAcc));
}

bool MoveCardManager::AxisMove2Jog(int axis, double signedSpeed, double acc) {
    record("AxisMove2Jog", journalArgs(axis, signedSpeed, acc));
    if (!d->usable(axis))
        return false;
    Class_CardPara const& para = *Class_CardPara::Instance();
    double const speed = std::copysign(capped(std::fabs(signedSpeed), para.MaxSpeed), signedSpeed);
    simulatedAxes().configure(motorOf(axis), axisConfig(para, axis));
    return simulatedAxes().jog(motorOf(axis), axisPara(axis).JogReverse != 0 ? -speed : speed,
                               capped(acc, para.MaxAcc));
}

bool MoveCardManager::AxisGetAltPos(int axis, double& pos) const {
    int state = 0;
    return AxisGetInfo(axis, pos, state);
}

bool MoveCardManager::AxisGetInfo(int axis, double& pos, int& state) const {
    AxisSample sample;
    if (!d->usable(axis) || !simulatedAxes().sample(motorOf(axis), sample))
        return false;
    pos = sample.position;
    state = sample.state;
    return true;
}

bool MoveCardManager::AxisChangeToT(int axis) {
    record("AxisChangeToT", journalArgs(axis));
    if (!d->usable(axis))
        return false;
    AxisSample sample;
    if (simulatedAxes().sample(motorOf(axis), sample) && (sample.state & AxisJogging) != 0)
        simulatedAxes().stop(motorOf(axis));
    return true;
}

bool MoveCardManager::SetCurPos(int axis, double pos) {
    record("SetCurPos", journalArgs(axis, pos));
    if (!d->usable(axis) || !simulatedAxes().setPosition(motorOf(axis), pos))
        return false;
    storeCarriages();
    return true;
}

void MoveCardManager::WaiAxisStop(int axis) {
    if (d->usable(axis))
        simulatedAxes().wait(motorOf(axis));
}

void MoveCardManager::StopAll() {
    record("StopAll");
    if (d->open)
        simulatedAxes().stopAll();
}

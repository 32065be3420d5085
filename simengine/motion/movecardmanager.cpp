// SPDX-License-Identifier: GPL-2.0-or-later
#include "engine/movecardmanager.h"

#include "engine/class_cardpara.h"
#include "simengine/card/cardcore.h"
#include "simengine/motion/axisstate.h"
#include "simengine/motion/cardaxes.h"
#include "simengine/motion/carriagefile.h"
#include "simengine/params/inifile.h"
#include "support/approot.h"

#include <QCoreApplication>
#include <QThread>
#include <atomic>
#include <cmath>
#include <mutex>

using namespace sim;

namespace {

constexpr char kPositionFile[] = "/ini/MovePos.ini"; ///< the jog panel keeps the positions there

void record(char const* name, std::vector<JournalValue> args = {}) {
    simulatedCard().journal().add(name, std::move(args));
}

bool hasAxis(Class_CardPara const& para, int axis) {
    return axis >= 0 && axis < qMin(para.AxisCount, kAxisSlots);
}

bool onMainThread() {
    QCoreApplication const* app = QCoreApplication::instance();
    return !app || QThread::currentThread() == app->thread();
}

/// The counters go on where the last run of the program has left them, and the carriages stand where they belong to
/// that. Slots behind the axes in use keep values of earlier machines, and may name the same motors.
void restorePositions(Class_CardPara const& para) {
    IniFile const file(tessera::rootPath(QLatin1String(kPositionFile)));
    for (int axis = 0; hasAxis(para, axis); ++axis) {
        std::optional<double> const stored =
            iniDouble(file.value(QStringLiteral("AxisPos"), QStringLiteral("Axis%1").arg(axis)).value_or(QString()));
        if (stored)
            restoreCounter(motorOf(para, axis), *stored);
    }
}

} // namespace

struct MoveCardManager::Private {
    using Para = std::shared_ptr<Class_CardPara const>;

    std::unique_ptr<IMoveCardBase> card;
    std::atomic<bool> open{false};

    /// The machine's parameters. A dialog writes them on the main thread while axes are driven from others, which
    /// therefore get those of the last call on the main thread.
    Para values() {
        std::lock_guard<std::mutex> const guard(m_lock);
        if (!m_para || onMainThread())
            m_para = std::make_shared<Class_CardPara const>(*Class_CardPara::Instance());
        return m_para;
    }
    /// Those for a call that drives this axis; null when it cannot be driven.
    Para valuesOf(int axis) {
        if (!open)
            return nullptr;
        Para para = values();
        return hasAxis(*para, axis) ? para : nullptr;
    }

private:
    std::mutex m_lock;
    Para m_para;
};

MoveCardManager::MoveCardManager()
    : d(std::make_unique<Private>()) {
    simulatedAxes(); // made before the manager and so destroyed after it
    d->values();
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
    Private::Para const para = d->values();
    for (int axis = 0; hasAxis(*para, axis); ++axis)
        axes.configure(motorOf(*para, axis), axisConfig(*para, axis));
    restoreCarriages();
    restorePositions(*para);
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
    return d->values()->EnableMotion;
}

bool MoveCardManager::AxisMove2(int axis, double pos, double speed, double acc) {
    record("AxisMove2", journalArgs(axis, pos, speed, acc));
    Private::Para const para = d->valuesOf(axis);
    if (!para)
        return false;
    int const motor = motorOf(*para, axis);
    simulatedAxes().configure(motor, axisConfig(*para, axis));
    return simulatedAxes().move(motor, pos, capped(speed, para->MaxSpeed), capped(acc, para->MaxAcc));
}

bool MoveCardManager::AxisMove2Jog(int axis, double signedSpeed, double acc) {
    record("AxisMove2Jog", journalArgs(axis, signedSpeed, acc));
    Private::Para const para = d->valuesOf(axis);
    if (!para)
        return false;
    int const motor = motorOf(*para, axis);
    double const speed = std::copysign(capped(std::fabs(signedSpeed), para->MaxSpeed), signedSpeed);
    bool const reverse = para->Axis[static_cast<std::size_t>(axis)].JogReverse != 0;
    simulatedAxes().configure(motor, axisConfig(*para, axis));
    return simulatedAxes().jog(motor, reverse ? -speed : speed, capped(acc, para->MaxAcc));
}

bool MoveCardManager::AxisGetAltPos(int axis, double& pos) const {
    int state = 0;
    return AxisGetInfo(axis, pos, state);
}

bool MoveCardManager::AxisGetInfo(int axis, double& pos, int& state) const {
    Private::Para const para = d->valuesOf(axis);
    AxisSample sample;
    if (!para || !simulatedAxes().sample(motorOf(*para, axis), sample))
        return false;
    pos = sample.position;
    state = sample.state;
    return true;
}

bool MoveCardManager::AxisChangeToT(int axis) {
    record("AxisChangeToT", journalArgs(axis));
    Private::Para const para = d->valuesOf(axis);
    if (!para)
        return false;
    int const motor = motorOf(*para, axis);
    AxisSample sample;
    if (simulatedAxes().sample(motor, sample) && (sample.state & AxisJogging) != 0)
        simulatedAxes().stop(motor);
    return true;
}

bool MoveCardManager::SetCurPos(int axis, double pos) {
    record("SetCurPos", journalArgs(axis, pos));
    Private::Para const para = d->valuesOf(axis);
    if (!para || !simulatedAxes().setPosition(motorOf(*para, axis), pos))
        return false;
    storeCarriages();
    return true;
}

void MoveCardManager::WaiAxisStop(int axis) {
    if (Private::Para const para = d->valuesOf(axis))
        simulatedAxes().wait(motorOf(*para, axis));
}

void MoveCardManager::StopAll() {
    record("StopAll");
    if (d->open)
        simulatedAxes().stopAll();
}

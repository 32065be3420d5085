// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/runplan.h"

#include "engine/systemparam.h"
#include "simengine/card/cardcore.h"

#include <algorithm>

namespace sim {

namespace {

bool same(const CCDBufdata& a, const CCDBufdata& b) {
    return a.Valid == b.Valid && std::equal(a.Values.begin(), a.Values.begin() + 3, b.Values.begin());
}

bool same(const JobOptions& a, const JobOptions& b) {
    return a.selectedOnly == b.selectedOnly && a.invertX == b.invertX && a.invertY == b.invertY &&
           std::equal(a.offsets.begin(), a.offsets.end(), b.offsets.begin(), b.offsets.end(),
                      [](const CCDBufdata& x, const CCDBufdata& y) { return same(x, y); });
}

bool same(const EndSignalWait& a, const EndSignalWait& b) {
    return a.ms == b.ms && a.acknowledge == b.acknowledge && a.mostMs == b.mostMs;
}

} // namespace

bool RunPlan::sameAs(const RunPlan& other) const {
    return state->objects == other.state->objects && sameSettings(other);
}

bool RunPlan::sameSettings(const RunPlan& other) const {
    return (!options.selectedOnly || state->selection == other.state->selection) && same(options, other.options) &&
           pens == other.pens && plan.penChangeDelayMs == other.plan.penChangeDelayMs && start == other.start &&
           same(endSignalWait(endSignal), endSignalWait(other.endSignal));
}

JobOptions currentOptions(bool selectedOnly, const QVector<CCDBufdata>& offsets) {
    JobOptions options;
    options.selectedOnly = selectedOnly;
    options.invertX = SystemParam::Instance()->InvertX();
    options.invertY = SystemParam::Instance()->InvertY();
    options.offsets = offsets;
    return options;
}

RunPlan currentPlan(StatePtr state, JobOptions options, const PenTable& pens) {
    const CardCore& card = simulatedCard();
    RunPlan plan;
    plan.state = std::move(state);
    plan.options = std::move(options);
    plan.pens = pens;
    plan.plan.penChangeDelayMs = SystemParam::Instance()->GetChangeLayerDelay();
    plan.start = card.isOpen() ? card.head().at : Point();
    plan.endSignal = currentEndSignal();
    return plan;
}

TimelineJob timelineJob(const RunPlan& plan, const Cancellation* cancellation) {
    TimelineJob job;
    job.job = buildJob(*plan.state, plan.options, nullptr, cancellation);
    job.pens = plan.pens;
    job.plan = plan.plan;
    job.start = plan.start;
    return job;
}

EndSignalWait endSignalWait(const EndSignalSettings& settings) {
    EndSignalWait wait;
    if (!settings.enable || settings.output < 0 || settings.output >= kLineCount)
        return wait;
    if (settings.clear == EndSignalClear::Block)
        wait.ms = std::max(0, settings.duration);
    wait.acknowledge = settings.clear == EndSignalClear::Acknowledge;
    if (wait.acknowledge)
        wait.mostMs = std::max(0, settings.ackTimeout);
    return wait;
}

} // namespace sim
